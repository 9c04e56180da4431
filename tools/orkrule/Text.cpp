#include "Text.h"

#include <unicode/uchar.h>

namespace ORKTOOL {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

/// Number of bytes of the sequence that begins with `lead`, 0 where none can.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

/// Reads the sequence at `at`, which moves behind it; nothing where it is not well-formed.
std::optional<char32_t> ReadSequence(std::string_view text, std::size_t& at) {
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = SequenceLength(lead);
  if (length == 0 || text.size() - at < length) return std::nullopt;
  char32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + i]);
    if ((byte & 0xC0u) != 0x80) return std::nullopt;
    character = (character << 6) | (byte & 0x3Fu);
  }
  const bool surrogate = IsHighSurrogate(character) || IsLowSurrogate(character);
  if (character < kLeast[length] || character > 0x10FFFF || surrogate) return std::nullopt;
  at += length;
  return character;
}

void AppendUtf16(std::u16string& out, char32_t character) {
  if (character < 0x10000) {
    out += static_cast<char16_t>(character);
    return;
  }
  out += static_cast<char16_t>(0xD7C0 + (character >> 10));
  out += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

void AppendUtf8(std::string& out, char32_t character) {
  const auto trail = [&out, character](unsigned shift) {
    out += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  };
  if (character < 0x80) {
    out += static_cast<char>(character);
  } else if (character < 0x800) {
    out += static_cast<char>(0xC0 | (character >> 6));
    trail(0);
  } else if (character < 0x10000) {
    out += static_cast<char>(0xE0 | (character >> 12));
    trail(6), trail(0);
  } else {
    out += static_cast<char>(0xF0 | (character >> 18));
    trail(12), trail(6), trail(0);
  }
}

}  // namespace

std::optional<std::u16string> FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::optional<char32_t> character = ReadSequence(text, at);
    if (!character) return std::nullopt;
    AppendUtf16(out, *character);
  }
  return out;
}

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) AppendUtf8(out, NextCodePoint(text, at));
  return out;
}

char32_t NextCodePoint(std::u16string_view text, std::size_t& at) {
  const char32_t first = text[at++];
  if (IsLowSurrogate(first)) return kReplacement;
  if (!IsHighSurrogate(first)) return first;
  if (at == text.size() || !IsLowSurrogate(text[at])) return kReplacement;
  const char32_t second = text[at++];
  return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
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

std::string Padded(std::string text, std::size_t width) {
  const std::size_t taken = DisplayWidth(FromUtf8(text).value_or(std::u16string()));
  if (taken < width) text.append(width - taken, ' ');
  return text;
}

}  // namespace ORKTOOL
