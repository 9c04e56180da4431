// What error texts call value types and kinds of words.
#pragma once

#include <cstdint>
#include <string>

namespace ORKBASE {

/// In the language of the calling thread.
std::u16string DataTypeName(std::int32_t dataType);
/// Empty for a kind that has no name.
std::u16string SymbolName(std::int32_t symbol);

}  // namespace ORKBASE
