// Translating a document for a database that is named, whatever `Connect` said.
#include "MxExpression.h"

#include "Mx_Exception.h"
#include "OrkPlatform.h"
#include "RuleDialects.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace ORKBASE {
namespace {

class TranslateFor : public testing::Test {
 protected:
  std::u16string Verified(const std::u16string& rule) {
    std::u16string document;
    EXPECT_TRUE(rules_.Verify(kStrDataType, rule, document)) << U8(rules_.errDescription());
    return document;
  }
  std::string Sql(ORKDB_DSType_ENUM dialect, const std::u16string& document) {
    EXPECT_TRUE(rules_.TranslateFor(dialect, document, translated_, a_, b_, false));
    return U8(a_);
  }

  ScopedLanguage language_{u"en"};
  MxExpression rules_;
  std::u16string translated_ = u"t";
  std::u16string a_ = u"a";
  std::u16string b_ = u"b";
};

struct Row {
  int number;
  const char* sql;
};

/// The rule `toLower('x') & 'y'` as the database of a number writes it.
constexpr Row kRows[] = {
    {kSqlServerDs, "lower(N'x') + N'y'"},
    {kOracleDs, "toLower('x') || 'y'"},
    {kDMDs, "lower('x') + 'y'"},
    {kKingbaseDs, "lower('x') || 'y'"},
    {kOpenGaussDs, "lower('x') || 'y'"},
    {-1, "lower(N'x') + N'y'"},
    {7, "lower(N'x') + N'y'"},
};

TEST_F(TranslateFor, TheDatabaseThatIsNamed) {
  const std::u16string document = Verified(u"toLower('x') & 'y'");
  for (const Row& connected : kRows) {
    ConnectTo(rules_, SampleDatabase(), static_cast<ORKDB_DSType_ENUM>(connected.number));
    for (const Row& named : kRows) {
      EXPECT_EQ(Sql(static_cast<ORKDB_DSType_ENUM>(named.number), document), named.sql)
          << connected.number << " " << named.number;
    }
  }
  EXPECT_EQ(U8(b_), "b");
}

TEST_F(TranslateFor, IsWhatGetSpecWritesWhenConnected) {
  for (const RuleDialect& dialect : RuleDialects()) {
    SampleExpression connected(dialect.number);
    std::u16string document, translated, a, b;
    ASSERT_TRUE(connected.Verify(kLogicDataType, u"T.s like 'a' and quarter(T.d) = T.a", document));
    ASSERT_TRUE(connected.GetSpec(document, kDMDs, translated, a, b, false));
    SampleExpression named;
    named.SetDts(u"T");
    ASSERT_TRUE(named.TranslateFor(dialect.number, document, translated_, a_, b_, false));
    EXPECT_EQ(U8(translated_), U8(translated)) << U8(dialect.name);
    EXPECT_EQ(U8(a_), U8(a)) << U8(dialect.name);
  }
}

TEST_F(TranslateFor, IsWhatGetSysTabNameAnswersFor) {
  ConnectTo(rules_, SampleDatabase(), kKingbaseDs);
  rules_.set_rtId(u"7");
  const std::u16string document = Verified(u"'x'");
  Sql(kOracleDs, document);
  rules_.set_rtId(u"8");
  EXPECT_EQ(U8(rules_.GetSysTabName(kReportFieldSymbol, u"72")), "#t_7_repvar_72");
  const MxExpression copy = rules_;
  Sql(kDMDs, document);
  EXPECT_EQ(U8(rules_.GetSysTabName(kReportFieldSymbol, u"72")), "##t_8_repvar_72");
  EXPECT_EQ(U8(MxExpression(copy).GetSysTabName(kReportFieldSymbol, u"72")), "#t_7_repvar_72");
}

TEST_F(TranslateFor, LeavesTheTextsWhereItFails) {
  EXPECT_FALSE(rules_.TranslateFor(kDMDs, u"<", translated_, a_, b_, true));
  EXPECT_EQ(rules_.errNumber(), -1);
  EXPECT_EQ(U8(rules_.errDescription()), "exprParsedXml" + U8(MessageText(6297)));
  EXPECT_EQ(U8(translated_ + a_ + b_), "tab");
  const std::u16string document = u"<tag primary='thisSet' symbol='27' semanticType='1'/>";
  EXPECT_THROW(rules_.TranslateFor(kOracleDs, document, translated_, a_, b_, true), Mx_Exception);
  EXPECT_EQ(U8(translated_ + a_ + b_), "tab");
  EXPECT_EQ(Sql(kSqlServerDs, document), "thisSet()");
}

TEST_F(TranslateFor, TakesTheTextThatItOverwrites) {
  translated_ = Verified(u"toLower('x')");
  EXPECT_TRUE(rules_.TranslateFor(kDMDs, translated_, translated_, a_, b_, false));
  EXPECT_EQ(U8(a_), "lower('x')");
}

TEST_F(TranslateFor, SplitsIntoTwoTexts) {
  std::u16string document;
  ASSERT_TRUE(rules_.Verify(kLogicDataType, u"1 > 2 and sum(3) > 4", document));
  a_.clear();
  b_.clear();
  EXPECT_TRUE(rules_.TranslateFor(kOpenGaussDs, document, translated_, a_, b_, true));
  EXPECT_EQ(U8(a_), "(1 > 2)");
  EXPECT_EQ(U8(b_), "(sum(3) > 4)");
}

/// A copy works in memory of its own, however its source was used.
TEST_F(TranslateFor, CopiesTranslateAtTheSameTime) {
  const std::u16string document = Verified(u"'x' & 'y'");
  Sql(kOracleDs, document);
  std::vector<MxExpression> copies(4, rules_);
  std::vector<std::thread> threads;
  std::vector<int> right(copies.size());
  for (std::size_t i = 0; i < copies.size(); ++i) {
    threads.emplace_back([&, i] {
      std::u16string translated, a, b;
      for (int round = 0; round < 200; ++round) {
        copies[i].TranslateFor(kKingbaseDs, document, translated, a, b, false);
        right[i] += a == u"'x' || 'y'";
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, std::vector<int>(copies.size(), 200));
}

}  // namespace
}  // namespace ORKBASE
