// The lists in which callers name what was renamed.
#pragma once

#include <string_view>
#include <vector>

namespace ORKBASE {

/// One item: what stands before its first ":" and behind it, empty where missing.
struct RenamePair {
  std::u16string_view from;
  std::u16string_view to;
};

/// The items of `old:new,old:new`. A bad item reads as empty names.
std::vector<RenamePair> ReadRenames(std::u16string_view list);

}  // namespace ORKBASE
