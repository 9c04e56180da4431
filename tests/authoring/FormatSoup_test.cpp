// Any text whatever in regular form: it has the same words, its form is its own, and no line is
// longer than it must be.
#include "TwoLanguages.h"

#include "MxLexicalAnalyzer.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace ORKBASE {
namespace {

constexpr int kTexts = 20'000;

// clang-format off
/// What texts are made of, put together with blanks and without.
constexpr std::u16string_view kPieces[] = {
    u"(", u")", u",", u"+", u"-", u"--", u"*", u"/", u"\\", u"=", u"<", u">", u">=", u"<>", u"*=", u"=*",
    u"&", u"%", u"^", u"and", u"OR", u"not", u"null", u"in", u"between", u"like", u"thisSet", u"ROUND",
    u"round(", u"switch(", u"T.a", u"t.A", u"orders.qty", u"Customer.city", u"customer.City", u"T.rcid",
    u"Nothing.x", u"1", u"2.5", u"1e", u"0x", u"nan", u"dd", u"'yyyymmdd'", u"'a'", u"'it''s'", u"''",
    u"'", u"'2020-1-2'", u"Input.x[N]", u"Input.x", u"sms.y[d]", u"thisReport.Header.Total",
    u"THISREPORT.header.total", u"thisReport.T.a", u"thisDoc.TitleBlock.Scale", u"thisDoc.x.y",
    u"sysVar.userName", u"[", u"]", u"[N]", u".", u"..", u"\t", u"\u00A0", u"\u3000", u"\uFF08",
    u"\uFF0D", u"\uFF1E\uFF1D", u"\u4E14", u"\u5BA2\u6237.\u540D\u79F0", u"\xD800", u"\xDC00",
    u"\U0001F600", u"\x01", u"\"", u"!", u"==", u";", u"|", u"averylongwordthatpassesthewidth",
};
constexpr std::u16string_view kBlanks[] = {u"", u"", u" ", u" ", u"\n", u"\r\n  "};
// clang-format on

class TextMaker {
 public:
  explicit TextMaker(std::uint32_t seed) : engine_(seed) {}

  std::size_t Pick(std::size_t bound) { return engine_() % bound; }
  std::u16string Make() {
    std::u16string text;
    for (std::size_t left = Pick(30); left > 0; --left) {
      text += kPieces[Pick(std::size(kPieces))];
      text += kBlanks[Pick(std::size(kBlanks))];
      if (Pick(60) == 0) text += u'\0';
    }
    return text;
  }

 private:
  std::mt19937 engine_;
};

/// The tokens that are not blank.
std::vector<std::u16string> TokensOf(const std::u16string& text) {
  std::vector<std::u16string> all;
  MxLexicalAnalyzer().GenerateOriginalTokens(text, all);
  std::erase_if(all, [](const std::u16string& token) { return IsBlankText(token); });
  return all;
}

void LoadAll(MxExpression& engine) {
  engine.SetRt(u"7");
  engine.SetDts(u"T");
  engine.SetCAXDD(1, U16(SourceText("tests/golden/cax.xml")));
}

class FormatSoup : public testing::Test {
 protected:
  /// Kind, canonical name and place among the tokens of each word that a text depends on.
  std::string UsesOf(const std::u16string& text) {
    std::string all;
    for (const RuleUse& use : authoring_.Uses(text)) {
      all += U8(use.kind) + " " + U8(use.name) + "\n";
    }
    return all;
  }

  void ExpectFormat(const std::u16string& text, std::int32_t width) {
    const std::u16string formatted = authoring_.Format(text, width);
    EXPECT_EQ(U8(authoring_.Format(formatted, width)), U8(formatted));
    const auto tokens = TokensOf(text);
    const auto formattedTokens = TokensOf(formatted);
    ASSERT_EQ(formattedTokens.size(), tokens.size());
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      // A display form is the token in another case, or the same without the word of the record.
      EXPECT_TRUE(EqualsIgnoringCase(tokens[i], formattedTokens[i]) ||
                  ToLower(tokens[i]).ends_with(ToLower(formattedTokens[i])))
          << U8(tokens[i]) << " " << U8(formattedTokens[i]);
      if (tokens[i].front() == u'\'' && formattedTokens[i] != tokens[i]) {
        EXPECT_EQ(U8(formattedTokens[i]), "'yyyymmdd'");
      }
    }
    EXPECT_EQ(UsesOf(formatted), UsesOf(text));
    ExpectLines(formatted, width);
  }

  /// A line that is too long has no place to break: a connective or a comma with a word behind it.
  void ExpectLines(const std::u16string& formatted, std::int32_t width) const {
    if (width <= 0) {
      for (const std::u16string& token : TokensOf(formatted)) {
        if (token.front() == u'\'' && token.find(u'\n') != token.npos) return;
      }
      EXPECT_EQ(formatted.find(u'\n'), formatted.npos);
      return;
    }
    if (formatted.find(u'\'') != formatted.npos) return;  // texts may hold breaks of their own
    for (const std::u16string_view line : SplitText(formatted, u"\n")) {
      if (line.size() <= static_cast<std::size_t>(width)) continue;
      EXPECT_EQ(line.find(u", "), line.npos) << U8(line);
      for (const std::u16string_view word : {u" and ", u" or "}) {
        const std::size_t at = line.find(word, line.find_first_not_of(u' '));
        EXPECT_EQ(at, line.npos) << U8(line);
      }
    }
  }

  void ExpectSoup(std::uint32_t seed) {
    TextMaker texts(seed);
    for (int i = 0; i < kTexts / 2 && !HasFailure(); ++i) {
      const std::u16string text = texts.Make();
      const std::int32_t width = i % 3 == 0 ? 0 : static_cast<std::int32_t>(texts.Pick(60));
      SCOPED_TRACE(U8(ReplaceAll(text, std::u16string_view(u"\0", 1), u"<0>")) + "\n" +
                   std::to_string(width));
      ExpectFormat(text, width);
    }
  }

  SpokenEngine english_{u"en", SampleDatabase(), LoadAll};
  RuleAuthoring authoring_{english_.Engine()};
};

TEST_F(FormatSoup, KeepsTheWordsOfAnyText) {
  authoring_.set_language(u"en");
  ExpectSoup(1);
}

TEST_F(FormatSoup, KeepsTheWordsOfAnyTextWhereTheWordOfTheRecordIsTakenOff) {
  english_.Engine().set_thiscaseVarOn1RcId(false);
  authoring_.set_language(u"en");
  ExpectSoup(2);
}

}  // namespace
}  // namespace ORKBASE
