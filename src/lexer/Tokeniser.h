// Cutting a rule into tokens that join back to it.
#pragma once

#include <string_view>

namespace ORKBASE {

/// The token at the start of a text that is not empty. Words, operators of one or two characters,
/// text constants (an unclosed one runs to the end) and runs of blanks are tokens; a line break
/// outside a text constant counts as a blank.
std::u16string_view FirstToken(std::u16string_view text) noexcept;

}  // namespace ORKBASE
