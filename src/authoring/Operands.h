// Where values begin and end among the words of a text that need not be a rule.
#pragma once

#include <cstddef>

#include "authoring/Mending.h"

namespace ORKBASE {

inline constexpr std::size_t kNoWord = static_cast<std::size_t>(-1);

/// An operator between values: of a sum, a product or joined texts.
bool IsBetweenValues(const Draft& draft, std::size_t word);
/// Whether a bracket behind the word makes it a call.
bool IsCall(const Draft& draft, std::size_t word);

/// The last word of the value that begins with a word: of one operand, or of all that operators
/// join to it. `kNoWord` where there is none.
std::size_t ValueEnd(const Draft& draft, std::size_t first, bool joined);
/// The first word of the value that ends with a word.
std::size_t ValueBegin(const Draft& draft, std::size_t last, bool joined);

/// The commas of a call, given its opening bracket, in order; at most `most`.
std::vector<std::size_t> CommasOf(const Draft& draft, std::size_t bracket, std::size_t most);

}  // namespace ORKBASE
