#!/usr/bin/env python3
"""Sends random rules through `orkrule batch`: every line must be answered, by JSON, in order.

Usage: batch_lines.py TOOL DATABASE RULES COUNT
Half of the rules are random bytes, half are random words of the language. Behind them come the
rules of the file RULES with a word changed, so that many are valid, and lines of bytes that are no
JSON. The seed is fixed.
"""

import json
import random
import re
import subprocess
import sys

WORDS = """( ) , + - * / ^ % & = <> > >= < <= *= =* and or not in not_in between null not_null like
1 2.5 'a' 'a''b' '2020-1-2' ' '' T.a T.b T.d T.s T.rcid Orders.Amount Orders.Photo Customer.Name X.y
sum average count max min count1 switch thisSet IsNull ToText ToDate ToNumber year quarter weekDay
dateAdd timeInterval yy qq mm dd ww thisYear lastMonth fstDayOfYear endOfFisQuarter RAND length log10
Input.x[N] Input.x Sms.y[S] sysVar.userName sysVar.RepState Constant.Null 'yyyy-mm-dd' [ ] . \t % 中文
""".split(" ")
OPERANDS = """1 2.5 'a' '2020-1-2' T.a T.b T.d T.s T.rcid Orders.Amount Orders.Photo Customer.Name
Input.x[N] sysVar.userName 客户.名称""".split()


def rules(count):
    source = random.Random(7)
    for number in range(count):
        if number % 2:
            yield " ".join(source.choices(WORDS, k=source.randrange(14)))
        else:
            yield bytes(source.randrange(256) for _ in range(source.randrange(40))).decode("latin-1")


def changed_rules(path, count):
    """Pairs of type and rule, a word of each rule changed."""
    source = random.Random(8)
    with open(path, encoding="utf-8") as file:
        rows = [line.split(None, 1) for line in file if line.strip() and line[0] != "#"]
    types = {"number": 1, "text": 2, "date": 3, "logic": 4}
    for _ in range(count):
        kind, rule = source.choice(rows)
        words = re.findall(r"'[^']*'|[\w.\[\]]+|\S", rule)
        operands = [at for at, word in enumerate(words) if re.search(r"[.'\d]", word)]
        if operands and source.randrange(4):
            words[source.choice(operands)] = source.choice(OPERANDS)
        else:
            words[source.randrange(len(words))] = source.choice(WORDS)
        yield types.get(kind, 5), " ".join(words)


def no_json(count):
    """Lines of bytes that begin like JSON and are none."""
    source = random.Random(9)
    for _ in range(count):
        body = bytes(source.randrange(256) for _ in range(source.randrange(60)))
        yield source.choice([b"{", b"[", b'"', b"\xff", b"\0"]) + body.replace(b"\n", b"") + b"\xff"


def main():
    tool, database, path, count = sys.argv[1], sys.argv[2], sys.argv[3], int(sys.argv[4])
    asked = [(number % 9, rule) for number, rule in enumerate(rules(count))]
    asked += changed_rules(path, count // 4)
    lines = [{"op": "Connect", "server": "sqlite:" + database}]
    for number, (kind, rule) in enumerate(asked):
        lines.append({"id": number, "op": "Translate", "type": kind, "expression": rule,
                      "twoParts": number % 4 < 2, "dsType": 3 if number % 5 == 0 else 0})
    bad = list(no_json(count // 10))
    text = "".join(json.dumps(line) + "\n" for line in lines).encode() + b"\n".join(bad)
    run = subprocess.run([tool, "batch"], input=text, stdout=subprocess.PIPE, check=False)
    answers = [json.loads(line) for line in run.stdout.split(b"\n")[:-1]]
    if run.returncode != 0 or len(answers) != len(lines) + len(bad):
        sys.exit(f"status {run.returncode}, {len(answers)} answers, not {len(lines) + len(bad)}")
    answered = answers[1 : len(lines)]
    for number, answer in enumerate(answered):
        if answer.get("id") != number or "error" in answer or "errNumber" not in answer:
            sys.exit(f"bad answer to line {number}: {answer}")
    if not all("error" in answer for answer in answers[len(lines) :]):
        sys.exit("a line that is no JSON was taken for some")
    translated = sum(1 for answer in answered if answer.get("result"))
    print(f"{len(answers) - 1} lines answered, {translated} rules translated")
    if translated < count // 20:
        sys.exit("too few rules reach the translators")


main()
