// Lines whose words stand under each other.
#pragma once

#include <string>
#include <vector>

namespace ORKTOOL {

using TableRow = std::vector<std::string>;

/// The rows as lines, each column as wide as its widest word and two blanks; no blanks at the ends.
std::string TableText(const std::vector<TableRow>& rows);

}  // namespace ORKTOOL
