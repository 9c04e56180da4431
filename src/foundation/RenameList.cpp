// Reading rename lists, and replacing names within bounds.
#include "foundation/RenameList.h"

#include "foundation/Text.h"

namespace ORKBASE {

std::vector<RenameItem> ReadRenames(std::u16string_view list) {
  std::vector<RenameItem> pairs;
  for (const std::u16string_view item : SplitText(list, u",")) {
    const auto pieces = SplitText(item, u":");
    RenameItem& pair = pairs.emplace_back();
    if (!pieces.empty()) pair.from = pieces[0];
    if (pieces.size() > 1) pair.to = pieces[1];
  }
  return pairs;
}

bool ReplacePart(std::u16string& text, std::size_t at, std::size_t length, std::u16string_view by,
                 std::size_t most) {
  if (by.size() > length && text.size() - length + by.size() > most) return false;
  text.replace(at, length, by);
  return true;
}

bool ReplaceAllWithin(std::u16string& text, std::u16string_view from, std::u16string_view to,
                      std::size_t most) {
  std::size_t size = text.size();
  bool isFound = false;
  const std::size_t first = from.empty() ? text.npos : text.find(from);
  for (std::size_t at = first; at != text.npos; at = text.find(from, at + from.size())) {
    isFound = true;
    size += to.size() - from.size();
    if (to.size() > from.size() && size > most) return false;
  }
  if (isFound) text = ReplaceAll(text, from, to);
  return true;
}

}  // namespace ORKBASE
