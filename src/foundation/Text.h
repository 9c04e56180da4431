// The text helpers that everything shares: conversions, case, splitting and the list test.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ORKBASE {

/// UTF-16 to UTF-8, up to the first zero. A lone surrogate becomes U+FFFD.
std::string WideToUtf8(std::u16string_view text);
/// UTF-8 to UTF-16, up to the first zero. Broken sequences become U+FFFD.
std::u16string Utf8ToWide(std::string_view text);

/// The text up to its first zero.
std::u16string_view UpToZero(std::u16string_view text) noexcept;

/// Each 16-bit unit by its simple mapping, so the length stays.
char16_t ToLowerBeyondAscii(char16_t unit) noexcept;
inline char16_t ToLower(char16_t unit) noexcept {
  if (unit >= 0x80) return ToLowerBeyondAscii(unit);
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}
char16_t ToUpper(char16_t unit) noexcept;
std::u16string ToLower(std::u16string_view text);
std::u16string ToUpper(std::u16string_view text);
/// Equality after lower-casing.
bool EqualsIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept;

/// The pieces between occurrences of the whole separator. Nothing is added behind a separator at
/// the very end, and the empty text has no piece.
std::vector<std::u16string_view> SplitText(std::u16string_view text, std::u16string_view separator);

/// Whether `item` is a whole piece of a comma list. The empty name is never an item.
bool IsListItem(std::u16string_view list, std::u16string_view item) noexcept;

/// `text` with every occurrence of `from` replaced, from left to right, never inside what was put
/// in.
std::u16string ReplaceAll(std::u16string_view text, std::u16string_view from,
                          std::u16string_view to);

/// A blank, a line feed or a carriage return.
constexpr bool IsBlank(char16_t unit) noexcept {
  return unit == u' ' || unit == u'\n' || unit == u'\r';
}
/// True for an empty text and one of nothing but blanks.
constexpr bool IsBlankText(std::u16string_view text) noexcept {
  for (const char16_t unit : text) {
    if (!IsBlank(unit)) return false;
  }
  return true;
}
std::u16string_view TrimBlanks(std::u16string_view text) noexcept;

/// Leading white space, a sign and digits, held to 32 bits; 0 where there are none.
std::int32_t ReadInt(std::u16string_view text) noexcept;
/// The decimal number that makes up the whole text; false for anything else.
bool ReadWholeInt(std::u16string_view text, std::int32_t& value) noexcept;
std::u16string Decimal(std::int64_t value);

}  // namespace ORKBASE
