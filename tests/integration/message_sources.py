#!/usr/bin/env python3
"""Feeds the check of the message sources what it must refuse: copies with one change each.

Usage: message_sources.py SOURCE_FOLDER
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile

FILES = ("src/foundation/MessageNumbers.h", "src/dictionary/VocabularyTables.h",
         "src/parser/SyntaxRules.h", "messages/en.rc", "messages/zh_CN.rc")
CATALOGUE, VOCABULARY, GRAMMAR, ENGLISH, CHINESE = FILES

# What is changed, how, and a part of what the check says; a rewritten row is (number, new text).
CHANGES = [
    (CHINESE, (6306, None), "6306 stands in only one"),
    (ENGLISH, (6260, None), "6260 stands in only one"),
    (CHINESE, (6260, ""), "6260 is empty"),
    (CHINESE, (6260, "x"), "6260 has another count of %s"),
    (CHINESE, (6260, "%d %s"), "6260 holds a backslash, or a % that does not belong there"),
    (CHINESE, (6306, "a b"), "6306 is no word"),
    (CHINESE, (6306, "a+b"), "6306 is no word"),
    (CHINESE, (6306, "a(b"), "6306 is no word"),
    (CHINESE, (6306, "a\u3000b"), "6306 is no word"),
    (CHINESE, (6306, "12"), "6306 reads as a number or a date"),
    (CHINESE, (6306, "3月"), "6306 reads as a number or a date"),
    (CHINESE, (6306, "SUM"), "is the spelling of another word"),
    (CHINESE, (6307, "same"), "6307 reads like 6306", (6306, "Same")),
    (CHINESE, (6401, "same."), "6401 reads like 6340", (6340, "same")),
    (ENGLISH, (6306, "und"), "6306 is not spelt as in the vocabulary"),
    (CATALOGUE, ("Word       = 6260", "Word       = 9999"), "9999 of the code has no text"),
    (VOCABULARY, ("6306", "6305"), "6306 is a word only here"),
    (VOCABULARY, ("6306, 6960", "6306, 9999"), "9999 of the code has no text"),
    (VOCABULARY, ("6306, 6960", "6306, 9999"), "6960 is not in the catalogue"),
    (VOCABULARY, ("6306, 6960", "6306, 6260"), "6260 says what a word does, and is another text"),
    (VOCABULARY, ('u"*|/|^|%"', 'u"*|/|^"'), "6974 is not in the catalogue"),
    (ENGLISH, (6800, None), "6800 of the code has no text"),
    (ENGLISH, (6801, None), "6801 of the code has no text"),
    (CHINESE, (6801, None), "6801 stands in only one"),
    (CHINESE, (6800, "100 %s"), "6800 holds a backslash, or a % that does not belong there"),
    (GRAMMAR, ("sum(<expr_num>)", "sum()"), "6801 is not in the catalogue"),
    (GRAMMAR, ("RAND()", "RAND(<expr_num>)"), "6943 of the code has no text"),
]


def rewrite(path, old, new):
    """One row, or one text, in place; it must be there."""
    text = path.read_text(encoding="utf-8")
    if isinstance(old, int):
        lines = text.split("\n")
        at = next(i for i, line in enumerate(lines) if line.startswith(f"{old} "))
        lines[at : at + 1] = [] if new is None else [f'{old} "{new}"']
        changed = "\n".join(lines)
    else:
        changed = text.replace(old, new, 1)
    if changed == text:
        sys.exit(f"{path.name}: nothing to change at {old}")
    path.write_text(changed, encoding="utf-8")


def check(source, folder):
    files = [folder / pathlib.Path(name).name for name in FILES]
    run = subprocess.run([sys.executable, source / "messages/check.py", *files],
                         stderr=subprocess.PIPE, encoding="utf-8", check=False)
    return run.returncode, run.stderr


def main():
    source = pathlib.Path(sys.argv[1])
    failed = 0
    for change in [None, *CHANGES]:
        with tempfile.TemporaryDirectory() as place:
            folder = pathlib.Path(place)
            for name in FILES:
                shutil.copy(source / name, folder)
            if change is not None:
                for old, new in (change[1], *change[3:]):
                    rewrite(folder / pathlib.Path(change[0]).name, old, new)
            status, said = check(source, folder)
        good = status == 0 if change is None else status == 1 and change[2] in said
        if not good:
            failed += 1
            print(f"{change}: status {status}\n{said}")
    sys.exit(1 if failed else 0)


main()
