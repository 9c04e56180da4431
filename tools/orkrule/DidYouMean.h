// What a user may have meant by a name that is none.
#pragma once

#include <string>
#include <vector>

namespace ORKTOOL {

/// `; did you mean "verify"?` where a name looks like the text, else nothing.
std::string DidYouMean(const std::string& text, const std::vector<std::string>& names);

/// The names, with `between` between them.
std::string Joined(const std::vector<std::string>& names, const std::string& between);

}  // namespace ORKTOOL
