// Documents as rules: how each kind of word and of node is written in two languages, and what is
// refused.
#include "TwoLanguages.h"

#include "OrkPlatform.h"
#include "ScopedLocale.h"
#include "SecondsOf.h"
#include "SmallThread.h"
#include "foundation/MessageNumbers.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <vector>

namespace ORKBASE {
namespace {

constexpr MXRULE_DATATYPE kNumber = kNumDataType;
constexpr MXRULE_DATATYPE kText = kStrDataType;
constexpr MXRULE_DATATYPE kDate = kDateDataType;
constexpr MXRULE_DATATYPE kLogic = kLogicDataType;
constexpr MXRULE_DATATYPE kAny = kVarDataType;

struct Row {
  MXRULE_DATATYPE type;
  const char16_t* typed;
  const char16_t* english;
  const char16_t* chinese;
};

// clang-format off
constexpr Row kRows[] = {
    // words
    {kNumber, u"1",                        u"1",                             u"1"},
    {kNumber, u"0x1F+.5",                  u"0x1F + .5",                     u"0x1F + .5"},
    {kNumber, u"INF-nan",                  u"INF - nan",                     u"INF - nan"},
    {kNumber, u"\t5",                      u"\t5",                           u"\t5"},
    {kText,   u"'it''s'",                  u"'it''s'",                       u"'it''s'"},
    {kText,   u"'a and (b , -c'",          u"'a and (b , -c'",               u"'a and (b , -c'"},
    {kText,   u"'two\nlines\t'",           u"'two\nlines\t'",                u"'two\nlines\t'"},
    {kText,   u"'<&\">'",                  u"'<&\">'",                       u"'<&\">'"},
    {kText,   u"''",                       u"''",                            u"''"},
    {kDate,   u"'2020.1.2'",               u"'2020.1.2'",                    u"'2020.1.2'"},
    {kDate,   u"' January 5, 2020 '",      u"' January 5, 2020 '",           u"' January 5, 2020 '"},
    {kNumber, u"orders.AMOUNT",            u"Orders.Amount",                 u"Orders.Amount"},
    {kText,   u"客户.名称",                u"客户.名称",                     u"客户.名称"},
    {kAny,    u"T.RcId",                   u"T.RcId",                        u"T.RcId"},
    {kNumber, u"T.a[zz]",                  u"T.a[zz]",                       u"T.a[zz]"},
    {kText,   u"input.Item[s]",            u"Input.Item[s]",                 u"输入.Item[s]"},
    {kNumber, u"Input.a.b[N]",             u"Input.a.b[N]",                  u"输入.a.b[N]"},
    {kDate,   u"Sms.when[D]",              u"Sms.when[D]",                   u"短信.when[D]"},
    {kText,   u"SYSVAR.username",          u"sysVar.userName",               u"系统变量.用户名"},
    {kText,   u"sysVar.userName[x.y]",     u"sysVar.userName[x.y]",          u"系统变量.用户名[x.y]"},
    {kText,   u"WebApi.Body",              u"WebApi.Body",                   u"WebApi.Body"},
    {kNumber, u"thisReport.Header.Total",  u"thisReport.Header.Total",       u"本报表.Header.Total"},
    {kNumber, u"thisDoc.TitleBlock.Scale", u"thisDoc.TitleBlock.Scale",      u"本文档.TitleBlock.Scale"},
    {kNumber, u"thisDoc.TitleBlock.Length[x]", u"thisDoc.TitleBlock.Length[x]", u"本文档.TitleBlock.Length[x]"},
    {kAny,    u"thisDoc.Other.Field",      u"thisDoc.Other.Field",           u"本文档.Other.Field"},
    {kNumber, u"AutoCADEnum.Unit.inch",    u"AutoCADEnum.Unit.inch",         u"AutoCAD枚举.Unit.inch"},
    // functions, date parts and styles
    {kNumber, u"rand( )",                  u"RAND()",                        u"随机数()"},
    {kNumber, u"ROUND(1.5,0)",             u"ROUND(1.5, 0)",                 u"四舍五入(1.5, 0)"},
    {kDate,   u"dateAdd(DD,30,T.d)",       u"dateAdd(dd, 30, T.d)",          u"日期加减(dd, 30, T.d)"},
    {kText,   u"ToText(T.d,'YYYY-mm-dd')", u"ToText(T.d, 'yyyy-mm-dd')",     u"转文本(T.d, 'yyyy-mm-dd')"},
    {kNumber, u"switch(T.a=1,2,T.a=2,3,4)", u"switch(T.a = 1, 2, T.a = 2, 3, 4)", u"分支(T.a = 1, 2, T.a = 2, 3, 4)"},
    // operators and brackets
    {kNumber, u"-T.a+1",                   u"-T.a + 1",                      u"-T.a + 1"},
    {kNumber, u"T.a - - - 1",              u"T.a - --1",                     u"T.a - --1"},
    {kNumber, u"T.a*(-(1))",               u"T.a * (-(1))",                  u"T.a * (-(1))"},
    {kNumber, u"((1+2))*3^(4)",            u"(1 + 2) * 3 ^ (4)",             u"(1 + 2) * 3 ^ (4)"},
    {kNumber, u"1+2-3*4/5%6",              u"1 + 2 - 3 * 4 / 5 % 6",         u"1 + 2 - 3 * 4 / 5 % 6"},
    {kText,   u"'a'&(T.s&'b')",            u"'a' & (T.s & 'b')",             u"'a' & (T.s & 'b')"},
    {kLogic,  u"T.a>=1 AND T.b<>2 or T.a<3", u"T.a >= 1 and T.b <> 2 or T.a < 3", u"T.a >= 1 且 T.b <> 2 或 T.a < 3"},
    {kLogic,  u"T.a=1 and(T.b=2 or T.b=3)", u"T.a = 1 and (T.b = 2 or T.b = 3)", u"T.a = 1 且 (T.b = 2 或 T.b = 3)"},
    {kLogic,  u"not(not T.a=1)",           u"not (not T.a = 1)",             u"非 (非 T.a = 1)"},
    {kLogic,  u"T.d null or T.s not_null", u"T.d null or T.s not_null",      u"T.d 为空 或 T.s 不为空"},
    {kLogic,  u"T.a*=T.b",                 u"T.a *= T.b",                    u"T.a *= T.b"},
    {kLogic,  u"T.s like 'A%'",            u"T.s like 'A%'",                 u"T.s 类似 'A%'"},
    {kLogic,  u"T.s not_in thisSet('a','b')", u"T.s not_in thisSet('a', 'b')", u"T.s 不属于 记录集('a', 'b')"},
    {kLogic,  u"T.d between thisMonth(2024,-1)", u"T.d between thisMonth(2024, -1)", u"T.d 介于 本月(2024, -1)"},
};
// clang-format on

const TempDatabase& Tables() {
  static const TempDatabase database(SourceText("examples/shop.sql") +
                                     SourceText("tests/golden/golden.sql"));
  return database;
}

void LoadAll(MxExpression& engine) {
  engine.SetRt(u"7");
  engine.SetDts(u"Orders,T");
  engine.SetCAXDD(1, U16(SourceText("tests/golden/cax.xml")));
}

/// Dates are read in one locale; `written` is what `Write` gave, or its error between bars.
class Writer : public testing::Test {
 protected:
  std::u16string Write(std::u16string_view tag, const std::u16string& document) {
    RuleAuthoring& authoring = authoring_;
    authoring.set_language(std::u16string(tag));
    std::u16string rule = u"as it was";
    if (authoring.Write(document, rule)) return rule;
    EXPECT_EQ(U8(rule), "");
    return u"|" + authoring.errDescription() + u"|";
  }
  /// The message of the last error.
  std::int32_t Message() const { return authoring_.errRecord().message; }

  ScopedLocale locale_{"en_US.UTF-8"};
  SpokenEngine english_{u"en", Tables(), LoadAll};
  SpokenEngine chinese_{u"zh-CN", Tables(), LoadAll};
  RuleAuthoring authoring_{english_.Engine()};
};

TEST_F(Writer, WritesEachWordAndNodeInTheLanguageOfTheCall) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(U8(row.typed));
    const std::u16string document = english_.Verify(row.type, row.typed);
    EXPECT_FALSE(IsRefused(document)) << U8(document);
    EXPECT_EQ(U8(Write(u"en", document)), U8(row.english));
    EXPECT_EQ(U8(Write(u"zh-CN", document)), U8(row.chinese));
    EXPECT_EQ(U8(WithoutSpelling(english_.Verify(row.type, row.english))),
              U8(WithoutSpelling(document)));
    EXPECT_EQ(U8(WithoutSpelling(chinese_.Verify(row.type, row.chinese))),
              U8(WithoutSpelling(document)));
  }
}

TEST_F(Writer, WritesTheDocumentsOfAnotherLanguage) {
  for (const Row& row : kRows) {
    const std::u16string document = chinese_.Verify(row.type, row.chinese);
    EXPECT_EQ(U8(Write(u"en", document)), U8(row.english));
    EXPECT_EQ(U8(Write(u"zh-CN", document)), U8(row.chinese));
  }
}

TEST_F(Writer, WithoutALanguageTakesTheWordsOfTheEngine) {
  const std::u16string document = english_.Verify(kLogic, u"T.a null");
  RuleAuthoring ofChinese(chinese_.Engine());
  std::u16string rule;
  EXPECT_TRUE(ofChinese.Write(document, rule));
  EXPECT_EQ(U8(rule), "T.a 为空");
}

/// Rules of examples/rules.txt: the words of the language, nothing else changed.
TEST_F(Writer, WritesTheSampleRulesInChinese) {
  // clang-format off
  const std::map<std::string, MXRULE_DATATYPE> kTypes = {
      {"number", kNumber}, {"text", kText}, {"date", kDate}, {"logic", kLogic}};
  const std::vector<std::string> kChinese = {
      "Orders.Amount > 1000 且 Orders.State <> 9",
      "Orders.Qty * Orders.Price * (1 - Orders.Discount / 100)",
      "分支(Orders.State = 1, Orders.Amount, Orders.State = 2, Orders.Amount / 2, 0)",
      "Customer.Name & ', ' & 转大写(Customer.City)",
      "转文本(Orders.OrderDate, 'yyyy-mm-dd')",
      "日期加减(dd, 30, Orders.OrderDate)",
      "时间间隔(dd, Orders.OrderDate, Orders.ShipDate)",
      "Orders.OrderDate 介于 本月(2024, 5)",
      "Customer.City 属于 记录集('Oslo', 'Lima') 且 非 Customer.Code 类似 'A%'",
      "Orders.ShipDate 为空 或 Orders.ShipDate > 系统变量.当前日期",
      "T.a > 1 且 求和(T.b) > 2",
      "Stock.Count < 5 且 Stock.Item <> 输入.item[S]",
  };
  // clang-format on
  std::istringstream lines(SourceText("examples/rules.txt"));
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t blank = line.find(' ');
    const MXRULE_DATATYPE type = kTypes.at(line.substr(0, blank));
    const std::u16string rule = U16(line.substr(line.find_first_not_of(' ', blank)));
    const std::u16string document = english_.Verify(type, rule);
    const std::u16string written = Write(u"zh-CN", document);
    ASSERT_LT(count, kChinese.size());
    EXPECT_EQ(U8(written), kChinese[count++]);
    EXPECT_EQ(U8(WithoutSpelling(chinese_.Verify(type, written))), U8(WithoutSpelling(document)));
    EXPECT_EQ(U8(Write(u"en", document)), U8(rule));  // they are spaced as rules are written
  }
  EXPECT_EQ(count, kChinese.size());
}

// --- what is loaded, and modes -------------------------------------------------------------------

TEST_F(Writer, LoadsTheTablesThatADocumentNames) {
  SpokenEngine other(u"en", Tables(), LoadAll);
  const std::u16string document = other.Verify(kLogic, u"Customer.City = 客户.城市");
  EXPECT_EQ(U8(Write(u"zh-CN", document)), "Customer.City = 客户.城市");
  // The engine has them no more than before: in the first document the field comes whole.
  EXPECT_NE(english_.Verify(kAny, u"Customer.City").find(u"content=\"\""), std::u16string::npos);
}

TEST_F(Writer, WritesAKeyColumnThatWasReadBeforeItsTable) {
  // Table K lists its column RCID as a number. A rule that is read before the table is loaded does
  // not know that, one that is read later does; both are rules of this text.
  const std::u16string rule = u"K.rcid = 1 and K.LumentaRCID = '1'";
  const std::u16string first = english_.Verify(kLogic, rule);
  const std::u16string second = english_.Verify(kLogic, rule);
  EXPECT_NE(WithoutSpelling(first), WithoutSpelling(second));
  EXPECT_EQ(U8(Write(u"en", first)), U8(rule));
  EXPECT_EQ(U8(Write(u"en", second)), "K.RCID = 1 and K.LumentaRCID = '1'");
  EXPECT_EQ(U8(Write(u"en", first)), U8(rule));
  // Formatting keeps both documents.
  EXPECT_EQ(U8(authoring_.Format(u"K.rcid=1", 0)), "K.rcid = 1");
  // A field that is no key column has its type from the beginning.
  EXPECT_EQ(U8(Write(u"en", u"<tag primary='T.a' symbol='4' dataType='5'/>")),
            "|No rule gives this document.|");
}

TEST_F(Writer, KeepsTheWordBeforeFieldsOfTheRecordWhereItIsTakenOff) {
  SpokenEngine english(u"en", Tables(), LoadAll);
  SpokenEngine chinese(u"zh-CN", Tables(), LoadAll);
  english.Engine().set_thiscaseVarOn1RcId(false);
  chinese.Engine().set_thiscaseVarOn1RcId(false);
  RuleAuthoring authoring(english.Engine());
  // clang-format off
  constexpr struct { const char16_t* typed; const char16_t* english; const char16_t* chinese; } kModeRows[] = {
      // taken off, so a variable or a data field is left, which needs no word before it
      {u"thisReport.sysVar.RepState", u"sysVar.RepState", u"系统变量.报表状态"},
      {u"thisReport.T.a",             u"T.a",             u"T.a"},
      // taken off once, a form field is left
      {u"thisReport.thisReport.Header.Total", u"thisReport.thisReport.Header.Total", u"本报表.本报表.Header.Total"},
  };
  // clang-format on
  for (const auto& row : kModeRows) {
    const std::u16string document = english.Verify(kNumber, row.typed);
    for (SpokenEngine* engine : {&english, &chinese}) {
      authoring.set_language(engine->Tag());
      std::u16string rule;
      EXPECT_TRUE(authoring.Write(document, rule)) << U8(authoring.errDescription());
      EXPECT_EQ(U8(rule), U8(engine == &english ? row.english : row.chinese));
      EXPECT_EQ(U8(WithoutSpelling(engine->Verify(kNumber, rule))), U8(WithoutSpelling(document)));
    }
  }
}

TEST_F(Writer, ReadsDatesInTheLocaleOfTheMoment) {
  const std::u16string document = english_.Verify(kDate, u"'5. M\u00E4rz 2020'");
  EXPECT_TRUE(IsRefused(document));  // no date in this locale, and so not in the next
  std::u16string german;
  {
    const ScopedLocale locale("de_DE.UTF-8");
    german = english_.Verify(kDate, u"'5. M\u00E4rz 2020'");
    EXPECT_FALSE(IsRefused(german)) << U8(german);
    EXPECT_EQ(U8(Write(u"en", german)), "'5. M\xC3\xA4rz 2020'");
  }
  EXPECT_EQ(U8(Write(u"en", german)), "|No rule gives this document.|");
}

// --- refusals ------------------------------------------------------------------------------------

struct RefusedRow {
  const char16_t* document;
  MessageNumber message;
  const char* text;
};

constexpr const char* kNoRule = "|No rule gives this document.|";

// clang-format off
/// `Write` in English of documents that `Verify` does not give.
constexpr RefusedRow kRefused[] = {
    {u"",                 kMsgNoRuleGivesThis, kNoRule},
    {u"no XML",           kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='1'", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag/>",           kMsgNoRuleGivesThis, kNoRule},
    {u"<other primary='1' outDesc='1' symbol='0' dataType='1' content='1'/>", kMsgNoRuleGivesThis, kNoRule},
    // attributes that no rule gives, and missing ones
    {u"<tag primary='1' outDesc='1' symbol='0' dataType='1' content='1' text='1'/>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='1' outDesc='1' symbol='0' dataType='01' content='1'/>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='1' outDesc='1' symbol='0' dataType='1' content='1' inBrackets='0'/>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='1' outDesc='1' dataType='1' content='1'/>", kMsgNoRuleGivesThis, kNoRule},
    // constants that no token can be
    {u"<tag primary='-1' symbol='0' dataType='1'/>",  kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary=' 1' symbol='0' dataType='1'/>",  kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='abc' symbol='0' dataType='2'/>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary=\"'a'b'\" symbol='0' dataType='2'/>", kMsgNoRuleGivesThis, kNoRule},
    // what no table and no dictionary has
    {u"<tag primary='T.zzz' symbol='4' dataType='1'/>",   kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='Zzz.a' symbol='4' dataType='1'/>",   kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='T.a' symbol='4' dataType='2'/>",     kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='t.a' symbol='4' dataType='1'/>",     kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='Input.x' symbol='8' dataType='1'/>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='T.a' symbol='4' dataType='1'><tag primary='1' symbol='0' dataType='1'/></tag>", kMsgNoRuleGivesThis, kNoRule},
    // operands too few, too many
    {u"<tag primary='+' symbol='16' dataType='1' semanticType='0'/>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='+' symbol='16' dataType='1' semanticType='0'><tag primary='1' symbol='0' dataType='1'/><tag primary='1' symbol='0' dataType='1'/><tag primary='1' symbol='0' dataType='1'/></tag>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='-' symbol='16' dataType='1' semanticType='2'/>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='-' symbol='16' dataType='1' semanticType='2'><tag primary='1' symbol='0' dataType='1'/><tag primary='1' symbol='0' dataType='1'/></tag>", kMsgNoRuleGivesThis, kNoRule},
    {u"<tag primary='null' symbol='26' dataType='5' semanticType='3'/>", kMsgNoRuleGivesThis, kNoRule},
    // a product over a sum without brackets
    {u"<tag primary='*' outDesc='' symbol='17' dataType='1' content='' semanticType='0'><tag primary='+' outDesc='' symbol='16' dataType='1' content='' semanticType='0'><tag primary='1' outDesc='' symbol='0' dataType='1' content=''/><tag primary='2' outDesc='' symbol='0' dataType='1' content=''/></tag><tag primary='3' outDesc='' symbol='0' dataType='1' content=''/></tag>", kMsgNoRuleGivesThis, kNoRule},
    // characters
    {u"<tag primary=\"'a\x01z'\" symbol='0' dataType='2'/>",  kMsgControlCharacter, "|The text 'a\x01z' holds a control character, which a rule cannot hold.|"},
    {u"<tag primary=\"'a&#x1b;'\" symbol='0' dataType='2'/>", kMsgControlCharacter, "|The text 'a&#x1b;' holds a control character, which a rule cannot hold.|"},
    {u"<tag primary=\"'a&#0;'\" symbol='0' dataType='2'/>",   kMsgControlCharacter, "|The text 'a&#0;' holds a control character, which a rule cannot hold.|"},
    {u"<tag primary=\"'a&#xD83D;'\" symbol='0' dataType='2'/>", kMsgHalfCharacter, "|The text 'a&#xD83D;' holds one half of a character, which a rule cannot hold.|"},
    {u"<tag primary=\"'a&#55357;'\" symbol='0' dataType='2'/>", kMsgHalfCharacter, "|The text 'a&#55357;' holds one half of a character, which a rule cannot hold.|"},
    {u"<tag primary=\"'a&#99999999999;'\" symbol='0' dataType='2'/>", kMsgNoRuleGivesThis, kNoRule},
    // names that are words
    {u"<tag primary='sysVar.userName' symbol='4' dataType='2'/>", kMsgNameIsWord, "|The name \"sysVar.userName\" is a word of this language, so a rule cannot use it as a name.|"},
    {u"<tag primary=\"'yyyymmdd'\" symbol='0' dataType='2'/>", kMsgNameIsWord, "|The name \"'yyyymmdd'\" is a word of this language, so a rule cannot use it as a name.|"},
    // words of CAD documents that are not loaded
    {u"<tag primary='thisDoc.Title.Sheet' symbol='9' dataType='1'/>", kMsgCadWordNotLoaded, "|The word \"thisDoc.Title.Sheet\" is one of a CAD document that is not loaded.|"},
    {u"<tag primary='ProEEnum.Unit.mm' symbol='29' dataType='1'/>", kMsgCadWordNotLoaded, "|The word \"ProEEnum.Unit.mm\" is one of a CAD document that is not loaded.|"},
};
// clang-format on

TEST_F(Writer, RefusesWhatNoRuleGives) {
  for (const RefusedRow& row : kRefused) {
    SCOPED_TRACE(U8(row.document));
    EXPECT_EQ(U8(Write(u"en", row.document)), row.text);
    EXPECT_EQ(Message(), row.message);
    EXPECT_EQ(authoring_.errRecord().cause, kDocumentCause);
  }
}

TEST_F(Writer, NeedsNoneOfTheAttributesThatTellTheSpelling) {
  EXPECT_EQ(U8(Write(u"zh-CN",
                     u"<tag primary='-' symbol='16' dataType='1' semanticType='2'>"
                     u"<tag dataType='1' symbol='0' primary='1'/><!-- one --></tag>")),
            "-1");
}

TEST_F(Writer, RefusesALoneSurrogateButWritesWhatItBecomesInADocument) {
  const std::u16string rule = u"'a\xD83D'";
  EXPECT_EQ(U8(Write(u"en", u"<tag primary=\"" + rule + u"\" symbol='0' dataType='2'/>")),
            "|The text 'a\xEF\xBF\xBD' holds one half of a character, which a rule cannot hold.|");
  EXPECT_EQ(Message(), kMsgHalfCharacter);
  EXPECT_EQ(U8(Write(u"en", english_.Verify(kText, rule))), "'a\xEF\xBF\xBD'");
  EXPECT_EQ(U8(Write(u"en", english_.Verify(kText, u"'a\U0001F600'"))), "'a\xF0\x9F\x98\x80'");
}

TEST_F(Writer, RefusesTheDocumentsOfRulesWithControlCharacters) {
  EXPECT_EQ(U8(Write(u"en", english_.Verify(kText, u"'a\x02'"))),
            "|The text 'a\x02' holds a control character, which a rule cannot hold.|");
  // The zero ends the text in the document.
  const std::u16string rule(u"'a\0b'", 5);
  EXPECT_EQ(U8(Write(u"en", english_.Verify(kText, rule))),
            "|The text 'a holds a control character, which a rule cannot hold.|");
}

TEST_F(Writer, ShowsOfALongTextWhatIsAroundTheCharacter) {
  const std::u16string half(100, u'x');
  EXPECT_EQ(U8(Write(u"en", english_.Verify(kText, u"'" + half + u"\x02" + half + u"'"))),
            "|The text " + std::string(40, 'x') + "\x02" + std::string(39, 'x') +
                " holds a control character, which a rule cannot hold.|");
}

TEST_F(Writer, RefusesANameThatIsAWordOfTheOtherLanguageOnly) {
  // A table named as a word of Chinese, and a field so that both are a variable.
  const TempDatabase odd(SourceText("examples/shop.sql") +
                         "insert into data_tables values (40, '系统变量', 'v', null, 1);"
                         "insert into data_fields values (4001, 40, '用户名', 'u', 2);");
  SpokenEngine english(u"en", odd, {});
  const std::u16string document = english.Verify(kText, u"系统变量.用户名");
  RuleAuthoring authoring(english.Engine());
  std::u16string rule;
  authoring.set_language(u"en");
  EXPECT_TRUE(authoring.Write(document, rule));
  EXPECT_EQ(U8(rule), "系统变量.用户名");
  authoring.set_language(u"zh-CN");
  EXPECT_FALSE(authoring.Write(document, rule));
  EXPECT_EQ(U8(authoring.errDescription()),
            "“系统变量.用户名”是这种语言中的词，规则中不能用作名称。");
}

TEST_F(Writer, TellsWhenTheDatabaseDoesNotAnswer) {
  const std::u16string document = english_.Verify(kText, u"Customer.City");
  const TempDatabase empty("create table t (a)");
  SpokenEngine broken(u"en", empty, {});
  RuleAuthoring authoring(broken.Engine());
  std::u16string rule;
  EXPECT_FALSE(authoring.Write(document, rule));
  EXPECT_EQ(authoring.errRecord().cause, kDatabaseCause);
  EXPECT_EQ(authoring.errRecord().offset, -1);
  EXPECT_NE(U8(authoring.errDescription()).find("mx_v_datafield"), std::string::npos)
      << U8(authoring.errDescription());
}

TEST_F(Writer, RefusesATranslatedDocument) {
  MxExpression engine(english_.Engine());
  const std::u16string document = english_.Verify(kNumber, u"T.a + 1");
  std::u16string translated;
  std::u16string a;
  std::u16string b;
  ASSERT_TRUE(engine.GetSpec(document, kSqlServerDs, translated, a, b, false));
  EXPECT_EQ(U8(Write(u"en", translated)), kNoRule);
}

// --- size ----------------------------------------------------------------------------------------

/// `left` as often as asked, the middle, `right` as often.
std::u16string Nested(int count, std::u16string_view left, std::u16string_view middle,
                      std::u16string_view right) {
  std::u16string text;
  for (int i = 0; i < count; ++i) text += left;
  text += middle;
  for (int i = 0; i < count; ++i) text += right;
  return text;
}

TEST_F(Writer, WritesDeepDocumentsOnASmallThread) {
  const std::u16string chain = Nested(10'000, u"", u"T.a = 1", u" or T.b <> 2");
  const std::u16string brackets = Nested(500, u"ROUND(", u"-1", u", 0)");
  const std::u16string chainDocument = english_.Verify(kLogic, chain);
  const std::u16string bracketsDocument = english_.Verify(kNumber, brackets);
  std::u16string written[2];
  OnSmallThread([&] {
    written[0] = Write(u"en", chainDocument);
    written[1] = Write(u"en", bracketsDocument);
  });
  EXPECT_EQ(written[0], chain);
  EXPECT_EQ(written[1], brackets);
}

TEST_F(Writer, RefusesWhatIsNestedBeyondTheLimitOfRules) {
  const std::u16string deep =
      Nested(10'000,
             u"<tag primary='-' outDesc='-' symbol='16' dataType='1' content='-' semanticType='2'>",
             u"<tag primary='1' outDesc='1' symbol='0' dataType='1' content='1'/>", u"</tag>");
  EXPECT_EQ(U8(Write(u"en", deep)), kNoRule);
  ASSERT_EQ(authoring_.errRecord().behind.size(), 1u);
  EXPECT_EQ(authoring_.errRecord().behind[0].message, kMsgTooDeep);
}

TEST_F(Writer, TakesTimeInProportionToTheDocument) {
  const std::u16string wide = u"thisSet('" + std::u16string(1'000'000, u'x') + u"'" +
                              Nested(20'000, u"", u"", u", 12345") + u")";
  const std::u16string rule = u"T.s in " + wide;
  const std::u16string document = english_.Verify(kLogic, rule);
  std::u16string written;
  EXPECT_LT(SecondsOf([&] { written = Write(u"en", document); }), 20);
  EXPECT_EQ(written, rule);
  // A name of nothing but brackets is no word, however many there are.
  const std::u16string hostile =
      u"<tag primary=\"" + std::u16string(500'000, u'[') + u"\" symbol='4' dataType='1'/>";
  EXPECT_LT(SecondsOf([&] { written = Write(u"en", hostile); }), 20);
  EXPECT_EQ(U8(written), kNoRule);
}

}  // namespace
}  // namespace ORKBASE
