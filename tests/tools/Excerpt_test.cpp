// The line of a rule with its mark, as wide as the terminal is.
#include "Excerpt.h"

#include "Utf8.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace ORKTOOL {
namespace {

constexpr Style kPipe;

TEST(Excerpt, MarksTheStretch) {
  struct Row {
    const char16_t* rule;
    Stretch stretch;
    const char* lines;
  };
  const Row rows[] = {
      // clang-format off
      {u"1 + foo",         {4, 3},  "  1 + foo\n      ^~~\n"},
      {u"1 + foo",         {0, 1},  "  1 + foo\n  ^\n"},
      {u"1 +",             {3, 0},  "  1 +\n     ^\n"},
      {u"",                {0, 0},  "  \n  ^\n"},
      {u"1",               {9, 9},  "  1\n   ^\n"},
      // a wide character takes two columns, before the stretch and within it
      {u"'中文' & foo",    {7, 3},  "  '中文' & foo\n           ^~~\n"},
      {u"１ + （2",        {0, 1},  "  １ + （2\n  ^~\n"},
      {u"客户.金额 ≥ 1",   {0, 5},  "  客户.金额 ≥ 1\n  ^~~~~~~~~\n"},
      {u"\xD840\xDC0B + x", {5, 1},  "  \xF0\xA0\x80\x8B + x\n       ^\n"},
      // a combining accent takes none
      {u"'e\x0301' & foo", {7, 3},  "  'e\xCC\x81' & foo\n        ^~~\n"},
      // tabs and what would move the cursor are blanks
      {u"1\t+\tfoo",       {4, 3},  "  1 + foo\n      ^~~\n"},
      {u"'\x1B[2J' \x7F x", {8, 1}, "  ' [2J'   x\n          ^\n"},
      // of several lines the one where the stretch begins
      {u"1 +\nfoo\n+ 2",   {4, 3},  "  foo\n  ^~~\n"},
      {u"1 +\nfoo\n+ 2",   {3, 0},  "  1 +\n     ^\n"},
      {u"1 +\nfoo\n+ 2",   {2, 6},  "  1 +\n    ^\n"},
      {u"1 +\nfoo\n+ 2",   {11, 0}, "  + 2\n     ^\n"},
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Excerpt(row.rule, row.stretch, kPipe, Colour::kError), row.lines) << U8(row.rule);
  }
}

/// Columns of the longest line.
std::size_t WidthOf(const std::string& lines) {
  std::size_t longest = 0;
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = lines.find('\n', begin);
    std::size_t columns = 0;
    for (std::size_t at = begin; at < end; ++at) {
      const auto byte = static_cast<unsigned char>(lines[at]);
      if (byte >= 0xE0) ++columns;  // three bytes and more: only wide ones stand in these rules
      if ((byte & 0xC0) != 0x80) ++columns;
    }
    longest = std::max(longest, columns);
    begin = end + 1;
  }
  return longest;
}

/// What stands above the mark.
std::string MarkedWord(const std::string& lines) {
  const std::size_t end = lines.find('\n');
  const std::size_t mark = lines.find('^', end) - end - 1;
  return lines.substr(mark, lines.find_last_not_of('\n') - end - mark);
}

TEST(Excerpt, CutsALineToTheTerminal) {
  std::u16string rule;
  for (int i = 0; i < 1000; ++i) rule += u"T.a + ";
  const std::size_t middle = rule.size() / 2 + 2;
  rule.replace(middle, 3, u"xyz");
  for (const std::size_t columns : {30u, 40u, 80u, 81u, 200u}) {
    const Style style{false, columns};
    for (const std::size_t at : {std::size_t{0}, middle, rule.size() - 6}) {
      const std::string lines = Excerpt(rule, {at, 3}, style, Colour::kError);
      EXPECT_LE(WidthOf(lines), columns) << lines;
      EXPECT_GE(WidthOf(lines), columns - 10) << lines;
      EXPECT_EQ(MarkedWord(lines), U8(rule.substr(at, 3))) << lines;
      // The room for dots on the left stays free, and a column for a mark behind the end.
      EXPECT_EQ(lines.find("..."), at == 0 ? columns - 7 : 2) << lines;
    }
  }
}

TEST(Excerpt, CutsWideCharactersAsAWhole) {
  const std::u16string rule(500, u'中');
  const std::string lines = Excerpt(rule, {250, 2}, {false, 80}, Colour::kError);
  EXPECT_LE(WidthOf(lines), 80u) << lines;
  EXPECT_EQ(lines.find("\xEF\xBF\xBD"), lines.npos) << lines;
  std::u16string pairs;
  for (int i = 0; i < 500; ++i) pairs += u"\xD840\xDC0B";
  const std::string both = Excerpt(pairs, {500, 2}, {false, 80}, Colour::kError);
  EXPECT_EQ(both.find("\xEF\xBF\xBD"), both.npos) << both;
}

TEST(Excerpt, TakesAnyText) {
  const std::u16string lone = u"\xDC00\xD800 \xD800";
  for (std::size_t at = 0; at <= lone.size(); ++at) {
    const std::string lines = Excerpt(lone, {at, 1}, {false, 20}, Colour::kError);
    EXPECT_NE(lines.find('^'), lines.npos) << at;
  }
  const std::u16string accents(1000000, u'\x0301');
  EXPECT_LT(Excerpt(accents, {500000, 5}, kPipe, Colour::kError).size(), 2000u);
}

TEST(Excerpt, ColoursTheWordAndItsMark) {
  EXPECT_EQ(Excerpt(u"1 + foo", {4, 3}, {true, 0}, Colour::kError),
            "  1 + \x1B[1;31mfoo\x1B[0m\n      \x1B[1;31m^~~\x1B[0m\n");
  EXPECT_EQ(Excerpt(u"1 +", {3, 0}, {true, 0}, Colour::kWarning),
            "  1 +\n     \x1B[1;35m^\x1B[0m\n");
}

TEST(Style, HasColoursOnlyWhereTheyAreWanted) {
  EXPECT_FALSE(StyleOf(-1, "auto").colours);
  EXPECT_TRUE(StyleOf(-1, "always").colours);
  EXPECT_FALSE(StyleOf(-1, "never").colours);
  EXPECT_EQ(StyleOf(-1, "always").columns, 0u);
}

}  // namespace
}  // namespace ORKTOOL
