// What a text depends on.
#include "TwoLanguages.h"

#include "SecondsOf.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

void LoadAll(MxExpression& engine) {
  engine.SetRt(u"7");
  engine.SetDts(u"Orders,T");
  engine.SetCAXDD(1, U16(SourceText("tests/golden/cax.xml")));
}

class Uses : public testing::Test {
 protected:
  /// `kind name table|field @offset+length`, a line each; names only where there are any.
  std::string Of(std::u16string_view text, std::u16string_view tag = u"en") {
    authoring_.set_language(std::u16string(tag));
    std::string lines;
    for (const RuleUse& use : authoring_.Uses(std::u16string(text))) {
      lines += U8(use.kind) + " " + U8(use.name);
      if (!use.table.empty() || !use.field.empty()) {
        lines += " " + U8(use.table) + "|" + U8(use.field);
      }
      lines += " @" + std::to_string(use.offset) + "+" + std::to_string(use.length) + "\n";
    }
    return lines;
  }

  SpokenEngine english_{u"en", SampleDatabase(), LoadAll};
  RuleAuthoring authoring_{english_.Engine()};
};

struct Row {
  const char16_t* text;
  const char* uses;
};

// clang-format off
constexpr Row kRows[] = {
    {u"",                              ""},
    // what a rule does not depend on
    {u"(1, 'a') + '2020-1-2' and or not in not_in between like null not_null & * = *= dd 'yyyymmdd'", ""},
    {u"+ 'unclosed T.a",               ""},
    // each kind
    {u"round(Orders.amount, 0)",       "function ROUND @0+5\nfield Orders.Amount Orders|Amount @6+13\n"},
    {u" T.rcid=T.a",                   "field T.rcid T|rcid @1+6\nfield T.a T|a @8+3\n"},
    {u"t.A[x]",                        "field T.a[x] T|a @0+6\n"},
    {u"客户.名称",                     "field 客户.名称 客户|名称 @0+5\n"},
    {u"THISREPORT.Header.Total",       "formField thisReport.Header.Total Header|Total @0+23\n"},
    {u"input.Item[s]",                 "input Input.Item[s] @0+13\n"},
    {u"Sms.a.b[N]",                    "message Sms.a.b[N] @0+10\n"},
    {u"sysVar.USERNAME",               "variable sysVar.userName @0+15\n"},
    {u"sysVar.RepState+Constant.Null", "variable sysVar.RepState @0+15\nvariable Constant.Null @16+13\n"},
    {u"thisDoc.TitleBlock.DrawingNo",  "cadField thisDoc.Title.No TitleBlock|DrawingNo @0+28\n"},
    {u"thisDoc.Part.Width",            "cadField thisDoc.Part.Width Part|Width @0+18\n"},
    {u"AutoCADEnum.Unit.inch",         "cadEnum AutoCADEnum.Unit.in @0+21\n"},
    // each time that it stands there
    {u"T.a+T.a",                       "field T.a T|a @0+3\nfield T.a T|a @4+3\n"},
    // it need be no rule
    {u"T.a T.b )( ROUND",              "field T.a T|a @0+3\nfield T.b T|b @4+3\nfunction ROUND @11+5\n"},
    {u"AVG(Orders.Amout) > foo",       "unknown AVG @0+3\nunknown Orders.Amout @4+12\nunknown foo @20+3\n"},
    {u"Nothing.x",                     "unknown Nothing.x @0+9\n"},
    {u"Input.Item",                    "unknown Input.Item @0+10\n"},
    {u"Input.a.b",                     "input Input.a.b @0+9\n"},
    {u"\U0001F600 T.a",                "unknown \xF0\x9F\x98\x80 @0+2\nfield T.a T|a @3+3\n"},
    // a table that the text itself loads, whichever word names it first
    {u"stock.item = Stock.Count",      "field Stock.Item Stock|Item @0+10\nfield Stock.Count Stock|Count @13+11\n"},
};
// clang-format on

TEST_F(Uses, ListsEveryWordThatATextDependsOn) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(U8(row.text));
    EXPECT_EQ(Of(row.text), row.uses);
  }
}

TEST_F(Uses, ReadsTheWordsOfTheLanguage) {
  EXPECT_EQ(
      Of(u"四舍五入(本报表.Header.Total, 0) 且 本文档.TitleBlock.Scale 为空 或 and", u"zh-CN"),
      "function ROUND @0+4\n"
      "formField thisReport.Header.Total Header|Total @5+16\n"
      "cadField thisDoc.Title.Scale TitleBlock|Scale @28+20\n"
      "unknown and @54+3\n");
}

TEST_F(Uses, LoadsNothingIntoTheEngine) {
  EXPECT_EQ(Of(u"Customer.City"), "field Customer.City Customer|City @0+13\n");
  // In the first document that an engine gives the field comes whole, without what was typed.
  const std::u16string document = english_.Verify(kStrDataType, u"Customer.City");
  EXPECT_NE(document.find(u"content=\"\""), document.npos) << U8(document);
}

TEST_F(Uses, TakesTimeInProportionToTheText) {
  std::u16string text;
  for (int i = 0; i < 100'000; ++i) text += u"T.a + ";
  std::size_t count = 0;
  EXPECT_LT(SecondsOf([&] { count = authoring_.Uses(text).size(); }), 20);
  EXPECT_EQ(count, 100'000u);
}

}  // namespace
}  // namespace ORKBASE
