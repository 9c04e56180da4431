// What `--version` tells.
#pragma once

#include <string>

namespace ORKTOOL {

/// The first line is "orkrule " and the version of the library; then the message file with its
/// languages, and the libraries that this one works with.
std::string VersionText();

}  // namespace ORKTOOL
