#include "store/ValueCode.h"

#include <array>
#include <charconv>
#include <cstring>
#include <limits>

namespace ORKDB {
namespace {

constexpr std::uint64_t kHashPrime = 0x100000001b3ULL;
constexpr std::uint64_t kOtherBasis = 0x9e3779b97f4a7c15ULL;
constexpr std::size_t kLongestShortText = 250;  // of 255, with room for a mark before it
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::string_view kBytesBegin = R"({"bytes":")";
constexpr std::string_view kBytesEnd = R"("})";

enum ValueKind : char { kNull, kWhole, kFraction, kText, kBytes };

template <typename Number>
void AppendNumber(std::string& bytes, Number number) {
  std::array<char, sizeof(Number)> raw;
  std::memcpy(raw.data(), &number, sizeof(Number));
  bytes.append(raw.data(), raw.size());
}

void AppendHex(std::string& text, unsigned byte) {
  text += kDigits[byte >> 4U & 0xFU];
  text += kDigits[byte & 0xFU];
}

int DigitOf(char sign) {
  const std::size_t at = kDigits.find(sign);
  return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

/// `count` digits at the front of the text, which are cut off; -1 where there are others.
int TakeHex(std::string_view& text, std::size_t count) {
  if (text.size() < count) return -1;
  int number = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const int digit = DigitOf(text[i]);
    if (digit < 0) return -1;
    number = number * 16 + digit;
  }
  text.remove_prefix(count);
  return number;
}

bool StandsForItself(char16_t unit) {
  return unit >= u' ' && unit < 0x7F && !(unit >= u'A' && unit <= u'Z') && unit != u'"' &&
         unit != u'\\';
}

struct IdWriter {
  std::string operator()(std::monostate) const { return "null"; }
  std::string operator()(std::int64_t number) const { return std::to_string(number); }
  std::string operator()(double number) const {
    std::array<char, 40> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    std::string text(digits.data(), end);
    if (text.find_first_not_of("-0123456789") == std::string::npos) text += ".0";
    return text;
  }
  std::string operator()(const std::u16string& units) const {
    std::string text = "\"";
    for (const char16_t unit : units) {
      if (StandsForItself(unit)) {
        text += static_cast<char>(unit);
      } else {
        text += "\\u";
        AppendHex(text, unit >> 8U);
        AppendHex(text, unit & 0xFFU);
      }
    }
    return text += '"';
  }
  std::string operator()(const StoreBytes& bytes) const {
    std::string text(kBytesBegin);
    for (const std::byte byte : bytes) AppendHex(text, std::to_integer<unsigned>(byte));
    return text += kBytesEnd;
  }
};

struct ValueWriter {
  std::string& bytes;

  void operator()(std::monostate) const { bytes += kNull; }
  void operator()(std::int64_t number) const {
    bytes += kWhole;
    AppendNumber(bytes, number);
  }
  void operator()(double number) const {
    bytes += kFraction;
    AppendNumber(bytes, number);
  }
  void operator()(const std::u16string& text) const {
    bytes += kText;
    AppendNumber(bytes, static_cast<std::uint64_t>(text.size() * sizeof(char16_t)));
    bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
  }
  void operator()(const StoreBytes& value) const {
    bytes += kBytes;
    AppendNumber(bytes, static_cast<std::uint64_t>(value.size()));
    bytes.append(reinterpret_cast<const char*>(value.data()), value.size());
  }
};

bool ReadTextId(std::string_view text, StoreValue& id) {
  std::u16string units;
  while (!text.empty()) {
    const char sign = text.front();
    text.remove_prefix(1);
    if (sign != '\\') {
      units += static_cast<char16_t>(static_cast<unsigned char>(sign));
      continue;
    }
    if (!text.starts_with('u')) return false;
    text.remove_prefix(1);
    const int unit = TakeHex(text, 4);
    if (unit < 0) return false;
    units += static_cast<char16_t>(unit);
  }
  id = std::move(units);
  return true;
}

bool ReadBytesId(std::string_view text, StoreValue& id) {
  StoreBytes bytes;
  while (!text.empty()) {
    const int byte = TakeHex(text, 2);
    if (byte < 0) return false;
    bytes.push_back(static_cast<std::byte>(byte));
  }
  id = std::move(bytes);
  return true;
}

template <typename Number>
bool ReadNumberId(std::string_view text, StoreValue& id) {
  Number number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return false;
  id = number;
  return true;
}

}  // namespace

std::uint64_t HashOf(std::string_view bytes, std::uint64_t basis) noexcept {
  std::uint64_t hash = basis;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * kHashPrime;
  return hash;
}

std::string HexOf(std::uint64_t number) {
  std::string text;
  for (int shift = 56; shift >= 0; shift -= 8) {
    AppendHex(text, static_cast<unsigned>(number >> static_cast<unsigned>(shift) & 0xFFU));
  }
  return text;
}

void AppendValue(std::string& bytes, const StoreValue& value) {
  std::visit(ValueWriter{bytes}, value);
}

StoreValue ValueReader::Next() {
  const std::string_view kind = Take(1);
  if (failed_) return {};
  switch (kind[0]) {
    case kWhole:
      return static_cast<std::int64_t>(TakeNumber());
    case kFraction: {
      const std::uint64_t raw = TakeNumber();
      double number = 0;
      std::memcpy(&number, &raw, sizeof(number));
      return number;
    }
    case kText: {
      const std::string_view raw = Take(TakeNumber());
      std::u16string text(raw.size() / sizeof(char16_t), u'\0');
      std::memcpy(text.data(), raw.data(), text.size() * sizeof(char16_t));
      return text;
    }
    case kBytes: {
      const std::string_view raw = Take(TakeNumber());
      const auto* begin = reinterpret_cast<const std::byte*>(raw.data());
      return StoreBytes(begin, begin + raw.size());
    }
    default:
      return {};
  }
}

std::string_view ValueReader::Take(std::uint64_t size) noexcept {
  if (size > bytes_.size()) {
    failed_ = true;
    size = 0;
  }
  const std::string_view taken = bytes_.substr(0, size);
  bytes_.remove_prefix(size);
  return taken;
}

std::uint64_t ValueReader::TakeNumber() noexcept {
  const std::string_view raw = Take(sizeof(std::uint64_t));
  std::uint64_t number = 0;
  if (!failed_) std::memcpy(&number, raw.data(), sizeof(number));
  return number;
}

std::string IdText(const StoreValue& id) {
  return std::visit(IdWriter(), id);
}

std::string ShortIdText(const StoreValue& id) {
  std::string text = IdText(id);
  if (text.size() <= kLongestShortText) return text;
  return R"({"length":)" + std::to_string(text.size()) + R"(,"hash":")" + HexOf(HashOf(text)) +
         HexOf(HashOf(text, kOtherBasis)) + R"("})";
}

bool ReadIdText(std::string_view text, StoreValue& id) {
  if (text == "null") {
    id = std::monostate();
    return true;
  }
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
    return ReadTextId(text.substr(1, text.size() - 2), id);
  }
  if (text.size() >= kBytesBegin.size() + kBytesEnd.size() && text.starts_with(kBytesBegin) &&
      text.ends_with(kBytesEnd)) {
    text.remove_prefix(kBytesBegin.size());
    text.remove_suffix(kBytesEnd.size());
    return ReadBytesId(text, id);
  }
  return ReadNumberId<std::int64_t>(text, id) || ReadNumberId<double>(text, id);
}

}  // namespace ORKDB
