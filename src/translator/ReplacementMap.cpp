// The replacement map.
#include "translator/ReplacementMap.h"

#include "foundation/Text.h"

namespace ORKBASE {

void ReplacementMap::AddReplacement(std::u16string_view name, const Replacement& what) {
  const std::u16string_view* text = std::get_if<std::u16string_view>(&what);
  TransEntry entry =
      text ? TransEntry{std::u16string_view(), std::u16string(*text)} : TransEntry{what, {}};
  entries_.insert_or_assign(ToLower(name), std::move(entry));
}

void ReplacementMap::AddReplacementList(std::u16string_view names, std::u16string_view targets) {
  const auto texts = SplitText(targets, u"|");
  std::size_t index = 0;
  for (const std::u16string_view name : SplitText(names, u"|")) {
    AddReplacement(name, index < texts.size() ? texts[index] : u"");
    ++index;
  }
}

void ReplacementMap::AddRows(std::span<const ReplacementRow> rows) {
  for (const ReplacementRow& row : rows) AddReplacement(row.word, row.what);
}

const TransEntry* ReplacementMap::Find(const LookupKey& word) const {
  const auto found = entries_.find(word);
  if (found == entries_.end() || std::holds_alternative<OwnWord>(found->second.what)) {
    return nullptr;
  }
  return &found->second;
}

}  // namespace ORKBASE
