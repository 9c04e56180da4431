"""Holds the message sources together before they are built into the message file.

usage: check.py CATALOGUE.h VOCABULARY.h GRAMMAR.h REFERENCE.rc OTHER.rc ...

The reference is the English source, whose words are the spellings of the vocabulary. Every
language has the same rows in the same sections, the numbers of catalogue and vocabulary are all
there and no others (the text of a function's parameters where the grammar gives it some), `%s`
counts agree, and a word can be written in a rule: no delimiter, no blank, no number, nothing that
reads as another word.
"""
import re
import sys

# Words that are prefixes of loaded names, and so in no row of the vocabulary.
PREFIX_NAMES = {"kMsgThisReport", "kMsgCaxEnum"}
# What ends a word, opens a text or a postfix, or has a meaning in templates and lists.
FORBIDDEN = set("()+-/*=><&%^,|'\"[]{} \t\r\n\u3000\0")
NUMBER = re.compile(r"[+-]?(\d|\.\d|0x|inf$|infinity$|nan)", re.IGNORECASE)
DATE = re.compile(r"\d+\s*[年月日]|[年月日]\s*\d+")
CATALOGUE_ROW = re.compile(r"^\s*(kMsg\w+)\s*=\s*(\d+),", re.MULTILINE)
VOCABULARY_ROW = re.compile(r'\{u"([^"]+)",\s*Display::(k\w+),\s*(\w+),\s*(\d+),\s*(k\w+),')
BARE_CALL = re.compile(r'u"(\w+)\(\)"')
ROW = re.compile(r'(\d+) "((?:[^"]|"")*)"$')
SECTION = re.compile(r"// (words|texts): \S.*$")
FRAME = re.compile(r"//|LANGUAGE \d+, \d+$|STRINGTABLE$|BEGIN$|END$|$")


class Source:
    """The rows of one language: number -> (section, text), and what is wrong with its form."""

    def __init__(self, path):
        self.path = path
        self.rows = {}
        self.faults = []
        section = None
        with open(path, encoding="utf-8", newline="\n") as lines:
            for at, line in enumerate(lines.read().split("\n"), 1):
                section = self.read(at, line, section)

    def read(self, at, line, section):
        found = SECTION.match(line)
        if found:
            return found[1]
        found = ROW.match(line)
        if not found:
            if not FRAME.match(line):
                self.fault(f"line {at} is no row, no section and no comment: {line}")
            return section
        number = int(found[1])
        if section is None:
            self.fault(f"{number} stands in no section")
        if self.rows and number <= max(self.rows):
            self.fault(f"{number} is out of order or doubled")
        self.rows[number] = (section, found[2].replace('""', '"'))
        return section

    def fault(self, text):
        self.faults.append(f"{self.path}: {text}")

    def words(self):
        return {n: text for n, (section, text) in self.rows.items() if section == "words"}


def check_texts(source, vocabulary):
    for number, (section, text) in source.rows.items():
        if not text:
            source.fault(f"{number} is empty")
        # What words do is shown as it stands, every other text may be filled in.
        strange = "%s" if number in vocabulary.infos else "%(?!s)"
        if "\\" in text or re.search(strange, text):
            source.fault(f"{number} holds a backslash, or a % that does not belong there")
        if section == "words" and FORBIDDEN & set(text):
            source.fault(f"{number} is no word, it would be cut in a rule: {text}")
        if section == "words" and (NUMBER.match(text) or DATE.search(text)):
            source.fault(f"{number} reads as a number or a date: {text}")


def check_words(source, vocabulary):
    seen = {}
    for number, text in source.words().items():
        key = text.lower()
        for form in {key, key + "."} if number in vocabulary.dotted else {key}:
            if form in seen:
                source.fault(f"{number} reads like {seen[form]}: {text}")
            seen[form] = number
        for spelling in (key, key + "."):
            if vocabulary.spellings.get(spelling, number) != number:
                source.fault(f"{number} is the spelling of another word: {text}")


def check_against(source, reference):
    for number in sorted(set(source.rows) ^ set(reference.rows)):
        source.fault(f"{number} stands in only one of this and {reference.path}")
    for number in set(source.rows) & set(reference.rows):
        (section, text), (section_there, text_there) = source.rows[number], reference.rows[number]
        if section != section_there:
            source.fault(f"{number} is in the section {section}, not {section_there}")
        if text.count("%s") != text_there.count("%s"):
            source.fault(f"{number} has another count of %s")


class Vocabulary:
    """What the code's tables say: which numbers there are, and how words are spelt."""

    def __init__(self, catalogue_path, path, grammar_path):
        with open(catalogue_path, encoding="utf-8") as text:
            self.catalogue = {name: int(n) for name, n in CATALOGUE_ROW.findall(text.read())}
        self.spellings = {}  # lower-case spelling -> number, 0 for a word without a message
        self.english = {}  # number -> spelling of the first word with it, without the added dot
        self.infos = set()  # numbers of the sentences and parameters of words
        self.dotted = {self.catalogue[name] for name in PREFIX_NAMES}  # shown with a dot behind
        with open(grammar_path, encoding="utf-8") as text:
            self.bare = set(BARE_CALL.findall(text.read()))  # functions without parameters
        with open(path, encoding="utf-8") as text:
            for row in VOCABULARY_ROW.findall(text.read()):
                self.add(*row[:3])
                self.add_infos(row[0], int(row[3]), row[4])
        self.words = set(self.english) | {self.catalogue[name] for name in PREFIX_NAMES}

    def add(self, primary, display, message):
        if display == "kOwnText":
            self.spellings.update((word.lower(), 0) for word in primary.split("|"))
            return
        number = self.catalogue[message] if message in self.catalogue else int(message)
        self.spellings[primary.lower()] = number
        if display == "kMessageAndDot":
            self.dotted.add(number)
        plain = primary[:-1] if display == "kMessageAndDot" else primary
        self.english.setdefault(number, plain)

    def add_infos(self, primary, info, symbol):
        count = primary.count("|") + 1
        if symbol == "kFunctionSymbol" and primary not in self.bare:
            count += 1
        self.infos.update(range(info, info + count))


def check_tables(vocabulary, reference):
    numbers = set(vocabulary.catalogue.values())
    words = set(reference.words())
    for number in sorted((numbers | vocabulary.words | vocabulary.infos) - set(reference.rows)):
        reference.fault(f"{number} of the code has no text")
    for number in sorted(set(reference.rows) - words - numbers - vocabulary.infos):
        reference.fault(f"{number} is not in the catalogue")
    for number in sorted(vocabulary.infos & (numbers | words)):
        reference.fault(f"{number} says what a word does, and is another text too")
    for number in sorted(words ^ vocabulary.words):
        reference.fault(f"{number} is a word only here or only in the vocabulary")
    for number, text in vocabulary.english.items():
        if reference.rows.get(number, ("", text))[1] != text:
            reference.fault(f"{number} is not spelt as in the vocabulary: {text}")


def main(catalogue, table, grammar, *paths):
    vocabulary = Vocabulary(catalogue, table, grammar)
    sources = [Source(path) for path in paths]
    check_tables(vocabulary, sources[0])
    for source in sources:
        check_texts(source, vocabulary)
        check_words(source, vocabulary)
        check_against(source, sources[0])
    faults = [fault for source in sources for fault in source.faults]
    print("\n".join(faults), file=sys.stderr, end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) < 5:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
