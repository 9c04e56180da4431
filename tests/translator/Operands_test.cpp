// Operands by hand-made nodes: variables of the current record, temporary names, the is-null form.
#include "MxExpression.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "ScopedLocale.h"
#include "dialects/Dialects.h"
#include "dialects/MxDMTranslator.h"
#include "dialects/MxKingbaseTranslator.h"
#include "dialects/MxOpenGaussTranslator.h"
#include "dialects/MxPLsqlTranslator.h"
#include "translator/IsNullForm.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

std::string Sql(MxExpression& rules, const std::u16string& document) {
  std::u16string translated;
  std::u16string sql;
  std::u16string unused;
  if (!rules.GetSpec(document, kSqlServerDs, translated, sql, unused, false)) {
    return U8(rules.errDescription());
  }
  return U8(sql);
}

std::u16string Word(std::string_view primary, int symbol, int dataType) {
  return U16("<tag primary=\"" + std::string(primary) + "\" symbol='" + std::to_string(symbol) +
             "' dataType='" + std::to_string(dataType) + "'/>");
}

struct CaseRow {
  const char* word;
  const char* sql;
};

// clang-format off
constexpr CaseRow kCaseVariables[] = {
    {"sysVar.RepFillTime",          "t_sysVar_Case.fillDate"},
    {"sysVar.RepRevLastTime",       "t_sysVar_Case.lstfillDate"},
    {"sysVar.FillReportDate",       "cast(cast(t_sysVar_Case.fillDate as nvarchar(10)) as datetime)"},
    {"sysVar.LastUpdatedDate",      "cast(cast(t_sysVar_Case.lstfillDate as nvarchar(10)) as datetime)"},
    {"sysVar.RepState",             "t_sysVar_Case.state"},
    {"sysVar.RepLockState",         "t_sysVar_Case.LockState"},
    {"SYSVAR.REPLOCKSTATE",         "t_sysVar_Case.LockState"},
    {"sysVar.Other",                "t_sysVar_Case"},
    {"",                            "t_sysVar_Case"},
    {"sysVar.RepState[T]",          "t_sysVar_Case_t.state"},
    {"sysVar.RepState[A.B]",        "t_sysVar_Case_a.b.state"},
    {"sysVar.FillReportDate[X]",    "cast(cast(t_sysVar_Case_x.fillDate as nvarchar(10)) as datetime)"},
    {"sysVar.Other[X]",             "t_sysVar_Case_x"},
    {"sysVar.RepState[]",           "t_sysVar_Case.state"},
    // the last character is taken for the closing bracket
    {"sysVar.RepState[ab",          "t_sysVar_Case_a.state"},
    {"sysVar.RepState[a",           "t_sysVar_Case.state"},
    {"sysVar.RepState[",            "t_sysVar_Case.state"},
    {"sysVar.RepState[a]b]",        "t_sysVar_Case_a]b.state"},
    {"[x]",                         "t_sysVar_Case_x"},
};
// clang-format on

TEST(Operands, VariablesOfTheCurrentRecord) {
  MxExpression rules;
  rules.set_useIsNull(false);
  rules.set_rtId(u"7");
  for (const CaseRow& row : kCaseVariables) {
    EXPECT_EQ(Sql(rules, Word(row.word, kSysvarCaseSymbol, kNumDataType)), row.sql) << row.word;
  }
}

TEST(Operands, VariablesOfTheCurrentRecordHaveTheIsNullForm) {
  MxExpression rules;
  EXPECT_EQ(Sql(rules, Word("sysVar.Other", kSysvarCaseSymbol, kNumDataType)),
            "isnull(t_sysVar_Case,0)");
  EXPECT_EQ(Sql(rules, Word("sysVar.Other", kSysvarCaseSymbol, kStrDataType)),
            "isnull(t_sysVar_Case,'')");
  EXPECT_EQ(Sql(rules, Word("sysVar.Other", kSysvarCaseSymbol, kDateDataType)), "t_sysVar_Case");
}

/// What a symbol without a treatment of its own prints: the word as it stands.
TEST(Operands, OtherSymbolsKeepTheirWord) {
  MxExpression rules;
  for (int symbol : {-1, 1,  2,  3,  5,  6,  10, 11, 14, 15, 16, 17, 18,
                     19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30}) {
    for (int dataType : {0, 1, 2, 3, 8}) {
      EXPECT_EQ(Sql(rules, Word("Some.Word", symbol, dataType)), "Some.Word") << symbol;
    }
  }
}

TEST(Operands, ConstantsGoByTheirType) {
  MxExpression rules;
  const ScopedLocale locale("en_US.UTF-8");
  EXPECT_EQ(Sql(rules, Word("'x'", kConstantSymbol, kStrDataType)), "N'x'");
  for (int dataType : {0, 1, 3, 4, 5, 6, 7, 8}) {
    EXPECT_EQ(Sql(rules, Word("'x'", kConstantSymbol, dataType)), "'x'") << dataType;
  }
  ConnectTo(rules, SampleDatabase(), kOracleDs);
  EXPECT_EQ(Sql(rules, Word("'x'", kConstantSymbol, kDateDataType)),
            "to_date('x','mm/dd/yyyy hh24:mi:ss')");
  EXPECT_EQ(Sql(rules, Word("", kConstantSymbol, kDateDataType)), "");
}

TEST(Operands, ParametersGoByTheirSecondPiece) {
  MxExpression rules;
  for (const int symbol : {7, 8}) {
    EXPECT_EQ(Sql(rules, Word("Input.name[S]", symbol, kStrDataType)), "<name[S]>");
    EXPECT_EQ(Sql(rules, Word("Input.A.b", symbol, kNumDataType)), "<A>");
    EXPECT_EQ(Sql(rules, Word("Input", symbol, kNumDataType)), "<>");
    EXPECT_EQ(Sql(rules, Word("", symbol, kNumDataType)), "<>");
  }
}

/// Words that no dictionary knows have empty names and the numbers 0.
TEST(Operands, UnknownFieldsHaveEmptyNames) {
  MxExpression rules;
  rules.set_useIsNull(false);
  rules.set_rtId(u"7");
  EXPECT_EQ(Sql(rules, Word("No.field", kDataFieldSymbol, kNumDataType)), ".");
  EXPECT_EQ(Sql(rules, Word("No.x.RCID", kDataFieldSymbol, kNumDataType)), ".");
  EXPECT_EQ(Sql(rules, Word("RCID", kDataFieldSymbol, kNumDataType)), ".");
  // Lower-cased, an I with a dot is an i; upper-cased, an i without one is an I.
  EXPECT_EQ(Sql(rules, Word("T.RC\u0130D", kDataFieldSymbol, kNumDataType)), "t.rcid");
  EXPECT_EQ(Sql(rules, Word("T.rcıd", kDataFieldSymbol, kNumDataType)), "t.rcıd");
  EXPECT_EQ(Sql(rules, Word("No.RcId", kDataFieldSymbol, kNumDataType)), "no.rcid");
  EXPECT_EQ(Sql(rules, Word("No.LUMENTArcid", kDataFieldSymbol, kNumDataType)), "no.lumentarcid");
  EXPECT_EQ(Sql(rules, Word("thisReport.No.x", kFormFieldSymbol, kNumDataType)), "<F0>");
  EXPECT_EQ(Sql(rules, Word("thisDoc.No.x", kCAXFieldSymbol, kNumDataType)), "#t_CAX.");
}

// --- the is-null form

struct IsNullRow {
  std::int32_t dataType;
  const char16_t* text;
  const char* wrapped;
};

// clang-format off
constexpr IsNullRow kIsNullForms[] = {
    {1, u"x",             "n(x,0)"},
    {2, u"x",             "n(x,'')"},
    {8, u"x",             "n(x,'')"},
    {0, u"x",             "x"},
    {3, u"x",             "x"},
    {4, u"x",             "x"},
    {5, u"x",             "x"},
    {6, u"x",             "x"},
    {7, u"x",             "x"},
    {9, u"x",             "x"},
    {1, u"",              "n(,0)"},
    // key columns, of text types only
    {2, u"t.RCID",        "t.RCID"},
    {8, u"t.rcid",        "t.rcid"},
    {2, u"t.LumentaRCID", "t.LumentaRCID"},
    {2, u"T.LUMENTARCID", "T.LUMENTARCID"},
    {1, u"t.rcid",        "n(t.rcid,0)"},
    {2, u"trcid",         "n(trcid,'')"},
    {2, u"t.rcid2",       "n(t.rcid2,'')"},
    // the suffix alone is no key column
    {2, u".rcid",         "n(.rcid,'')"},
    {2, u".LumentaRCID",  "n(.LumentaRCID,'')"},
};
// clang-format on

TEST(IsNullForm, GoesByTheType) {
  for (const IsNullRow& row : kIsNullForms) {
    std::u16string text = row.text;
    WrapIsNull(row.dataType, text, u"n");
    EXPECT_EQ(U8(text), row.wrapped) << row.dataType << " " << U8(row.text);
  }
}

TEST(IsNullForm, IsThatOfTheDefaultDialectFromOutside) {
  SampleExpression rules(kOpenGaussDs);
  std::u16string text = u"x";
  rules.AddIsNull(kNumDataType, text);
  EXPECT_EQ(U8(text), "isnull(x,0)");
}

/// Only a parent spelled exactly "isNull" keeps its arguments bare; the vocabulary spells it
/// "IsNull".
TEST(IsNullForm, HeedsTheCaseOfItsParent) {
  const ScopedLanguage language(u"en");
  SampleExpression rules;
  std::u16string document;
  ASSERT_TRUE(rules.Verify(kNumDataType, u"T.a", document));
  const auto call = [&](const char* name) {
    return U16("<tag primary='" + std::string(name) + "' symbol='27' semanticType='1'>") +
           Word("T.a", kDataFieldSymbol, kNumDataType) + u"</tag>";
  };
  EXPECT_EQ(Sql(rules, call("IsNull")), "IsNull(isnull([T].a,0))");
  EXPECT_EQ(Sql(rules, call("isNull")), "isNull([T].a)");
  EXPECT_EQ(Sql(rules, call("ISNULL")), "ISNULL(isnull([T].a,0))");
}

// --- temporary names

struct NameRow {
  ORKDB_DSType_ENUM dsType;
  const char* begin;  // of a report table's name
  const char* end;
};

// clang-format off
constexpr NameRow kNames[] = {
    {kSqlServerDs, "#t_a_b__repvar",     ""},
    {kOracleDs,    "#t_a_b__repvar",     ""},
    {kDMDs,        "##t_a_b__repvar",    ""},
    {kKingbaseDs,  "\"##t_a_b__repvar", "\""},
    {kOpenGaussDs, "\"##t_a_b__repvar", "\""},
};
// clang-format on

TEST(TemporaryNames, OfEverySymbolInEveryDialect) {
  for (const NameRow& row : kNames) {
    TagTree tree;
    const auto translator = DialectOf(row.dsType).newTranslator(tree);
    translator->rtId = u"a.b.";
    for (const char* extra : {"", "7", "x.y"}) {
      const std::string tail = *extra == '\0' ? "" : "_" + std::string(extra);
      for (std::int32_t symbol = -1; symbol <= 30; ++symbol) {
        std::string expected = "t_" + tail;
        if (symbol == 9) expected = "#t_CAX" + tail;
        if (symbol == 12) expected = "t_sysVar_Case" + tail;
        if (symbol == 13) expected = "t_a_b__thisCaseVar" + tail;
        if (symbol == 15) expected = row.begin + tail + row.end;
        EXPECT_EQ(U8(translator->GetTempColumnName(symbol, U16(extra))), expected)
            << "database " << row.dsType << " symbol " << symbol;
      }
    }
  }
}

TEST(TemporaryNames, FromOutsideAreThoseOfTheLastTranslator) {
  SampleExpression rules(kKingbaseDs);
  rules.set_rtId(u"7");
  // Before the first translation a translator is made for the connection.
  EXPECT_EQ(U8(rules.GetSysTabName(kReportFieldSymbol, u"72")), "\"##t_7_repvar_72\"");
  Sql(rules, u"<tag/>");
  EXPECT_EQ(U8(rules.GetSysTabName(kReportFieldSymbol, u"72")), "\"##t_7_repvar_72\"");
  std::u16string translated;
  std::u16string a;
  std::u16string b;
  ASSERT_TRUE(rules.GetSpec(u"<tag/>", kOracleDs, translated, a, b, false));
  EXPECT_EQ(U8(rules.GetSysTabName(kReportFieldSymbol, u"72")), "#t_7_repvar_72");
  EXPECT_EQ(U8(rules.GetSysTabName(kFormFieldSymbol, u"")), "t_7_thisCaseVar");
}

struct QuoteRow {
  const char16_t* name;
  const char* bracketed;
  const char* quoted;
};

constexpr QuoteRow kQuotes[] = {{u"", "", ""},
                                {u"T", "[T]", "\"T\""},
                                {u"[T]", "[T]", "\"[T]\""},
                                {u"[T", "[T", "\"[T\""},
                                {u"\"T\"", "[\"T\"]", "\"T\""},
                                {u"\"T", "[\"T]", "\"T"},
                                {u"T]", "[T]]", "\"T]\""}};

TEST(QuoteName, LooksAtTheFirstCharacterOnly) {
  TagTree tree;
  for (const QuoteRow& row : kQuotes) {
    EXPECT_EQ(U8(MxSql92Translator(tree).QuoteName(row.name)), row.bracketed);
    EXPECT_EQ(U8(MxPLsqlTranslator(tree).QuoteName(row.name)), U8(row.name));
    EXPECT_EQ(U8(MxDMTranslator(tree).QuoteName(row.name)), row.quoted);
    EXPECT_EQ(U8(MxKingbaseTranslator(tree).QuoteName(row.name)), row.quoted);
    EXPECT_EQ(U8(MxOpenGaussTranslator(tree).QuoteName(row.name)), row.quoted);
  }
}

}  // namespace
}  // namespace ORKBASE
