// The line of a rule that a problem lies in, with a mark under the words that it is about.
//
//     Orders.Amout == 5
//     ^~~~~~~~~~~~
#pragma once

#include "Colour.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace ORKTOOL {

/// A stretch of a rule, in units.
struct Stretch {
  std::size_t offset = 0;
  std::size_t length = 0;  ///< 0 is marked like 1
};

/// Two indented lines: what surrounds the beginning of the stretch in its line, cut off where the
/// terminal ends, and the mark. Takes no longer for a long rule than for a short one.
std::string Excerpt(std::u16string_view rule, Stretch stretch, const Style& style, Colour colour);

}  // namespace ORKTOOL
