// The tokeniser: a small state machine. The language has no comments and no escapes; "[" and "."
// are letters, and a quote is special only at the start of a token.
#include "lexer/Tokeniser.h"

#include <array>
#include <cstdint>

#include "foundation/Text.h"

namespace ORKBASE {
namespace {

/// What a character begins; letters are most of them.
enum class Begins : std::uint8_t { kWord, kText, kBlanks, kOperator, kLongOperator };

constexpr std::u16string_view kOneCharacter = u"(),+-/\\*=><&%^";
constexpr std::u16string_view kTwoCharacters[] = {u">=", u"<=", u"<>", u"*=", u"=*"};

constexpr std::array<Begins, 128> kBegins = [] {
  std::array<Begins, 128> table{};
  for (const char16_t one : kOneCharacter) table[one] = Begins::kOperator;
  for (const std::u16string_view two : kTwoCharacters) table[two[0]] = Begins::kLongOperator;
  for (const char16_t blank : {u' ', u'\n', u'\r'}) table[blank] = Begins::kBlanks;
  table[u'\0'] = Begins::kOperator;
  table[u'\''] = Begins::kText;
  return table;
}();

constexpr Begins BegunBy(char16_t c) noexcept {
  return c < kBegins.size() ? kBegins[c] : Begins::kWord;
}

/// Whether a word ends in front of it; a quote inside a word is a letter.
constexpr bool EndsWord(char16_t unit) noexcept {
  return BegunBy(unit) >= Begins::kBlanks;
}

std::size_t BlanksEnd(std::u16string_view text) noexcept {
  std::size_t i = 1;
  while (i < text.size() && IsBlank(text[i])) ++i;
  return i;
}

std::size_t OperatorEnd(std::u16string_view text) noexcept {
  if (text.size() < 2) return 1;
  for (const std::u16string_view two : kTwoCharacters) {
    if (text[0] == two[0] && text[1] == two[1]) return 2;
  }
  return 1;
}

/// Behind the closing quote; a doubled quote does not close.
std::size_t TextConstantEnd(std::u16string_view text) noexcept {
  std::size_t i = 1;
  for (;;) {
    i = text.find(u'\'', i);
    if (i == text.npos) return text.size();
    if (i + 1 == text.size() || text[i + 1] != u'\'') return i + 1;
    i += 2;
  }
}

std::size_t WordEnd(std::u16string_view text) noexcept {
  std::size_t i = 1;
  while (i < text.size() && !EndsWord(text[i])) ++i;
  return i;
}

std::size_t FirstTokenEnd(std::u16string_view text) noexcept {
  switch (BegunBy(text.front())) {
    case Begins::kOperator:
      return 1;
    case Begins::kLongOperator:
      return OperatorEnd(text);
    case Begins::kBlanks:
      return BlanksEnd(text);
    case Begins::kText:
      return TextConstantEnd(text);
    case Begins::kWord:
      break;
  }
  return WordEnd(text);
}

}  // namespace

bool IsDelimiter(char16_t unit) noexcept {
  return EndsWord(unit);
}

void Tokens::Iterator::Cut() noexcept {
  token_ = rest_.empty() ? rest_ : rest_.substr(0, FirstTokenEnd(rest_));
}

}  // namespace ORKBASE
