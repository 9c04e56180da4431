#!/usr/bin/env python3
"""Truncates and rewrites the message file in place under a running tool: its messages still come.
A file that was mapped would end the process.

Usage: replaced_messages.py TOOL LIBRARY MESSAGES
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

# Each refusal reads a message, each in another place of the file.
RULES = [(1, "1 + nosuch"), (1, "1 +"), (4, "1 + 2"), (2, "1 > 2"), (1, "(1"), (4, "not 1")]


def ask(batch, kind, rule):
    batch.stdin.write(json.dumps({"op": "Verify", "type": kind, "expression": rule}) + "\n")
    batch.stdin.flush()
    answer = batch.stdout.readline()
    if not answer:
        sys.exit(f"the tool ended with {batch.wait()} at {rule!r}")
    return json.loads(answer)["errDescription"]


def main():
    tool, library, messages = map(pathlib.Path, sys.argv[1:4])
    with tempfile.TemporaryDirectory() as place:
        own_tool = shutil.copy(tool, place)
        shutil.copy(library, pathlib.Path(place, "libOrkRule.so.1"))
        own_messages = pathlib.Path(shutil.copy(messages, place))
        content = own_messages.read_bytes()
        environment = dict(os.environ, LD_LIBRARY_PATH=place, LC_ALL="C")
        with subprocess.Popen([own_tool, "batch", "--flush"], env=environment, text=True,
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE) as batch:
            before = [ask(batch, *rule) for rule in RULES[:1]]
            with open(own_messages, "r+b") as file:
                file.truncate(0)
                file.flush()
                emptied = [ask(batch, *rule) for rule in RULES]
                file.write(content[::-1])
                file.flush()
                rewritten = [ask(batch, *rule) for rule in RULES]
            batch.stdin.close()
            if batch.wait(timeout=60) != 0:
                sys.exit(f"the tool ended with {batch.returncode}")
    if not all(emptied) or emptied != rewritten or before != emptied[:1]:
        sys.exit(f"other messages: {[before, emptied, rewritten]}")
    if "nosuch" not in emptied[0]:
        sys.exit(f"no message of an unknown word: {emptied[0]!r}")


main()
