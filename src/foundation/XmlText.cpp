// Writing XML text. The forms are those of libxml2's own dump, which a test holds against it.
#include "foundation/XmlText.h"

#include <unicode/utf16.h>

#include <algorithm>

namespace ORKBASE {
namespace {

constexpr std::size_t kDeepestIndent = 30;

std::u16string_view EscapeOf(char16_t unit) noexcept {
  switch (unit) {
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    case u'&':
      return u"&amp;";
    case u'"':
      return u"&quot;";
    case u'\t':
      return u"&#9;";
    case u'\n':
      return u"&#10;";
    case u'\r':
      return u"&#13;";
  }
  return {};
}

/// The characters of `EscapeOf`; all lie below U+0040.
constexpr bool IsEscaped(char16_t unit) noexcept {
  constexpr std::uint64_t kEscaped = [] {
    std::uint64_t bits = 0;
    for (const char16_t c : std::u16string_view(u"<>&\"\t\n\r")) bits |= std::uint64_t{1} << c;
    return bits;
  }();
  return unit < 64 && (kEscaped >> unit & 1) != 0;
}

void AppendReference(std::u16string& out, std::uint32_t point) {
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
void AppendByteReferences(std::u16string& out, std::uint32_t point, bool endsValue) {
  AppendReference(out, 0xEF);
  AppendReference(out, 0xBF);
  if (endsValue) {
    out += u'\xFFFD';
  } else {
    AppendReference(out, 0x80 + (point & 0x3F));
  }
}

}  // namespace

void AppendAttributeValue(std::u16string& out, std::u16string_view value,
                          XmlCharacters characters) {
  std::size_t done = 0;
  const auto flush = [&](std::size_t end) { out.append(value, done, end - done); };
  for (std::size_t i = 0; i < value.size();) {
    const char16_t unit = value[i];
    if (unit < 0x80) {
      if (IsEscaped(unit)) {
        flush(i);
        out += EscapeOf(unit);
        done = i + 1;
      }
      ++i;
    } else if (characters == XmlCharacters::kAsTheyAre) {
      ++i;
    } else {
      flush(i);
      UChar32 point = 0;
      U16_NEXT_OR_FFFD(value.data(), i, value.size(), point);
      const auto number = static_cast<std::uint32_t>(point);
      number == 0xFFFE || number == 0xFFFF ? AppendByteReferences(out, number, i == value.size())
                                           : AppendReference(out, number);
      done = i;
    }
  }
  flush(value.size());
}

void AppendAttribute(std::u16string& out, std::u16string_view name, std::u16string_view value,
                     XmlCharacters characters) {
  out += u' ';
  out += name;
  out += u"=\"";
  AppendAttributeValue(out, value, characters);
  out += u'"';
}

void AppendIndent(std::u16string& out, std::size_t depth) {
  out.append(2 * std::min(depth, kDeepestIndent), u' ');
}

}  // namespace ORKBASE
