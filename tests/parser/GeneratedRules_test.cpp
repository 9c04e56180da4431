// Rules that the grammar itself makes: each is valid, and together they reach every row.
#include "RuleGenerator.h"

#include "MxExpression.h"
#include "MxLexicalAnalyzer.h"
#include "MxParser.h"
#include "PlainInterpreter.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"
#include "parser/SyntaxRules.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

constexpr int kRulesPerRow = 12;
/// No other rule refers to it: "like" stands in the comparisons as a word.
constexpr std::u16string_view kUnreachableRow = u"<op_like>";

constexpr MXRULE_DATATYPE kStartTypes[] = {kNumDataType,   kStrDataType, kDateDataType,
                                           kLogicDataType, kVarDataType, kPicDataType,
                                           kLinkDataType};

/// A base, so that it is there before the engine: the rules are made of English words.
struct InEnglish {
  ScopedLanguage language{u"en"};
};

/// An engine that knows all words of `AllRuleWords`.
class FullExpression : private InEnglish, public SampleExpression {
 public:
  FullExpression() {
    SetRt(u"7");
    EXPECT_EQ(errNumber(), 0);
    SetDts(u"Orders,Customer,T");
    EXPECT_EQ(errNumber(), 0);
    SetCAXDD(1, kCaxWordsDocument);
    EXPECT_EQ(errNumber(), 0);
  }
};

void ExpectVerifiesAndJoins(MxExpression& rules, const GeneratedRule& rule) {
  SCOPED_TRACE(U8(rule.text));
  std::u16string document;
  EXPECT_TRUE(rules.Verify(rule.type, rule.text, document)) << U8(rules.errDescription());
  std::vector<std::u16string> tokens;
  MxLexicalAnalyzer lexer;
  lexer.GenerateOriginalTokens(rule.text, tokens);
  EXPECT_EQ(U8(lexer.Compose(tokens)), U8(rule.text));
  // The engine's words are those that the generator has put there.
  std::u16string fromWords;
  EXPECT_TRUE(MxParser().ParseExpr(rule.type == kStrDataType ? kVarDataType : rule.type,
                                   &rule.words, fromWords));
  EXPECT_EQ(U8(document), U8(fromWords));
}

TEST(GeneratedRules, ReachEveryRowAndVerify) {
  FullExpression engine;
  RuleGenerator rules(20240, AllRuleWords());
  for (const SyntaxRule& row : kSyntaxRules) {
    if (row.name == kUnreachableRow) continue;
    SCOPED_TRACE(U8(row.name));
    for (int i = 0; i < kRulesPerRow; ++i) {
      ExpectVerifiesAndJoins(engine, rules.MakeThrough(row.name, 4 + i));
    }
    EXPECT_TRUE(rules.Reached().contains(row.name));
  }
  EXPECT_EQ(rules.Reached().size(), std::size(kSyntaxRules) - 1);
}

TEST(GeneratedRules, NoWalkLeadsToTheRowThatNothingNames) {
  RuleGenerator rules(1, AllRuleWords());
  EXPECT_TRUE(rules.MakeThrough(kUnreachableRow, 4).words.empty());
}

TEST(GeneratedRules, OfEveryTypeVerify) {
  FullExpression engine;
  RuleGenerator rules(7, AllRuleWords());
  for (const MXRULE_DATATYPE type : kStartTypes) {
    for (int i = 0; i < 150; ++i) ExpectVerifiesAndJoins(engine, rules.Make(type, 4 + i % 14));
  }
}

TEST(GeneratedRules, MatchEveryRowInTheEnd) {
  PlainInterpreter plain;
  RuleGenerator rules(3, AllRuleWords());
  std::u16string document;
  for (const SyntaxRule& row : kSyntaxRules) {
    if (row.name == kUnreachableRow) continue;
    for (int i = 0; i < 20 && !plain.matched.contains(std::u16string(row.name)); ++i) {
      const GeneratedRule rule = rules.MakeThrough(row.name, 3);
      EXPECT_TRUE(plain.ParseExpr(rule.type, &rule.words, document)) << U8(rule.text);
    }
    EXPECT_TRUE(plain.matched.contains(std::u16string(row.name))) << U8(row.name);
  }
}

TEST(GeneratedRules, AvoidWhatTheyAreTold) {
  RuleGenerator rules(5);
  rules.Avoid(u"<func_var>");
  rules.Avoid(u"<func_set>");
  for (int i = 0; i < 300; ++i) rules.Make(kLogicDataType, 12);
  EXPECT_TRUE(rules.Reached().contains(u"<expr_comp>"));
  EXPECT_FALSE(rules.Reached().contains(u"<func_var>"));
  EXPECT_FALSE(rules.Reached().contains(u"<func_IsNull>"));
  EXPECT_FALSE(rules.Reached().contains(u"<func_set>"));
  EXPECT_FALSE(rules.Reached().contains(u"<op_in>"));
}

}  // namespace
}  // namespace ORKBASE
