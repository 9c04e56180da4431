// The is-null form around an operand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ORKBASE {

/// `name(text,0)` for a number, `name(text,'')` for a text (types 2 and 8), unless the text ends in
/// a key column and is more than that; any other type leaves the text.
void WrapIsNull(std::int32_t dataType, std::u16string& text, std::u16string_view name);

}  // namespace ORKBASE
