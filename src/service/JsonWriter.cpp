#include "service/JsonWriter.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <array>

namespace ORKBASE {
namespace {

/// For each ASCII character the letter behind its backslash, 'u' for one that is written by its
/// number, 0 for one that stands as it is.
constexpr std::array<char, 0x80> kEscapes = [] {
  std::array<char, 0x80> escapes{};
  for (std::size_t i = 0; i < 0x20; ++i) escapes[i] = 'u';
  escapes['\b'] = 'b';
  escapes['\f'] = 'f';
  escapes['\n'] = 'n';
  escapes['\r'] = 'r';
  escapes['\t'] = 't';
  escapes['"'] = '"';
  escapes['\\'] = '\\';
  return escapes;
}();

/// Text on its way out, gathered in pieces so that the string need not be filled beforehand.
class Piece {
 public:
  explicit Piece(std::string& out) : out_(out) {}
  ~Piece() { out_.append(units_.data(), length_); }
  Piece(const Piece&) = delete;
  Piece& operator=(const Piece&) = delete;

  /// Makes room for the longest form of a character.
  void MakeRoom() {
    constexpr std::size_t kLongest = 6;
    if (length_ + kLongest <= units_.size()) return;
    out_.append(units_.data(), length_);
    length_ = 0;
  }
  void Add(char unit) { units_[length_++] = unit; }
  void AddPoint(UChar32 point) { U8_APPEND_UNSAFE(units_.data(), length_, point); }

 private:
  std::string& out_;
  std::array<char, 512> units_;
  std::size_t length_ = 0;
};

void AddEscaped(Piece& piece, char16_t unit, char escape) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  piece.Add('\\');
  piece.Add(escape);
  if (escape != 'u') return;
  piece.Add('0');
  piece.Add('0');
  piece.Add(kDigits[unit >> 4]);
  piece.Add(kDigits[unit & 0xF]);
}

void AddText(Piece& piece, std::u16string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    piece.MakeRoom();
    const char16_t unit = text[at];
    if (unit >= kEscapes.size()) {
      UChar32 point = 0;
      U16_NEXT_OR_FFFD(text.data(), at, text.size(), point);
      piece.AddPoint(point);
      continue;
    }
    ++at;
    if (const char escape = kEscapes[unit]; escape != 0) {
      AddEscaped(piece, unit, escape);
    } else {
      piece.Add(static_cast<char>(unit));
    }
  }
}

template <typename Items, typename AppendItem>
void AppendList(std::string& out, const Items& items, AppendItem append) {
  char mark = '[';
  for (const auto& item : items) {
    out += mark;
    append(item);
    mark = ',';
  }
  out += items.empty() ? "[]" : "]";
}

void AppendRecord(std::string& out, const Record& record) {
  out += '{';
  AppendMembers(out, record);
  out += '}';
}

void AppendValue(std::string& out, const Value& value) {
  struct {
    std::string& out;
    void operator()(std::monostate) const { out += "null"; }
    void operator()(bool truth) const { out += truth ? "true" : "false"; }
    void operator()(std::int64_t number) const { out += std::to_string(number); }
    void operator()(const std::u16string& text) const { AppendJson(out, text); }
    void operator()(const Texts& texts) const {
      AppendList(out, texts, [this](const std::u16string& text) { AppendJson(out, text); });
    }
    void operator()(const Integers& integers) const {
      AppendList(out, integers, [this](std::int64_t number) { out += std::to_string(number); });
    }
    void operator()(const Record& record) const { AppendRecord(out, record); }
    void operator()(const Records& records) const {
      AppendList(out, records, [this](const Record& record) { AppendRecord(out, record); });
    }
  } const append{out};
  std::visit(append, value);
}

}  // namespace

void AppendJson(std::string& out, std::u16string_view text) {
  out += '"';
  {
    Piece piece(out);
    AddText(piece, text);
  }
  out += '"';
}

void AppendMembers(std::string& out, const Record& record) {
  bool first = true;
  for (const Field& field : record) {
    if (!first) out += ',';
    first = false;
    out.append("\"").append(field.name).append("\":");
    AppendValue(out, field.value);
  }
}

}  // namespace ORKBASE
