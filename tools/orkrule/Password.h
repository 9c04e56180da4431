// The database password. It never stands on the command line, where other users could read it.
#pragma once

#include <string>

namespace ORKTOOL {

/// The variable ORKRULE_PASSWORD, or with `ask` what is typed at the terminal, unseen. Throws
/// `Failure` where there is no terminal to ask at.
std::u16string ReadPassword(bool ask);

}  // namespace ORKTOOL
