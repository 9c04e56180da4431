// Renaming inside rule text, through the exported lexer.
#include "MxLexicalAnalyzer.h"

#include "CpuSeconds.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>

using namespace ORKBASE;

namespace {

struct Case {
  std::u16string tables;
  std::u16string fields;
  std::u16string rule;
  std::string renamed;
};

std::string Renamed(const Case& c, std::int32_t dsType = 0) {
  MxLexicalAnalyzer lexer;
  std::u16string out = u"former text";
  lexer.ChangeExpWithNewDtDfNames(static_cast<ORKDB_DSType_ENUM>(dsType), c.tables, c.fields,
                                  c.rule, out);
  return U8(out);
}

}  // namespace

TEST(TextRenamer, RenamesTables) {
  const Case cases[] = {
      {u"A:B", u"", u"A.x + 1", "B.x + 1"},
      {u"A:B", u"", u"A.x+A.y", "B.x+B.y"},
      {u"A:B", u"", u"'select * from [A]'", "'select * from [B]'"},
      {u"A:B", u"", u"'[A] join [A]'", "'[B] join [B]'"},
      {u"A:B", u"", u"'select \"A\".x'", "'select \"A\".x'"},
      {u"A:B", u"", u"xA.y", "xA.y"},
      {u"A:B", u"", u"t.A.y", "t.B.y"},
      {u"A:B", u"", u"t.A.A.A.y", "t.B.A.B.y"},  // a dot serves one occurrence only
      {u"A:B", u"", u"A", "A"},
      {u"A:B", u"", u"A + 1", "A + 1"},
      {u"A:B", u"", u"A.A.x", "B.A.x"},  // the head, and then the next pair
      {u"A:B", u"", u"a.x", "a.x"},      // heeds case
      {u"A:B", u"", u"[A].x", "[B].x"},
      {u"A:B", u"", u"'A.x'", "'A.x'"},  // a constant's token begins with its quote
      {u"A:B", u"", u"'t.A.x'", "'t.B.x'"},
      {u"A:B", u"", u"thisReport.A.x", "thisReport.B.x"},
      {u"A:B,B:C", u"", u"A.x", "C.x"},  // a later pair sees what an earlier one made
      {u"A:B,B:A", u"", u"A.x + B.y", "A.x + A.y"},
      {u"A:B,A:C", u"", u"A.x", "B.x"},
      {u"A:A", u"", u"A.x", "A.x"},
      {u"A:B,,C:D", u"", u"A.x + C.x", "B.x + D.x"},
      {u"A", u"", u"A.x", ".x"},  // no new name reads as the empty one
      {u"A:", u"", u"A.x", ".x"},
      {u"客户:顾客", u"", u"客户.名称 = '客户.x'", "顾客.名称 = '客户.x'"},
      {u"A:B", u"", u"  A.x\n ", "  B.x\n "},
      {u"A:B", u"", u"", ""},
      {u"A:B", u"", u"   ", "   "},
      {u"nosuch:B", u"", u"A.x + (1 - 'a''b')", "A.x + (1 - 'a''b')"},
      {u"A:AA", u"", u"A.x + t.A.y", "AA.x + t.AA.y"},
  };
  for (const Case& c : cases) EXPECT_EQ(Renamed(c), c.renamed) << U8(c.tables + u" / " + c.rule);
}

TEST(TextRenamer, RenamesFields) {
  const Case cases[] = {
      {u"", u"A.x:n", u"A.x + A.y", "A.n + A.y"},
      {u"", u"A.x:n", u"a.X + 1", "A.n + 1"},  // a whole token in any case
      {u"", u"A.x:n", u"thisReport.A.x", "thisReport.A.n"},
      {u"", u"A.x:n", u"thisReport.a.X", "thisReport.a.X"},  // a token's end heeds case
      {u"", u"A.x:n", u"A.xy", "A.xy"},
      {u"", u"A.x:n", u"tA.x", "tA.x"},
      {u"", u"A.x:n", u"t.A.x.A.x", "t.A.x.A.x"},  // the first occurrence has to end the token
      {u"", u"A.x:n", u"'A.x'", "'A.x'"},
      {u"", u"A.x:n", u"'t.A.x'", "'t.A.x'"},
      {u"", u"A.x:n", u"[A].x", "[A].x"},
      {u"", u"A.x:n,A.x:m", u"A.x", "A.m"},  // the last match of a whole token wins
      {u"", u"A.x:n,A.n:m", u"A.x", "A.n"},  // and the token is looked at as it was
      {u"", u"A.x:y,A.y:x", u"A.x + A.y", "A.y + A.x"},
      {u"", u"A.x:n,A.n:m", u"t.A.x", "t.A.m"},  // a token's end is looked at as it became
      {u"", u"A.x:n,,A.y:m", u"A.x + A.y", "A.n + A.m"},
      {u"", u"A.x", u"A.x", "A."},
      {u"", u"A.x.y:n", u"A.x.y", "A.n"},
      {u"", u"客户.名称:姓名", u"客户.名称", "客户.姓名"},
      {u"", u"", u"A.x", "A.x"},
  };
  for (const Case& c : cases) EXPECT_EQ(Renamed(c), c.renamed) << U8(c.fields + u" / " + c.rule);
}

TEST(TextRenamer, RenamesTablesFirst) {
  EXPECT_EQ(Renamed({u"A:B", u"B.x:n", u"A.x + A.y", ""}), "B.n + B.y");
  EXPECT_EQ(Renamed({u"A:B", u"A.x:n", u"A.x", ""}), "B.x");
  EXPECT_EQ(Renamed({u"A:B", u"B.x:n", u"thisReport.A.x", ""}), "thisReport.B.n");
}

TEST(TextRenamer, QuotesAsTheDatabaseDoesAndKeepsThat) {
  const Case c{u"A:B", u"", u"'[A] \"A\"'", ""};
  EXPECT_EQ(Renamed(c, 0), "'[B] \"A\"'");
  for (const std::int32_t dsType : {3, 11, 14, 15, 7, 1}) {
    EXPECT_EQ(Renamed(c, dsType), "'[A] \"B\"'") << dsType;
  }
  MxLexicalAnalyzer lexer;
  std::u16string out;
  lexer.ChangeExpWithNewDtDfNames(kOracleDs, u"A:B", u"", c.rule, out);
  lexer.ChangeExpWithNewDtDfNames(kSqlServerDs, u"A:B", u"", c.rule, out);
  EXPECT_EQ(U8(out), "'[A] \"B\"'");
  MxLexicalAnalyzer copy(lexer);  // quotes are members like any other
  copy.ChangeExpWithNewDtDfNames(kSqlServerDs, u"A:B", u"", c.rule, out);
  EXPECT_EQ(U8(out), "'[A] \"B\"'");
}

TEST(TextRenamer, TakesOneTextForInputAndOutput) {
  MxLexicalAnalyzer lexer;
  std::u16string text = u"A.x + 1";
  lexer.ChangeExpWithNewDtDfNames(kSqlServerDs, u"A:B", u"", text, text);
  EXPECT_EQ(U8(text), "B.x + 1");
  lexer.ChangeExpWithNewDtDfNames(kSqlServerDs, u"nosuch:B", u"", text, text);
  EXPECT_EQ(U8(text), "B.x + 1");
}

TEST(TextRenamer, LeavesTheErrorAlone) {
  MxLexicalAnalyzer lexer;
  std::vector<MxWord> bad(1);
  bad[0].symbol = -1;
  EXPECT_FALSE(lexer.LexicalCheck(bad));
  std::u16string out;
  lexer.ChangeExpWithNewDtDfNames(kSqlServerDs, u"A:B", u"", u"A.x", out);
  EXPECT_EQ(lexer.ErrNumber(), -1);
}

namespace {

constexpr std::size_t kLongest = 1000000;

struct Outcome {
  std::size_t size;
  std::int32_t error;
};

/// Renames in `rule`; a refusal has to give back the rule itself.
Outcome Grown(const std::u16string& tables, const std::u16string& fields,
              const std::u16string& rule) {
  MxLexicalAnalyzer lexer;
  std::u16string out = u"former text";
  lexer.ChangeExpWithNewDtDfNames(kSqlServerDs, tables, fields, rule, out);
  const std::string text =
      lexer.ErrNumber() == 0 ? "" : "With the new names the text becomes too long.";
  EXPECT_EQ(U8(lexer.ErrDescription()), text);
  EXPECT_TRUE(lexer.ErrNumber() == 0 || out == rule);
  return {out.size(), lexer.ErrNumber()};
}

std::u16string Times(std::size_t count, const std::u16string& text) {
  std::u16string out;
  for (std::size_t i = 0; i < count; ++i) out += text;
  return out;
}

std::u16string Long(std::size_t size) {
  return std::u16string(size, u'n');
}

}  // namespace

TEST(TextRenamer, RefusesAListThatDoublesTheTextAgainAndAgain) {
  const ScopedLanguage language(u"en");
  const CpuSeconds time;
  // each pair makes two of every "[x]"
  EXPECT_EQ(Grown(Times(26, u"x:x][x,"), u"", u"'[x]'").error, -1);
  EXPECT_EQ(Grown(Times(5, u"x:x][x,"), u"", u"'[x]'").size, 2U + 32 * 3);
  EXPECT_EQ(Grown(Times(40, u"x:x.x,"), u"", u"t.x.y").error, -1);
  EXPECT_EQ(Grown(Times(40, u"x:x.y.x.y,"), Times(40, u"x.y:y.x.y,"), u"t.x.y").error, -1);
  EXPECT_LT(time.Used(), 5);
}

TEST(TextRenamer, TakesAResultOfAMillionUnitsAndNoneThatIsLonger) {
  const ScopedLanguage language(u"en");
  struct Way {
    std::u16string from;  // with the new name behind it
    bool isField;
    std::u16string rule;
  };
  const Way ways[] = {
      {u"A:", false, u"A.x"},          // the head of a token
      {u"A:", false, u"t.A.x"},        // inside
      {u"A:", false, u"'[A]'"},        // in brackets
      {u"A:", false, u"1 + A.x + 2"},  // with tokens around it
      {u"A:", false, u"A.x + B.x"},    // with one behind it
      {u"A.x:", true, u"A.x"},         // a whole token
      {u"A.x:", true, u"t.A.x"},       // the end of one
  };
  for (const Way& way : ways) {
    const std::size_t room = kLongest - way.rule.size() + 1;
    for (const std::size_t more : {0U, 1U}) {
      const std::u16string list = way.from + Long(room + more);
      const Outcome made = Grown(way.isField ? u"" : list, way.isField ? list : u"", way.rule);
      EXPECT_EQ(made.error, more == 0 ? 0 : -1) << U8(way.rule);
      EXPECT_EQ(made.size, more == 0 ? kLongest : way.rule.size()) << U8(way.rule);
    }
  }
}

TEST(TextRenamer, CountsAllTokensTogether) {
  const ScopedLanguage language(u"en");
  const std::u16string rule = Times(100, u"A.x+");
  // 100 names of 9,997 units and 100 times ".x+" are the limit itself
  EXPECT_EQ(Grown(u"A:" + Long(9997), u"", rule).size, kLongest);
  EXPECT_EQ(Grown(u"A:" + Long(9998), u"", rule).error, -1);
}

TEST(TextRenamer, RefusesALongTextOnlyWhereItGrows) {
  const ScopedLanguage language(u"en");
  const std::u16string rule = Times(400000, u"A.x+");
  EXPECT_EQ(Grown(u"nosuch:B", u"", rule).size, 1600000U);
  EXPECT_EQ(Grown(u"A:B", u"B.x:y", rule).size, 1600000U);
  EXPECT_EQ(Grown(u"A:", u"", rule).size, 1200000U);
  EXPECT_EQ(Grown(u"A:BB", u"", rule).error, -1);
  EXPECT_EQ(Grown(u"A:BB", u"", rule + u"C.x").error, -1);
}

TEST(TextRenamer, HoldsLargeTextsAndOddUnits) {
  const CpuSeconds time;
  std::u16string text;
  for (int i = 0; i < 100000; ++i) text += u"A.x + ";
  std::string expected;
  for (int i = 0; i < 100000; ++i) expected += "B.n + ";
  EXPECT_EQ(Renamed({u"A:B", u"B.x:n", text, ""}), expected);
  EXPECT_EQ(Renamed({u"A:B", u"", u"'" + std::u16string(1 << 20, u'('), ""}).size(),
            (1u << 20) + 1);
  EXPECT_LT(time.Used(), 5);
  MxLexicalAnalyzer lexer;
  std::u16string out;
  const std::u16string odd(u"A.x\0\xD800", 5);
  lexer.ChangeExpWithNewDtDfNames(kSqlServerDs, u"A:B", u"", odd, out);
  EXPECT_TRUE(out == std::u16string(u"B.x\0\xD800", 5));
}
