// The replacement map.
#include "translator/ReplacementMap.h"

#include "foundation/Text.h"

namespace ORKBASE {

void ReplacementMap::AddReplacement(std::u16string_view name, TransType transType,
                                    std::u16string_view target, Handler handler) {
  entries_.insert_or_assign(ToLower(name), TransEntry{transType, std::u16string(target), handler});
}

void ReplacementMap::AddReplacementList(std::u16string_view names, std::u16string_view targets) {
  const auto texts = SplitText(targets, u"|");
  std::size_t index = 0;
  for (const std::u16string_view name : SplitText(names, u"|")) {
    const std::u16string_view text = index < texts.size() ? texts[index] : u"";
    AddReplacement(name, TransType::kPlain, text, nullptr);
    ++index;
  }
}

void ReplacementMap::AddRows(std::span<const ReplacementRow> rows) {
  for (const ReplacementRow& row : rows) {
    AddReplacement(row.word, row.handler ? TransType::kHandler : TransType::kPlain, row.target,
                   row.handler);
  }
}

void ReplacementMap::RemoveReplacement(std::u16string_view name) {
  entries_.erase(ToLower(name));
}

const TransEntry* ReplacementMap::Find(const LookupKey& word) const {
  const auto found = entries_.find(word);
  return found == entries_.end() ? nullptr : &found->second;
}

}  // namespace ORKBASE
