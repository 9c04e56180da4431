// Rules in regular form: spacing, display forms, line breaks.
#include "ScopedLanguage.h"
#include "TwoLanguages.h"

#include "SecondsOf.h"
#include "authoring/LineBreaks.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

void LoadAll(MxExpression& engine) {
  engine.SetRt(u"7");
  engine.SetDts(u"Orders,T");
  engine.SetCAXDD(1, U16(SourceText("tests/golden/cax.xml")));
}

class Formatter : public testing::Test {
 protected:
  std::string Format(std::u16string_view text, std::int32_t width = 0) {
    const std::u16string formatted = authoring_.Format(std::u16string(text), width);
    EXPECT_EQ(U8(authoring_.Format(formatted, width)), U8(formatted));  // of itself, nothing new
    return U8(formatted);
  }

  SpokenEngine english_{u"en", SampleDatabase(), LoadAll};
  RuleAuthoring authoring_{english_.Engine()};
};

struct Row {
  const char16_t* typed;
  const char* formatted;
};

// clang-format off
constexpr Row kRows[] = {
    {u"", ""},
    {u" \n\r ", ""},
    {u"  1  ", "1"},
    // spacing
    {u"1+2*3",                      "1 + 2 * 3"},
    {u"( 1 +2 )*3",                 "(1 + 2) * 3"},
    {u"T.a>=1and",                  "T.a >= 1and"},
    {u"ROUND (1.5 ,0 )",            "ROUND(1.5, 0)"},
    {u"RAND (  )",                  "RAND()"},
    {u"T.a=1 and(T.b=2)",           "T.a = 1 and (T.b = 2)"},
    {u"not(T.a=1)",                 "not (T.a = 1)"},
    {u"T.a in thisSet( 1,2 )",      "T.a in thisSet(1, 2)"},
    {u"(T.d)null",                  "(T.d) null"},
    // a minus with an operand in front and without
    {u"- 1",                        "-1"},
    {u"1- -  1",                    "1 - -1"},
    {u"1---1",                      "1 - --1"},
    {u"(-1)-1",                     "(-1) - 1"},
    {u"ROUND(-1,-0)",               "ROUND(-1, -0)"},
    {u"T.a=-1 and - 1<T.a",         "T.a = -1 and -1 < T.a"},
    {u"T.a null - 1",               "T.a null - 1"},
    {u"foo-1",                      "foo - 1"},
    {u"+1",                         "+ 1"},
    // tokens neither join nor part
    {u"T.a> =1",                    "T.a > = 1"},
    {u"T.a>=1",                     "T.a >= 1"},
    {u"1* =2",                      "1 * = 2"},
    {u"1*=2",                       "1 *= 2"},
    {u"1= *2",                      "1 = * 2"},
    {u"1==2",                       "1 = = 2"},
    {u"1<>2<  >3",                  "1 <> 2 < > 3"},
    {u"'a' 'b'",                    "'a' 'b'"},
    {u"'a'b 'c'",                   "'a' b 'c'"},
    {u"a'b'c",                      "a'b'c"},
    {u"1e+5",                       "1e + 5"},
    {u"a . b",                      "a . b"},
    {u"-\\-",                       "-\\ -"},
    {u"foo (1)",                    "foo(1)"},
    {u"T.a (1)",                    "T.a (1)"},
    // texts, numbers and unknown words stay as they are
    {u"'a  +b'&  'it''s'",          "'a  +b' & 'it''s'"},
    {u"' unclosed  , (",            "' unclosed  , ("},
    {u"1+'",                        "1 + '"},
    {u"0X1f + 1E5 + INF",           "0X1f + 1E5 + INF"},
    {u"AVG(x.Y)",                   "AVG(x.Y)"},
    {u"\uFF081\uFF0B1\uFF09",       "\xEF\xBC\x88" "1\xEF\xBC\x8B" "1\xEF\xBC\x89"},
    {u"a\t+\u00A0 b",               "a\t + \xC2\xA0 b"},
    // words as the dictionary spells them
    {u"round(ORDERS.amount,0)",     "ROUND(Orders.Amount, 0)"},
    {u"T.a=1 OR NOT T.s LIKE 'A'",  "T.a = 1 or not T.s like 'A'"},
    {u"INPUT.Item[s]&sms.X[S]",     "Input.Item[s] & Sms.X[S]"},
    {u"input.Item",                 "input.Item"},
    {u"TODATE(t.RCID)",             "ToDate(t.RCID)"},
    {u"T.rcid",                     "T.rcid"},
    {u"dateadd(DD,1,T.D)",          "dateAdd(dd, 1, T.d)"},
    {u"totext(T.d,'YYYY-MM-DD')",   "ToText(T.d, 'yyyy-mm-dd')"},
    {u"THISREPORT.header.TOTAL",    "thisReport.Header.Total"},
    {u"thisdoc.titleblock.LENGTH[X]", "thisDoc.TitleBlock.Length[X]"},
    {u"autocadenum.UNIT.Inch",      "AutoCADEnum.Unit.inch"},
    {u"sysvar.USERNAME[Q]",         "sysVar.userName[Q]"},
    // a table that another word of the rule loads, the same name in another case before it
    {u"customer.city=Customer.name", "Customer.City = Customer.Name"},
    {u"stock.item",                 "stock.item"},
};
// clang-format on

TEST_F(Formatter, GivesARuleItsRegularForm) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(U8(row.typed));
    EXPECT_EQ(Format(row.typed), row.formatted);
  }
}

TEST_F(Formatter, TakesTheWordsOfTheLanguage) {
  authoring_.set_language(u"zh-CN");
  EXPECT_EQ(Format(u"T.a=1且非(orders.qty>=四舍五入 (1.5 ,0))"),
            "T.a = 1且非(Orders.Qty >= 四舍五入(1.5, 0))");
  EXPECT_EQ(Format(u"T.a=1 且 非(orders.qty>=四舍五入 (1.5 ,0))"),
            "T.a = 1 且 非 (Orders.Qty >= 四舍五入(1.5, 0))");
  EXPECT_EQ(Format(u"ROUND(1,and)"), "ROUND(1, and)");  // words of no language here
}

TEST_F(Formatter, KeepsAWordThatItsDisplayFormWouldMakeAnother) {
  // Where the word of the record is taken off, it is so in its own spelling only: that of the
  // language of the moment.
  const ScopedLanguage language(u"en");
  english_.Engine().set_thiscaseVarOn1RcId(false);
  EXPECT_EQ(Format(u"THISREPORT.header.total"), "THISREPORT.header.total");
  EXPECT_EQ(Format(u"thisReport.SYSVAR.repstate"), "sysVar.RepState");
}

// --- lines ---------------------------------------------------------------------------------------

struct LineRow {
  std::int32_t width;
  const char16_t* typed;
  const char* formatted;
};

// clang-format off
constexpr LineRow kLineRows[] = {
    {0,   u"T.a=1 and T.b=2", "T.a = 1 and T.b = 2"},
    {-5,  u"T.a=1 and T.b=2", "T.a = 1 and T.b = 2"},
    {19,  u"T.a=1 and T.b=2", "T.a = 1 and T.b = 2"},  // it has 19 units
    {18,  u"T.a=1 and T.b=2", "T.a = 1\nand T.b = 2"},
    {18,  u"T.a=1\nand\nT.b=2", "T.a = 1\nand T.b = 2"},
    {100, u"T.a=1\nand\nT.b=2", "T.a = 1 and T.b = 2"},
    {1,   u"T.a=1 and T.b=2", "T.a = 1\nand T.b = 2"},  // no other place to break
    // each condition of the outermost level
    {24,  u"T.a=1 and T.b=2 or T.a=3 and T.b=4", "T.a = 1\nand T.b = 2\nor T.a = 3\nand T.b = 4"},
    {30,  u"T.a=1 and (T.b=2 or T.a=3) and T.b=4", "T.a = 1\nand (T.b = 2 or T.a = 3)\nand T.b = 4"},
    // within brackets two blanks for each that is open
    {20,  u"T.a=1 and (T.b=2 or T.a=3) and T.b=4", "T.a = 1\nand (T.b = 2\n  or T.a = 3)\nand T.b = 4"},
    {20,  u"((T.a=1 or T.b=2 or T.a=3))", "((T.a = 1\n    or T.b = 2\n    or T.a = 3))"},
    // arguments: as many on a line as fit
    {20,  u"T.a in thisSet(1,2,3,4,5,6,7,8,9,10)", "T.a in thisSet(1, 2,\n  3, 4, 5, 6, 7, 8,\n  9, 10)"},
    {32,  u"switch(T.a=1 and T.b=2,100,T.a=3,200,0)", "switch(T.a = 1 and T.b = 2, 100,\n  T.a = 3, 200, 0)"},
    // an argument that is too long itself begins a line, each of its conditions on one
    {24,  u"switch(T.a=1,100,T.a=2 and T.b=3 or T.a=4,200)", "switch(T.a = 1, 100,\n  T.a = 2\n  and T.b = 3\n  or T.a = 4, 200)"},
    // what hangs behind the bracket counts
    {22,  u"ROUND(T.a,2)*100000>T.b", "ROUND(T.a,\n  2) * 100000 > T.b"},
    {28,  u"ROUND(T.a,2)*100000>T.b", "ROUND(T.a, 2) * 100000 > T.b"},
    // brackets without partners
    {10,  u"ROUND(T.a,T.b,T.a", "ROUND(T.a,\n  T.b, T.a"},
    {10,  u"T.a,T.b) and T.a) or T.b", "T.a,\nT.b)\nand T.a)\nor T.b"},
};
// clang-format on

TEST_F(Formatter, BreaksLinesThatAreTooLong) {
  for (const LineRow& row : kLineRows) {
    SCOPED_TRACE(U8(row.typed) + " " + std::to_string(row.width));
    EXPECT_EQ(Format(row.typed, row.width), row.formatted);
  }
}

TEST_F(Formatter, IndentsNoDeeperThanThirtyLevels) {
  const std::u16string open(40, u'(');
  const std::string formatted = Format(open + u"T.a=1 or T.b=2", 50);
  EXPECT_EQ(formatted, std::string(40, '(') + "T.a = 1\n" + std::string(60, ' ') + "or T.b = 2");
}

TEST_F(Formatter, TakesTimeInProportionToTheText) {
  std::u16string nested;
  for (int i = 0; i < 50'000; ++i) nested += u"ROUND(1,";
  std::u16string chain = u"T.a=1";
  for (int i = 0; i < 50'000; ++i) chain += u" and T.b=2";
  const std::u16string long_ = u"'" + std::u16string(1'000'000, u'x') + u"'";
  for (const std::u16string& text :
       {nested, chain, long_, std::u16string(500'000, u'-'), std::u16string(500'000, u')'),
        std::u16string(500'000, u'[')}) {
    std::u16string formatted;
    EXPECT_LT(SecondsOf([&] { formatted = authoring_.Format(text, 20); }), 20);
    EXPECT_FALSE(formatted.empty());
  }
}

}  // namespace
}  // namespace ORKBASE
