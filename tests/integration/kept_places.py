#!/usr/bin/env python3
"""Whether docs/kept.md and the comments that begin "kept:" agree: one row a comment.

kept_places.py SOURCE_TREE. A row names the file of its comment, or a folder where the oddity is in
what the whole of it writes; comments below such a folder need a row of it each.
"""

import collections
import pathlib
import re
import sys

COMMENT = re.compile(r"^\s*///?\s+kept: \S")
ROW = re.compile(r"^\| `([^`]+)`\s*\| \S.* \|$")
SOURCES = ["include", "src", "tools"]


def comments(root):
    """The number of comments of each file that has some."""
    found = collections.Counter()
    for path in (p for folder in SOURCES for p in (root / folder).rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        count = sum(bool(COMMENT.match(line)) for line in path.read_text("utf-8").splitlines())
        if count:
            found[path.relative_to(root).as_posix()] = count
    return found


def rows(root):
    """The number of rows of each place."""
    lines = (root / "docs/kept.md").read_text("utf-8").splitlines()
    return collections.Counter(m.group(1) for m in map(ROW.match, lines) if m)


def faults(root, commented, listed):
    folders = {place for place in listed if (root / place).is_dir()}
    for place in listed.keys() - folders:
        if commented[place] != listed[place]:
            yield f"{place}: {listed[place]} rows, {commented[place]} comments"
    left = collections.Counter()
    for file in commented.keys() - listed.keys():
        folder = next((f for f in folders if file.startswith(f + "/")), None)
        if folder is None:
            yield f"{file}: {commented[file]} comments, no row"
        else:
            left[folder] += commented[file]
    for folder, count in left.items():
        if count > listed[folder]:
            yield f"{folder}: {listed[folder]} rows, {count} comments in files without rows"


def main():
    root = pathlib.Path(sys.argv[1])
    commented, listed = comments(root), rows(root)
    if not commented or not listed:
        sys.exit("no comment or no row was found: what is looked for has changed")
    found = sorted(faults(root, commented, listed))
    print("\n".join(found) or f"{sum(listed.values())} rows, {sum(commented.values())} comments")
    sys.exit(1 if found else 0)


main()
