// Generated rules with one slip each: the first fix has to make them valid again, and to give the
// document of the rule before the slip where only one thing can be meant.
#include "CheckedRules.h"
#include "RuleGenerator.h"
#include "SlipKinds.h"
#include "dictionary/BaseVocabulary.h"

#include <gtest/gtest.h>

#include <iostream>

using namespace ORKBASE;

namespace {

constexpr int kRulesPerKind = 200;
constexpr double kShare = 0.95;

std::u16string DisplayIn(std::u16string_view language, std::u16string_view primary) {
  const auto vocabulary = SharedBaseVocabulary(LanguageNamed(language));
  const MxWord* word = vocabulary->words->FindByPrimary(LookupKey(primary));
  if (word) return word->outDesc;
  const std::size_t dot = primary.find(u'.');
  if (dot == primary.npos) return std::u16string(primary);
  const MxWord* prefix = vocabulary->words->FindByPrimary(LookupKey(primary.substr(0, dot + 1)));
  return prefix ? prefix->outDesc + std::u16string(primary.substr(dot + 1))
                : std::u16string(primary);
}

std::vector<RuleWord> WordsFor(std::u16string_view language) {
  std::vector<RuleWord> words(SampleWords().begin(), SampleWords().end());
  if (language == u"en") return words;
  // clang-format off
  constexpr RuleWord kChinese[] = {
      {u"客户.名称",     kDataFieldSymbol, kStrDataType},
      {u"客户.城市",     kDataFieldSymbol, kStrDataType},
      {u"客户.金额",     kDataFieldSymbol, kNumDataType},
      {u"客户.签约日期", kDataFieldSymbol, kDateDataType},
  };
  // clang-format on
  words.insert(words.end(), std::begin(kChinese), std::end(kChinese));
  return words;
}

/// What came of the rules of one kind.
struct Tally {
  int rules = 0;
  int verified = 0;
  int same = 0;
  std::string failures;
};

class Corpus {
 public:
  explicit Corpus(std::u16string_view language)
      : language_(language), rules_(language), generator_(20240517, WordsFor(language)) {
    generator_.manyWords = 14;
  }

  Tally Run(const SlipKind& kind) {
    Tally tally;
    for (int i = 0; i < 40 * kRulesPerKind && tally.rules < kRulesPerKind; ++i) {
      const GeneratedRule made = MakeFor(kind);
      if (made.words.empty()) continue;
      SpoiltRule rule{TokensOf(made), TokensOf(made), {}};
      const SlipWorld world{generator_.engine(), language_, DisplayIn};
      if (!kind.spoil(rule, world)) continue;
      Count(made.type, rule, tally, kind.isClear);
    }
    return tally;
  }

 private:
  /// Through the row of the kind or through any other.
  GeneratedRule MakeFor(const SlipKind& kind) {
    const std::vector<std::u16string_view> rows = generator_.Rows();
    const bool isOwn = generator_.Pick(2) == 0;
    const int depth = 3 + static_cast<int>(generator_.Pick(4));
    if (!isOwn && generator_.Pick(2) == 0) return generator_.Make(kLogicDataType, depth);
    return generator_.MakeThrough(isOwn ? kind.row : rows[generator_.Pick(rows.size())], depth);
  }
  RuleTokens TokensOf(const GeneratedRule& rule) const {
    RuleTokens tokens;
    for (const MxWord& word : rule.words) {
      tokens.push_back(
          {DisplayIn(language_, word.primary), word.primary, word.symbol, word.dataType});
    }
    return tokens;
  }

  /// A rule counts where it was valid and the slip makes it refused.
  void Count(MXRULE_DATATYPE type, const SpoiltRule& rule, Tally& tally, bool isClear) {
    const std::u16string before = TextOf(rule.rule);
    const std::u16string document = rules_.DocumentOf(type, before);
    const std::u16string spoilt = TextOf(rule.spoilt) + rule.behind;
    if (document.empty() || rules_.Verifies(type, spoilt)) return;
    ++tally.rules;
    const std::vector<RuleProblem> problems = rules_.Check(type, spoilt);
    const std::u16string fixed =
        problems.empty() ? spoilt : FirstFixApplied(spoilt, problems.front());
    const std::u16string after = rules_.DocumentOf(type, fixed);
    if (!after.empty()) ++tally.verified;
    if (after == document) ++tally.same;
    if (after.empty() || (isClear && after != document)) {
      tally.failures += "  " + U8(spoilt) + "\n   was " + U8(before) + "\n   now " + U8(fixed) +
                        "\n   " + Told(spoilt, problems);
    }
  }

  std::u16string_view language_;
  CheckedRules rules_;
  RuleGenerator generator_;
};

void RunAll(std::u16string_view language) {
  Corpus corpus(language);
  for (const SlipKind& kind : SlipKinds()) {
    SCOPED_TRACE(kind.name);
    const Tally tally = corpus.Run(kind);
    std::cout << kind.name << ": " << tally.rules << " rules, " << tally.verified << " verify, "
              << tally.same << " as before\n"
              << tally.failures;
    EXPECT_EQ(tally.rules, kRulesPerKind);
    EXPECT_GE(tally.verified, kShare * tally.rules) << tally.failures;
    if (kind.isClear) {
      EXPECT_GE(tally.same, kShare * tally.rules) << tally.failures;
    }
  }
}

}  // namespace

TEST(SlipCorpus, FirstFixesMendEnglishRules) {
  RunAll(u"en");
}

TEST(SlipCorpus, FirstFixesMendChineseRules) {
  RunAll(u"zh-CN");
}
