// The word at the cursor: what is typed of it, and what an accepted proposal replaces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ORKBASE {

struct CursorWord {
  std::size_t begin = 0;
  std::size_t end = 0;          ///< of the whole word, right of the cursor too
  std::u16string_view typed;    ///< its part left of the cursor
  std::u16string_view before;   ///< the last token in front of it; empty for none and for blanks
  bool isTextConstant = false;  ///< the cursor is inside a text
  bool mayBeNumber = false;     ///< the word begins as a number does
};

/// The offset is a place of the text.
CursorWord WordAtCursor(std::u16string_view text, std::int32_t offset) noexcept;

/// Whether two texts that follow each other would be read as one token.
bool WouldJoin(std::u16string_view token, std::u16string_view text);

}  // namespace ORKBASE
