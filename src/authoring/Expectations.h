// What may stand in a place of a rule, told to people.
#pragma once

#include <string>
#include <vector>

#include "authoring/Mending.h"

namespace ORKBASE {

/// What may follow the words in front of one: types, kinds of words, words; at most ten. Found by
/// letting the interpreter try a word of each kind.
std::vector<std::u16string> ExpectedAt(Workbench& bench, const Draft& draft, std::size_t word);

}  // namespace ORKBASE
