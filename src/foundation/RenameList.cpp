// Reading rename lists.
#include "foundation/RenameList.h"

#include "foundation/Text.h"

namespace ORKBASE {

std::vector<RenamePair> ReadRenames(std::u16string_view list) {
  std::vector<RenamePair> pairs;
  for (const std::u16string_view item : SplitText(list, u",")) {
    const auto pieces = SplitText(item, u":");
    RenamePair& pair = pairs.emplace_back();
    if (!pieces.empty()) pair.from = pieces[0];
    if (pieces.size() > 1) pair.to = pieces[1];
  }
  return pairs;
}

}  // namespace ORKBASE
