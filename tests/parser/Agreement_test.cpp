// The quick interpreter against the plain one: the same answer, the same document and the same
// message, for rules that the grammar makes, for the same rules broken, and for words at random.
#include "MxParser.h"
#include "OrkPlatform.h"
#include "PlainInterpreter.h"
#include "RuleGenerator.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace ORKBASE {
namespace {

using Words = std::vector<MxWord>;

constexpr MXRULE_DATATYPE kStartTypes[] = {kNumDataType,   kStrDataType, kDateDataType,
                                           kLogicDataType, kVarDataType, kPicDataType,
                                           kLinkDataType};
constexpr std::u16string_view kUntouched = u"untouched";

std::string TextOf(const Words& words) {
  std::string text;
  for (const MxWord& word : words) {
    text += U8(word.primary) + "/" + std::to_string(word.symbol) + "/" +
            std::to_string(word.dataType) + " ";
  }
  return text;
}

/// Counts what was compared, so that a test can tell that it saw enough of each.
struct Tally {
  int accepted = 0;
  int refused = 0;
  int tooLong = 0;
};

class Agreement : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }

  void Compare(MXRULE_DATATYPE type, const Words& words) {
    std::u16string expected(kUntouched);
    std::u16string actual(kUntouched);
    bool holds = false;
    try {
      holds = plain_.ParseExpr(type, &words, expected);
    } catch (const PlainInterpreter::TooLong&) {
      ++tally_.tooLong;
      return;
    }
    ++(holds ? tally_.accepted : tally_.refused);
    EXPECT_EQ(parser_.ParseExpr(type, &words, actual), holds) << TextOf(words);
    EXPECT_EQ(U8(actual), U8(expected)) << TextOf(words);
    EXPECT_EQ(parser_.ErrNumber(), plain_.ErrNumber()) << TextOf(words);
    EXPECT_EQ(U8(parser_.ErrDescription()), U8(plain_.ErrDescription())) << TextOf(words);
  }

  MXRULE_DATATYPE AnyType(RuleGenerator& rules) {
    return kStartTypes[rules.Pick(std::size(kStartTypes))];
  }

  MxParser parser_;
  PlainInterpreter plain_;
  Tally tally_;
};

/// All words that a rule can hold.
const Words& AllWords() {
  static const Words words = [] {
    Words all = WholeVocabulary();
    for (const RuleWord& word : AllRuleWords()) {
      all.push_back(MakeRuleWord(word.text, word.symbol, word.dataType));
    }
    return all;
  }();
  return words;
}

/// Words that no dictionary makes: operators and functions that count as delimiters, brackets and
/// signs that count as fields and constants, words of type 0 and of any type, other case, no text.
const Words& OddWords() {
  static const Words words = [] {
    Words odd;
    for (const char16_t* text : {u"(", u")", u",", u"-", u"+", u"null", u"not", u"sum", u"RAND",
                                 u"POWER", u"switch", u"=", u"and", u"like", u"x"}) {
      for (const std::int32_t symbol : {0, 4, 13, 10, 24, 27, -1, 28}) {
        for (const std::int32_t type : {0, 1, 5}) odd.push_back(MakeRuleWord(text, symbol, type));
      }
    }
    for (const char16_t* text :
         {u"SUM", u"Rand", u"AND", u"Not", u"YY", u"'YYYYMMDD'", u"ThisSet"}) {
      odd.push_back(MakeRuleWord(text, 27, 1));
    }
    odd.push_back(MakeRuleWord(u"", 0, 0));
    odd.push_back(MakeRuleWord(u"a<b>\"&'\t\n", 0, 2));
    odd.push_back(MakeRuleWord(u"\u540D\U0001F600", 4, 2));
    return odd;
  }();
  return words;
}

const MxWord& AnyOf(RuleGenerator& rules, const Words& words) {
  return words[rules.Pick(words.size())];
}

/// One small damage: a word dropped, doubled, swapped with another, put in, replaced, or changed in
/// symbol or type.
void Break(Words& words, RuleGenerator& rules, const Words& others) {
  if (words.empty()) return;
  const auto at = words.begin() + static_cast<std::ptrdiff_t>(rules.Pick(words.size()));
  switch (rules.Pick(8)) {
    case 0:
      words.erase(at);
      break;
    case 1:
      words.insert(at, MxWord(*at));
      break;
    case 2:
      std::swap(*at, words[rules.Pick(words.size())]);
      break;
    case 3:
      words.insert(at, AnyOf(rules, others));
      break;
    case 4:
      words.resize(rules.Pick(words.size()) + 1);
      break;
    case 5:
      at->dataType = static_cast<std::int32_t>(rules.Pick(9));
      break;
    case 6:
      at->symbol = static_cast<std::int32_t>(rules.Pick(31)) - 1;
      break;
    case 7:
      *at = AnyOf(rules, others);
      break;
  }
}

TEST_F(Agreement, OnRulesOfEveryTypeAsked) {
  RuleGenerator rules(11, AllRuleWords());
  rules.manyWords = 12;
  for (const MXRULE_DATATYPE made : kStartTypes) {
    for (int i = 0; i < 40; ++i) {
      const GeneratedRule rule = rules.Make(made, 3 + i % 9);
      for (const MXRULE_DATATYPE asked : kStartTypes) Compare(asked, rule.words);
    }
  }
  EXPECT_GT(tally_.accepted, 7 * 40);
  EXPECT_GT(tally_.refused, 7 * 40);
  EXPECT_LT(6 * tally_.tooLong, tally_.accepted + tally_.refused);
}

TEST_F(Agreement, OnRulesThroughEveryRowAndBroken) {
  RuleGenerator rules(12, AllRuleWords());
  rules.manyWords = 12;
  for (const auto& row : rules.Rows()) {
    for (int i = 0; i < 4; ++i) {
      GeneratedRule rule = rules.MakeThrough(row, 3 + i);
      if (rule.words.empty()) continue;
      Compare(rule.type, rule.words);
      for (int damage = 0; damage < 3; ++damage) {
        Break(rule.words, rules, AllWords());
        Compare(rule.type, rule.words);
      }
    }
  }
  EXPECT_GT(tally_.accepted, 126 * 4);
  EXPECT_GT(tally_.refused, 400);
  EXPECT_LT(6 * tally_.tooLong, tally_.accepted + tally_.refused);
}

TEST_F(Agreement, OnBrokenConditions) {
  RuleGenerator rules(13, AllRuleWords());
  rules.manyWords = 8;
  for (int i = 0; i < 400; ++i) {
    GeneratedRule rule = rules.Make(kLogicDataType, 4 + i % 5);
    for (int damage = 0; damage < 4; ++damage) {
      Break(rule.words, rules, AllWords());
      Compare(kLogicDataType, rule.words);
    }
  }
  EXPECT_GT(tally_.accepted, 50);
  EXPECT_GT(tally_.refused, 1000);
  EXPECT_LT(6 * tally_.tooLong, tally_.accepted + tally_.refused);
}

TEST_F(Agreement, OnRulesWithOddWords) {
  RuleGenerator rules(14, AllRuleWords());
  rules.manyWords = 12;
  for (int i = 0; i < 400; ++i) {
    const MXRULE_DATATYPE type = AnyType(rules);
    GeneratedRule rule = rules.Make(type, 4 + i % 9);
    for (int damage = 0; damage < 4; ++damage) {
      Break(rule.words, rules, OddWords());
      Compare(type, rule.words);
    }
  }
  EXPECT_GT(tally_.accepted, 50);
  EXPECT_GT(tally_.refused, 1000);
  EXPECT_LT(6 * tally_.tooLong, tally_.accepted + tally_.refused);
}

/// The shapes that only odd words can make: each keeps its literals and loses its kinds and types.
TEST_F(Agreement, OnRulesWhoseWordsChangeTheirKind) {
  RuleGenerator rules(15, AllRuleWords());
  rules.manyWords = 12;
  for (int i = 0; i < 1000; ++i) {
    const MXRULE_DATATYPE type = AnyType(rules);
    GeneratedRule rule = rules.Make(type, 3 + i % 7);
    for (MxWord& word : rule.words) {
      const bool isLiteral = word.symbol >= kOpSumSymbol && word.symbol <= kFunctionSymbol;
      if (isLiteral && rules.Pick(3) == 0) word.symbol = kDelimiterSymbol;
      if (!isLiteral && rules.Pick(4) == 0) word.primary = rules.Pick(2) == 0 ? u"(" : u"-";
      if (rules.Pick(4) == 0) word.dataType = kVarDataType;
    }
    Compare(type, rule.words);
  }
  EXPECT_GT(tally_.accepted, 300);
}

/// Every function and operator as a delimiter, alone and with an argument that leaves no node.
TEST_F(Agreement, OnCallsOfDelimiters) {
  for (const char16_t* rule :
       {u"RAND()", u"(RAND())", u"((RAND()))", u"RAND()+1", u"1+RAND()", u"-RAND()", u"sum(RAND())",
        u"POWER(RAND(),2)", u"POWER(RAND(),RAND())", u"POWER(-RAND(),sum(2))", u"RAND()-RAND()*2",
        u"fUnixTimestamp2Datetime(RAND(),RAND(),3)", u"RAND()>1", u"not RAND()>RAND()",
        u"switch(RAND()>RAND(),RAND(),(1))", u"IsNull((RAND()),(1+2))"}) {
    Words words = WordsOf(rule);
    const unsigned subsets = 1U << std::min<std::size_t>(words.size(), 6);
    for (unsigned subset = 0; subset < subsets; ++subset) {
      Words changed = words;
      for (std::size_t i = 0; i < words.size(); ++i) {
        if ((subset >> i % 6 & 1U) != 0 && words[i].symbol >= kOpSumSymbol) {
          changed[i].symbol = kDelimiterSymbol;
        }
      }
      Compare(kNumDataType, changed);
      Compare(kLogicDataType, changed);
    }
  }
  EXPECT_GT(tally_.accepted, 400);
}

TEST_F(Agreement, OnWordsAtRandom) {
  RuleGenerator rules(16);
  for (int i = 0; i < 2500; ++i) {
    Words words;
    const std::size_t count = rules.Pick(9);
    while (words.size() < count) {
      words.push_back(AnyOf(rules, rules.Pick(5) == 0 ? OddWords() : AllWords()));
    }
    Compare(AnyType(rules), words);
  }
  EXPECT_GT(tally_.refused, 1500);
}

/// Few different words, so that long ways through the grammar are found by chance.
TEST_F(Agreement, OnSequencesOfFewWords) {
  RuleGenerator rules(17);
  const std::vector<Words> sets = {WordsOf(u"(T.a+1)-2>T.b and not or"),
                                   WordsOf(u"('abc'&T.s)=T.s like and not"),
                                   WordsOf(u"switch(T.a>1,'abc')T.d"),
                                   WordsOf(u"IsNull(T.a,T.s)&Constant.Null+1"),
                                   WordsOf(u"max(T.d)min(T.s)=T.a"),
                                   WordsOf(u"ToText(T.d,'yyyymmdd')&T.a 'abc'"),
                                   WordsOf(u"T.a in thisSet(1,T.s)not_in in"),
                                   WordsOf(u"T.d between thisYear(1)null not_null"),
                                   WordsOf(u"Orders.Photo Orders.File = 'abc' *= =*"),
                                   WordsOf(u"((())) - - not not 1 > 2")};
  for (const Words& set : sets) {
    for (int i = 0; i < 400; ++i) {
      Words words;
      const std::size_t count = 2 + rules.Pick(12);
      while (words.size() < count) words.push_back(AnyOf(rules, set));
      Compare(AnyType(rules), words);
    }
  }
  EXPECT_GT(tally_.refused, 1500);
}

TEST_F(Agreement, OnTypesWithoutAStartRule) {
  const Words words = WordsOf(u"1");
  for (const std::int32_t type : {0, 8, 9, 10, 11, 99, -1}) {
    Compare(static_cast<MXRULE_DATATYPE>(type), words);
  }
  EXPECT_EQ(tally_.refused, 7);
}

}  // namespace
}  // namespace ORKBASE
