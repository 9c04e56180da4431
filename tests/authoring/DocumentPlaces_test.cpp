// Nodes of documents and the words of the rule that they were made of.
#include "authoring/DocumentPlaces.h"

#include "RuleGenerator.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "authoring/AuthoringCall.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

class Places : public testing::Test {
 protected:
  Places() {
    rules_.SetDts(u"Orders,Customer,T");
    view_.Follow(EngineAccess::Of(rules_), nullptr);
  }

  bool Match(MXRULE_DATATYPE type, const std::u16string& rule) {
    rule_ = rule;
    std::u16string document;
    MxErrorRecord refusal;
    AuthoringCall call(view_, CurrentLanguage());
    EXPECT_TRUE(call.Verify(type, rule_, document, refusal)) << U8(rule) << U8(ErrorText(refusal));
    reading_.words.clear();
    reading_.composed.clear();
    call.Read(rule_, reading_);
    return places_.Match(document, reading_);
  }

  std::string Words(std::int32_t first, std::int32_t last) const {
    const auto begin = static_cast<std::size_t>(first);
    const auto end = static_cast<std::size_t>(last);
    const auto from = static_cast<std::size_t>(reading_.OffsetOf(begin));
    const auto to = static_cast<std::size_t>(reading_.OffsetOf(end)) +
                    static_cast<std::size_t>(reading_.LengthOf(end));
    return U8(std::u16string_view(rule_).substr(from, to - from));
  }

  ScopedLanguage language_{u"en"};
  SampleExpression rules_;
  AuthoringView view_;
  std::u16string rule_;
  RuleReading reading_;
  DocumentPlaces places_;
};

struct PlaceRow {
  MXRULE_DATATYPE type;
  const char* rule;
  const char* nodes;  ///< in document order: word, what it is over, the same with its brackets
};

// clang-format off
constexpr PlaceRow kRows[] = {
    {kNumDataType,   "1 + 2 * 3",       "[+|1 + 2 * 3] [1|1] [*|2 * 3] [2|2] [3|3]"},
    {kNumDataType,   "(1 + 2) * 3",     "[*|(1 + 2) * 3] [+|1 + 2|(1 + 2)] [1|1] [2|2] [3|3]"},
    {kNumDataType,   "((1 + 2)) * 3",   "[*|((1 + 2)) * 3] [+|1 + 2|((1 + 2))] [1|1] [2|2] [3|3]"},
    {kNumDataType,   "-(1) + 2",        "[-|-(1) + 2] [+|(1) + 2] [1|1|(1)] [2|2]"},
    {kNumDataType,   "1 - RAND()",      "[-|1 - RAND()] [1|1] [RAND|RAND()]"},
    {kNumDataType,   "ROUND((1), (2))", "[ROUND|ROUND((1), (2))] [1|1|(1)] [2|2|(2)]"},
    {kLogicDataType, "not T.a null",    "[not|not T.a null] [null|T.a null] [T.a|T.a]"},
    {kLogicDataType, "T.a in thisSet(1, 2) and (T.b = 1)",
     "[and|T.a in thisSet(1, 2) and (T.b = 1)] [in|T.a in thisSet(1, 2)] [T.a|T.a] "
     "[thisSet|thisSet(1, 2)] [1|1] [2|2] [=|T.b = 1|(T.b = 1)] [T.b|T.b] [1|1]"},
    {kNumDataType,   "dateAdd(mm, 1, T.d)", ""},
};
// clang-format on

TEST_F(Places, AreThoseOfTheWords) {
  for (const PlaceRow& row : kRows) {
    SCOPED_TRACE(row.rule);
    const bool isDate = std::string(row.nodes).empty();
    ASSERT_TRUE(Match(isDate ? kDateDataType : row.type, U16(row.rule)));
    std::string nodes;
    for (const PlacedNode& node : places_.nodes()) {
      const std::string inner = Words(node.firstWord, node.lastWord);
      const std::string outer = Words(node.outerFirst, node.outerLast);
      nodes += (nodes.empty() ? "[" : " [") + Words(node.word, node.word) + "|" + inner;
      nodes += (outer == inner ? "" : "|" + outer) + "]";
    }
    if (isDate) {
      EXPECT_EQ(nodes, "[dateAdd|dateAdd(mm, 1, T.d)] [mm|mm] [1|1] [T.d|T.d]");
    } else {
      EXPECT_EQ(nodes, row.nodes);
    }
  }
}

TEST_F(Places, GiveTheTypeOfTheValue) {
  struct Row {
    MXRULE_DATATYPE type;
    const char16_t* rule;
    std::int32_t value;
  };
  // clang-format off
  constexpr Row kTypes[] = {
      {kNumDataType,  u"max(1)",                          kNumDataType},
      {kStrDataType,  u"max('x')",                        kStrDataType},
      {kDateDataType, u"min(T.d)",                        kDateDataType},
      {kVarDataType,  u"switch(1 = 1, 'x', 'y')",         kStrDataType},
      {kVarDataType,  u"switch(1 = 1, T.d)",              kDateDataType},
      {kVarDataType,  u"IsNull(T.d, '2024-01-15')",       kDateDataType},
      {kVarDataType,  u"IsNull(switch(1 = 1, T.d), T.d)", kDateDataType},
  };
  // clang-format on
  for (const Row& row : kTypes) {
    ASSERT_TRUE(Match(row.type, row.rule));
    EXPECT_EQ(places_.At(0).dataType, row.value) << U8(row.rule);
  }
}

/// Each node stands at a word of its own, that it was made of, and within its parent.
TEST_F(Places, HoldForRulesOfTheWholeGrammar) {
  std::vector<RuleWord> words(SampleWords().begin(), SampleWords().end());
  RuleGenerator generator(20240517, words);
  for (int i = 0; i < 3000; ++i) {
    const GeneratedRule made =
        i % 2 == 0 ? generator.Make(kLogicDataType, 6) : generator.Make(kVarDataType, 5);
    ASSERT_TRUE(Match(made.type, made.text)) << U8(made.text);
    std::vector<bool> taken(reading_.words.size());
    for (const PlacedNode& node : places_.nodes()) {
      const auto word = static_cast<std::size_t>(node.word);
      ASSERT_FALSE(taken[word]) << U8(made.text);
      taken[word] = true;
      ASSERT_EQ(U8(reading_.words[word].primary), U8(node.primary)) << U8(made.text);
      ASSERT_LE(node.outerFirst, node.firstWord);
      ASSERT_LE(node.lastWord, node.outerLast);
      if (const PlacedNode* parent = places_.Parent(node)) {
        ASSERT_LE(parent->firstWord, node.outerFirst) << U8(made.text);
        ASSERT_GE(parent->lastWord, node.outerLast) << U8(made.text);
      }
    }
  }
}

TEST_F(Places, HoldForLongAndDeepRules) {
  std::u16string longRule = u"T.a = 1";
  for (int i = 0; i < 20'000; ++i) longRule += u" or T.a = 1";
  ASSERT_TRUE(Match(kLogicDataType, longRule));
  EXPECT_EQ(places_.nodes().size(), 80'003u);
  const std::u16string deep =
      std::u16string(900, u'(') + u"1 + 2" + std::u16string(900, u')') + u" = 3";
  ASSERT_TRUE(Match(kLogicDataType, deep));
  EXPECT_GE(places_.Deepest(), 900);
}

TEST_F(Places, AreNoneForAnotherDocument) {
  ASSERT_TRUE(Match(kNumDataType, u"1 + 2"));
  std::u16string document;
  ASSERT_TRUE(rules_.Verify(kNumDataType, u"1 + 2 + 3", document));
  EXPECT_FALSE(places_.Match(document, reading_));
  EXPECT_FALSE(places_.Match(u"", reading_));
  EXPECT_FALSE(places_.Match(u"<tag", reading_));
  EXPECT_FALSE(places_.Match(u"</tag>", reading_));
}

}  // namespace
}  // namespace ORKBASE
