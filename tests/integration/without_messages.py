#!/usr/bin/env python3
"""Runs the tool and library from a folder where the message file is missing, empty or no file: all
works, and texts are empty.

Usage: without_messages.py TOOL LIBRARY
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

MESSAGES = "Hearth.resource.dll"


def missing(_):
    pass


def empty(path):
    path.touch()


def folder(path):
    path.mkdir()


def link_to_nothing(path):
    path.symlink_to("nowhere")


def answers(tool, environment):
    lines = [
        {"op": "Translate", "type": 4, "expression": "1 + 2 > 2 * (3 - 1)"},
        {"op": "Verify", "type": 1, "expression": "1 + nosuch"},
        {"op": "Verify", "type": 1, "expression": "1 +"},
        {"op": "GetDict", "which": "operators"},
    ]
    text = "".join(json.dumps(line) + "\n" for line in lines)
    run = subprocess.run([tool, "batch"], input=text.encode(), env=environment, check=True,
                         stdout=subprocess.PIPE)
    return [json.loads(line) for line in run.stdout.splitlines()]


def main():
    tool, library = map(pathlib.Path, sys.argv[1:3])
    for make in (missing, empty, folder, link_to_nothing):
        with tempfile.TemporaryDirectory() as place:
            own_tool = shutil.copy(tool, place)
            shutil.copy(library, pathlib.Path(place, "libOrkRule.so.1"))
            make(pathlib.Path(place, MESSAGES))
            environment = dict(os.environ, LD_LIBRARY_PATH=place, LC_ALL="C")
            sql, unknown, ended, words = answers(own_tool, environment)
        for holds in (
            sql["a"] == "1 + 2 > 2 * (3 - 1)",
            unknown["result"] is False,
            (unknown["errNumber"], unknown["errDescription"]) == (-1, ""),
            (ended["errNumber"], ended["errDescription"]) == (-1, ""),
            'primary="not_null"' in words["document"] and 'outdesc=""' in words["document"],
        ):
            if not holds:
                sys.exit(f"{make.__name__}: {[sql, unknown, ended, words]}")


main()
