// A word as the stages hand it on: texts by reference, nothing copied.
#pragma once

#include <cstdint>
#include <string_view>

#include "MxWord.h"

namespace ORKBASE {

/// What `MxWord::postfixCheck` asks for.
enum PostfixCheck : std::int32_t {
  kNoPostfix = 0,
  kTypePostfix = 1,   ///< a data type, "[S]"
  kTablePostfix = 2,  ///< a data table, "[name]"
};

/// One word whose texts lie elsewhere: in the rule, in a dictionary or in an `MxWord`.
struct WordView {
  std::u16string_view primary;
  std::u16string_view outDesc;
  std::u16string_view content;
  std::int32_t symbol = kUnknownSymbol;
  std::int32_t dataType = kVarDataType;
  std::int32_t postfixCheck = kNoPostfix;
  std::u16string_view written;    ///< the token it came from, as it stands in the rule
  std::int32_t token = -1;        ///< index of that token, -1 for none
  const MxWord* entry = nullptr;  ///< the dictionary's word that it was taken from
};

inline WordView ViewOf(const MxWord& word) noexcept {
  return {word.primary,      word.outDesc, word.content, word.symbol, word.dataType,
          word.postfixCheck, {},           -1,           &word};
}

}  // namespace ORKBASE
