// Keeping stored rules in step: uses of tables, removal of tables, renames.
#include "MxExpression.h"

#include "CpuSeconds.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>

using namespace ORKBASE;

namespace {

class Maintenance : public testing::Test {
 protected:
  void SetUp() override { rules_.SetDts(u"T,Orders,Customer"); }

  /// The rule without the tables, with the error where there is one.
  std::string Without(const std::u16string& tables, std::u16string rule,
                      MXRULE_DATATYPE type = kLogicDataType) {
    rules_.RemoveDt(rule, tables, type);
    return U8(rule) + (rules_.errNumber() != 0 ? " / " + U8(rules_.errDescription()) : "");
  }

  bool Verifies(const std::u16string& rule, MXRULE_DATATYPE type = kLogicDataType) {
    std::u16string document;
    return rules_.Verify(type, rule, document);
  }

  const ScopedLanguage language_{u"en"};
  SampleExpression rules_;
};

}  // namespace

// --- uses ----------------------------------------------------------------------------------------

TEST_F(Maintenance, FindsTablesInTokensOfTwoParts) {
  struct Case {
    std::u16string tables;
    std::u16string rule;
    bool found;
  };
  const Case cases[] = {
      {u"T1", u"t1.a + 1", true},
      {u"t1", u"T1.a + 1", true},
      {u"T1", u"[T1].a", true},
      {u"T1", u"[t1].a", true},
      {u"T1", u"[T1x.a", true},  // the last character goes, whatever it is
      {u"T1", u"[.a", false},
      {u"T1", u"[].a", false},
      {u"T1", u"a.b.c", false},
      {u"T1", u"x.T1.a", false},
      {u"T1", u"T1.a.b", false},
      {u"T1", u"T1", false},
      {u"T1", u"T1.", false},   // one piece only
      {u"T1", u"T1.a.", true},  // nothing stands behind the last dot
      {u"T1", u".a", false},
      {u"", u".a", false},  // the empty name is never an item
      {u",", u".a", false},
      {u"", u"T1.a", false},
      {u"T1,T2", u"1 + T2.a", true},
      {u"T1,T2", u"T.a", false},
      {u"T1,T2", u"1,T.a", false},
      {u"T1, T2", u"T2.a", false},  // names are not trimmed
      {u"T1", u"'T1.a'", false},
      {u"T1", u"\"T1\".a", false},
      {u"T1", u"not a ( valid rule + T1.a", true},
      {u"T1", u"", false},
      {u"T1", u"   ", false},
      {u"1", u"1.5", true},  // a number of two parts looks like a field
      {u"客户", u"客户.名称", true},
      {u"straße", u"STRASSE.a", false},
      {u"ärger", u"ÄRGER.a", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(rules_.IsDtsInExp(c.tables, c.rule), c.found) << U8(c.tables + u" / " + c.rule);
  }
}

TEST_F(Maintenance, LookingForTablesResetsTheErrorAndNeedsNoDictionary) {
  EXPECT_FALSE(Verifies(u"bad"));
  MxExpression fresh;
  EXPECT_TRUE(fresh.IsDtsInExp(u"NoSuch", u"NoSuch.a"));
  EXPECT_TRUE(rules_.IsDtsInExp(u"T", u"T.a"));
  EXPECT_EQ(rules_.errNumber(), 0);
}

// --- removal -------------------------------------------------------------------------------------

TEST_F(Maintenance, RemovesWhatDependsOnATable) {
  struct Case {
    std::u16string tables;
    std::u16string rule;
    std::string left;
    MXRULE_DATATYPE type = kLogicDataType;
  };
  const Case cases[] = {
      {u"T", u"T.a > 1 and Orders.Qty > 2", "Orders.Qty > 2"},
      {u"Orders", u"T.a > 1 and Orders.Qty > 2", "T.a > 1"},
      {u"T,Orders", u"T.a > 1 and Orders.Qty > 2", ""},
      {u"T", u"T.a > 1", ""},
      {u"T", u"not T.a > 1", ""},
      {u"T", u"not (T.a > 1 or T.b > 1) and Orders.Qty > 2", "Orders.Qty > 2"},
      {u"T", u"T.a > 1 or Orders.Qty > 2 and Orders.Qty < 9", "Orders.Qty > 2 and Orders.Qty < 9"},
      // functions go as a whole
      {u"T", u"POWER(Orders.Qty, T.a) > 1", ""},
      {u"T", u"POWER(Orders.Qty, T.a)", "", kNumDataType},
      {u"T", u"POWER(T.a, Orders.Qty) + 1", "1", kNumDataType},
      {u"T", u"sum(T.a)", "", kNumDataType},
      {u"T", u"POWER(Orders.Qty, T.a + 1)", "POWER(Orders.Qty,1)", kNumDataType},
      // an operator that lost an operand gives its place to the other
      {u"T", u"T.a + Orders.Qty", "Orders.Qty", kNumDataType},
      {u"T", u"Orders.Qty * (T.a + 1)", "Orders.Qty * 1", kNumDataType},
      {u"T", u"Orders.Qty * (T.a + T.b)", "Orders.Qty", kNumDataType},
      {u"T", u"(T.a + Orders.Qty) * 2", "Orders.Qty * 2", kNumDataType},
      {u"T", u"Orders.Qty * (T.a + (Orders.Price + 1))", "Orders.Qty * (Orders.Price + 1)",
       kNumDataType},
      {u"T", u"T.s & 'x'", "'x'", kStrDataType},
      {u"T", u"1 + T.a > Orders.Qty", "1 > Orders.Qty"},
      // the root keeps its brackets
      {u"T", u"(T.a + Orders.Qty)", "(Orders.Qty)", kNumDataType},
      // comparisons go with their operand
      {u"T", u"T.s like 'x' and Orders.Qty > 1", "Orders.Qty > 1"},
      {u"T", u"T.a null and Orders.Qty > 1", "Orders.Qty > 1"},
      {u"T", u"T.RCID = 'x' and Orders.Qty > 1", "Orders.Qty > 1"},
      // nothing to remove: the words of the user, with one blank around operators
      {u"NoSuch", u"T.a>1   and\nORDERS.qty >2", "T.a > 1 and ORDERS.qty > 2"},
      {u"", u"T.a > 1", "T.a > 1"},
      {u"T.a", u"T.a > 1", "T.a > 1"},
      {u"t", u"T.a > 1", "T.a > 1"},  // heeds the case of what was written
      {u"T", u"t.a > 1", "t.a > 1"},
      {u"NoSuch", u"T.a null", "T.a null"},
      {u"NoSuch", u"RAND() > 1", "RAND() > 1"},
      {u"NoSuch", u"not (T.a > 1)", "not (T.a > 1)"},
      {u"NoSuch", u"((T.a + 1)) * 2", "(T.a + 1) * 2", kNumDataType},
      {u"NoSuch", u"POWER( T.a , 2 )", "POWER(T.a,2)", kNumDataType},
      // a unary minus is taken for an operator that lost an operand; at the root it still prints
      {u"NoSuch", u"1 - (-Orders.Qty) > T.a", "1 - Orders.Qty > T.a"},
      {u"NoSuch", u"-T.a", "- T.a", kNumDataType},
      {u"T", u"-T.a", "", kNumDataType},
  };
  for (const Case& c : cases) EXPECT_EQ(Without(c.tables, c.rule, c.type), c.left) << U8(c.rule);
}

TEST_F(Maintenance, RemovesFieldsOfDataTablesOnly) {
  rules_.SetRt(u"7");
  EXPECT_EQ(Without(u"thisReport,Header", u"thisReport.Header.Total > 1"),
            "thisReport.Header.Total > 1");
  EXPECT_EQ(Without(u"Header", u"Header.Total > 1 or thisReport.Header.Total > 1"),
            "thisReport.Header.Total > 1");
  EXPECT_EQ(Without(u"Input", u"Input.a[N] > 1"), "Input.a[N] > 1");
}

TEST_F(Maintenance, InvalidRuleStaysWithTheErrorOfVerify) {
  EXPECT_EQ(Without(u"T", u"T.a > bad"), "T.a > bad / The word \"bad\" is unknown.");
  EXPECT_EQ(Without(u"T", u""), " / The rule ends too early, something is missing at its end.");
  EXPECT_EQ(Without(u"T", u"T.a > 1", kNumDataType).substr(0, 10), "T.a > 1 / ");
  EXPECT_EQ(Without(u"T", u"T.a > 1"), "");
  EXPECT_EQ(rules_.errNumber(), 0);
}

TEST_F(Maintenance, RuleWhoseFieldsAreBoundLateHasEmptyWordsThere) {
  SampleExpression fresh;
  std::u16string rule = u"T.a > 1";
  fresh.RemoveDt(rule, u"T", kLogicDataType);
  EXPECT_EQ(U8(rule), "1");  // the field is not recognised as one of T, and prints nothing
  rule = u"T.a > 1 and Orders.Qty > 2";
  fresh.RemoveDt(rule, u"T", kLogicDataType);
  EXPECT_EQ(U8(rule), "2");
  rule = u"T.a > 1 and Orders.Qty > 2";
  fresh.RemoveDt(rule, u"T", kLogicDataType);
  EXPECT_EQ(U8(rule), "Orders.Qty > 2");
}

TEST_F(Maintenance, RemovalLeavesTheDictionariesAsTheyWere) {
  EXPECT_EQ(Without(u"T", u"T.a > 1"), "");
  EXPECT_TRUE(Verifies(u"T.a > 1"));
}

TEST_F(Maintenance, RemovesFromLongRulesInLinearTime) {
  std::u16string rule = u"T.a > 1";
  for (int i = 0; i < 5000; ++i) rule += u" and Orders.Qty > 2 or T.b > 3";
  // "and" and "or" bind alike, from left to right; each operator goes with the operand of T.
  std::string expected = "Orders.Qty > 2";
  for (int i = 1; i < 5000; ++i) expected += " and Orders.Qty > 2";
  const CpuSeconds time;
  EXPECT_EQ(Without(u"T", rule), expected);
  EXPECT_EQ(Without(u"T,Orders", rule), "");
  EXPECT_LT(time.Used(), 20);
}

// --- renames -------------------------------------------------------------------------------------

TEST_F(Maintenance, RenamedTableIsFoundUnderItsNewName) {
  EXPECT_FALSE(Verifies(u"bad"));
  EXPECT_EQ(rules_.ReplaceDtOrDfNames(u"T:Neu", u""), 0);
  EXPECT_EQ(rules_.errNumber(), 0);
  EXPECT_TRUE(Verifies(u"Neu.a > 1"));
  EXPECT_TRUE(Verifies(u"neu.A > 1"));
  EXPECT_FALSE(Verifies(u"Neu.nosuch > 1"));
}

TEST_F(Maintenance, TablesAreRenamedBeforeFields) {
  EXPECT_EQ(rules_.ReplaceDtOrDfNames(u"T:Neu", u"Neu.a:first,T.b:never"), 0);
  EXPECT_TRUE(Verifies(u"Neu.first > Neu.b"));
  EXPECT_FALSE(Verifies(u"Neu.a > 1"));
}

TEST_F(Maintenance, RenameReachesTemplatesAndTheirSql) {
  rules_.SetRt(u"7");
  EXPECT_EQ(rules_.ReplaceDtOrDfNames(u"Header:Kopf", u"Kopf.Total:Summe"), 0);
  EXPECT_TRUE(Verifies(u"thisReport.Kopf.Summe > 1"));
  EXPECT_TRUE(Verifies(u"Kopf.Summe > 1"));
  EXPECT_FALSE(Verifies(u"thisReport.Header.Total > 1"));
  std::u16string document, translated, a, b;
  ASSERT_TRUE(rules_.Verify(kLogicDataType, u"Kopf.Summe > 1", document));
  ASSERT_TRUE(rules_.GetSpec(document, kSqlServerDs, translated, a, b, false));
  EXPECT_EQ(U8(a), "isnull([Kopf].[Summe],0) > 1");
}

TEST_F(Maintenance, EmptyListsChangeNothing) {
  EXPECT_EQ(rules_.ReplaceDtOrDfNames(u"", u""), 0);
  EXPECT_TRUE(Verifies(u"T.a > 1"));
}

TEST_F(Maintenance, RenamesInTextAsTheConnectedDatabaseQuotes) {
  EXPECT_FALSE(Verifies(u"bad"));
  EXPECT_EQ(U8(rules_.ChangeExpWithNewDtDfNames(u"A:B", u"B.x:n", u"A.x + '[A]' + '\"A\"'")),
            "B.n + '[B]' + '\"A\"'");
  EXPECT_EQ(rules_.errNumber(), 0);
  ConnectTo(rules_, SampleDatabase(), kOracleDs);
  EXPECT_EQ(U8(rules_.ChangeExpWithNewDtDfNames(u"A:B", u"", u"'[A]' + '\"A\"'")),
            "'[A]' + '\"B\"'");
  ConnectTo(rules_, SampleDatabase(), kSqlServerDs);
  EXPECT_EQ(U8(rules_.ChangeExpWithNewDtDfNames(u"A:B", u"", u"'[A]' + '\"A\"'")),
            "'[A]' + '\"B\"'");  // does not switch back
  MxExpression fresh;
  EXPECT_EQ(U8(fresh.ChangeExpWithNewDtDfNames(u"A:B", u"", u"")), "");
}

TEST_F(Maintenance, QuotesOfTheTextSwitchAtTheRenameOnly) {
  MxExpression rules;
  ConnectTo(rules, SampleDatabase(), kOracleDs);
  ConnectTo(rules, SampleDatabase(), kSqlServerDs);
  EXPECT_EQ(U8(rules.ChangeExpWithNewDtDfNames(u"A:B", u"", u"'[A]' + '\"A\"'")),
            "'[B]' + '\"A\"'");
}

TEST_F(Maintenance, TextThatBecomesTooLongStaysAsItIs) {
  std::u16string list;
  for (int i = 0; i < 26; ++i) list += u"x:x][x,";
  EXPECT_EQ(U8(rules_.ChangeExpWithNewDtDfNames(list, u"", u"'[x]'")), "'[x]'");
  EXPECT_EQ(rules_.errNumber(), -1);
  EXPECT_EQ(U8(rules_.errDescription()), "With the new names the text becomes too long.");
  EXPECT_EQ(rules_.errRecord().message, 6703);
  EXPECT_EQ(rules_.errRecord().cause, kRequestCause);
  EXPECT_EQ(U8(rules_.ChangeExpWithNewDtDfNames(u"x:y", u"", u"'[x]'")), "'[y]'");
  EXPECT_EQ(rules_.errNumber(), 0);
}

TEST_F(Maintenance, NamesThatAreTooLongChangeNothing) {
  const std::u16string longest(1000000 - 2, u'n');  // with ".a" a word of a million units
  EXPECT_EQ(rules_.ReplaceDtOrDfNames(u"Orders:Sales,T:n" + longest, u"Customer.Name:first"), -1);
  EXPECT_EQ(rules_.errNumber(), -1);
  EXPECT_EQ(U8(rules_.errDescription()), "With the new names the text becomes too long.");
  EXPECT_EQ(rules_.errRecord().message, 6703);
  EXPECT_TRUE(Verifies(u"T.a > Orders.Qty and Customer.Name = 'x'"));
  EXPECT_EQ(rules_.ReplaceDtOrDfNames(u"Orders:Sales", u"T.a:nn" + longest), -1);  // fields too
  EXPECT_TRUE(Verifies(u"T.a > Orders.Qty"));
  EXPECT_EQ(rules_.ReplaceDtOrDfNames(u"Orders:Sales,T:" + longest, u""), 0);
  EXPECT_TRUE(Verifies(longest + u".a > Sales.Qty"));
}

// --- reading anew --------------------------------------------------------------------------------

namespace {

constexpr const char* kTables =
    "create table mx_v_datafield (dtName, fldName, fldRealName, baseType, dtId, fldId,"
    " tabRealName, tabRefName, state);"
    "insert into mx_v_datafield values ('T', 'a', 'a', 1, 1, 1, 'T', '', 1),"
    " ('U', 'a', 'a', 1, 2, 2, 'U', '', 1);"
    "create table mx_v_rtfs (rttId, rtfId, fldName, realName, baseType, fldId);"
    "create table Mx_v_Rtts (rttId, rtId, dtName, dtId, realName, refName, style, state);"
    "insert into Mx_v_Rtts values (1, 7, 'T', 1, 'T', '', 1, 1);"
    "insert into mx_v_rtfs values (1, 1, 'a', 'a', 1, 1);";
constexpr const char* kRenameInDatabase =
    "update mx_v_datafield set fldName = 'b'; update mx_v_rtfs set fldName = 'b';";

class Refreshing : public testing::Test {
 protected:
  void SetUp() override {
    ConnectTo(rules_, database_);
    rules_.SetRt(u"7");
    rules_.SetDts(u"U");
  }

  static bool Verifies(MxExpression& rules, const std::u16string& rule) {
    std::u16string document;
    return rules.Verify(kLogicDataType, rule, document);
  }

  const ScopedLanguage language_{u"en"};
  const TempDatabase database_{kTables};
  MxExpression rules_;
};

}  // namespace

TEST_F(Refreshing, SeesWhatHasChangedInTheDatabase) {
  database_.Run(kRenameInDatabase);
  EXPECT_TRUE(Verifies(rules_, u"T.a > U.a and thisReport.T.a > 1"));
  EXPECT_TRUE(rules_.Refresh());
  EXPECT_EQ(rules_.errNumber(), 0);
  EXPECT_TRUE(Verifies(rules_, u"T.b > U.b and thisReport.T.b > 1"));
  for (const char16_t* rule : {u"T.a > 1", u"U.a > 1", u"thisReport.T.a > 1"}) {
    EXPECT_FALSE(Verifies(rules_, rule)) << U8(rule);
  }
}

TEST_F(Refreshing, ReachesCopies) {
  MxExpression copy(rules_);
  database_.Run(kRenameInDatabase);
  EXPECT_TRUE(rules_.Refresh());
  EXPECT_TRUE(Verifies(copy, u"T.b > U.b and thisReport.T.b > 1"));
  EXPECT_FALSE(Verifies(copy, u"T.a > 1"));
}

TEST_F(Refreshing, LeavesAllAsItWasWhenOneReadFails) {
  database_.Run(std::string(kRenameInDatabase) + "delete from mx_v_datafield where dtName = 'U';");
  EXPECT_FALSE(rules_.Refresh());
  EXPECT_EQ(rules_.errNumber(), -1);
  EXPECT_EQ(U8(rules_.errDescription()), "The data table \"U\" does not exist or has no fields.");
  EXPECT_TRUE(Verifies(rules_, u"T.a > U.a and thisReport.T.a > 1"));
  EXPECT_FALSE(Verifies(rules_, u"T.b > 1"));
  database_.Run("drop table mx_v_datafield;");
  EXPECT_FALSE(rules_.Refresh());
  EXPECT_EQ(rules_.errRecord().cause, kDatabaseCause);
  EXPECT_TRUE(Verifies(rules_, u"T.a > U.a and thisReport.T.a > 1"));
}

TEST_F(Refreshing, AsksForRenamedTablesUnderTheirNewNames) {
  MxExpression copy(rules_);
  EXPECT_EQ(rules_.ReplaceDtOrDfNames(u"U:N", u""), 0);
  EXPECT_FALSE(rules_.Refresh());
  EXPECT_EQ(U8(rules_.errDescription()), "The data table \"N\" does not exist or has no fields.");
  EXPECT_TRUE(Verifies(rules_, u"N.a > 1"));
  database_.Run("update mx_v_datafield set dtName = 'N', fldName = 'b' where dtName = 'U';");
  EXPECT_TRUE(copy.Refresh());  // where the table still has its old key
  EXPECT_TRUE(Verifies(rules_, u"N.b > 1"));
  EXPECT_TRUE(Verifies(copy, u"N.b > 1"));
}

TEST_F(Refreshing, KeepsTheLanguageInWhichATemplateWasLoaded) {
  const ScopedLanguage chinese(u"zh-CN");
  EXPECT_TRUE(rules_.Refresh());
  EXPECT_TRUE(Verifies(rules_, u"thisReport.T.a > 1"));
}

TEST_F(Refreshing, ReadsNothingWhereNothingWasLoaded) {
  MxExpression fresh;
  EXPECT_TRUE(fresh.Refresh());
  EXPECT_EQ(fresh.errNumber(), 0);
  fresh.SetCAXDD(1,
                 u"<dd><tabs><t name='T' dispName='T'><flds><f name='a' dispName='a' dt='1'/>"
                 u"</flds></t></tabs></dd>");
  EXPECT_TRUE(fresh.Refresh());
  EXPECT_TRUE(Verifies(fresh, u"thisDoc.T.a > 1"));
}
