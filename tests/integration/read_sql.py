#!/usr/bin/python3
"""Has an independent SQL parser read what the golden files say: read_sql.py TOP-OF-SOURCE-TREE

No SQL Server and no Oracle is at hand for the tests. sqlglot reads the texts of both dialects; what
it refuses is listed with the reason in tests/data/sqlglot_refused.txt, and both must agree: a
refusal that is not listed fails, and so does a row whose text is read, or that no text needs.
"""
import pathlib
import re
import sys

NOT_INSTALLED = 77  # CTest skips the test
try:
    import sqlglot
    from sqlglot import expressions
    from sqlglot.errors import ParseError, TokenError
except ImportError:
    print("skipped: the package python3-sqlglot is missing for " + sys.executable)
    sys.exit(NOT_INSTALLED)

READ_AS = {"default": "tsql", "oracle": "oracle"}
DIALECTS = ["default", "oracle", "dm", "kingbase", "opengauss"]
# Values stand for placeholders, as a caller puts them in: {vNow}, <F12>, <name[S]>, <rcid>.
PLACEHOLDER = re.compile(r"'[^']*'|\{v\w+\}|<(?:[\w.]+(?:\[\w\])?|\[\w\])>")
ROW = re.compile(r'([a-z ]+) (?:/(.*)/|"(.*)")')


class Text:
    """SQL of one golden block in one dialect."""

    def __init__(self, title, dialect, rule_type, sql):
        self.title, self.dialect, self.rule_type, self.sql = title, dialect, rule_type, sql


class Row:
    """What is to be refused, by a pattern of the SQL or by the title of the block."""

    def __init__(self, line):
        found = ROW.fullmatch(line)
        if not found:
            sys.exit("sqlglot_refused.txt: not understood: " + line)
        self.line, self.dialects = line, found[1].split()
        self.pattern, self.title = found[2], found[3]
        self.used = set()

    def covers(self, text):
        if text.dialect not in self.dialects:
            return False
        return text.title == self.title if self.title else bool(re.search(self.pattern, text.sql))


def lines_of(path):
    for line in path.read_text(encoding="utf-8").split("\n"):
        if line and not line.startswith("#"):
            yield line


def dialects_of(head, side, seen):
    """Names in front of a text; `all` and `rest` mean those that have no line yet."""
    names = []
    for word in head.split():
        if word in ("all", "rest"):
            names += [name for name in DIALECTS if (name, side) not in seen and name not in names]
        elif word in DIALECTS:
            names.append(word)
    seen.update((name, side) for name in names)
    return names


def golden_texts(path):
    title = rule_type = ""
    seen = set()
    for line in lines_of(path):
        word = re.match(r"[^ :]*", line)[0]
        if line.startswith("== "):
            title, seen = line[3:], set()
        elif word not in DIALECTS + ["all", "rest"]:
            rule_type = word if word != "modes" else rule_type
        elif "|" in line and line.endswith("|"):
            head, sql = line[:-1].split("|", 1)
            for name in dialects_of(head, "B" if " B " in head else "A", seen):
                if name in READ_AS and sql:
                    yield Text(title, name, rule_type, sql)
        else:
            head = re.split(" error: | throws: | refused: ", line)[0]
            dialects_of(head, "A", seen)
            dialects_of(head, "B", seen)


def statement_of(text):
    filled = PLACEHOLDER.sub(lambda m: m[0] if m[0].startswith("'") else "'value'", text.sql)
    head = "SELECT 1 WHERE (" if text.rule_type == "logic" else "SELECT ("
    return head + filled + ")"


def refusal_of(text):
    """The parser's message, or None when it has read the text as the one expression that it is."""
    try:
        # The tokenizer throws a bare RuntimeError for a name that does not end.
        trees = sqlglot.parse(statement_of(text), read=READ_AS[text.dialect])
    except (ParseError, TokenError, RuntimeError) as problem:
        return re.sub(r"\x1b\[\d*m", "", str(problem)).split("\n")[0]
    if len(trees) != 1 or not isinstance(trees[0], expressions.Select):
        return "not one query"
    query = trees[0]
    value = query.args["where"].this if text.rule_type == "logic" else query.expressions[0]
    single = len(query.expressions) == 1 and isinstance(value, expressions.Paren)
    return None if single else "not one expression, but " + type(value).__name__


def main(top):
    rows = [Row(line) for line in lines_of(top / "tests/data/sqlglot_refused.txt")
            if not line.startswith("== ")]
    complaints = []
    read = {name: [0, 0] for name in READ_AS}
    for path in sorted((top / "tests/golden").glob("*.golden")):
        for text in golden_texts(path):
            message = refusal_of(text)
            read[text.dialect][message is not None] += 1
            covering = [row for row in rows if row.covers(text)]
            where = f"{path.name}: {text.title}\n  {text.dialect} |{text.sql}|"
            for row in covering:
                row.used.add(text.dialect)
                if message is None:
                    complaints.append(f"listed, but read: {row.line}\n  {where}")
            if message is not None and not covering:
                complaints.append(f"refused: {message}\n  {where}")
    for row in rows:
        for name in sorted(set(row.dialects) - row.used):
            complaints.append(f"a row that nothing needs for {name}: {row.line}")
    for name, (good, refused) in read.items():
        print(f"{name}: {good} texts are read, {refused} are refused")
    for complaint in complaints:
        print(complaint)
    return 1 if complaints or min(good for good, _ in read.values()) < 250 else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
