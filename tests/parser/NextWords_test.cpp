// What may stand behind the words of an unfinished rule, against the plain interpreter, which asks
// for every single word of the grammar that an attempt comes to.
#include "parser/NextWords.h"

#include "PlainInterpreter.h"
#include "RuleGenerator.h"
#include "ScopedLanguage.h"
#include "Utf8.h"
#include "parser/RuleInterpreter.h"

#include <gtest/gtest.h>

#include <iterator>

namespace ORKBASE {
namespace {

using Words = std::vector<MxWord>;

constexpr MXRULE_DATATYPE kStartTypes[] = {kNumDataType,   kStrDataType, kDateDataType,
                                           kLogicDataType, kVarDataType, kPicDataType,
                                           kLinkDataType};

NextWords Next(MXRULE_DATATYPE type, const Words& words) {
  std::vector<WordView> views;
  for (const MxWord& word : words) views.push_back(ViewOf(word));
  RuleInterpreter interpreter;
  NextWords next;
  interpreter.FindNext(type, views, next);
  return next;
}

bool Takes(const NextWords& next, const MxWord& word) {
  return next.Takes(CompiledGrammar::Instance().LiteralOf(word.primary), word.symbol,
                    word.dataType);
}

/// One word of every class: each of the vocabulary, and every kind with every type.
const Words& EveryWord() {
  static const Words words = [] {
    Words all = WholeVocabulary();
    for (std::int32_t symbol = kUnknownSymbol; symbol <= kCAXEnumSymbol; ++symbol) {
      for (std::int32_t type = kNoDataType; type <= kReserved10DataType; ++type) {
        all.push_back(MakeRuleWord(u"a.b", symbol, type));
      }
    }
    return all;
  }();
  return words;
}

std::string TextOf(const Words& words) {
  std::string text;
  for (const MxWord& word : words) text += U8(word.primary) + " ";
  return text;
}

/// Compares all words behind `words`; false where the plain interpreter would take too long.
bool Compare(MXRULE_DATATYPE type, const Words& words) {
  static PlainInterpreter plain;
  std::u16string document;
  try {
    plain.ParseExpr(type, &words, document);
  } catch (const PlainInterpreter::TooLong&) {
    return false;
  }
  const NextWords next = Next(type, words);
  EXPECT_EQ(next.IsReached(), plain.ReachedEnd()) << type << " " << TextOf(words);
  for (const MxWord& word : EveryWord()) {
    EXPECT_EQ(Takes(next, word), plain.TakesAtEnd(word))
        << type << " " << TextOf(words) << "| " << U8(word.primary) << " " << word.symbol << " "
        << word.dataType;
  }
  return true;
}

TEST(NextWords, AreThoseThatThePlainInterpreterAsksFor) {
  const ScopedLanguage english(u"en");
  RuleGenerator rules(31);
  int compared = 0;
  for (int i = 0; i < 700; ++i) {
    const Words whole = rules.Make(kStartTypes[rules.Pick(std::size(kStartTypes))], 5).words;
    const MXRULE_DATATYPE type = kStartTypes[rules.Pick(std::size(kStartTypes))];
    const auto count = static_cast<std::ptrdiff_t>(rules.Pick(whole.size() + 1));
    compared += Compare(type, Words(whole.begin(), whole.begin() + count)) ? 1 : 0;
  }
  EXPECT_GT(compared, 500);
}

/// A word that is taken is one with which the rule comes further than without it.
TEST(NextWords, AreThoseWithWhichARuleComesFurther) {
  const ScopedLanguage english(u"en");
  RuleGenerator rules(32);
  PlainInterpreter plain;
  for (int i = 0; i < 12; ++i) {
    const GeneratedRule rule = rules.Make(kStartTypes[rules.Pick(std::size(kStartTypes))], 3);
    Words words(rule.words.begin(),
                rule.words.begin() + static_cast<std::ptrdiff_t>(rules.Pick(rule.words.size())));
    const NextWords next = Next(rule.type, words);
    words.emplace_back();
    for (const MxWord& word : EveryWord()) {
      words.back() = word;
      std::u16string document;
      plain.ParseExpr(rule.type, &words, document);
      EXPECT_EQ(Takes(next, word), plain.ReachedEnd()) << TextOf(words);
    }
  }
}

struct EndCase {
  MXRULE_DATATYPE type;
  const char16_t* words;
  bool isReached;
  bool hasEnd;
};

// clang-format off
constexpr EndCase kEnds[] = {
    {kLogicDataType, u"",              true,  false},
    {kLogicDataType, u"T.a",           true,  false},
    {kLogicDataType, u"T.a >",         true,  false},
    {kLogicDataType, u"T.a > 1",       true,  true},
    {kLogicDataType, u"T.a > 1 and",   true,  false},
    {kLogicDataType, u"T.a > and",     false, false},
    {kLogicDataType, u"T.a > 1 ) ",    false, false},
    // Nothing may follow, so no attempt is made behind it; it is a whole rule all the same.
    {kDateDataType,  u"T.d",           true,  true},
    {kDateDataType,  u"T.d T.d",       false, false},
    // A type without a start rule.
    {kNoDataType,    u"",              false, false},
};
// clang-format on

TEST(NextWords, TellWhetherTheWordsAreABeginningAndAWholeRule) {
  for (const EndCase& each : kEnds) {
    const NextWords next = Next(each.type, WordsOf(each.words));
    EXPECT_EQ(next.IsReached(), each.isReached) << U8(each.words);
    EXPECT_EQ(next.HasEnd(), each.hasEnd) << U8(each.words);
  }
}

/// Where as much is open as may be, what would open more cannot stand.
TEST(NextWords, OpenNoMoreThanMayBeOpen) {
  const Words deepest(kDeepestNesting, VocabularyWord(u"("));
  const NextWords full = Next(kNumDataType, deepest);
  const NextWords room = Next(kNumDataType, Words(deepest.begin(), deepest.end() - 1));
  for (const char16_t* text : {u"(", u"-"}) {
    EXPECT_TRUE(Takes(room, VocabularyWord(text))) << U8(text);
    EXPECT_FALSE(Takes(full, VocabularyWord(text))) << U8(text);
  }
  EXPECT_TRUE(Takes(full, VocabularyWord(u"sum")));
  EXPECT_TRUE(Takes(full, MakeRuleWord(u"T.a", kDataFieldSymbol, kNumDataType)));

  Words number = deepest;
  number.push_back(MakeRuleWord(u"1", kConstantSymbol, kNumDataType));
  const NextWords behind = Next(kNumDataType, number);
  EXPECT_TRUE(Takes(behind, VocabularyWord(u"-")));  // between two values it opens nothing
  EXPECT_TRUE(Takes(behind, VocabularyWord(u")")));
}

}  // namespace
}  // namespace ORKBASE
