#include "StoreValues.h"

#include "Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace ORKTOOL {
namespace {

constexpr std::size_t kLongestShown = 60;  // characters of a value in a report

template <typename Number>
std::u16string Digits(Number number) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  return {text.data(), end};
}

std::string HexText(const ORKDB::StoreBytes& bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = "x'";
  for (const std::byte each : bytes) {
    const auto number = std::to_integer<std::size_t>(each);
    text += kDigits[number / 16];
    text += kDigits[number % 16];
  }
  return text += '\'';
}

char16_t Folded(char16_t unit) noexcept {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

}  // namespace

std::optional<std::u16string> TextOfValue(const ORKDB::StoreValue& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) return *text;
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return Digits(*whole);
  if (const auto* number = std::get_if<double>(&value)) return Digits(*number);
  return std::nullopt;
}

std::string ShownValue(const ORKDB::StoreValue& value) {
  if (std::holds_alternative<std::monostate>(value)) return "NULL";
  if (const auto* bytes = std::get_if<ORKDB::StoreBytes>(&value)) {
    const std::size_t shown = std::min(bytes->size(), kLongestShown / 2);
    const auto end = bytes->begin() + static_cast<std::ptrdiff_t>(shown);
    return HexText({bytes->begin(), end}) + (shown < bytes->size() ? "..." : "");
  }
  const std::u16string text = TextOfValue(value).value_or(std::u16string());
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size() && count < kLongestShown; ++count) {
    NextCodePoint(text, end);
  }
  return OneLine(std::u16string_view(text).substr(0, end)) + (end < text.size() ? "..." : "");
}

Json JsonOfValue(const ORKDB::StoreValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return *whole;
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* text = std::get_if<std::u16string>(&value)) return ToUtf8(*text);
  if (const auto* bytes = std::get_if<ORKDB::StoreBytes>(&value)) return HexText(*bytes);
  return nullptr;
}

std::string OneLine(std::u16string_view text) {
  std::u16string line(text);
  std::replace_if(line.begin(), line.end(), IsControl, u' ');
  return ToUtf8(line);
}

bool IsSameName(std::u16string_view one, std::u16string_view other) noexcept {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char16_t a, char16_t b) { return Folded(a) == Folded(b); });
}

}  // namespace ORKTOOL
