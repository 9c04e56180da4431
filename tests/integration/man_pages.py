"""Checks the installed manual pages: each command has one with its name, its options and its examples
as the command's help has them, and no reader of such pages finds fault with it.

man_pages.py TOOL FOLDER
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys


def output(*command):
    environment = {**os.environ, "LC_ALL": "C"}
    return subprocess.run(command, check=True, capture_output=True, text=True, encoding="utf-8",
                          env=environment).stdout


def options_of(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]+", text))


def plain(page):
    """The text of a page without its fonts and escapes."""
    text = re.sub(r"\\f[BIRP]|\\,|\\/", "", page)
    return text.replace("\\-", "-").replace("\\e", "\\").replace("\\&", "")


def faults(tool, folder, command):
    name = "-".join(["orkrule", *command])
    page = (folder / f"{name}.1").read_text(encoding="utf-8")
    text = plain(page)
    help_text = output(tool, "help", *command)
    for section in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXAMPLES"):
        if f"\n.SH {section}\n" not in page:
            yield f"{name}: no section {section}"
    if f"\n{name} - " not in text:
        yield f"{name}: its name is another"
    missing = options_of(help_text) - options_of(text)
    if missing:
        yield f"{name}: no {sorted(missing)}"
    for line in help_text.partition("Examples:\n")[2].splitlines():
        if line.strip() not in text:
            yield f"{name}: no example {line}"
    if shutil.which("groff"):
        told = subprocess.run(["groff", "-man", "-ww", "-z", folder / f"{name}.1"], check=True,
                              capture_output=True, text=True).stderr
        if told:
            yield f"{name}: {told}"


def main():
    tool, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    commands = [line.split() for line in output(tool, "help", "--commands").splitlines()]
    if len(commands) < 15:
        sys.exit("the tool lists too few commands")
    found = [fault for command in [[], *commands] for fault in faults(tool, folder, command)]
    sys.exit("\n".join(found) or 0)


main()
