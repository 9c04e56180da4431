// Copies of an `MxExpression` share dictionaries and connection, and nothing else.
#include "MxExpression.h"

#include "OrkPlatform.h"

#include "SampleDatabase.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using namespace ORKBASE;

namespace {

constexpr const char* kTables =
    "create table mx_v_datafield (dtName, fldName, fldRealName, baseType, dtId, fldId,"
    " tabRealName, tabRefName, state);"
    "insert into mx_v_datafield values ('T', 'a', 'a', 1, 1, 1, 'T', '', 1),"
    " ('U', 'a', 'a', 1, 2, 2, 'U', '', 1);";
constexpr const char* kNoTables = "delete from mx_v_datafield;";

class ExpressionCopies : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }

  static bool Verifies(MxExpression& rules, const std::u16string& rule) {
    std::u16string document;
    return rules.Verify(kLogicDataType, rule, document);
  }
  static std::string Sql(MxExpression& rules, const std::u16string& rule) {
    std::u16string document, translated, a, b;
    EXPECT_TRUE(rules.Verify(kLogicDataType, rule, document)) << U8(rules.errDescription());
    EXPECT_TRUE(rules.GetSpec(document, kSqlServerDs, translated, a, b, false));
    return U8(a);
  }
};

}  // namespace

TEST_F(ExpressionCopies, ReadNothingAgain) {
  const TempDatabase database(kTables);
  MxExpression source;
  ConnectTo(source, database);
  source.SetDts(u"T");
  MxExpression copy(source);
  MxExpression assigned;
  assigned = source;
  database.Run(kNoTables);
  EXPECT_TRUE(Verifies(copy, u"T.a > 1"));
  EXPECT_TRUE(Verifies(assigned, u"T.a > 1"));
  EXPECT_FALSE(Verifies(copy, u"U.a > 1"));
}

TEST_F(ExpressionCopies, ShareTheConnection) {
  const TempDatabase database(kTables);
  MxExpression source;
  ConnectTo(source, database);
  MxExpression copy(source);
  EXPECT_TRUE(Verifies(copy, u"U.a > 1"));
}

TEST_F(ExpressionCopies, LoadForThemselves) {
  const TempDatabase database(kTables);
  MxExpression source;
  ConnectTo(source, database);
  MxExpression copy(source);
  copy.SetDts(u"T");
  source.SetDts(u"U");
  database.Run(kNoTables);
  EXPECT_TRUE(Verifies(copy, u"T.a > 1"));
  EXPECT_FALSE(Verifies(source, u"T.a > 1"));
  EXPECT_TRUE(Verifies(source, u"U.a > 1"));
  EXPECT_FALSE(Verifies(copy, u"U.a > 1"));
}

TEST_F(ExpressionCopies, WorkAfterTheSourceIsDestroyed) {
  auto source = std::make_unique<SampleExpression>();
  source->SetRt(u"7");
  source->SetDts(u"T");
  EXPECT_EQ(Sql(*source, u"T.a > 1"), "isnull([T].a,0) > 1");
  MxExpression copy(*source);
  MxExpression assigned;
  assigned = *source;
  source.reset();
  EXPECT_EQ(U8(copy.GetSysTabName(kFormFieldSymbol, u"71")), "t_7_thisCaseVar_71");
  EXPECT_EQ(Sql(copy, u"T.a > 1 and Orders.Qty > 2"),
            "isnull([T].a,0) > 1 and isnull([Orders].Qty,0) > 2");
  EXPECT_EQ(Sql(assigned, u"thisReport.Header.Total > 1"), "isnull(<F1604>,0) > 1");
  MxExpression copyOfCopy(copy);
  EXPECT_TRUE(Verifies(copyOfCopy, u"Customer.Name = 'x'"));
}

TEST_F(ExpressionCopies, TakeModesAndErrorAlong) {
  SampleExpression source;
  source.set_formDataIn(1);
  source.set_useIsNull(false);
  source.set_rtId(u"5");
  source.set_thiscaseVarOn1RcId(false);
  EXPECT_FALSE(Verifies(source, u"1 > bad"));
  MxExpression copy(source);
  EXPECT_EQ(copy.get_formDataIn(), 1);
  EXPECT_FALSE(copy.get_useIsNull());
  EXPECT_EQ(U8(copy.get_rtId()), "5");
  EXPECT_FALSE(copy.get_thiscaseVarOn1RcId());
  EXPECT_EQ(copy.errNumber(), -1);
  EXPECT_EQ(U8(copy.errDescription()), "The word \"bad\" is unknown.");
  EXPECT_EQ(RefusedToken(copy), 4);
  copy.set_useIsNull(true);
  copy.set_rtId(u"6");
  copy.set_thiscaseVarOn1RcId(true);
  EXPECT_TRUE(Verifies(copy, u"1 > 2"));
  EXPECT_FALSE(source.get_useIsNull());
  EXPECT_EQ(U8(source.get_rtId()), "5");
  EXPECT_FALSE(source.get_thiscaseVarOn1RcId());
  EXPECT_EQ(source.errNumber(), -1);
}

TEST_F(ExpressionCopies, ShareTheLastTranslatorUntilTheyTranslate) {
  SampleExpression source;
  source.set_rtId(u"5");
  EXPECT_EQ(U8(source.GetSysTabName(kFormFieldSymbol, u"")), "t_5_thisCaseVar");
  source.set_rtId(u"6");
  MxExpression copy(source);
  EXPECT_EQ(U8(copy.GetSysTabName(kFormFieldSymbol, u"")), "t_5_thisCaseVar");
  EXPECT_EQ(Sql(copy, u"1 > 2"), "1 > 2");
  EXPECT_EQ(U8(copy.GetSysTabName(kFormFieldSymbol, u"")), "t_6_thisCaseVar");
  EXPECT_EQ(U8(source.GetSysTabName(kFormFieldSymbol, u"")), "t_5_thisCaseVar");
}

TEST_F(ExpressionCopies, AssignmentReplacesTheTargetsDictionaries) {
  const TempDatabase database(kTables);
  MxExpression source;
  ConnectTo(source, database);
  source.SetDts(u"T");
  MxExpression target;
  ConnectTo(target, database);
  target.SetDts(u"U");
  database.Run(kNoTables);
  target = source;
  EXPECT_TRUE(Verifies(target, u"T.a > 1"));
  EXPECT_FALSE(Verifies(target, u"U.a > 1"));
}

TEST_F(ExpressionCopies, SelfAssignmentChangesNothing) {
  SampleExpression rules;
  rules.SetDts(u"T");
  rules.set_rtId(u"5");
  EXPECT_FALSE(Verifies(rules, u"bad"));
  const MxExpression& self = rules;
  static_cast<MxExpression&>(rules) = self;
  EXPECT_EQ(rules.errNumber(), -1);
  EXPECT_EQ(U8(rules.errDescription()), "The word \"bad\" is unknown.");
  EXPECT_EQ(U8(rules.get_rtId()), "5");
  EXPECT_EQ(Sql(rules, u"T.a > 1"), "isnull([T].a,0) > 1");
}

TEST_F(ExpressionCopies, MoveIsACopy) {
  SampleExpression source;
  source.SetDts(u"T");
  MxExpression& from = source;
  MxExpression moved(std::move(from));
  EXPECT_EQ(Sql(moved, u"T.a > 1"), "isnull([T].a,0) > 1");
  EXPECT_EQ(Sql(source, u"T.a > 1"), "isnull([T].a,0) > 1");
}

TEST_F(ExpressionCopies, RenameInACopyChangesTheWordsOfTheSourceButNotItsKeys) {
  const TempDatabase database(kTables);
  MxExpression source;
  ConnectTo(source, database);
  source.SetDts(u"T");
  MxExpression copy(source);
  EXPECT_EQ(copy.ReplaceDtOrDfNames(u"T:N", u""), 0);
  EXPECT_TRUE(Verifies(copy, u"N.a > 1"));
  EXPECT_TRUE(Verifies(source, u"N.a > 1"));
  EXPECT_FALSE(Verifies(source, u"T.a > 1"));  // its key says that T is loaded
  EXPECT_TRUE(Verifies(copy, u"T.a > 1"));     // the copy has no such key and reads T again
}
