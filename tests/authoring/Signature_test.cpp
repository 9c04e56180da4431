// The call around a place: which one it is, which form it has, and which argument is at work.
#include "RuleAuthoring.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

struct SignatureCase {
  const char* marked;  ///< "|" is the place
  const char* text;
  std::int32_t active;
  std::int32_t offset;
};

// clang-format off
constexpr SignatureCase kCases[] = {
    // Inside no call.
    {"|",                                "",                                      -1, 0},
    {"T.a|",                             "",                                      -1, 0},
    {"(1 + |2)",                         "",                                      -1, 0},
    {"ROUND|(1, 2)",                     "",                                      -1, 0},
    {"ROU|ND(1, 2)",                     "",                                      -1, 0},
    {"ROUND(1, 2)|",                     "",                                      -1, 0},
    {"nosuch(1, |2)",                    "",                                      -1, 0},
    {"'ROUND(' & |",                     "",                                      -1, 0},
    {")|",                               "",                                      -1, 0},
    {"ROUND)(|",                         "",                                      -1, 0},
    // The argument at the place, by commas.
    {"ROUND(|",                          "ROUND(number, number)",                  0, 0},
    {"ROUND(|)",                         "ROUND(number, number)",                  0, 0},
    {"ROUND (|1, 2)",                    "ROUND(number, number)",                  0, 0},
    {"round\n(1|, 2)",                   "ROUND(number, number)",                  0, 0},
    {"ROUND(1,|2)",                      "ROUND(number, number)",                  1, 0},
    {"1 + ROUND(1, 2|)",                 "ROUND(number, number)",                  1, 4},
    {"ROUND(1, 2, |)",                   "ROUND(number, number)",                 -1, 0},
    {"RAND(|)",                          "RAND()",                                -1, 0},
    // Brackets and texts inside an argument.
    {"ROUND((1 + (2|)), 3)",             "ROUND(number, number)",                  0, 0},
    {"ROUND((1, 2), |3)",                "ROUND(number, number)",                  1, 0},
    {"ROUND(FLOOR(1), |2)",              "ROUND(number, number)",                  1, 0},
    {"ROUND(FLOOR(|1), 2)",              "FLOOR(number)",                          0, 6},
    {"ROUND(nosuch(1, |2), 3)",          "ROUND(number, number)",                  0, 0},
    {"REPLACE('a,(b', 'x'|, 'y')",       "REPLACE(text, text, text)",              1, 0},
    {"REPLACE('it''s, ', |",             "REPLACE(text, text, text)",              1, 0},
    {"REPLACE('a, b|",                   "REPLACE(text, text, text)",              0, 0},
    {"dateAdd(dd, T.a, |T.d)",           "dateAdd(unit of time, number, date)",    2, 0},
    // Arguments that may be left out, and those that repeat.
    {"ToNumber(T.s, 2, |",               "ToNumber(text[, number][, number])",     2, 0},
    {"ToNumber(T.s, 2, 30, |",           "ToNumber(text[, number][, number])",    -1, 0},
    {"T.a in thisSet(|",                 "thisSet(any{, any})",        0, 7},
    {"T.a in thisSet(1, |",              "thisSet(any{, any})",        1, 7},
    {"T.a in thisSet(1, 2, 3, |",        "thisSet(any{, any})",        1, 7},
    {"switch(|",                         "switch(condition, number{, condition, number}[, number])", 0, 0},
    {"switch(T.a > 1, |",                "switch(condition, number{, condition, number}[, number])", 1, 0},
    {"switch(T.a > 1, 1, |",             "switch(condition, number{, condition, number}[, number])", 2, 0},
    {"switch(T.a > 1, 1, T.a > 2, |",    "switch(condition, number{, condition, number}[, number])", 3, 0},
    {"switch(T.a > 1, 1, T.a > 2, 2, |", "switch(condition, number{, condition, number}[, number])", 2, 0},
    // Of several forms the one that takes the arguments so far.
    {"max(|",                            "max(number)",                            0, 0},
    {"max(T.s|)",                        "max(text)",                              0, 0},
    {"max(T.d|",                         "max(date)",                              0, 0},
    {"max(T.s & |",                      "max(text)",                              0, 0},
    {"max(firstDate(T.d)|",              "max(date)",                              0, 0},
    {"max(T.|",                          "max(number)",                            0, 0},
    {"ToText(|",                         "ToText(any)",                      0, 0},
    {"ToText(T.a|",                      "ToText(any)",                      0, 0},
    {"ToText(T.d|",                      "ToText(date, date style)",               0, 0},
    {"ToText(T.d, |",                    "ToText(date, date style)",               1, 0},
    {"ToText(T.d, 'yy|",                 "ToText(date, date style)",               1, 0},
    {"ToText(T.a, |",                    "ToText(date, date style)",               1, 0},
    {"switch(T.a > 1, T.s|",             "switch(condition, text{, condition, text}[, text])",          1, 0},
    {"switch(T.a > 1, T.d, T.|",         "switch(condition, date{, condition, date}[, date])",          2, 0},
    {"switch(T.a > 1, Orders.Photo, |",  "switch(condition, picture{, condition, picture}[, picture])", 2, 0},
};
// clang-format on

class Signature : public testing::Test {
 protected:
  Signature() : authoring_(engine_) { engine_.SetDts(u"T"); }

  RuleSignature SignatureOf(std::string_view marked) {
    std::u16string text = U16(marked);
    const std::size_t bar = text.find(u'|');
    text.erase(bar, 1);
    RuleSignature signature;
    EXPECT_TRUE(authoring_.Signature(text, static_cast<std::int32_t>(bar), signature));
    return signature;
  }

  const ScopedLanguage english_{u"en"};
  SampleExpression engine_;
  RuleAuthoring authoring_;
};

TEST_F(Signature, IsThatOfTheCallAroundThePlace) {
  for (const SignatureCase& each : kCases) {
    const RuleSignature signature = SignatureOf(each.marked);
    EXPECT_EQ(U8(signature.text), each.text) << each.marked;
    const std::string text = each.text;
    EXPECT_EQ(U8(signature.name), text.substr(0, text.find('('))) << each.marked;
    EXPECT_EQ(signature.active, each.active) << each.marked;
    EXPECT_EQ(signature.offset, each.offset) << each.marked;
  }
}

TEST_F(Signature, TellsItsParameters) {
  const RuleSignature signature = SignatureOf("ToNumber(|");
  ASSERT_EQ(signature.parameters.size(), 3u);
  EXPECT_EQ(U8(signature.parameters[0].label), "text");
  EXPECT_EQ(signature.parameters[0].dataType, u"text");
  EXPECT_FALSE(signature.parameters[0].optional);
  EXPECT_EQ(U8(signature.parameters[1].label), "places");
  EXPECT_EQ(signature.parameters[1].dataType, u"number");
  EXPECT_TRUE(signature.parameters[1].optional);
  EXPECT_EQ(U8(signature.parameters[1].info), "How many digits stay behind the point.");
  EXPECT_TRUE(SignatureOf("thisSet(1, |").parameters[1].repeats);
  EXPECT_TRUE(SignatureOf("1 + |").parameters.empty());
}

TEST_F(Signature, SpeaksTheLanguageOfTheCall) {
  authoring_.set_language(u"zh-CN");
  const RuleSignature signature = SignatureOf("求和(|");
  EXPECT_EQ(U8(signature.name), "求和");
  EXPECT_EQ(U8(signature.text), "求和(数字)");
  EXPECT_EQ(U8(SignatureOf("sum(|").name), "");
}

TEST_F(Signature, IsAskedForAPlaceBetweenCharacters) {
  RuleSignature signature;
  EXPECT_FALSE(authoring_.Signature(u"ROUND(1", -1, signature));
  EXPECT_FALSE(authoring_.Signature(u"ROUND(1", 8, signature));
  EXPECT_FALSE(authoring_.Signature(u"ROUND('\U0001D11E", 8, signature));
  EXPECT_TRUE(authoring_.Signature(u"ROUND('\U0001D11E", 9, signature));
  EXPECT_EQ(authoring_.errRecord().cause, kNoCause);
}

TEST_F(Signature, TakesTextsOfAnyLength) {
  std::string calls;
  for (int i = 0; i < 20'000; ++i) calls += "max(";
  EXPECT_EQ(U8(SignatureOf(calls + "|").name), "max");
  EXPECT_EQ(U8(SignatureOf("max(" + std::string(100'000, '(') + "|").name), "max");
  EXPECT_EQ(SignatureOf("thisSet(" + std::string(100'000, ',') + "|").active, 1);
}

}  // namespace
}  // namespace ORKBASE
