// What error texts call value types and kinds of words.
#pragma once

#include <cstdint>
#include <string>

#include "platform/ThreadLanguage.h"

namespace ORKBASE {

std::u16string DataTypeName(std::int32_t dataType, Language language = CurrentLanguage());
/// Empty for a kind that has no name.
std::u16string SymbolName(std::int32_t symbol, Language language = CurrentLanguage());

}  // namespace ORKBASE
