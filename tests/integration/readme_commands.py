#!/usr/bin/env python3
"""Runs every `$ ` line of a Markdown file and compares what it prints with what follows
the line there, up to the next command or the end of the block.

They run in a folder with the sample databases, in the locale that LANG names.

Usage: readme_commands.py TOOL_FOLDER SOURCE_FOLDER FILE.md LANG
"""

import os
import pathlib
import subprocess
import sys
import tempfile


def commands(text):
    """Yields (line number, command, expected output)."""
    command, expected, start, inside = None, [], 0, False
    for number, line in enumerate(text.splitlines(), 1):
        fence = line.startswith("```")
        if inside and (fence or line.startswith("$ ")):
            if command:
                yield start, command, "".join(expected)
            command, expected = None, []
        if fence:
            inside = not inside
        elif inside and line.startswith("$ "):
            command, start = line[2:], number
        elif inside and command:
            expected.append(line + "\n")


def main():
    tools, source, file, locale = sys.argv[1:5]
    environment = {"PATH": tools + os.pathsep + os.environ["PATH"], "LANG": locale}
    for name in ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "LOCPATH"):
        if name in os.environ:
            environment[name] = os.environ[name]
    count = failed = 0
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "examples").mkdir()
        subprocess.run([f"{source}/scripts/make_sample_db.sh", f"{folder}/examples/shop.db"], check=True)
        subprocess.run([f"{source}/scripts/make_sample_store.sh", f"{folder}/examples/rules.db",
                        f"{tools}/orkrule"], check=True)
        for line, command, expected in commands(pathlib.Path(file).read_text(encoding="utf-8")):
            run = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, check=False,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            printed = run.stdout.decode("utf-8")
            count += 1
            if printed != expected:
                failed += 1
                print(f"{file}:{line}: {command}\n--- expected\n{expected}--- printed\n{printed}")
    print(f"{count - failed} passed, {failed} failed")
    sys.exit(1 if failed or count == 0 else 0)


main()
