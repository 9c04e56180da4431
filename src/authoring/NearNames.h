// Names that look like a word that is unknown.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "authoring/WordIndex.h"

namespace ORKBASE {

/// Restricted Damerau-Levenshtein distance of two texts, or `limit + 1` where it is above `limit`.
std::size_t DistanceOf(std::u16string_view a, std::u16string_view b, std::size_t limit);

/// How far apart two names may be and still count as near: a third of the longer one and at least
/// 1; names of one or two letters also begin alike, else the answer is 0.
std::size_t NearLimit(std::u16string_view a, std::u16string_view b) noexcept;

struct NearName {
  const IndexedWord* word;
  std::size_t distance;
};

/// The words near a name, by distance and then by alphabet, at most `most`: functions, operators,
/// variables, fields. A field is near where both halves of its name are, or where the half behind
/// the point is the same.
std::vector<NearName> NearNamesOf(const WordIndex& index, std::u16string_view name,
                                  std::size_t most);

}  // namespace ORKBASE
