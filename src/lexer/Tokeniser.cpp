// The tokeniser: a small state machine. The language has no comments and no escapes; "[" and "."
// are letters, and a quote is special only at the start of a token.
#include "lexer/Tokeniser.h"

#include <array>

#include "foundation/Text.h"

namespace ORKBASE {
namespace {

constexpr std::u16string_view kOneCharacter = u"(),+-/\\*=><&%^";
constexpr std::u16string_view kTwoCharacters[] = {u">=", u"<=", u"<>", u"*=", u"=*"};

constexpr std::array<bool, 128> kDelimiters = [] {
  std::array<bool, 128> table{};
  for (const char16_t one : kOneCharacter) table[one] = true;
  for (const char16_t one : {u'\0', u' ', u'\n', u'\r'}) table[one] = true;
  return table;
}();

}  // namespace

bool IsDelimiter(char16_t unit) noexcept {
  return unit < kDelimiters.size() && kDelimiters[unit];
}

namespace {

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
  while (i < text.size() && !IsDelimiter(text[i])) ++i;
  return i;
}

std::u16string_view FirstToken(std::u16string_view text) noexcept {
  const char16_t first = text.front();
  if (IsBlank(first)) return text.substr(0, BlanksEnd(text));
  if (IsDelimiter(first)) return text.substr(0, OperatorEnd(text));
  if (first == u'\'') return text.substr(0, TextConstantEnd(text));
  return text.substr(0, WordEnd(text));
}

}  // namespace

void Tokens::Iterator::Cut() noexcept {
  token_ = rest_.empty() ? rest_ : FirstToken(rest_);
}

}  // namespace ORKBASE
