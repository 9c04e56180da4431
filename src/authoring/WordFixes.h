// Words that the lexer refuses, and what may have been meant.
#pragma once

#include "authoring/Aliases.h"
#include "authoring/Mending.h"

namespace ORKBASE {

/// Tells of each refused word, and mends what can be. Words that are refused because the database
/// gave no answer are told of once, and left alone.
void FindRefusedWords(Workbench& bench, const Lexicon& lexicon);

}  // namespace ORKBASE
