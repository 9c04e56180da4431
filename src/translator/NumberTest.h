// Comparing attributes with numbers the way an XPath query of libxml2 does.
#pragma once

#include <cstdint>
#include <string_view>

namespace ORKBASE {

/// Whether the text as a number equals `value`, a positive one. White space around it, leading
/// zeros, a fraction and an exponent are part of a number; a plus sign and anything else is not.
bool EqualsNumber(std::u16string_view text, std::int32_t value);

}  // namespace ORKBASE
