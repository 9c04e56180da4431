#!/usr/bin/env python3
"""Sends random rules through `orkrule batch`: every line must be answered, by JSON, in order.

Usage: batch_lines.py TOOL DATABASE COUNT
Half of the rules are random bytes, half are random words of the language. The seed is fixed.
"""

import json
import random
import subprocess
import sys

WORDS = """( ) , + - * / ^ % & = <> > >= < <= *= =* and or not in not_in between null not_null like
1 2.5 'a' 'a''b' '2020-1-2' ' '' T.a T.b T.d T.s T.rcid Orders.Amount Orders.Photo Customer.Name X.y
sum average count max min count1 switch thisSet IsNull ToText ToDate ToNumber year quarter weekDay
dateAdd timeInterval yy qq mm dd ww thisYear lastMonth fstDayOfYear endOfFisQuarter RAND length log10
Input.x[N] Input.x Sms.y[S] sysVar.userName sysVar.RepState Constant.Null 'yyyy-mm-dd' [ ] . \t % 中文
""".split(" ")


def rules(count):
    source = random.Random(7)
    for number in range(count):
        if number % 2:
            yield " ".join(source.choices(WORDS, k=source.randrange(14)))
        else:
            yield bytes(source.randrange(256) for _ in range(source.randrange(40))).decode("latin-1")


def main():
    tool, database, count = sys.argv[1], sys.argv[2], int(sys.argv[3])
    lines = [{"op": "Connect", "server": "sqlite:" + database}]
    for number, rule in enumerate(rules(count)):
        lines.append({"id": number, "op": "Translate", "type": number % 9, "expression": rule,
                      "twoParts": number % 4 < 2, "dsType": 3 if number % 5 == 0 else 0})
    text = "".join(json.dumps(line) + "\n" for line in lines)
    run = subprocess.run([tool, "batch"], input=text.encode(), stdout=subprocess.PIPE, check=False)
    answers = [json.loads(line) for line in run.stdout.split(b"\n")[:-1]]
    if run.returncode != 0 or len(answers) != len(lines):
        sys.exit(f"status {run.returncode}, {len(answers)} answers to {len(lines)} lines")
    for number, answer in enumerate(answers[1:]):
        if answer.get("id") != number or "error" in answer or "errNumber" not in answer:
            sys.exit(f"bad answer to line {number}: {answer}")
    verified = sum(1 for answer in answers[1:] if answer.get("result"))
    print(f"{len(answers) - 1} rules answered, {verified} of them verified")
    if verified == 0:
        sys.exit("no rule verified: the words do not reach the translators")


main()
