// Writing XML text. The forms are those of libxml2's own dump, which a test holds against it.
#include "xml/XmlText.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace ORKBASE {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kDeepestIndent = 30;

std::u16string_view EscapeOf(char16_t unit) noexcept {
  switch (unit) {
    case u'<':
      return u"&lt;"sv;
    case u'>':
      return u"&gt;"sv;
    case u'&':
      return u"&amp;"sv;
    case u'"':
      return u"&quot;"sv;
    case u'\t':
      return u"&#9;"sv;
    case u'\n':
      return u"&#10;"sv;
    case u'\r':
      return u"&#13;"sv;
  }
  return {};
}

/// The units that every value holds as they are.
constexpr std::array<bool, 128> kPlain = [] {
  std::array<bool, 128> table;
  table.fill(true);
  for (const char16_t unit : std::u16string_view(u"\0<>&\"\t\n\r", 8)) table[unit] = false;
  return table;
}();

void AppendReference(TextWriter& out, std::uint32_t point) {
  char16_t digits[8];
  std::size_t length = 0;
  do {
    digits[length++] = u"0123456789ABCDEF"[point % 16];
    point /= 16;
  } while (point != 0);
  out += u"&#x";
  while (length != 0) out += digits[--length];
  out += u';';
}

/// U+FFFE and U+FFFF are no XML characters: each byte of their UTF-8 form gets a reference, but for
/// the very last byte of a value, which stays as it is and so is no UTF-8 any more.
void AppendByteReferences(TextWriter& out, std::uint32_t point, bool endsValue) {
  AppendReference(out, 0xEF);
  AppendReference(out, 0xBF);
  if (endsValue) {
    out += u'\xFFFD';
  } else {
    AppendReference(out, 0x80 + (point & 0x3F));
  }
}

constexpr bool IsPlain(char16_t unit) noexcept {
  return unit < kPlain.size() && kPlain[unit];
}

/// The character at `at`, which is not plain; gives where the next begins.
std::size_t AppendCharacter(TextWriter& out, std::u16string_view value, std::size_t at,
                            XmlCharacters characters) {
  const char16_t unit = value[at];
  if (unit < 0x80 || characters == XmlCharacters::kAsTheyAre) {
    unit < 0x80 ? out += EscapeOf(unit) : out += unit;
    return at + 1;
  }
  UChar32 point = 0;
  U16_NEXT_OR_FFFD(value.data(), at, value.size(), point);
  const auto number = static_cast<std::uint32_t>(point);
  const bool endsValue = at == value.size() || value[at] == u'\0';
  number == 0xFFFE || number == 0xFFFF ? AppendByteReferences(out, number, endsValue)
                                       : AppendReference(out, number);
  return at;
}

}  // namespace

void AppendAttributeValue(TextWriter& out, std::u16string_view value, XmlCharacters characters) {
  for (std::size_t at = 0;;) {
    char16_t* to = out.Room(value.size() - at);
    while (at < value.size() && IsPlain(value[at])) *to++ = value[at++];
    out.WroteUpTo(to);
    if (at == value.size() || value[at] == u'\0') return;
    at = AppendCharacter(out, value, at, characters);
  }
}

void AppendAttribute(TextWriter& out, std::u16string_view name, std::u16string_view value,
                     XmlCharacters characters) {
  out += u' ';
  out += name;
  out += u"=\"";
  AppendAttributeValue(out, value, characters);
  out += u'"';
}

void AppendIndent(TextWriter& out, std::size_t depth) {
  const std::size_t blanks = 2 * std::min(depth, kDeepestIndent);
  out.WroteUpTo(std::fill_n(out.Room(blanks), blanks, u' '));
}

}  // namespace ORKBASE
