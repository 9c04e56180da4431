// What two lists have in common, in the order of both.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace ORKTOOL {

using Words = std::vector<std::u16string_view>;

/// Stretches of two lists that are taken for another: `removed` items of the one at `before`,
/// `added` items of the other at `after`.
struct Edit {
  std::size_t before;
  std::size_t removed;
  std::size_t after;
  std::size_t added;
};

/// The edits that make the one of the other, in order, with something in common between any two.
/// They are the fewest words where the lists differ little; in lists that differ much they are the
/// fewest of one stretch after the other, so that time grows with the length of the lists alone.
std::vector<Edit> EditsOf(const Words& before, const Words& after);

}  // namespace ORKTOOL
