// Large and deep input: nesting ends at a limit, everything else takes time and memory in
// proportion, and no stack. Each test runs on a thread with a stack of 1 MiB.
#include "parser/RuleInterpreter.h"
#include "platform/ErrorTexts.h"

#include "OrkPlatform.h"
#include "RuleWords.h"
#include "SmallThread.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <deque>
#include <span>
#include <string>
#include <vector>

namespace ORKBASE {
namespace {

/// Words without a copy of their texts, so that a million of them stay small.
class WordList {
 public:
  WordList() = default;
  WordList(WordList&&) = default;  // no copy: the views are of the own words

  WordList& Add(const char16_t* rule, std::size_t times = 1) {
    const std::size_t first = owned_.size();
    for (const MxWord& word : WordsOf(rule)) owned_.push_back(word);
    for (std::size_t i = 0; i < times; ++i) {
      for (std::size_t k = first; k < owned_.size(); ++k) {
        views_.push_back(ViewOf(owned_[k]));
        views_.back().token = static_cast<std::int32_t>(views_.size() - 1);
      }
    }
    return *this;
  }
  std::span<const WordView> views() const { return views_; }

 private:
  std::deque<MxWord> owned_;
  std::vector<WordView> views_;
};

struct Outcome {
  bool holds = false;
  std::u16string document;
  std::u16string description;
  std::int32_t refused = -1;
};

Outcome ParseOnSmallStack(MXRULE_DATATYPE type, const WordList& words) {
  Outcome outcome;
  OnSmallThread([&] {
    SetThreadLanguage(u"en");
    MxErrorRecord error;
    outcome.holds =
        RuleInterpreter().ParseExpr(type, words.views(), outcome.document, error, outcome.refused);
    outcome.description = DescriptionOf(error);
  });
  return outcome;
}

constexpr std::size_t kMost = 1000;
static_assert(kDeepestNesting == kMost);

struct Nest {
  const char* title;
  MXRULE_DATATYPE type;
  const char16_t* open;
  const char16_t* core;
  const char16_t* close;
};

const Nest kNests[] = {
    {"brackets of numbers", kNumDataType, u"(", u"1", u")"},
    {"brackets of texts", kStrDataType, u"(", u"'abc'", u")"},
    {"brackets of conditions", kLogicDataType, u"(", u"T.a>1", u")"},
    {"brackets of a compared number", kLogicDataType, u"(", u"T.a", u")"},
    {"brackets of any value", kVarDataType, u"(", u"'abc'", u")"},
    {"calls", kNumDataType, u"log(", u"1", u")"},
    {"calls in texts", kVarDataType, u"toUpper(", u"'abc'", u")"},
    {"switch in a branch", kNumDataType, u"switch(T.a>1,1,", u"2", u")"},
    {"switch of texts", kVarDataType, u"switch(T.a>1,", u"'abc'", u",'x')"},
    {"minus", kNumDataType, u"-", u"1", u""},
    {"not", kLogicDataType, u"not", u"T.a>1", u""},
};

WordList Nested(const Nest& nest, std::size_t depth) {
  WordList words;
  words.Add(nest.open, depth).Add(nest.core).Add(nest.close, depth);
  if (std::u16string_view(nest.core) == u"T.a") words.Add(u">1");
  return words;
}

TEST(NestingLimit, TakesAThousandAndRefusesOneMore) {
  for (const Nest& nest : kNests) {
    SCOPED_TRACE(nest.title);
    const Outcome most = ParseOnSmallStack(nest.type, Nested(nest, kMost));
    EXPECT_TRUE(most.holds) << U8(most.description);
    const Outcome more = ParseOnSmallStack(nest.type, Nested(nest, kMost + 1));
    EXPECT_FALSE(more.holds);
    EXPECT_EQ(U8(more.description), "The rule is nested too deeply.");
    EXPECT_EQ(U8(more.document), "");
  }
}

TEST(NestingLimit, CountsAllKindsTogether) {
  WordList most;
  most.Add(u"not", 400).Add(u"(", 300).Add(u"-", 200).Add(u"log(", 100).Add(u"1>2");
  EXPECT_FALSE(ParseOnSmallStack(kLogicDataType, most).holds);
  const auto nested = [](std::size_t calls) {
    WordList words;
    words.Add(u"not", 400).Add(u"(", 300).Add(u"-", 200).Add(u"log(", calls).Add(u"1");
    words.Add(u")", calls).Add(u">2").Add(u")", 300);
    return words;
  };
  EXPECT_TRUE(ParseOnSmallStack(kLogicDataType, nested(100)).holds);
  EXPECT_EQ(U8(ParseOnSmallStack(kLogicDataType, nested(101)).description),
            "The rule is nested too deeply.");
}

TEST(NestingLimit, CountsOnlyWhatIsOpenAtOnce) {
  WordList words;
  words.Add(u"(1)+log(-1)").Add(u"+(1)*log((1))", 3000);
  EXPECT_TRUE(ParseOnSmallStack(kNumDataType, words).holds);
}

TEST(NestingLimit, EndsTheParseAtTheWordThatIsTooDeep) {
  WordList words;
  words.Add(u"(", 5000).Add(u"T.a>1");
  const Outcome outcome = ParseOnSmallStack(kLogicDataType, words);
  EXPECT_FALSE(outcome.holds);
  EXPECT_EQ(outcome.refused, static_cast<std::int32_t>(kMost));
}

TEST(LargeInput, AMebibyteOfOneBracket) {
  WordList open;
  open.Add(u"(", 1 << 20);
  EXPECT_EQ(U8(ParseOnSmallStack(kVarDataType, open).description),
            "The rule is nested too deeply.");
  WordList close;
  close.Add(u")", 1 << 20);
  const Outcome outcome = ParseOnSmallStack(kVarDataType, close);
  EXPECT_FALSE(outcome.holds);
  EXPECT_EQ(outcome.refused, 0);
}

TEST(LargeInput, AMebibyteOfDigits) {
  WordList words;
  const std::u16string digits(1 << 20, u'7');
  words.Add(digits.c_str());
  const Outcome outcome = ParseOnSmallStack(kNumDataType, words);
  EXPECT_TRUE(outcome.holds);
  EXPECT_GT(outcome.document.size(), 3 * digits.size());
}

TEST(LargeInput, AHundredThousandConditions) {
  WordList words;
  words.Add(u"T.a>1").Add(u"or T.b<2", 99'999);
  const Outcome outcome = ParseOnSmallStack(kLogicDataType, words);
  EXPECT_TRUE(outcome.holds);
  std::size_t elements = 0;
  for (std::size_t at = 0; (at = outcome.document.find(u"<tag ", at)) != outcome.document.npos;) {
    ++elements;
    ++at;
  }
  EXPECT_EQ(elements, 399'999U);
  // The last "or" is the root, and the last condition is its second child.
  EXPECT_TRUE(outcome.document.starts_with(u"<tag primary=\"or\""));
  EXPECT_TRUE(outcome.document.ends_with(u"content=\"2\"/>\n  </tag>\n</tag>"));
}

TEST(LargeInput, AChainThatBreaksAtItsEnd) {
  WordList words;
  words.Add(u"T.a>1 or", 20'000);
  const Outcome outcome = ParseOnSmallStack(kLogicDataType, words);
  EXPECT_FALSE(outcome.holds);
  EXPECT_EQ(outcome.refused, static_cast<std::int32_t>(words.views().size()));
  EXPECT_EQ(U8(outcome.description), "The rule ends too early, something is missing at its end.");
}

/// Without a memory each of these would take longer than the world has.
TEST(LargeInput, NestingThatWouldTakeExponentialTime) {
  for (const Nest& nest : kNests) {
    SCOPED_TRACE(nest.title);
    WordList broken = Nested(nest, 300);
    broken.Add(u")");
    EXPECT_FALSE(ParseOnSmallStack(nest.type, broken).holds);
  }
  WordList conditions;
  conditions.Add(u"switch(switch(", 150).Add(u"T.a>1");
  EXPECT_FALSE(ParseOnSmallStack(kVarDataType, conditions).holds);
}

TEST(RefusedWord, IsTheOneThatTheMessageQuotesOrTheEnd) {
  struct {
    const char16_t* rule;
    std::int32_t word;
  } const rows[] = {{u"1+'abc'", 2}, {u"1 2", 1}, {u"1+", 2}, {u"sum(1))", 4}, {u"", 0}};
  for (const auto& row : rows) {
    WordList words;
    words.Add(row.rule);
    const Outcome outcome = ParseOnSmallStack(kNumDataType, words);
    EXPECT_FALSE(outcome.holds);
    EXPECT_EQ(outcome.refused, row.word) << U8(row.rule);
  }
}

}  // namespace
}  // namespace ORKBASE
