#!/usr/bin/env python3
"""Whether docs/kept.md has one row for each comment with "kept:", naming its file.

Usage: kept_places.py SOURCE_TREE
"""

import collections
import pathlib
import re
import sys

COMMENT = re.compile(r"//.*\bkept: \S")
ROW = re.compile(r"^\| `([^`]+)`\s*\| \S.* \|$")
SOURCES = ["include", "src", "tools"]


def comments(root):
    """The number of comments of each file that has some."""
    found = collections.Counter()
    for path in (p for folder in SOURCES for p in (root / folder).rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        count = sum(bool(COMMENT.search(line)) for line in path.read_text("utf-8").splitlines())
        if count:
            found[path.relative_to(root).as_posix()] = count
    return found


def rows(root):
    """The number of rows of each file."""
    lines = (root / "docs/kept.md").read_text("utf-8").splitlines()
    return collections.Counter(m[1] for m in map(ROW.match, lines) if m)


def main():
    root = pathlib.Path(sys.argv[1])
    commented, listed = comments(root), rows(root)
    if not commented or not listed:
        sys.exit("no comment or no row was found: what is looked for has changed")
    faults = [f"{file}: {listed[file]} rows, {commented[file]} comments"
              for file in sorted(commented | listed) if commented[file] != listed[file]]
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main())
