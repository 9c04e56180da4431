// Text helpers. Case follows ICU's simple mappings, one 16-bit unit at a time, so that a key never
// changes its length.
#include "foundation/Text.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace ORKBASE {
namespace {

constexpr std::u16string_view kListSeparator = u",";

bool IsSpace(char16_t unit) noexcept {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}
bool IsDigit(char16_t unit) noexcept {
  return unit >= u'0' && unit <= u'9';
}

/// How many units at the start are ASCII and no zero, in whole blocks: a loop without an exit
/// inside a block is one that the compiler does many units at a time.
std::size_t PlainBlocks(std::u16string_view text) noexcept {
  constexpr std::size_t kBlock = 64;
  std::size_t end = 0;
  for (; end + kBlock <= text.size(); end += kBlock) {
    std::uint16_t bits = 0;  // a zero sets them all
    for (std::size_t i = 0; i < kBlock; ++i) {
      const std::uint16_t unit = text[end + i];
      bits |= unit | static_cast<std::uint16_t>(unit - 1);
    }
    if (bits >= 0x80) break;
  }
  return end;
}

}  // namespace

std::string WideToUtf8(std::u16string_view text) {
  const std::size_t plain = PlainBlocks(text);
  // A unit beyond ASCII takes three bytes at most.
  std::string out(plain + (text.size() - plain) * 3, '\0');
  char* const to = out.data();  // by itself, or the compiler reads it anew for every unit
  for (std::size_t i = 0; i < plain; ++i) to[i] = static_cast<char>(text[i]);
  std::size_t length = plain;
  for (std::size_t i = plain; i < text.size() && text[i] != u'\0';) {
    const char16_t unit = text[i];
    if (unit < 0x80) {
      to[length++] = static_cast<char>(unit);
      ++i;
      continue;
    }
    UChar32 point = 0;
    U16_NEXT_OR_FFFD(text.data(), i, text.size(), point);
    U8_APPEND_UNSAFE(to, length, point);
  }
  out.resize(length);
  return out;
}

std::u16string Utf8ToWide(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  std::u16string out(text.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(out.data(), static_cast<std::int32_t>(out.size()), &length, text.data(),
                       static_cast<std::int32_t>(text.size()), 0xFFFD, nullptr, &status);
  out.resize(static_cast<std::size_t>(length));
  return out;
}

std::u16string_view UpToZero(std::u16string_view text) noexcept {
  std::size_t length = 0;
  while (length < text.size() && text[length] != u'\0') ++length;
  return text.substr(0, length);
}

char16_t ToLowerBeyondAscii(char16_t unit) noexcept {
  return static_cast<char16_t>(u_tolower(unit));
}

char16_t ToUpper(char16_t unit) noexcept {
  if (unit < 0x80) return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
  const UChar32 upper = u_toupper(unit);
  return upper > 0xFFFF ? unit : static_cast<char16_t>(upper);
}

std::u16string ToLower(std::u16string_view text) {
  std::u16string out(text);
  for (char16_t& unit : out) unit = ToLower(unit);
  return out;
}

std::u16string ToUpper(std::u16string_view text) {
  std::u16string out(text);
  for (char16_t& unit : out) unit = ToUpper(unit);
  return out;
}

bool EqualsIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(),
                    [](char16_t x, char16_t y) { return ToLower(x) == ToLower(y); });
}

std::vector<std::u16string_view> SplitText(std::u16string_view text,
                                           std::u16string_view separator) {
  std::vector<std::u16string_view> pieces;
  while (!text.empty()) {
    const std::size_t at = separator.empty() ? text.npos : text.find(separator);
    pieces.push_back(text.substr(0, at));
    if (at == text.npos) break;
    text.remove_prefix(at + separator.size());
  }
  return pieces;
}

bool IsListItem(std::u16string_view list, std::u16string_view item) noexcept {
  if (item.empty()) return false;
  for (;;) {
    const std::size_t at = list.find(kListSeparator);
    if (list.substr(0, at) == item) return true;
    if (at == list.npos) return false;
    list.remove_prefix(at + 1);
  }
}

std::u16string ReplaceAll(std::u16string_view text, std::u16string_view from,
                          std::u16string_view to) {
  std::u16string out;
  for (std::size_t at = text.find(from); at != text.npos && !from.empty(); at = text.find(from)) {
    out.append(text.substr(0, at)).append(to);
    text.remove_prefix(at + from.size());
  }
  return out.append(text);
}

std::u16string_view TrimBlanks(std::u16string_view text) noexcept {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

std::int32_t ReadInt(std::u16string_view text) noexcept {
  std::size_t i = 0;
  while (i < text.size() && IsSpace(text[i])) ++i;
  const bool negative = i < text.size() && text[i] == u'-';
  if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) ++i;
  constexpr std::int64_t kLimit = std::int64_t{1} << 31;
  std::int64_t value = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    value = std::min(kLimit, value * 10 + (text[i] - u'0'));
  }
  if (negative) return static_cast<std::int32_t>(-value);
  return static_cast<std::int32_t>(std::min(value, kLimit - 1));
}

bool ReadWholeInt(std::u16string_view text, std::int32_t& value) noexcept {
  std::size_t i = 0;
  while (i < text.size() && IsSpace(text[i])) ++i;
  if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) ++i;
  if (i == text.size()) return false;
  if (!std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(), IsDigit)) {
    return false;
  }
  value = ReadInt(text);
  return true;
}

std::u16string Decimal(std::int64_t value) {
  std::array<char, 24> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return {digits.data(), end};
}

}  // namespace ORKBASE
