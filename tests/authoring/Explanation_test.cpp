// The word at a place of a rule.
#include "RuleAuthoring.h"

#include "OrkPlatform.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

struct ExplainRow {
  const char* rule;
  std::int32_t at;
  std::int32_t offset;
  std::int32_t length;
  const char* kind;
  const char* name;
  const char* dataType;
  const char* text;
};

// clang-format off
constexpr ExplainRow kRows[] = {
    // rule                             at  word     kind         name               type      text
    {"ROUND(Orders.Amount, 2) = 1",      0,  0,  5, "function",  "ROUND",            "number", "Rounds"},
    {"round(Orders.Amount, 2) = 1",      4,  0,  5, "function",  "ROUND",            "number", "Rounds"},
    {"ROUND(Orders.Amount, 2) = 1",      5,  5,  1, "bracket",   "(",                "",       ""},
    {"ROUND(Orders.Amount, 2) = 1",      6,  6, 13, "field",     "Orders.Amount",    "number", "A field of the table Orders: Amount."},
    {"ROUND(orders.amount, 2) = 1",     12,  6, 13, "field",     "Orders.Amount",    "number", "A field of the table Orders: Amount."},
    {"ROUND(Orders.Amount, 2) = 1",     19, 19,  1, "bracket",   ",",                "",       ""},
    {"ROUND(Orders.Amount, 2) = 1",     20, 19,  1, "bracket",   ",",                "",       ""},
    {"ROUND(Orders.Amount, 2) = 1",     21, 21,  1, "constant",  "2",                "number", ""},
    {"ROUND(Orders.Amount, 2) = 1",     27, 26,  1, "constant",  "1",                "number", ""},
    {"Orders.OrderDate > '2024-05-17'", 22, 19, 12, "constant",  "'2024-05-17'",     "date",   ""},
    {"Orders.OrderDate > '2024-05-17'", 31, 19, 12, "constant",  "'2024-05-17'",     "date",   ""},
    {"Customer.City = 'x'",             17, 16,  3, "constant",  "'x'",              "text",   ""},
    {"dateAdd(mm, 1, Orders.OrderDate)", 9,  8,  2, "part",      "mm",               "",       "Months"},
    {"Input.Limit[N] > 5",               3,  0, 14, "parameter", "Input.Limit[N]",   "number", "asked for"},
    {"sysVar.userName = 'x'",            0,  0, 15, "variable",  "sysVar.userName",  "text",   "user"},
    {"Orders.Amout > 5",                 2,  0, 12, "unknown",   "Orders.Amout",     "",       ""},
    // between words, and where there are none
    {"a  b",                             2,  2,  0, "",          "",                 "",       ""},
    {"",                                 0,  0,  0, "",          "",                 "",       ""},
    {"   ",                              3,  3,  0, "",          "",                 "",       ""},
};
// clang-format on

class Explain : public testing::Test {
 protected:
  RuleExplanation At(const std::string& rule, std::int32_t offset) {
    RuleExplanation explanation;
    EXPECT_TRUE(authoring_.Explain(U16(rule), offset, explanation)) << rule;
    return explanation;
  }

  ScopedLanguage language_{u"en"};
  SampleExpression rules_;
  RuleAuthoring authoring_{rules_};
};

TEST_F(Explain, TellsTheWordAtThePlace) {
  for (const ExplainRow& row : kRows) {
    SCOPED_TRACE(std::string(row.rule) + " at " + std::to_string(row.at));
    const RuleExplanation word = At(row.rule, row.at);
    EXPECT_EQ(word.offset, row.offset);
    EXPECT_EQ(word.length, row.length);
    EXPECT_EQ(U8(word.kind), row.kind);
    EXPECT_EQ(U8(word.name), row.name);
    EXPECT_EQ(U8(word.dataType), row.dataType);
    const std::string text = row.text;
    if (text.ends_with(".") || word.kind == u"constant" || word.kind == u"unknown") {
      EXPECT_EQ(U8(word.text), text);
    } else {
      EXPECT_NE(U8(word.text).find(text), std::string::npos) << U8(word.text);
    }
  }
}

TEST_F(Explain, TellsTheSqlOfFunctionsOnly) {
  const RuleExplanation round = At("ROUND(1, 2)", 0);
  ASSERT_EQ(round.sql.size(), 5u);
  EXPECT_EQ(U8(round.sql[0].dialect), "default");
  EXPECT_EQ(U8(round.sql[0].sql), "ROUND(1.5,0)");
  const RuleExplanation fiscal = At("fisYear(Orders.OrderDate)", 6);
  ASSERT_EQ(fiscal.sql.size(), 5u);
  EXPECT_EQ(U8(fiscal.sql[1].dialect), "oracle");
  EXPECT_EQ(U8(fiscal.sql[1].sql), "");
  EXPECT_TRUE(At("1 + 2", 2).sql.empty());
}

TEST_F(Explain, TellsChineseWordsByTheirOwnName) {
  authoring_.set_language(u"zh-CN");
  const ScopedLanguage chinese(u"zh-CN");
  RuleExplanation word;
  const std::u16string average = MessageText(6401);
  ASSERT_TRUE(authoring_.Explain(average + u"(Orders.Amount)", 1, word));
  EXPECT_EQ(U8(word.name), "average");
  EXPECT_EQ(U8(word.kind), "function");
  EXPECT_EQ(word.length, static_cast<std::int32_t>(average.size()));
  ASSERT_TRUE(authoring_.Explain(u"Orders.Amount", 1, word));
  EXPECT_EQ(U8(word.text), "数据表 Orders 的字段：Amount。");
}

TEST_F(Explain, RefusesPlacesThatAreNone) {
  RuleExplanation word;
  const std::u16string pair = u"a\xD83D\xDE00z";
  for (const std::int32_t offset : {-1, 2, 5}) {
    EXPECT_FALSE(authoring_.Explain(pair, offset, word)) << offset;
    EXPECT_NE(authoring_.errRecord().cause, kNoCause);
  }
  ASSERT_TRUE(authoring_.Explain(pair, 3, word));
  EXPECT_EQ(word.length, 4);
  EXPECT_EQ(U8(word.kind), "unknown");
}

TEST_F(Explain, TakesAnyText) {
  RuleExplanation word;
  for (const std::u16string& text :
       {std::u16string(1, u'\xD800'), std::u16string(3, u'\0'), std::u16string(100'000, u'('),
        std::u16string(100'000, u'a'), std::u16string(u"'")}) {
    EXPECT_TRUE(authoring_.Explain(text, 0, word));
    EXPECT_TRUE(authoring_.Explain(text, static_cast<std::int32_t>(text.size()), word));
  }
}

}  // namespace
}  // namespace ORKBASE
