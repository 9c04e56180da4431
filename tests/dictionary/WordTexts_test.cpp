// What the words of the language do and what their parameters are called, as people read it: one
// sentence for each word, and for each function as many labels as the grammar gives it parameters.
#include "dictionary/VocabularyTables.h"

#include "Utf8.h"
#include "foundation/Text.h"
#include "parser/CompiledGrammar.h"
#include "platform/MessageTexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace ORKBASE {
namespace {

constexpr std::size_t kLongest = 160;  // units that an editor shows beside a word

struct Reader {
  const char16_t* tag;
  const char16_t* fullStop;
};

struct Word {
  std::u16string primary;
  std::int32_t info;
};

/// Every word of a table with the number of its sentence.
template <std::size_t N>
void AddWords(const VocabularyRow (&rows)[N], std::vector<Word>& words) {
  for (const VocabularyRow& row : rows) {
    std::int32_t info = row.info;
    for (const std::u16string_view primary : SplitText(row.primary, u"|"))
      words.push_back({std::u16string(primary), info++});
  }
}

std::vector<Word> AllWords() {
  std::vector<Word> words;
  AddWords(kFunctionRows, words);
  AddWords(kOperatorRows, words);
  AddWords(kOtherRows, words);
  return words;
}

/// How many parameters stand in a list of them; one in a group counts once.
std::size_t CountParameters(std::u16string_view list) {
  std::size_t count = 0;
  for (const std::u16string_view item : CutIntoItems(list)) {
    if (item.front() == u'{' || item.front() == u'[') {
      count += CountParameters(item.substr(1, item.size() - 2));
    } else {
      count += item == u"," ? 0U : 1U;
    }
  }
  return count;
}

/// Of each function the parameters of its longest form, by lower-case name.
std::map<std::u16string, std::size_t> ParametersOfFunctions() {
  std::map<std::u16string, std::size_t> counts;
  for (const SyntaxRule& rule : kSyntaxRules) {
    if (rule.semanticType != kFunctionSemantic) continue;
    const std::size_t open = rule.body.find(u'(');
    const std::u16string_view list = rule.body.substr(open + 1, rule.body.size() - open - 2);
    std::size_t& count = counts[ToLower(rule.body.substr(0, open))];
    count = std::max(count, CountParameters(list));
  }
  return counts;
}

class WordTexts : public testing::TestWithParam<Reader> {
 protected:
  static std::u16string Text(std::int32_t number) {
    return LoadMessage(number, LanguageNamed(GetParam().tag));
  }

  static void ExpectSentence(std::u16string_view text) {
    EXPECT_TRUE(text.ends_with(GetParam().fullStop)) << U8(text);
    EXPECT_LE(text.size(), kLongest) << U8(text);
    EXPECT_EQ(text.find(u'|'), text.npos) << U8(text);
  }

  /// The labels of a function; a sentence behind a label is one.
  static std::vector<std::u16string_view> LabelsOf(std::u16string_view text) {
    std::vector<std::u16string_view> labels;
    if (text.empty()) return labels;
    for (const std::u16string_view parameter : SplitText(text, u"|")) {
      const std::size_t colon = parameter.find(u": ");
      labels.push_back(parameter.substr(0, colon));
      if (colon != parameter.npos) ExpectSentence(parameter.substr(colon + 2));
    }
    return labels;
  }
};

TEST_P(WordTexts, SayOfEveryWordInASentenceWhatItDoes) {
  for (const Word& word : AllWords()) {
    ASSERT_NE(Text(word.info), u"") << U8(word.primary);
    ExpectSentence(Text(word.info));
  }
}

TEST_P(WordTexts, DifferFromWordToWord) {
  std::map<std::u16string, std::u16string> seen;
  for (const Word& word : AllWords()) {
    const auto [other, isNew] = seen.emplace(Text(word.info), word.primary);
    EXPECT_TRUE(isNew) << U8(word.primary) << " and " << U8(other->second);
  }
  // 80 functions, 27 operators and marks, 24 date parts and styles, 28 prefixes and variables.
  EXPECT_EQ(seen.size(), 80U + 27U + 24U + 28U);
}

TEST_P(WordTexts, NameTheParametersThatTheGrammarGives) {
  std::map<std::u16string, std::size_t> expected = ParametersOfFunctions();
  ASSERT_EQ(expected.size(), std::size(kFunctionRows));
  EXPECT_EQ(expected.at(u"switch"), 5U);  // (condition, value{, condition, value}[, otherwise])
  EXPECT_EQ(expected.at(u"totext"), 2U);  // the longer of its two forms
  EXPECT_EQ(expected.at(u"rand"), 0U);
  for (const VocabularyRow& row : kFunctionRows) {
    const std::u16string text = Text(row.info + 1);
    EXPECT_EQ(LabelsOf(text).size(), expected.at(ToLower(row.primary))) << U8(row.primary);
  }
}

TEST_P(WordTexts, NameEveryParameterByALabelOfItsOwn) {
  for (const VocabularyRow& row : kFunctionRows) {
    const std::u16string text = Text(row.info + 1);
    std::set<std::u16string_view> seen;
    for (const std::u16string_view label : LabelsOf(text)) {
      EXPECT_FALSE(label.empty()) << U8(row.primary);
      EXPECT_EQ(label.find_first_of(u",:(){}[]$"), label.npos) << U8(label);
      EXPECT_TRUE(seen.insert(label).second) << U8(row.primary) << ' ' << U8(label);
    }
  }
}

TEST(WordTextsOfAllLanguages, AreTranslated) {
  for (const Word& word : AllWords()) {
    EXPECT_NE(U8(LoadMessage(word.info, LanguageNamed(u"en"))),
              U8(LoadMessage(word.info, LanguageNamed(u"zh-CN"))));
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, WordTexts,
                         testing::Values(Reader{u"en", u"."}, Reader{u"zh-CN", u"。"}),
                         [](const auto& reader) {
                           return std::u16string_view(reader.param.tag) == u"en" ? "en" : "zh";
                         });

}  // namespace
}  // namespace ORKBASE
