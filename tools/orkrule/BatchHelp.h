// The operations of `orkrule batch` as its help lists them.
#pragma once

#include <string>

namespace ORKTOOL {

/// What a line holds, and all operations with their fields, as the library tells them.
std::string BatchHelp();

}  // namespace ORKTOOL
