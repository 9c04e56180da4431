// The facade: construction, connecting, modes, verification and its errors.
#include "MxExpression.h"

#include "OrkPlatform.h"

#include "SampleDatabase.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>

using namespace ORKBASE;

namespace {

class Expression : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }
};

std::string Error(const MxExpression& rules) {
  return std::to_string(rules.errNumber()) + " " + U8(rules.errDescription());
}

/// The document, or the error.
std::string Verified(MxExpression& rules, const std::u16string& rule,
                     MXRULE_DATATYPE type = kLogicDataType) {
  std::u16string document = u"former text";
  if (rules.Verify(type, rule, document)) {
    EXPECT_EQ(rules.errNumber(), 0);
    EXPECT_EQ(U8(rules.errDescription()), "");
    return U8(document);
  }
  EXPECT_EQ(U8(document), "former text");
  return Error(rules);
}

/// The SQL in one text, or the error.
std::string Sql(MxExpression& rules, const std::u16string& rule,
                MXRULE_DATATYPE type = kLogicDataType) {
  std::u16string document, translated, a, b = u"untouched";
  if (!rules.Verify(type, rule, document)) return Error(rules);
  const bool done = rules.GetSpec(document, kSqlServerDs, translated, a, b, false);
  EXPECT_EQ(U8(b), "untouched");
  return done ? U8(a) : Error(rules);
}

constexpr const char* kUnknownT = "-1 The word \"T.a\" is unknown.";

}  // namespace

// --- construction and connecting -----------------------------------------------------------------

TEST_F(Expression, NeedsNoDatabaseToBeMade) {
  MxExpression rules;
  EXPECT_EQ(Error(rules), "0 ");
  EXPECT_NE(U8(rules.GetDict_funcs()), "");
  EXPECT_NE(U8(rules.GetDict_operators()), "");
  EXPECT_NE(U8(rules.GetDict_sysVar()), "");
  EXPECT_EQ(Sql(rules, u"1 + 2 > 2"), "1 + 2 > 2");
}

TEST_F(Expression, HasModesWithInitialValues) {
  MxExpression rules;
  EXPECT_EQ(rules.get_formDataIn(), 0);
  EXPECT_TRUE(rules.get_useIsNull());
  EXPECT_EQ(U8(rules.get_rtId()), "");
  EXPECT_TRUE(rules.get_thiscaseVarOn1RcId());
  rules.set_formDataIn(7);
  rules.set_useIsNull(false);
  rules.set_rtId(u"a.b");
  rules.set_thiscaseVarOn1RcId(false);
  EXPECT_EQ(rules.get_formDataIn(), 7);
  EXPECT_FALSE(rules.get_useIsNull());
  EXPECT_EQ(U8(rules.get_rtId()), "a.b");
  EXPECT_FALSE(rules.get_thiscaseVarOn1RcId());
}

TEST_F(Expression, SettersOfDictionariesAlwaysReturnFalse) {
  SampleExpression rules;
  EXPECT_FALSE(rules.SetRt(u"7"));
  EXPECT_EQ(Error(rules), "0 ");
  EXPECT_EQ(U8(rules.get_rtId()), "7");
  EXPECT_FALSE(rules.SetDts(u"T,Orders"));
  EXPECT_EQ(Error(rules), "0 ");
  EXPECT_FALSE(rules.SetDts(u""));
  EXPECT_EQ(Error(rules), "0 ");
  EXPECT_FALSE(rules.SetDts(u"NoSuch"));
  EXPECT_EQ(Error(rules), "-1 The data table \"NoSuch\" does not exist or has no fields.");
  EXPECT_FALSE(rules.SetRt(u"8"));
  EXPECT_EQ(Error(rules), "-1 The report template 8 does not exist or has no fields.");
  EXPECT_EQ(U8(rules.get_rtId()), "8");  // kept although the load failed
  EXPECT_FALSE(rules.SetDts(u"T"));
  EXPECT_EQ(Error(rules), "0 ");
}

TEST_F(Expression, TemplateHidesTheErrorOfOneOfItsTables) {
  const TempDatabase database(
      "create table mx_v_datafield (dtName, fldName, fldRealName, baseType, dtId, fldId,"
      " tabRealName, tabRefName, state);"
      "create table mx_v_rtfs (rttId, rtfId, fldName, realName, baseType, fldId);"
      "create table Mx_v_Rtts (rttId, rtId, dtName, dtId, realName, refName, style, state);"
      "insert into Mx_v_Rtts values (1, 7, 'Gone', 1, 'Gone', '', 1, 1);"
      "insert into mx_v_rtfs values (1, 1, 'a', 'a', 1, 1);");
  MxExpression rules;
  ConnectTo(rules, database);
  rules.SetRt(u"7");
  EXPECT_EQ(Error(rules), "0 ");
  EXPECT_NE(Verified(rules, u"thisReport.Gone.a > 1").find("symbol=\"13\""), std::string::npos);
  EXPECT_EQ(Verified(rules, u"Gone.a > 1"), "-1 The word \"Gone.a\" is unknown.");
}

TEST_F(Expression, ConnectReportsNothingAndLeavesTheErrorAlone) {
  MxExpression rules;
  EXPECT_EQ(Verified(rules, u"nosuch"), "-1 The word \"nosuch\" is unknown.");
  rules.Connect(u"sqlite:/nosuch/file.db", 0, u"", u"", u"", kSqlServerDs, false, false, u"");
  EXPECT_EQ(Error(rules), "-1 The word \"nosuch\" is unknown.");
  rules.SetDts(u"T");
  EXPECT_NE(rules.errNumber(), 0);  // it shows at the first use
  EXPECT_NE(U8(rules.errDescription()), "");
  EXPECT_EQ(Verified(rules, u"T.a > 1"), kUnknownT);
  ConnectTo(rules, SampleDatabase());
  rules.SetDts(u"T");
  EXPECT_EQ(Error(rules), "0 ");
}

TEST_F(Expression, ProxyOfTypeZeroIsNone) {
  const auto load = [](const std::u16string& proxy) {
    MxExpression rules;
    rules.Connect(SampleDatabase().Server(), 0, proxy, u"", u"", kSqlServerDs, false, true, u"");
    rules.SetDts(u"T");
    return rules.errNumber();
  };
  EXPECT_EQ(load(u""), 0);
  EXPECT_EQ(load(u"0"), 0);
  EXPECT_EQ(load(u"0||~~||"), 0);
  EXPECT_EQ(load(u"0||~~||host||~~||8080||~~||user||~~||word"), 0);
  EXPECT_NE(load(u"1||~~||host||~~||8080||~~||user||~~||word"), 0);  // a file has no proxy
  EXPECT_NE(load(u"1"), 0);                                          // missing fields are empty
  EXPECT_NE(load(u"2||~~||host||~~||"), 0);
}

TEST_F(Expression, EveryCallInTheWrongOrderIsAnswered) {
  const std::string noConnection = "-1 " + U8(MessageText(6700));
  MxExpression rules;
  std::u16string text = u"T.a > 1", out, a, b;
  EXPECT_EQ(rules.Compose(u"", out), 0);
  EXPECT_EQ(U8(out), "");
  EXPECT_EQ(rules.Compose(u"", a, b), 0);
  EXPECT_EQ(U8(a + b), "");
  EXPECT_FALSE(rules.GetSpec(u"", kSqlServerDs, out, a, b, true));
  EXPECT_EQ(rules.errNumber(), -1);
  rules.SetRt(u"7");
  EXPECT_EQ(Error(rules), noConnection);
  rules.SetDts(u"T");
  EXPECT_EQ(Error(rules), noConnection);
  EXPECT_EQ(Verified(rules, u"T.a > 1"), kUnknownT);
  rules.RemoveDt(text, u"T", kLogicDataType);
  EXPECT_EQ(U8(text), "T.a > 1");
  EXPECT_EQ(Error(rules), kUnknownT);
  EXPECT_TRUE(rules.IsDtsInExp(u"T", text));
  EXPECT_EQ(rules.ReplaceDtOrDfNames(u"T:U", u"T.a:b"), 0);
  EXPECT_EQ(U8(rules.ChangeExpWithNewDtDfNames(u"T:U", u"", text)), "U.a > 1");
  // the translator of the failed translation was made before the template was set
  EXPECT_EQ(U8(rules.GetSysTabName(kFormFieldSymbol, u"")), "t__thisCaseVar");
  rules.AddIsNull(kNumDataType, text);
  EXPECT_EQ(U8(text), "isnull(T.a > 1,0)");
  rules.SetCAXDD(1, u"");
  EXPECT_EQ(rules.errNumber(), 1);
}

// --- verification --------------------------------------------------------------------------------

TEST_F(Expression, WritesTheDocumentOfARule) {
  SampleExpression rules;
  rules.SetDts(u"T");
  EXPECT_EQ(
      Verified(rules, u"T.A + 1 > 2"),
      "<tag primary=\"&gt;\" outDesc=\"&gt;\" symbol=\"19\" dataType=\"5\" content=\"&gt;\""
      " semanticType=\"0\">\n"
      "  <tag primary=\"+\" outDesc=\"+\" symbol=\"16\" dataType=\"1\" content=\"+\""
      " semanticType=\"0\">\n"
      "    <tag primary=\"T.a\" outDesc=\"T.a\" symbol=\"4\" dataType=\"1\" content=\"T.A\"/>\n"
      "    <tag primary=\"1\" outDesc=\"1\" symbol=\"0\" dataType=\"1\" content=\"1\"/>\n"
      "  </tag>\n"
      "  <tag primary=\"2\" outDesc=\"2\" symbol=\"0\" dataType=\"1\" content=\"2\"/>\n"
      "</tag>");
  EXPECT_EQ(Verified(rules, u"SUM(T.a)", kNumDataType),
            "<tag primary=\"sum\" outDesc=\"sum\" symbol=\"27\" dataType=\"1\" content=\"SUM\""
            " semanticType=\"1\">\n"
            "  <tag primary=\"T.a\" outDesc=\"T.a\" symbol=\"4\" dataType=\"1\" content=\"T.a\"/>\n"
            "</tag>");
}

TEST_F(Expression, OneWordIsADocumentWithoutChildren) {
  MxExpression rules;
  EXPECT_EQ(Verified(rules, u" 'it''s' ", kStrDataType),
            "<tag primary=\"'it''s'\" outDesc=\"'it''s'\" symbol=\"0\" dataType=\"2\""
            " content=\"'it''s'\"/>");
  EXPECT_EQ(Verified(rules, u"Input.name[s]", kStrDataType),
            "<tag primary=\"Input.name[s]\" outDesc=\"Input.\" symbol=\"8\" dataType=\"2\""
            " content=\"Input.name[s]\"/>");
  EXPECT_EQ(Verified(rules, u"rand()", kNumDataType),
            "<tag primary=\"RAND\" outDesc=\"RAND\" symbol=\"27\" dataType=\"1\" content=\"rand\""
            " semanticType=\"1\"/>");
}

TEST_F(Expression, BlanksAroundADateStayInTheConstant) {
  MxExpression rules;
  EXPECT_EQ(Verified(rules, u"' 2020-01-02 '", kDateDataType),
            "<tag primary=\"' 2020-01-02 '\" outDesc=\"' 2020-01-02 '\" symbol=\"0\""
            " dataType=\"3\" content=\"' 2020-01-02 '\"/>");
  EXPECT_EQ(Sql(rules, u"year(' 2020-01-02 ') > 1"), "year(' 2020-01-02 ') > 1");
}

TEST_F(Expression, SeveralBracketsAreOneMark) {
  MxExpression rules;
  const std::string once = Verified(rules, u"(1 + 2) > 2");
  EXPECT_NE(once.find("inBrackets=\"1\""), std::string::npos);
  EXPECT_EQ(Verified(rules, u"(((1 + 2))) > 2"), once);
}

TEST_F(Expression, DocumentIsAsciiWhateverTheRuleHolds) {
  SampleExpression rules;
  const std::string document = Verified(rules, u"客户.名称 = '客'");
  EXPECT_NE(document.find("primary=\"&#x5BA2;&#x6237;.&#x540D;&#x79F0;\""), std::string::npos);
  for (const char c : document) ASSERT_GT(c, 0);
}

TEST_F(Expression, TypesTwoAndEightAcceptAValueOfAnyType) {
  SampleExpression rules;
  rules.SetDts(u"T,Orders");
  for (const char16_t* rule :
       {u"'a'", u"1 + 2", u"T.d", u"T.s & 'x'", u"Orders.Memo", u"Orders.Photo", u"Orders.File",
        u"'2020-1-2'", u"sum(", u"nosuch", u""}) {
    const std::string two = Verified(rules, rule, kStrDataType);
    EXPECT_EQ(Verified(rules, rule, kMemoDataType), two) << U8(rule);
    EXPECT_EQ(Verified(rules, rule, kVarDataType), two) << U8(rule);
  }
  EXPECT_EQ(Verified(rules, u"1 + 2", kStrDataType).substr(0, 4), "<tag");
}

TEST_F(Expression, TypesThatNoRuleCanHaveAreRefused) {
  MxExpression rules;
  EXPECT_EQ(Verified(rules, u"1", kNoDataType),
            "-1 A rule cannot have this result type: no value.");
  EXPECT_EQ(Verified(rules, u"1", static_cast<MXRULE_DATATYPE>(9)),
            "-1 A rule cannot have this result type: reserved type 9.");
  EXPECT_EQ(Verified(rules, u"1", static_cast<MXRULE_DATATYPE>(99)),
            "-1 A rule cannot have this result type: unknown type.");
  EXPECT_EQ(RefusedToken(rules), -1);
}

TEST_F(Expression, EmptyRuleIsLeftToTheParser) {
  MxExpression rules;
  for (const char16_t* rule : {u"", u"   ", u"\n"}) {
    for (const MXRULE_DATATYPE type : {kNumDataType, kStrDataType, kLogicDataType, kPicDataType}) {
      EXPECT_EQ(Verified(rules, rule, type),
                "-1 The rule ends too early, something is missing at its end.");
      EXPECT_EQ(RefusedToken(rules), -1);
    }
  }
}

TEST_F(Expression, ReportsTheFirstBadWordOnly) {
  MxExpression rules;
  EXPECT_EQ(Verified(rules, u"1 + bad > worse"), "-1 The word \"bad\" is unknown.");
  EXPECT_EQ(Verified(rules, u") bad"), "-1 The word \"bad\" is unknown.");  // words before syntax
}

TEST_F(Expression, TellsWhichTokenItRefused) {
  struct Case {
    std::u16string rule;
    std::int32_t token;
  };
  const Case cases[] = {
      {u"1 > 2", -1},  // refused none
      {u"bad > 2", 0},      {u"1 > bad", 4}, {u"1>bad", 2},          {u"  1 > 'a", 5},
      {u"客户客户 > 1", 0}, {u"1 > 2 3", 6},  // a valid rule, and then more
      {u"1 > 2 )", 6},      {u"1 >", -1},     // ends too early
      {u"1 > > 2", 4},      {u"sum(1", -1},  {u"1 > Input.a[X]", 4}, {u"\n\n1\n>\n'a'b", 6},
  };
  MxExpression rules;
  EXPECT_EQ(RefusedToken(rules), -1);
  for (const Case& c : cases) {
    Verified(rules, c.rule);
    EXPECT_EQ(RefusedToken(rules), c.token) << U8(c.rule);
  }
  Verified(rules, u"1 > 2");
  EXPECT_EQ(RefusedToken(rules), -1);
}

TEST_F(Expression, StaysUsableAfterAFailure) {
  MxExpression rules;
  EXPECT_EQ(Verified(rules, u"1 > bad"), "-1 The word \"bad\" is unknown.");
  EXPECT_EQ(Sql(rules, u"1 > 2"), "1 > 2");
  EXPECT_EQ(Error(rules), "0 ");
}

TEST_F(Expression, FieldThatIsBoundLateHasAnEmptyContentOnce) {
  SampleExpression rules;
  const std::string head =
      "<tag primary=\"T.a\" outDesc=\"T.a\" symbol=\"4\" dataType=\"1\" content=\"";
  EXPECT_NE(Verified(rules, u"T.A > 1").find(head + "\""), std::string::npos);
  EXPECT_NE(Verified(rules, u"T.A > 1").find(head + "T.A\""), std::string::npos);
  // One table, two fields: the words were all recognised before the table was loaded.
  const std::string two = Verified(rules, u"Orders.Amount > Orders.qty");
  EXPECT_NE(two.find("primary=\"Orders.Amount\" outDesc=\"Orders.Amount\" symbol=\"4\""
                     " dataType=\"1\" content=\"\""),
            std::string::npos);
  EXPECT_NE(two.find("primary=\"Orders.Qty\" outDesc=\"Orders.Qty\" symbol=\"4\""
                     " dataType=\"1\" content=\"\""),
            std::string::npos);
}

TEST_F(Expression, PseudoColumnsAreTheSameBeforeAndAfterTheLoad) {
  SampleExpression rules;
  const std::string before = Verified(rules, u"T.RCID = 'x'");
  EXPECT_NE(before.find("<tag primary=\"T.RCID\" outDesc=\"T.RCID\" symbol=\"4\" dataType=\"5\""
                        " content=\"T.RCID\"/>"),
            std::string::npos);
  rules.SetDts(u"T");
  EXPECT_EQ(Verified(rules, u"T.RCID = 'x'"), before);
}

TEST_F(Expression, RecordPrefixModeIsMirroredIntoTheLexer) {
  SampleExpression rules;
  rules.SetDts(u"T");
  EXPECT_EQ(Verified(rules, u"thisReport.T.a > 1"), "-1 The word \"thisReport.T.a\" is unknown.");
  rules.set_thiscaseVarOn1RcId(false);
  EXPECT_NE(Verified(rules, u"thisReport.T.a > 1").find("primary=\"T.a\" outDesc=\"T.a\""),
            std::string::npos);
  rules.set_thiscaseVarOn1RcId(true);
  EXPECT_EQ(Verified(rules, u"thisReport.T.a > 1"), "-1 The word \"thisReport.T.a\" is unknown.");
}

TEST_F(Expression, ChineseWordsGiveTheSameSql) {
  SetThreadLanguage(u"zh-CN");
  SampleExpression rules;
  const std::u16string rule =
      u"T.a > 1 " + MessageText(6306) + u" " + MessageText(6400) + u"(T.b) > 2";
  const std::string chinese = Sql(rules, rule);
  SetThreadLanguage(u"en");
  SampleExpression english;
  EXPECT_EQ(chinese, Sql(english, u"T.a > 1 and sum(T.b) > 2"));
}

// --- translation through the modes
// -----------------------------------------------------------------

TEST_F(Expression, ModesReachTheNextTranslation) {
  SampleExpression rules;
  EXPECT_EQ(Sql(rules, u"T.a > 1"), "isnull([T].a,0) > 1");
  rules.set_useIsNull(false);
  EXPECT_EQ(Sql(rules, u"T.a > 1"), "[T].a > 1");
  rules.set_useIsNull(true);
  EXPECT_EQ(Sql(rules, u"T.a > 1"), "isnull([T].a,0) > 1");
  rules.SetRt(u"7");
  EXPECT_EQ(Sql(rules, u"thisReport.Header.Total > 1"), "isnull(<F1604>,0) > 1");
  rules.set_formDataIn(1);
  EXPECT_EQ(Sql(rules, u"thisReport.Header.Total > 1"), "isnull(t_7_thisCaseVar_71.Total,0) > 1");
  rules.set_rtId(u"9.5");
  EXPECT_EQ(Sql(rules, u"thisReport.Header.Total > 1"), "isnull(t_9_5_thisCaseVar_71.Total,0) > 1");
  rules.set_formDataIn(2);  // no other value is looked at
  EXPECT_EQ(Sql(rules, u"thisReport.Header.Total > 1"), "isnull(<F1604>,0) > 1");
}

TEST_F(Expression, TranslatesADocumentThatItDidNotVerify) {
  SampleExpression maker;
  std::u16string document, translated, a, b;
  ASSERT_TRUE(maker.Verify(kLogicDataType, u"T.a > 1", document));
  SampleExpression loaded;
  loaded.SetDts(u"T");
  EXPECT_TRUE(loaded.GetSpec(document, kSqlServerDs, translated, a, b, false));
  EXPECT_EQ(U8(a), "isnull([T].a,0) > 1");
  MxExpression fresh;  // without the table the names are empty
  EXPECT_TRUE(fresh.GetSpec(document, kSqlServerDs, translated, a, b, false));
  EXPECT_EQ(U8(a), "isnull(.,0) > 1");
}

TEST_F(Expression, FailedTranslationLeavesTheTexts) {
  MxExpression rules;
  const std::string error = "-1 exprParsedXml" + U8(MessageText(6297));
  for (const char16_t* document :
       {u"", u"no document", u"<tag>", u"<tag text='&e;'/>", u"<!-- c -->"}) {
    std::u16string translated = u"t", a = u"a", b = u"b";
    EXPECT_FALSE(rules.GetSpec(document, kSqlServerDs, translated, a, b, true));
    EXPECT_EQ(Error(rules), error);
    EXPECT_EQ(U8(translated + a + b), "tab");
  }
}

TEST_F(Expression, ControlCharacterVerifiesButDoesNotTranslate) {
  MxExpression rules;
  EXPECT_EQ(Sql(rules, u"'a\x1z' = 'b'"), "-1 exprParsedXml" + U8(MessageText(6297)));
  EXPECT_EQ(Sql(rules, u"'a\tz' = 'b'"), "N'a\tz' = N'b'");
}

TEST_F(Expression, TypesOfDatabasesWithoutARowAreTheDefaultDialect) {
  for (const std::int32_t type : {0, 1, 7, -1, 99}) {
    SampleExpression rules(static_cast<ORKDB_DSType_ENUM>(type));
    EXPECT_EQ(Sql(rules, u"T.a > 1 and T.s = 'x'"),
              "isnull([T].a,0) > 1 and isnull([T].s,'') = N'x'")
        << type;
  }
}

TEST_F(Expression, NamesTemporaryTablesAsTheLastTranslatorDoes) {
  MxExpression rules;
  rules.set_rtId(u"a.b");
  std::u16string document, translated, a, b;
  ASSERT_FALSE(rules.Verify(kLogicDataType, u"bad", document));
  EXPECT_EQ(U8(rules.GetSysTabName(kFormFieldSymbol, u"71")), "t_a_b_thisCaseVar_71");
  EXPECT_EQ(Error(rules), "0 ");
  rules.set_rtId(u"c");  // the translator that exists keeps what it was given
  EXPECT_EQ(U8(rules.GetSysTabName(kFormFieldSymbol, u"")), "t_a_b_thisCaseVar");
  EXPECT_EQ(U8(rules.GetSysTabName(kReportFieldSymbol, u"72")), "#t_a_b_repvar_72");
  EXPECT_EQ(U8(rules.GetSysTabName(kCAXFieldSymbol, u"Part")), "#t_CAX_Part");
  EXPECT_EQ(U8(rules.GetSysTabName(kSysvarCaseSymbol, u"")), "t_sysVar_Case");
  EXPECT_EQ(U8(rules.GetSysTabName(kConstantSymbol, u"")), "t_");
  EXPECT_EQ(U8(rules.GetSysTabName(kFunctionSymbol, u"x")), "t__x");
  ASSERT_TRUE(rules.Verify(kLogicDataType, u"1 > 2", document));
  ASSERT_TRUE(rules.GetSpec(document, kSqlServerDs, translated, a, b, false));
  EXPECT_EQ(U8(rules.GetSysTabName(kFormFieldSymbol, u"")), "t_c_thisCaseVar");
}

TEST_F(Expression, AddIsNullWrapsByType) {
  struct Case {
    std::int32_t type;
    std::u16string text;
    std::string wrapped;
  };
  const Case cases[] = {
      {1, u"t.a", "isnull(t.a,0)"},
      {1, u"t.rcid", "isnull(t.rcid,0)"},
      {1, u"", "isnull(,0)"},
      {2, u"t.a", "isnull(t.a,'')"},
      {8, u"t.a", "isnull(t.a,'')"},
      {2, u"t.rcid", "t.rcid"},
      {2, u"t.RCID", "t.RCID"},
      {8, u"[t].LumentaRcId", "[t].LumentaRcId"},
      {2, u".RCID", "isnull(.RCID,'')"},  // not longer than the ending
      {2, u".LumentaRCID", "isnull(.LumentaRCID,'')"},
      {2, u"rcid", "isnull(rcid,'')"},
      {2, u"t.rcids", "isnull(t.rcids,'')"},
      {2, u"t.lumentarn", "isnull(t.lumentarn,'')"},
      {0, u"t.a", "t.a"},
      {3, u"t.a", "t.a"},
      {4, u"t.a", "t.a"},
      {5, u"t.a", "t.a"},
      {6, u"t.a", "t.a"},
      {-1, u"t.a", "t.a"},
  };
  MxExpression rules;
  std::u16string document;
  ASSERT_FALSE(rules.Verify(kLogicDataType, u"bad", document));
  for (const Case& c : cases) {
    std::u16string text = c.text;
    rules.AddIsNull(static_cast<MXRULE_DATATYPE>(c.type), text);
    EXPECT_EQ(U8(text), c.wrapped) << c.type << " " << U8(c.text);
  }
  EXPECT_EQ(rules.errNumber(), -1);  // it leaves the error alone
}

TEST_F(Expression, VocabularyNeverChangesAfterConstruction) {
  SampleExpression rules;
  const auto vocabulary = [](MxExpression& of) {
    return U8(of.GetDict_funcs()) + U8(of.GetDict_operators()) + U8(of.GetDict_sysVar());
  };
  const std::string made = vocabulary(rules);
  MxExpression copy = rules;
  rules.SetRt(u"7");
  rules.SetDts(u"T");
  rules.SetCAXDD(1, U16(SourceText("tests/golden/cax.xml")));
  EXPECT_EQ(Verified(rules, u"Orders.Amount > T.a").substr(0, 4), "<tag");
  rules.ReplaceDtOrDfNames(u"T:sum", u"Orders.Amount:average");
  rules.set_thiscaseVarOn1RcId(false);
  SetThreadLanguage(u"zh-CN");
  EXPECT_EQ(vocabulary(rules), made);
  EXPECT_EQ(vocabulary(copy), made);
  copy = MxExpression();
  EXPECT_NE(vocabulary(copy), made);  // one of the other language
}

TEST_F(Expression, QuotesDoNotSwitchBack) {
  MxExpression rules;
  ConnectTo(rules, SampleDatabase(), kOracleDs);
  ConnectTo(rules, SampleDatabase(), kSqlServerDs);
  rules.SetDts(u"T");
  EXPECT_EQ(rules.ReplaceDtOrDfNames(u"", u"T.a:n"), 0);
  EXPECT_EQ(Sql(rules, u"T.n > 1"), "isnull([T].\"n\",0) > 1");
}
