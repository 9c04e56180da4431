// Rules as lines: what is no rule, lines that cannot be read, and output that stays in step.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct LinesRow {
  std::vector<std::string> arguments;
  std::string input;
  int status;
  std::string out;
};

void ExpectAnswers(const std::vector<LinesRow>& rows) {
  for (const LinesRow& row : rows) {
    const ToolResult result = RunTool(row.arguments, row.input);
    const std::string what = testing::PrintToString(row.arguments) + row.input + result.err;
    EXPECT_EQ(result.status, row.status) << what;
    EXPECT_EQ(result.out, row.out) << what;
  }
}

TEST(Lines, WithoutARuleAreSkipped) {
  ExpectAnswers({
      // clang-format off
      {{"sql"}, "1\n\n \t\n# 2\n3\n",           0, "1\n3\n"},
      {{"sql"}, "#\n#1\n",                      0, ""},
      {{"sql"}, "\xEF\xBB\xBF" "1\n2\n",        0, "1\n2\n"},   // a byte order mark
      {{"sql"}, "\xEF\xBB\xBF# 1\n2\n",         0, "2\n"},
      {{"sql"}, "\xEF\xBB\xBF",                 0, ""},
      {{"sql"}, "1\r\n\r\n# 2\r\n3\r\n",        0, "1\n3\n"},
      {{"sql"}, "1\n2",                         0, "1\n2\n"},
      {{"verify"}, " #a.b\n",                   1, "refused\n"},  // a rule that begins with the sign
      {{"sql", "--jsonl"}, "# 1\n",             3, ""},         // no JSON
      {{"sql", "--jsonl"}, "\xEF\xBB\xBF\"1\"\r\n\n", 0, "1\n"},
      // clang-format on
  });
}

TEST(Lines, HaveTheirTypesInFrontWhereTheyAreTyped) {
  ExpectAnswers({
      // clang-format off
      {{"verify", "--typed"}, "number 1\nlogic\t 1 = 1\n\n# a\n4 1 = 1\n", 0, "valid\nvalid\nvalid\n"},
      {{"verify", "--typed"}, "logic 1\n",              1, "refused\n"},
      {{"verify", "--typed"}, "logic\n",                1, "refused\n"},   // a rule without words
      {{"verify", "--typed"}, " \tnumber \t 1 \r\n",    0, "valid\n"},
      {{"verify", "--typed"}, "1 1\n1 1 = 1\n",         1, "valid\nrefused\n"},  // a type by its number
      {{"verify", "--typed"}, "numeral 1\nnumber 1\n",  3, ""},
      {{"verify", "--typed", "--keep-going"}, "numeral 1\nnumber 1\n", 3, "\nvalid\n"},
      // rules go out in the form in which they came
      {{"format", "--typed"}, "number  1+2\n",          0, "number  1 + 2\n"},
      {{"rename", "--typed", "--tables", "A:B"}, "logic\tA.x = 1\n", 0, "logic\tB.x = 1\n"},
      {{"check", "--typed", "--fix"}, "logic 1 == 1\n", 0, "logic 1 = 1\n"},
      {{"sql", "--typed"}, "text 'a'\n",                0, "N'a'\n"},
      // clang-format on
  });
  const ToolResult unknown = RunTool({"verify", "--typed"}, "number 1\nnumeral 1\n");
  EXPECT_EQ(unknown.err,
            "orkrule: standard input:2: 'numeral' is neither the name nor the number of a type\n");
}

TEST(Lines, AndAnswersStayInStep) {
  const std::string rules = "1\nfoo\n2\n";
  ExpectAnswers({
      // clang-format off
      {{"sql"},                            rules, 1, "1\n\n2\n"},
      {{"sql", "--dialect", "dm,oracle"},  rules, 1, "dm         1\noracle     1\n\n\ndm         2\noracle     2\n"},
      {{"sql", "--type", "number", "--split"}, "foo\n", 1, "\n\n"},
      {{"verify"},                         rules, 1, "valid\nrefused\nvalid\n"},
      {{"verify", "--document"},           "foo\n", 1, "\n"},
      {{"strip", "--tables", "T"},         rules, 1, "1\n\n2\n"},
      {{"check", "--fix"},                 rules, 1, "1\nfoo\n2\n"},
      {{"uses", "--tables", "T"},          rules, 0, "no\nno\nno\n"},
      {{"rename", "--tables", "T:U"},      "T.a\nfoo\n", 0, "U.a\nfoo\n"},
      {{"rename", "--tables", "T:U", "--changed"}, "foo\nT.a\nT.b\n1\n", 0, "U.a\nU.b\n"},
      {{"rename", "--check", "--tables", "T:U"}, rules, 1, "1\n\n2\n"},
      // a line that cannot be read has its line too
      {{"sql", "--keep-going"},            "1\n\xFF\n2\n", 3, "1\n\n2\n"},
      {{"sql", "--keep-going", "--jsonl"}, "\"1\"\n{}\n\"2\"\n", 3, "1\n\n2\n"},
      {{"uses", "--tables", "T", "--keep-going"}, "T.a\n\xFF\n", 3, "yes\n\n"},
      {{"rename", "--check", "--tables", "T:U", "--keep-going"}, "1\n\xFF\n2\n", 3, "1\n\n2\n"},
      {{"check", "--keep-going"},          "1\n\xFF\n2\n", 3, ""},  // nothing to say of the others
      // an argument has no line to stand for
      {{"sql", "foo"},                     "", 1, ""},
      {{"verify", "--document", "foo"},    "", 1, ""},
      // clang-format on
  });
  const std::string refused =
      "oracle     refused: This database does not support thisSet.\n\n"
      "dm         where   (1 in (select  1))\n           having  \n";
  EXPECT_EQ(RunTool({"sql", "--dialect", "oracle,dm", "--split"}, "1 in thisSet(1)\n").out,
            refused);
}

TEST(Lines, StayLinesWhereRulesAreFormatted) {
  std::string rule = "1 = 1";
  for (int i = 0; i < 30; ++i) rule += " and 1 = 1";
  EXPECT_EQ(RunTool({"format"}, rule + "\n").out, rule + "\n");
  EXPECT_EQ(RunTool({"format", "--check"}, rule + "\n").status, 0);
  const auto hasBreak = [](const std::string& text) { return text.find('\n') + 1 < text.size(); };
  EXPECT_TRUE(hasBreak(RunTool({"format", "--width", "100"}, rule + "\n").out));
  EXPECT_TRUE(hasBreak(RunTool({"format", rule}).out));
}

TEST(Lines, ThatCannotBeReadAreNamed) {
  struct Row {
    std::vector<std::string> arguments;
    std::string input;
    std::string err;
  };
  const Row rows[] = {
      // clang-format off
      {{"sql"},   "1\n2\n34567890123456789\xFF\n",  "3: byte 18 is not UTF-8"},
      {{"sql"},   "\xE4\xB8\n",                     "1: byte 1 is not UTF-8"},
      {{"sql", "--jsonl"}, "{\"expression\":\"\xFF\"}\n", "1: byte 16 is not UTF-8"},
      {{"sql", "--jsonl"}, "\"1\"\n1\n",            "2: the line is neither a JSON text nor an object"},
      {{"sql", "--jsonl"}, "\"1\n",                 "1: the line is neither a JSON text nor an object"},
      {{"sql", "--jsonl"}, "{\"expression\":1}\n",  "1: the object has no text \"expression\""},
      {{"sql", "--jsonl", "--key", "rule"}, "{\"expression\":\"1\"}\n", "1: the object has no text \"rule\""},
      {{"sql", "--jsonl"}, "{\"expression\":\"1\",\"type\":\"x\"}\n", "1: \"type\" is neither the name nor the number of a type"},
      {{"write"}, "<x>\n\n<a b='\xFF'/>\n</x>\n",   "3: byte 7 is not UTF-8"},
      {{"write", "--jsonl"}, "{\"expression\":\"1\"}\n", "1: the object has no text \"document\""},
      // clang-format on
  };
  for (const Row& row : rows) {
    const std::string begin = "orkrule: standard input:";
    const ToolResult result = RunTool(row.arguments, row.input);
    EXPECT_EQ(result.status, 3) << row.input;
    EXPECT_EQ(result.err, begin + row.err + "\n");
    std::vector<std::string> going = row.arguments;
    going.emplace_back("--keep-going");
    const ToolResult gone = RunTool(going, row.input);
    EXPECT_EQ(gone.status, 3) << row.input;
    EXPECT_EQ(gone.err.rfind(begin + row.err + "\n", 0), 0u) << gone.err;
  }
}

TEST(Lines, ThatFailedAreCountedAtTheEnd) {
  struct Row {
    std::vector<std::string> arguments;
    std::string input;
    std::string count;  ///< the last line on standard error, empty: there is none
  };
  const Row rows[] = {
      // clang-format off
      {{"sql"}, "1\n2\n",                             ""},
      {{"verify"}, "1\nfoo\n",                        "1 of 2 rules refused"},
      {{"sql", "--json"}, "foo\nfoo\n1\n",            "2 of 3 rules refused"},
      {{"check", "--json"}, "foo\n1\n",               "1 of 2 rules refused"},
      {{"sql", "--keep-going"}, "1\n\xFF\n",          "1 line could not be read"},
      {{"sql", "--keep-going"}, "foo\n\xFF\n\xFF\n",  "1 of 1 rule refused, 2 lines could not be read"},
      {{"format", "--check"}, "1+1\n1\n",             "1 of 2 rules would be written otherwise"},
      {{"write", "--keep-going"}, "<x/>\n<y/>\n",     "2 of 2 documents refused"},
      {{"rename", "--tables", "A:B"}, "A.x\n1\n",     "renamed 1 of 2 rules"},
      {{"rename", "--tables", "A:B"}, "",             "renamed 0 of 0 rules"},
      {{"rename", "--tables", "A:B", "--json"}, "A.x\n", "renamed 1 of 1 rule"},
      {{"rename", "--tables", "A:B", "A.x"}, "",      ""},
      // clang-format on
  };
  for (const Row& row : rows) {
    const std::string err = RunTool(row.arguments, row.input).err;
    const std::string end = row.count.empty() ? "" : "orkrule: " + row.count + "\n";
    EXPECT_TRUE(err.ends_with(end)) << err;
    EXPECT_EQ(err.empty(), row.count.empty()) << err;
  }
  // one rule needs no count
  EXPECT_TRUE(RunTool({"verify"}, "foo\n").err.ends_with("^~~\n"));
}

}  // namespace
