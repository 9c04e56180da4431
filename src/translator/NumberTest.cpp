// Numbers as XPath reads them.
#include "translator/NumberTest.h"

#include <charconv>
#include <string>

namespace ORKBASE {
namespace {

constexpr std::u16string_view kSpaces = u" \t\n\r";

bool IsDigit(char16_t unit) noexcept {
  return unit >= u'0' && unit <= u'9';
}

/// Behind the digits: nothing, or an exponent that counts as 0 because it has no digits.
bool EndsNumber(std::string_view rest) noexcept {
  return rest.empty() || rest == "e" || rest == "E" || rest == "e+" || rest == "E+" ||
         rest == "e-" || rest == "E-";
}

}  // namespace

bool EqualsNumber(std::u16string_view text, std::int32_t value) {
  const std::size_t begin = text.find_first_not_of(kSpaces);
  if (begin == text.npos) return false;
  text = text.substr(begin, text.find_last_not_of(kSpaces) - begin + 1);
  if (text.size() == 1) return IsDigit(text[0]) && text[0] - u'0' == value;
  if (text.size() == 2 && IsDigit(text[0]) && IsDigit(text[1])) {
    return (text[0] - u'0') * 10 + (text[1] - u'0') == value;
  }

  if (!IsDigit(text.front()) && text.front() != u'.') return false;
  std::string narrow;
  for (const char16_t unit : text) {
    if (unit >= 0x80) return false;
    narrow += static_cast<char>(unit);
  }
  double number = 0;
  const char* const end = narrow.data() + narrow.size();
  const auto read = std::from_chars(narrow.data(), end, number);
  return read.ec == std::errc() && number == value && EndsNumber({read.ptr, end});
}

}  // namespace ORKBASE
