// Comparing attributes with numbers the way an XPath query does.
#pragma once

#include <cstdint>
#include <string_view>

namespace ORKBASE {

/// Whether the text as a number equals `value`: white space around it, leading zeros and a fraction
/// of zeros do not matter, anything else does.
constexpr bool EqualsNumber(std::u16string_view text, std::int32_t value) noexcept {
  const auto isSpace = [](char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
  };
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  if (const std::size_t dot = text.find(u'.'); dot != text.npos && dot > 0) {
    if (text.find_first_not_of(u'0', dot + 1) != text.npos) return false;
    text = text.substr(0, dot);
  }
  if (text.empty()) return false;
  std::int64_t number = 0;
  for (const char16_t c : text) {
    if (c < u'0' || c > u'9' || number > INT32_MAX) return false;
    number = number * 10 + (c - u'0');
  }
  return number == value;
}

}  // namespace ORKBASE
