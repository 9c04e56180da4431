// What renaming in rule texts and in dictionaries have in common: the lists in which callers name
// what was renamed, the quotes around a name, and how far a text may grow.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "MxRuleEnums.h"

namespace ORKBASE {

/// One item: what stands before its first ":" and behind it, empty where missing.
struct RenameItem {
  std::u16string_view from;
  std::u16string_view to;
};

/// The items of `old:new,old:new`. A bad item reads as empty names.
std::vector<RenameItem> ReadRenames(std::u16string_view list);

/// The quotes that make the quoted form of a name.
struct NameQuotes {
  std::u16string_view open = u"[";
  std::u16string_view close = u"]";

  /// Those of a database type.
  /// kept: the default type says nothing, so they stay as another type made them.
  void Follow(ORKDB_DSType_ENUM dsType) noexcept {
    if (dsType != kSqlServerDs) open = close = u"\"";
  }
};

/// To how many units new names may make a text grow, lest a short list makes one of gigabytes.
inline constexpr std::size_t kLongestRenamed = 1'000'000;

/// The most units that a text of this length may have under new names.
constexpr std::size_t MostRenamed(std::size_t size) noexcept {
  return size > kLongestRenamed ? size : kLongestRenamed;
}

/// Replaces a part of the text; false, and nothing is changed, where it would pass `most` units.
bool ReplacePart(std::u16string& text, std::size_t at, std::size_t length, std::u16string_view by,
                 std::size_t most);
/// `ReplaceAll` in place, within the same bound.
bool ReplaceAllWithin(std::u16string& text, std::u16string_view from, std::u16string_view to,
                      std::size_t most);

}  // namespace ORKBASE
