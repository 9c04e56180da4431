// The parser as a caller sees it: words of his own in, a document or an error pair out.
#include "MxParser.h"

#include "CompactTree.h"
#include "RuleWords.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace ORKBASE {
namespace {

bool Accepts(MXRULE_DATATYPE type, const std::vector<MxWord>& words) {
  std::u16string document;
  return MxParser().ParseExpr(type, &words, document);
}

TEST(MxParser, TakesNoWordsForAnEmptyList) {
  MxParser parser;
  const std::vector<MxWord> none;
  std::u16string document = u"kept";
  EXPECT_FALSE(parser.ParseExpr(kNumDataType, &none, document));
  const std::u16string text = parser.ErrDescription();
  EXPECT_FALSE(text.empty());
  EXPECT_FALSE(parser.ParseExpr(kNumDataType, nullptr, document));
  EXPECT_EQ(U8(parser.ErrDescription()), U8(text));
  EXPECT_EQ(parser.ErrNumber(), -1);
  EXPECT_EQ(U8(document), "kept");
}

TEST(MxParser, ResetsTheErrorOfTheCallBefore) {
  MxParser parser;
  std::u16string document;
  const std::vector<MxWord> bad = WordsOf(u"1 2");
  const std::vector<MxWord> good = WordsOf(u"1");
  EXPECT_FALSE(parser.ParseExpr(kNumDataType, &bad, document));
  EXPECT_TRUE(parser.ParseExpr(kNumDataType, &good, document));
  EXPECT_EQ(parser.ErrNumber(), 0);
  EXPECT_EQ(U8(parser.ErrDescription()), "");
  EXPECT_EQ(CompactTree(document), "1");
}

TEST(MxParser, GivesTheSameAnswerEachTime) {
  MxParser parser;
  const std::vector<MxWord> words = WordsOf(u"switch(T.a>1,'a',T.b>2,'b','c')&T.s");
  std::u16string first;
  std::u16string second;
  EXPECT_TRUE(parser.ParseExpr(kStrDataType, &words, first));
  EXPECT_FALSE(parser.ParseExpr(kDateDataType, &words, second));
  EXPECT_TRUE(parser.ParseExpr(kStrDataType, &words, second));
  EXPECT_EQ(U8(first), U8(second));
}

TEST(MxParser, CopiesItsErrorAndGoesOnByItself) {
  std::u16string document;
  const std::vector<MxWord> bad = WordsOf(u"1 2");
  const std::vector<MxWord> good = WordsOf(u"T.a>1");
  auto source = std::make_unique<MxParser>();
  EXPECT_FALSE(source->ParseExpr(kNumDataType, &bad, document));
  MxParser copy(*source);
  MxParser assigned;
  assigned = *source;
  source.reset();
  EXPECT_EQ(copy.ErrNumber(), -1);
  EXPECT_EQ(U8(copy.ErrDescription()), U8(assigned.ErrDescription()));
  EXPECT_TRUE(copy.ParseExpr(kLogicDataType, &good, document));
  EXPECT_EQ(assigned.ErrNumber(), -1);
  EXPECT_TRUE(assigned.ParseExpr(kLogicDataType, &good, document));
  EXPECT_EQ(CompactTree(document), ">{T.a 1}");
}

TEST(MxParser, RelaxesNoTypeByItself) {
  EXPECT_FALSE(Accepts(kStrDataType, WordsOf(u"1")));
  EXPECT_TRUE(Accepts(kVarDataType, WordsOf(u"1")));
  EXPECT_FALSE(Accepts(kMemoDataType, WordsOf(u"'abc'")));
}

TEST(MxParser, MatchesWordsOfNoTypeAndOfAnyTypeAgainstEveryType) {
  for (const std::int32_t wildcard : {0, 5}) {
    for (const MXRULE_DATATYPE asked :
         {kNumDataType, kStrDataType, kDateDataType, kVarDataType, kPicDataType, kLinkDataType}) {
      EXPECT_TRUE(Accepts(asked, {MakeRuleWord(u"x", kDataFieldSymbol, wildcard)})) << asked;
    }
  }
  for (const std::int32_t other : {4, 6, 7, 8, 9, -1}) {
    EXPECT_FALSE(Accepts(kNumDataType, {MakeRuleWord(u"x", kDataFieldSymbol, other)})) << other;
  }
}

TEST(MxParser, ChecksNoTypeWhereARuleDoesNotAsk) {
  for (std::int32_t type = -1; type < 12; ++type) {
    EXPECT_TRUE(Accepts(kLogicDataType,
                        {MakeRuleWord(u"f", kDataFieldSymbol, type), VocabularyWord(u"null")}));
  }
}

TEST(MxParser, ComparesLiteralsInAnyCaseAndLooksAtNothingElseOfThem) {
  const MxWord field = MakeRuleWord(u"T.a", kDataFieldSymbol, kNumDataType);
  const auto call = [&](const char16_t* name, std::int32_t symbol, std::int32_t type) {
    return std::vector<MxWord>{MakeRuleWord(name, symbol, type), VocabularyWord(u"("), field,
                               VocabularyWord(u")")};
  };
  EXPECT_TRUE(Accepts(kNumDataType, call(u"sum", kFunctionSymbol, 1)));
  EXPECT_TRUE(Accepts(kNumDataType, call(u"SuM", kFunctionSymbol, 1)));
  EXPECT_TRUE(Accepts(kNumDataType, call(u"ceiling", kUnknownSymbol, 7)));
  EXPECT_FALSE(Accepts(kNumDataType, call(u"sum ", kFunctionSymbol, 1)));
  EXPECT_FALSE(Accepts(kNumDataType, call(u"summe", kFunctionSymbol, 1)));
}

/// A constant may be spelled like an operator: its kind is asked for first.
TEST(MxParser, TakesAWordByItsKindWhereTheGrammarNamesAKind) {
  EXPECT_TRUE(Accepts(kNumDataType,
                      {MakeRuleWord(u"+", kConstantSymbol, kNumDataType), VocabularyWord(u"+"),
                       MakeRuleWord(u"(", kConstantSymbol, kNumDataType)}));
  EXPECT_FALSE(Accepts(kNumDataType, {MakeRuleWord(u"5", kUnknownSymbol, kNumDataType)}));
}

TEST(MxParser, TakesEveryKindOfValueWord) {
  for (const std::int32_t symbol : {0, 4, 7, 8, 9, 10, 11, 12, 13, 29}) {
    EXPECT_TRUE(Accepts(kNumDataType, {MakeRuleWord(u"x", symbol, kNumDataType)})) << symbol;
    EXPECT_TRUE(Accepts(kStrDataType, {MakeRuleWord(u"x", symbol, kStrDataType)})) << symbol;
    EXPECT_EQ(Accepts(kDateDataType, {MakeRuleWord(u"x", symbol, kDateDataType)}), symbol != 29)
        << symbol;
    const bool isFieldOrVariable = symbol == 4 || symbol == 10 || symbol == 13;
    EXPECT_EQ(Accepts(kPicDataType, {MakeRuleWord(u"x", symbol, kPicDataType)}), isFieldOrVariable);
    EXPECT_EQ(Accepts(kLinkDataType, {MakeRuleWord(u"x", symbol, kLinkDataType)}),
              isFieldOrVariable);
  }
  for (const std::int32_t symbol : {-1, 1, 14, 15, 16, 24, 27, 28, 30}) {
    EXPECT_FALSE(Accepts(kNumDataType, {MakeRuleWord(u"x", symbol, kNumDataType)})) << symbol;
  }
}

}  // namespace
}  // namespace ORKBASE
