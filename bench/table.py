#!/usr/bin/env python3
"""Makes ratios and growth exponents of the times in FOLDER/{rules,growth,allocations,authoring}.json and
prints them as one table; with --rules also the twelve rules one by one."""

import json
import math
import statistics
import sys


def read(folder, name):
    """The least CPU time of the repetitions, and the counters, by benchmark name: a shared machine
    has slow spells, which only ever add."""
    with open(f"{folder}/{name}.json", encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    times, counters = {}, {}
    for run in sorted(runs, key=lambda run: run["family_index"]):  # they ran in any order
        if run["run_type"] != "iteration":
            continue
        times.setdefault(run["run_name"], []).append(run["cpu_time"])
        counters[run["run_name"]] = run
    return {name: min(all_) for name, all_ in times.items()}, counters


def exponent(points):
    """Slope of the least-squares line through the logarithms."""
    logs = [(math.log(x), math.log(y)) for x, y in points]
    mean_x = statistics.fmean(x for x, _ in logs)
    mean_y = statistics.fmean(y for _, y in logs)
    spread = sum((x - mean_x) ** 2 for x, _ in logs)
    return sum((x - mean_x) * (y - mean_y) for x, y in logs) / spread


def geometric_mean(values):
    return math.exp(statistics.fmean(math.log(value) for value in values))


def line(what, value, must, aim, form=".3f"):
    mark = "" if value <= must else "  MISSED"
    print(f"{what:<66} {value:>8{form}} {must:>8} {aim:>8}{mark}")


def names(times, what):
    """The rules that were measured under this name."""
    return [name.split("/", 1)[1] for name in times if name.split("/", 1)[0] == what]


def per_rule(times):
    pairs = [("Verify", "XmlBuild"), ("GetSpec", "XmlParse")]
    rows = {}
    for rule in names(times, "Verify"):
        row = [times[f"{ours}/{rule}"] / times[f"{theirs}/{rule}"] for ours, theirs in pairs]
        if f"PgQuery/{rule}" in times:
            both = times[f"Verify/{rule}"] + times[f"GetSpec/{rule}"]
            row.append(both / times[f"PgQuery/{rule}"])
        rows[rule] = row
    return rows


def print_rules(rows):
    print(f"{'rule':<20} {'Verify/libxml2':>16} {'GetSpec/libxml2':>16} {'both/pg_query':>16}")
    for rule, row in rows.items():
        print(f"{rule:<20} " + " ".join(f"{value:>16.3f}" for value in row))
    print()


def print_ratios(times):
    rows = per_rule(times)
    for index, what, must, aim in [
        (0, "Verify / libxml2 build and dump", 0.6, 0.25),
        (1, "GetSpec / libxml2 parse, set and dump", 0.9, 0.5),
        (2, "Verify and GetSpec / libpg_query parse and deparse", 1.0, 0.5),
    ]:
        column = {rule: row[index] for rule, row in rows.items() if len(row) > index}
        if not column:
            continue
        line(f"{what}, geometric mean", geometric_mean(column.values()), must, aim)
        if index < 2:
            worst = max(column, key=column.get)
            line(f"  the worst rule: {worst}", column[worst], must, aim)
    line("constructing an engine / Verify of 'with sum'",
         times["Construct/engine"] / times["Verify/with sum"], 1.0, 0.2)
    print_dialects(times)


def print_dialects(times):
    dialects = names(times, "ConstructTranslator")
    rules = names(times, "Dialect.default")
    shares = []
    for dialect in dialects:
        cheapest = min(times[f"Dialect.{dialect}/{rule}"] for rule in rules)
        shares.append(times[f"ConstructTranslator/{dialect}"] / cheapest)
    line("constructing a translator / its cheapest GetSpec, worst dialect", max(shares), 0.1, 0.1)
    total = sum(times[f"Dialect.{dialect}/{rule}"] for dialect in dialects for rule in rules)
    default = sum(times[f"Dialect.default/{rule}"] for rule in rules)
    line(f"five dialects / default, GetSpec over {len(rules)} rules", total / default, 6.0, 5.0)


def print_growth(times, counters):
    points = {}
    for name, time in times.items():
        what, family, size = name.split("/")
        points.setdefault((what, family), []).append(
            (int(size), time, counters[name]["length"]))
    limits = {"conditions": (1.15, 1.08), "brackets": (1.2, 1.1), "bare brackets": (1.2, 1.1),
              "number switch": (1.2, 1.1), "text switch": (1.2, 1.1)}
    for family, (must, aim) in limits.items():
        for what in ("Verify", "GetSpec"):
            rows = points[what, family]
            text = exponent([(size, length) for size, _, length in rows])
            sizes = f"{rows[0][0]}-{rows[-1][0]}"
            line(f"growth of {what}: {family} {sizes} (text {text:.2f})",
                 exponent([(size, time) for size, time, _ in rows]), must, aim)
    likes = points["GetSpec", "like"]
    line("growth of GetSpec per byte of translated text: 10-200 like",
         exponent([(size, time / length) for size, time, length in likes]), 0.1, 0.1)
    both = {family: sum(points[what, family][-1][1] for what in ("Verify", "GetSpec"))
            for family in ("like", "equals")}
    line("200 like / 200 =, Verify and GetSpec", both["like"] / both["equals"], 2.0, 2.0)


def print_allocations(counters):
    counts = {name.split("/")[1]: round(run["allocations"]) for name, run in counters.items()}
    for what, count in counts.items():
        line(f"heap allocations of a warm {what}, 20 nodes", count, 800, 100, "d")
    line("  both together", sum(counts.values()), 800, 100, "d")


def print_authoring(times, counters):
    """The allowance of completion is three times `Verify` of the words before the cursor and 0.1
    microseconds for each candidate; that of checking a refused rule three times `Verify` of the
    rule without its slip and 2 milliseconds for near names."""
    for case in names(times, "Complete"):
        candidates = counters[f"Complete/{case}"]["candidates"]
        allowed = 3 * times[f"Before/{case}"] + 100 * candidates
        line(f"Complete of its allowance: {case}",
             times[f"Complete/{case}"] / allowed, 1.0, 0.5)
    for case in names(times, "Typing"):
        whole = times[f"WholeEachLetter/{case}"]
        line(f"Complete for each letter / Verify of the whole, {case}",
             times[f"CompleteEachLetter/{case}"] / whole, 4.0, 3.0)
        line(f"Check and Complete for each letter / the same, {case}",
             times[f"Typing/{case}"] / whole, 10.0, 5.0)
    for case in names(times, "Check"):
        whole = times[f"VerifyWhole/{case}"]
        line(f"Check / Verify of a rule of {case}", times[f"Check/{case}"] / whole, 3.0, 2.0)
        line(f"Check of its allowance: a refused rule of {case}",
             times[f"CheckRefused/{case}"] / (3 * whole + 2e6), 1.0, 0.5)


def main():
    folder = sys.argv[1]
    times, _ = read(folder, "rules")
    if "--rules" in sys.argv:
        print_rules(per_rule(times))
    print(f"{'what':<66} {'measured':>8} {'must':>8} {'aim':>8}")
    print_ratios(times)
    print_growth(*read(folder, "growth"))
    print_allocations(read(folder, "allocations")[1])
    print_authoring(*read(folder, "authoring"))


if __name__ == "__main__":
    main()
