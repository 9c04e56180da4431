// How attribute values stand in XML text: byte for byte what libxml2 writes.
#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/TextWriter.h"

namespace ORKBASE {

/// The text of a document says that it is UTF-8, the text of a node alone says nothing.
enum class XmlCharacters {
  kAsTheyAre,     ///< in a document
  kAsReferences,  ///< in a node: every character from U+0080 on as `&#xHEX;`
};

/// The value ends at its first zero.
void AppendAttributeValue(TextWriter& out, std::u16string_view value, XmlCharacters characters);
/// ` name="value"`.
void AppendAttribute(TextWriter& out, std::u16string_view name, std::u16string_view value,
                     XmlCharacters characters);
/// The blanks in front of an element of this depth: two a level, sixty at most.
void AppendIndent(TextWriter& out, std::size_t depth);

/// Whether an XML document may hold this 16-bit unit (surrogates are judged in pairs elsewhere).
constexpr bool IsXmlUnit(char16_t unit) noexcept {
  return unit >= 0x20 ? unit < 0xFFFE : unit == u'\t' || unit == u'\n' || unit == u'\r';
}

}  // namespace ORKBASE
