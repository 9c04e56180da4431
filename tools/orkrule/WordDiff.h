// Two texts of a rule in one line: what was taken away and what was put in its place, word by word.
#pragma once

#include "Colour.h"

#include <string>
#include <string_view>

namespace ORKTOOL {

/// `T.a > [-1-]{+2+}`; with colours red and green instead of the signs. A stretch that is the same
/// in both is cut down to some words around the changes, and so is a long change; beyond the first
/// changes only their number is told. One line, without its end.
std::string WordDiff(std::u16string_view before, std::u16string_view after, const Style& style);

}  // namespace ORKTOOL
