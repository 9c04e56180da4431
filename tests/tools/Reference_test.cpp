// `orkrule reference`: what becomes of a template, and which templates are refused.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

constexpr const char* kHabits =
    "# What others write.\n"
    "\n"
    "# [bars]\n"
    "logic\tT.a > 1 || T.b > 2\tT.a > 1 or T.b > 2\n";

/// A file for this process alone, since tests run side by side.
std::string FileOf(const std::string& name, const std::string& text) {
  std::string path = testing::TempDir() + std::to_string(getpid()) + name;
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

ToolResult Filled(const std::string& text, const std::string& tag = "en",
                  const std::string& habits = "") {
  const std::string path = FileOf("orkrule_template.md.in", text);
  const std::string list = FileOf("orkrule_habits.txt", habits);
  ToolResult result = RunTool(
      {"reference", "--language", tag, "--template", path, "--habits", list, "--db", kSampleDb});
  std::remove(path.c_str());
  std::remove(list.c_str());
  return result;
}

TEST(Reference, FillsBlocksOfRules) {
  struct Row {
    const char* block;
    const char* filled;
  };
  const Row rows[] = {
      // clang-format off
      {"Plain text, <!-- a remark -->",       "Plain text, <!-- a remark -->"},
      {"```\nT.nonsense\n```",                "```\nT.nonsense\n```"},
      {"```rule\nT.nonsense\n```",            "```rule\nT.nonsense\n```"},
      {"```rule number\nT.a + 1\n\n2\n```",   "```rule number\nT.a + 1\n\n2\n```"},
      {"```wrong number\nT.a +\n```",         "```refused number\nT.a +\n```"},
      {"```refused number\nT.a +\n```",       "```refused number\nT.a +\n"
       "  The rule ends too early, something is missing at its end.\n```"},
      {"```split logic\nT.a > 1 and sum(T.b) > 2\n```", "```rule logic\nT.a > 1 and sum(T.b) > 2\n"
       "  where   (isnull([T].a,0) > 1)\n  having  (sum(isnull([T].b,0)) > 2)\n```"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = Filled(std::string(row.block) + "\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, std::string(row.filled) + "\n") << row.block;
  }
}

TEST(Reference, ShowsTheSqlOfEachDatabase) {
  const std::string out = Filled(
                              "```sql logic\nT.a in thisSet(1)\n```\n"
                              "<!-- text refused: no: %s -->\n")
                              .out;
  EXPECT_EQ(out, "") << "a text is to stand in front of what needs it";

  const std::string block = "<!-- text refused: no: %s -->\n```sql logic\nT.a in thisSet(1)\n```\n";
  const std::string filled = Filled(block).out;
  EXPECT_TRUE(
      filled.starts_with("```rule logic\nT.a in thisSet(1)\n"
                         "  default    isnull([T].a,0) in (select  1)\n"
                         "  oracle     no: This database does not support thisSet.\n"
                         "  dm         isnull(\"T\".a,0) in (select  1)\n"))
      << filled;
  EXPECT_TRUE(filled.ends_with(")\n```\n")) << filled;
}

TEST(Reference, SpeaksTheLanguageOfTheTemplate) {
  const ToolResult result = Filled("```rule logic\nT.a > 1 且 T.b > 2\n```\n", "zh-CN");
  EXPECT_EQ(result.status, 0) << result.err;
  const ToolResult refused = Filled("```rule logic\nT.a > 1 and T.b > 2\n```\n", "zh-CN");
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.err.ends_with(":2: T.a > 1 and T.b > 2: “and”是未知的词。\n")) << refused.err;
}

TEST(Reference, ShowsHabitsBesideRules) {
  const std::string text =
      "<!-- text elsewhere: there -->\n<!-- text here: here -->\n<!-- instead bars -->\n";
  const ToolResult result = Filled(text, "en", kHabits);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "| there | here |\n|---|---|\n"
            "| `T.a > 1 \\|\\| T.b > 2` | `T.a > 1 or T.b > 2` |\n");
}

// What a reference must not say ends the run, with the place and the reason.
TEST(Reference, RefusesWhatIsNotSo) {
  struct Row {
    const char* what;
    int status;
    std::string text;
    std::string habits;
    const char* end;  // of what is printed as the error
  };
  const std::string titles = "<!-- text elsewhere: a -->\n<!-- text here: b -->\n";
  const Row rows[] = {
      // clang-format off
      {"a refused rule",        1, "x\n```rule number\nT.a\nT.s\n```\n", "", ":4: T.s: The word \"T.s\" has the wrong data type. Expected: number.\n"},
      {"a rule that is taken",  1, "```refused number\nT.a\n```\n", "", ":2: T.a is not refused\n"},
      {"a type that is none",   1, "```rule size\nT.a\n```\n", "", ":2: 'size' is no type\n"},
      {"an unknown section",    3, "<!-- instead stars -->\n", "", ":1: the list has no section stars\n"},
      {"a section left out",    3, "x\n", kHabits, "section bars: it stands nowhere\n"},
      {"a text left out",       3, "<!-- instead bars -->\n", kHabits, "text elsewhere: the template has none of this name\n"},
      {"a refused habit",       1, titles + "<!-- instead bars -->\n", "# [bars]\nlogic\tx\tT.a >\n", "orkrule_habits.txt:2: T.a >: The rule ends too early, something is missing at its end.\n"},
      {"a row without columns", 3, "x\n", "# [bars]\nlogic\tx\n", "orkrule_habits.txt:2: a row has its columns, and stands below a section\n"},
      {"a row without section", 3, "x\n", "logic\tx\tT.a > 1\n", "orkrule_habits.txt:1: a row has its columns, and stands below a section\n"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = Filled(row.text, "en", row.habits);
    EXPECT_EQ(result.status, row.status) << row.what;
    EXPECT_EQ(result.out, "") << row.what;
    EXPECT_TRUE(result.err.ends_with(row.end)) << row.what << ": " << result.err;
  }
}

TEST(Reference, IsNotAmongTheCommandsOfTheHelp) {
  const ToolResult result = RunTool({"--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("vocabulary"), std::string::npos);
  EXPECT_EQ(result.out.find("reference"), std::string::npos);
}

}  // namespace
