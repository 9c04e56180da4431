#!/usr/bin/env python3
"""Holds the language reference of docs/ against the tool: the files are what it makes now, every
rule in them does what they say, every word of the vocabulary stands in them, and links lead to
headings.

Usage: language_docs.py TOOL SOURCE_FOLDER SAMPLE_DATABASE
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

LANGUAGES = {"language.md": "en", "language.zh-CN.md": "zh-CN"}
VOCABULARY = "src/dictionary/VocabularyTables.h"
WORD_ROW = re.compile(r'^ +\{u"([^"]+)", +Display::(\w+), +(\d+),', re.MULTILINE)
BLOCK = re.compile(r"^```(rule|refused) (\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
# The rule in the second cell of a table of two columns.
OURS = re.compile(r"^\| `[^`]+` \| `([^`]+)` \|$", re.MULTILINE)


def files(root, tool):
    """What of docs/ is not what the tool makes."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([root / "scripts/make_language_docs.sh", tool, folder], check=True)
        for name in sorted({p.name for p in pathlib.Path(folder).iterdir()} | set(LANGUAGES)):
            made, kept = pathlib.Path(folder, name), root / "docs" / name
            texts = [p.read_text("utf-8") if p.is_file() else "" for p in (made, kept)]
            if texts[0] != texts[1]:
                yield f"docs/{name} is not what the tool makes: run scripts/make_language_docs.sh"


def rules(text):
    """The rules of a document: (type, rule, whether it is one)."""
    for kind, rule_type, lines in BLOCK.findall(text):
        for line in lines.splitlines():
            if line and not line.startswith(" "):
                yield rule_type, line, kind == "rule"
    for rule in OURS.findall(text):
        yield "auto", rule.replace("\\|", "|"), True


def verdicts(root, tool, database, tag, asked):
    """Whether the tool takes each rule, with the reason."""
    lines = [json.dumps({"type": rule_type, "expression": rule}) for rule_type, rule, _ in asked]
    done = subprocess.run(
        [tool, "verify", "--jsonl", "--json", "--language", tag, "--db", database, "--rt", "7",
         "--cax", f"1={root}/examples/drawing.xml"],
        input="\n".join(lines), capture_output=True, encoding="utf-8", check=False)
    answers = [json.loads(line) for line in done.stdout.splitlines()]
    if len(answers) != len(asked):
        sys.exit(f"{len(asked)} rules, {len(answers)} answers: {done.stderr}")
    return [(answer["valid"], answer.get("error", {}).get("text", "it is not refused"))
            for answer in answers]


def wrong_rules(root, tool, database, name, text):
    """The rules of a document that the tool sees otherwise."""
    asked = list(rules(text))
    taken = sum(expected for _, _, expected in asked)
    if taken < 250 or len(asked) - taken < 10:
        yield f"{name}: only {taken} rules and {len(asked) - taken} refused ones were found"
    answers = verdicts(root, tool, database, LANGUAGES[name], asked)
    for (rule_type, rule, expected), (valid, reason) in zip(asked, answers):
        if valid != expected:
            yield f"{name}: {rule_type}: {rule}: {reason}"


def display_forms(root, tool, tag):
    """The words of the vocabulary in a language, prefix words with their dot."""
    printed = subprocess.run([tool, "messages", "--language", tag], capture_output=True,
                             encoding="utf-8", check=True).stdout
    messages = json.loads(printed)
    rows = WORD_ROW.findall((root / VOCABULARY).read_text("utf-8"))
    if len(rows) < 140:
        sys.exit(f"only {len(rows)} rows of {VOCABULARY} were read")
    for primary, display, number in rows:
        if display == "kOwnText":
            yield from primary.split("|")
        else:
            yield messages[number] + ("." if display == "kMessageAndDot" else "")


def missing_words(root, tool, name, text):
    """The words that stand in no code of a document: alone, or a prefix with a name behind it."""
    code = set(re.findall(r"`([^`\n]+)`", text))
    for word in display_forms(root, tool, LANGUAGES[name]):
        begins = word.endswith(".") and any(one.startswith(word) for one in code)
        if word not in code and not begins:
            yield f"{name}: the word {word} is not in it"


def broken_links(name, text):
    """The links of a document to places in it that are no headings."""
    headings = re.findall(r"^#+ (.*)$", text, re.MULTILINE)
    anchors = {re.sub(r"[^\w\- ]", "", one.lower()).replace(" ", "-") for one in headings}
    for anchor in re.findall(r"\]\(#([^)]+)\)", text):
        if anchor not in anchors:
            yield f"{name}: there is no heading for #{anchor}"


def main():
    tool, root, database = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
    os.environ["LC_ALL"] = "C"
    found = list(files(root, tool))
    for name in LANGUAGES:
        text = (root / "docs" / name).read_text("utf-8")
        found += wrong_rules(root, tool, database, name, text)
        found += missing_words(root, tool, name, text)
        found += broken_links(name, text)
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    sys.exit(main())
