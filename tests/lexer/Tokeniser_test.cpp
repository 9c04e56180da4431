// Cutting rules into tokens, through the exported lexer.
#include "MxLexicalAnalyzer.h"

#include "CpuSeconds.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

std::vector<std::u16string> Tokens(const std::u16string& text) {
  std::vector<std::u16string> tokens;
  MxLexicalAnalyzer().GenerateOriginalTokens(text, tokens);
  return tokens;
}

/// Tokens with bars between; line feeds and carriage returns as n and r between slashes.
std::string Cut(const std::u16string& text) {
  std::string out;
  for (const std::u16string& token : Tokens(text)) {
    if (!out.empty()) out += '|';
    for (const char c : U8(token)) out += c == '\n' ? "/n/" : c == '\r' ? "/r/" : std::string(1, c);
  }
  return out;
}

/// The state machine as a table, read one character after the other: what the tokeniser has to
/// agree with.
class PlainTokeniser {
 public:
  static std::vector<std::u16string> Tokens(const std::u16string& text) {
    std::vector<std::u16string> tokens;
    std::size_t start = 0;
    while (start < text.size()) {
      std::size_t next = 0;
      tokens.push_back(GetToken(text, start, next));
      start = next;
    }
    return tokens;
  }

 private:
  static bool IsDelimiter(std::u16string_view text) {
    static const std::u16string table = u"|(|)|,|+|-|/|\\|*|=|>|<|&|%|^|>=|<=|<>| |*=|=*|";
    if (text.size() == 1 && text[0] == 0) return true;
    return table.find(std::u16string(u"|").append(text).append(u"|")) != table.npos;
  }

  static std::u16string GetToken(const std::u16string& text, std::size_t start, std::size_t& next) {
    std::u16string scan = text;
    for (char16_t& c : scan) {
      if (c == u'\n' || c == u'\r') c = u' ';
    }
    if (scan.find_first_not_of(u' ') == scan.npos) {
      next = text.size();
      return text;
    }
    int state = 0;
    std::size_t i = start;
    for (; i < scan.size(); ++i) {
      const char16_t c = scan[i];
      const bool delimiter = IsDelimiter({&c, 1});
      int then = -1;
      switch (state) {
        case 0:
          then = c == u' ' ? 5 : delimiter ? 2 : c == u'\'' ? 3 : 1;
          break;
        case 1:
          if (!delimiter) then = 1;
          break;
        case 2:
          if (delimiter && IsDelimiter(std::u16string_view(scan).substr(start, i - start + 1))) {
            then = 2;
          }
          break;
        case 3:
          then = c == u'\'' ? 4 : 3;
          break;
        case 4:
          if (c == u'\'') then = 3;
          break;
        case 5:
          if (c == u' ') then = 5;
          break;
      }
      if (then < 0) break;
      state = then;
    }
    next = i;
    return text.substr(start, i - start);
  }
};

}  // namespace

TEST(Tokeniser, EmptyTextHasNoTokens) {
  EXPECT_TRUE(Tokens(u"").empty());
}

TEST(Tokeniser, BlankTextIsOneToken) {
  EXPECT_EQ(Cut(u"   "), "   ");
  EXPECT_EQ(Cut(u"\n"), "/n/");
  EXPECT_EQ(Cut(u" \r\n "), " /r//n/ ");
}

TEST(Tokeniser, CutsRules) {
  struct Case {
    std::u16string text;
    std::string tokens;
  };
  const Case cases[] = {
      {u"a  b", "a|  |b"},
      {u"a\r\n b", "a|/r//n/ |b"},
      {u"\na", "/n/|a"},
      {u"T1.F1 >= 'x''y'", "T1.F1| |>=| |'x''y'"},
      {u"'it''s'", "'it''s'"},
      {u"'abc", "'abc"},
      {u"'abc ''", "'abc ''"},
      {u"'a'b", "'a'|b"},
      {u"'a'b'", "'a'|b'"},
      {u"''", "''"},
      {u"'", "'"},
      {u"''''", "''''"},
      {u"'a\nb'", "'a/n/b'"},
      {u"x'y", "x'y"},
      {u"x'y z'", "x'y| |z'"},
      {u"(-1)", "(|-|1|)"},
      {u"1e-5", "1e|-|5"},
      {u"1.5", "1.5"},
      {u"))", ")|)"},
      {u"Input.name[S]", "Input.name[S]"},
      {u"Input.my name[S]", "Input.my| |name[S]"},
      {u"yyyy/mm", "yyyy|/|mm"},
      {u"a=*b", "a|=*|b"},
      {u"a=-1", "a|=|-|1"},
      {u"a*=b", "a|*=|b"},
      {u">=*", ">=|*"},
      {u"*=*", "*=|*"},
      {u"<>=", "<>|="},
      {u"<=>", "<=|>"},
      {u"><", ">|<"},
      {u"==", "=|="},
      {u"> =", ">| |="},
      {u">\n=", ">|/n/|="},
      {u"a|b", "a|b"},  // the bar is a letter: one token
      {u"a\tb", "a\tb"},
      {u"[a].[b]", "[a].[b]"},
      {u"\"a b\"", "\"a| |b\""},
      {u"a\\b", "a|\\|b"},
      {u"a&b%c^d", "a|&|b|%|c|^|d"},
      {u"客户.金额>1", "客户.金额|>|1"},
      {u"（1）", "（1）"},  // full-width brackets are letters
      {u"a\x3000z", "a\xE3\x80\x80z"},
      {u"sum(T.a,1)", "sum|(|T.a|,|1|)"},
  };
  for (const Case& c : cases) EXPECT_EQ(Cut(c.text), c.tokens) << U8(c.text);
  EXPECT_EQ(Tokens(u"a|b").size(), 1u);
}

TEST(Tokeniser, ZeroIsADelimiterOfItsOwn) {
  const std::u16string text(u"a\0\0b>\0=", 7);
  const std::vector<std::u16string> tokens = Tokens(text);
  const std::vector<std::u16string> expected = {u"a",
                                                std::u16string(1, u'\0'),
                                                std::u16string(1, u'\0'),
                                                u"b",
                                                u">",
                                                std::u16string(1, u'\0'),
                                                u"="};
  EXPECT_TRUE(tokens == expected);
  EXPECT_EQ(Tokens(std::u16string(u"'a\0b'", 5)).size(), 1u);
}

TEST(Tokeniser, AppendsToWhatIsThere) {
  std::vector<std::u16string> tokens{u"before"};
  MxLexicalAnalyzer lexer;
  lexer.GenerateOriginalTokens(u"a b", tokens);
  EXPECT_EQ(tokens.size(), 4u);
  EXPECT_EQ(U8(lexer.Compose(tokens)), "beforea b");
  EXPECT_EQ(U8(lexer.Compose({})), "");
}

TEST(Tokeniser, JoinsBackToTheInputAndAgreesWithThePlainMachine) {
  static constexpr char16_t kAlphabet[] = u"a1.'[](),+-/\\*=><&%^| \n\r\t\"客\0\xD800";
  constexpr std::u16string_view kAll(kAlphabet, std::size(kAlphabet) - 1);
  std::mt19937 random(1);
  MxLexicalAnalyzer lexer;
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (std::size_t size = random() % 12; size > 0; --size) text += kAll[random() % kAll.size()];
    std::vector<std::u16string> tokens;
    lexer.GenerateOriginalTokens(text, tokens);
    ASSERT_TRUE(lexer.Compose(tokens) == text);
    ASSERT_TRUE(tokens == PlainTokeniser::Tokens(text)) << U8(text);
    for (const std::u16string& token : tokens) ASSERT_FALSE(token.empty());
  }
}

TEST(Tokeniser, TakesLinearTime) {
  const CpuSeconds time;
  EXPECT_EQ(Tokens(std::u16string(1 << 20, u'(')).size(), std::size_t{1} << 20);
  EXPECT_EQ(Tokens(std::u16string(1 << 20, u'9')).size(), 1u);
  EXPECT_EQ(Tokens(std::u16string(1 << 20, u'\'')).size(), 1u);
  EXPECT_EQ(Tokens(std::u16string(1 << 20, u' ')).size(), 1u);
  EXPECT_EQ(Tokens(std::u16string(1 << 20, u'\0')).size(), std::size_t{1} << 20);
  EXPECT_LT(time.Used(), 5);
}
