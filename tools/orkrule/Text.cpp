#include "Text.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <limits>

namespace ORKTOOL {

std::optional<std::u16string> FromUtf8(std::string_view text) {
  if (text.size() > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  const auto size = static_cast<std::int32_t>(text.size());
  std::u16string out(text.size(), u'\0');  // no sequence takes more units than bytes
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(out.data(), size, &length, text.data(), size, &status);
  if (U_FAILURE(status)) return std::nullopt;
  out.resize(static_cast<std::size_t>(length));
  return out;
}

std::string ToUtf8(std::u16string_view text) {
  std::string out(text.size() * 3, '\0');  // no unit takes more bytes
  std::size_t length = 0;
  for (std::size_t at = 0; at < text.size();) {
    U8_APPEND_UNSAFE(out.data(), length, NextCodePoint(text, at));
  }
  out.resize(length);
  return out;
}

char32_t NextCodePoint(std::u16string_view text, std::size_t& at) {
  char32_t point = 0;
  U16_NEXT_OR_FFFD(text.data(), at, text.size(), point);
  return point;
}

bool IsControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

std::size_t CharacterWidth(char32_t character) {
  const auto point = static_cast<UChar32>(character);
  const std::int8_t category = u_charType(point);
  if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK || category == U_FORMAT_CHAR) {
    return 0;
  }
  const int width = u_getIntPropertyValue(point, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

std::size_t DisplayWidth(std::u16string_view text) {
  std::size_t width = 0;
  for (std::size_t at = 0; at < text.size();) width += CharacterWidth(NextCodePoint(text, at));
  return width;
}

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == line.npos;
}

std::string Padded(std::string text, std::size_t width) {
  const std::size_t taken = DisplayWidth(FromUtf8(text).value_or(std::u16string()));
  if (taken < width) text.append(width - taken, ' ');
  return text;
}

}  // namespace ORKTOOL
