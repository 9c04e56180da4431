#!/usr/bin/env python3
"""Follows the recipes of CONTRIBUTING.md in a copy of the sources: function, dialect, message.

Usage: recipes.py SOURCE_TREE SCRATCH_FOLDER CMAKE COMPILER [LAUNCHER]

Each recipe touches the places that it names and no other; the copy must then build, and its tool
must know what is new.
"""

import json
import pathlib
import re
import subprocess
import sys

COPIED = ["CMakeLists.txt", "cmake", "include", "messages", "src", "tools"]
SYNTAX = "src/parser/SyntaxRules.h"
VOCABULARY = "src/dictionary/VocabularyTables.h"
CATALOGUE = "src/foundation/MessageNumbers.h"
ENGLISH = "messages/en.rc"
CHINESE = "messages/zh_CN.rc"
NUMBERS = "include/MxRuleEnums.h"
DIALECTS = "src/dialects/Dialects.cpp"


class Tree:
    """The texts of the copy: path -> bytes. Only what differs is written, so builds stay short."""

    def __init__(self, root):
        self.files = {}
        for name in COPIED:
            top = root / name
            for path in [top] if top.is_file() else sorted(top.rglob("*")):
                if path.is_file():
                    self.files[path.relative_to(root).as_posix()] = path.read_bytes()

    def change(self, path, change):
        before = self.files[path].decode("utf-8")
        after = change(before)
        if after == before:
            sys.exit(f"nothing was changed in {path}")
        self.files[path] = after.encode("utf-8")

    def insert(self, path, pattern, line, behind):
        """Puts a line in front of, or behind, the one line that the pattern finds."""

        def change(text):
            if len(re.findall(pattern, text, re.MULTILINE)) != 1:
                sys.exit(f"not one line of {path} is {pattern}")
            new = (lambda m: m[0] + "\n" + line) if behind else (lambda m: line + "\n" + m[0])
            return re.sub(pattern, new, text, flags=re.MULTILINE)

        self.change(path, change)

    def one_more(self, path, table):
        """Counts a row more in the static_assert behind a table."""
        pattern = rf"(static_assert\(std::size\({table}\) == )(\d+)"
        self.change(path, lambda text: re.sub(pattern, lambda m: m[1] + str(int(m[2]) + 1), text))

    def write(self, folder):
        stale = {p for p in folder.rglob("*") if p.is_file()}
        for name, content in self.files.items():
            path = folder / name
            stale.discard(path)
            if path.is_file() and path.read_bytes() == content:
                continue
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
        for path in stale:
            path.unlink()


def add_function(tree):
    tree.insert(ENGLISH, r"^6143 .*$", '6146 "SIGN"', behind=True)
    tree.insert(CHINESE, r"^6143 .*$", '6146 "正负号"', behind=True)
    for path, rows in ((ENGLISH, '7039 "Minus 1, 0 or 1, by the sign."\n7040 "value"'),
                       (CHINESE, '7039 "按正负号取-1、0或1。"\n7040 "数值"')):
        tree.insert(path, r"^7038 .*$", "// texts: what further functions do\n" + rows, behind=True)
    tree.insert(VOCABULARY, r'^    \{u"FLOOR",.*$',
                '    {u"SIGN", Display::kMessage, 6146, 7039, kFunctionSymbol, kNumDataType, '
                'kNoPostfix},', behind=True)
    tree.one_more(VOCABULARY, "kFunctionRows")
    tree.insert(SYNTAX, r'^    \{u"<func_num>",.*$',
                '    {u"<func_SIGN>", kNumDataType, kFunctionSemantic, false, u"SIGN(<expr_num>)"},',
                behind=False)
    tree.change(SYNTAX, lambda text: re.sub(r'(\{u"<func_num>",.*)"\},', r'\1|<func_SIGN>"},', text))
    tree.one_more(SYNTAX, "kSyntaxRules")


def add_dialect(tree, recipe):
    """The class is the one that the recipe shows, and so is its row."""
    tree.insert(NUMBERS, r"^  kOpenGaussDs = .*$", "  kExampleDs = 99,", behind=True)
    shown = re.search(r"```cpp\n(.*?)```", recipe, re.DOTALL)[1]
    tree.files["src/dialects/ExampleTranslator.h"] = shown.encode("utf-8")
    tree.insert(DIALECTS, r'^#include "dialects/MxDMTranslator.h"$',
                '#include "dialects/ExampleTranslator.h"', behind=False)
    row = re.search(r"`(Row<ExampleTranslator>.*?,)`", recipe, re.DOTALL)[1]
    tree.insert(DIALECTS, r"^    Row<MxOpenGaussTranslator>.*$", "    " + row, behind=True)


def add_message(tree):
    tree.insert(CATALOGUE, r"^  kMsgThisDoc .*$", "  kMsgRecipe            = 6798,", behind=False)
    for path, text in ((ENGLISH, "A recipe for %s."), (CHINESE, "%s的做法。")):
        tree.insert(path, r"^// texts: what functions do;.*$", f'6798 "{text}"', behind=False)


class Tool:
    """The tool of the copy."""

    def __init__(self, path):
        self.path = path

    def run(self, *arguments):
        return subprocess.run([self.path, *arguments], stdin=subprocess.DEVNULL, check=False,
                              capture_output=True, encoding="utf-8", timeout=60)

    def sql(self, rule, *options):
        done = self.run("sql", "--type", "number", *options, "--", rule)
        return done.stdout + done.stderr


def check_function(tool):
    """What is wrong with the function, if anything."""
    sql = tool.sql("SIGN(1)", "--language", "en", "--dialect", "all")
    lines = [line for line in sql.splitlines() if line.strip()]
    if len(lines) < 6 or any(not line.endswith("SIGN(1)") for line in lines):
        yield f"the function's SQL in all dialects is\n{sql}"
    chinese = tool.sql("正负号(1)", "--language", "zh-CN")
    if chinese != "SIGN(1)\n":
        yield f"the function's SQL by its Chinese name is\n{chinese}"
    if tool.run("sql", "--type", "number", "--", "SIGN('a')").returncode != 1:
        yield "the function takes a text"
    if not re.search(r"^SIGN\b", tool.run("vocabulary", "functions").stdout, re.MULTILINE):
        yield "the function is not in the vocabulary"


def check_dialect(tool):
    """Its own three words, and what it has from the default dialect."""
    for rule, expected in (("length('a' & 'b')", "char_length('a' || 'b')"), ("RAND()", "random()"),
                           ("CHARINDEX('a','b')", "position('a','b')"),
                           ("average(1)", "avg(1)")):
        sql = tool.sql(rule, "--dialect", "Example")
        if sql != expected + "\n":
            yield f"{rule} in the new dialect is\n{sql}"
    every = tool.sql("RAND()", "--dialect", "all")
    if not re.search(r"^example +random\(\)$", every, re.MULTILINE):
        yield f"the new dialect is not among all\n{every}"


def check_message(tool):
    for language, text in (("en", "A recipe for %s."), ("zh-CN", "%s的做法。")):
        texts = json.loads(tool.run("messages", "--language", language).stdout)
        if texts.get("6798") != text:
            yield f"the message in {language} is {texts.get('6798')}"


def build(cmake, compiler, launcher, source, binary):
    launch = [f"-DCMAKE_CXX_COMPILER_LAUNCHER={launcher}"] if launcher else []
    subprocess.run([cmake, "-S", source, "-B", binary, "-G", "Ninja", "-DORKRULE_TESTS=OFF",
                    "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0",
                    "-DCMAKE_COMPILE_WARNING_AS_ERROR=ON", f"-DCMAKE_CXX_COMPILER={compiler}",
                    *launch, "--log-level=WARNING"], check=True)
    subprocess.run([cmake, "--build", binary, "--target", "orkrule"], check=True)


def main(root, scratch, cmake, compiler, launcher=""):
    tree = Tree(pathlib.Path(root))
    add_function(tree)
    add_dialect(tree, (pathlib.Path(root) / "CONTRIBUTING.md").read_text("utf-8"))
    add_message(tree)
    source, binary = pathlib.Path(scratch) / "copy", pathlib.Path(scratch) / "build"
    tree.write(source)
    build(cmake, compiler, launcher, source, binary)
    tool = Tool(binary / "bin" / "orkrule")
    found = [*check_function(tool), *check_dialect(tool), *check_message(tool)]
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    if len(sys.argv) not in (5, 6):
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
