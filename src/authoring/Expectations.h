// What may stand in a place of a rule, told to people.
#pragma once

#include <string>
#include <vector>

#include "authoring/Mending.h"

namespace ORKBASE {

/// What may follow the words in front of one: types, kinds of words, words; at most ten. Told by
/// what the interpreter tries there.
std::vector<std::u16string> ExpectedAt(Workbench& bench, const Draft& draft, std::size_t word);

}  // namespace ORKBASE
