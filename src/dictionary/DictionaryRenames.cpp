// Renaming tables and fields in the loaded dictionaries, as if they had had the new names from the
// start. The metadata itself is the caller's to change.
#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "dictionary/MxDictionarys.h"
#include "foundation/RenameList.h"
#include "foundation/Text.h"

namespace ORKBASE {
namespace {

/// A dictionary takes part when its name says what it was loaded from; the name of a table that
/// holds "rt:" makes its dictionary count as a template.
struct Renamed {
  bool takesPart;
  bool isTemplate;
};

Renamed KindOf(const MxDictionary& dictionary) {
  const bool isTemplate = dictionary.name.find(u"rt:") != std::u16string::npos;
  return {isTemplate || dictionary.name.find(u"dt:") != std::u16string::npos, isTemplate};
}

/// Changes the words that `change` takes (it returns false for the others). The changed ones enter
/// after all were looked at, in key order; the first of a key stays.
template <class Change>
bool ChangeWords(MxDictionary& dictionary, Change change) {
  std::vector<std::pair<MxWord, MxWord>> taken;
  for (const MxWord* word : dictionary.SortedWords()) {
    MxWord changed = *word;
    if (change(changed)) taken.emplace_back(*word, std::move(changed));
  }
  for (const auto& [old, changed] : taken) {
    dictionary.RemoveEntry(old);
    dictionary.AddEntry(changed);
  }
  return !taken.empty();
}

void ReplaceHead(std::u16string& text, std::size_t length, std::u16string_view head) {
  text.replace(0, length, head);
}

void ReplaceTail(std::u16string& text, std::size_t length, std::u16string_view tail) {
  text.resize(text.size() - std::min(length, text.size()));
  text += tail;
}

bool RenameTable(MxWord& word, bool isTemplate, std::u16string_view from, std::u16string_view to) {
  const std::u16string dot = isTemplate ? u"." : u"";
  const std::u16string oldPrefix = dot + std::u16string(from) + u".";
  const std::u16string newPrefix = dot + std::u16string(to) + u".";
  if (isTemplate) {
    if (word.primary.find(oldPrefix) == std::u16string::npos) return false;
    word.primary = ReplaceAll(word.primary, oldPrefix, newPrefix);
    word.outDesc = ReplaceAll(word.outDesc, oldPrefix, newPrefix);
  } else {
    if (!word.primary.starts_with(oldPrefix)) return false;
    ReplaceHead(word.primary, oldPrefix.size(), newPrefix);
    ReplaceHead(word.outDesc, oldPrefix.size(), newPrefix);
  }
  word.dtName = word.tabRealName = word.tabRefName = to;
  return true;
}

struct FieldNames {
  std::u16string oldName;
  std::u16string newName;
};

/// `table.field` before and after, with a dot in front for the words of a template.
FieldNames NamesOf(const RenamePair& pair, bool isTemplate) {
  const auto pieces = SplitText(pair.from, u".");
  const std::u16string_view table = pieces.empty() ? u"" : pieces[0];
  const std::u16string_view field = pieces.size() > 1 ? pieces[1] : u"";
  const std::u16string head = (isTemplate ? u"." : u"") + std::u16string(table) + u".";
  return {std::u16string(head).append(field), std::u16string(head).append(pair.to)};
}

bool RenameField(MxWord& word, bool isTemplate, const FieldNames& names) {
  if (isTemplate) {
    const std::size_t at = word.primary.find(names.oldName);
    if (at == std::u16string::npos || at + names.oldName.size() != word.primary.size()) {
      return false;
    }
    ReplaceTail(word.primary, names.oldName.size(), names.newName);
    ReplaceTail(word.outDesc, names.oldName.size(), names.newName);
  } else {
    if (!EqualsIgnoringCase(word.primary, names.oldName)) return false;
    word.primary = word.outDesc = names.newName;
  }
  return true;
}

}  // namespace

std::int32_t MxDictionarys::ReplaceDtNames(std::u16string_view list) {
  std::map<std::u16string, std::u16string> newKeys;  // by old key
  for (const RenamePair& pair : ReadRenames(list)) {
    for (const auto& [key, dictionary] : dictionaries_) {
      const Renamed kind = KindOf(*dictionary);
      if (!kind.takesPart) continue;
      const bool changed = ChangeWords(*dictionary, [&](MxWord& word) {
        return RenameTable(word, kind.isTemplate, pair.from, pair.to);
      });
      if (changed && !kind.isTemplate) newKeys[key] = std::u16string(u"dt:").append(pair.to);
    }
  }
  // All out first, so that tables which swap their names do not lose each other.
  std::vector<std::shared_ptr<MxDictionary>> moved;
  for (const auto& [oldKey, newKey] : newKeys) {
    moved.push_back(dictionaries_.find(oldKey)->second);
    moved.back()->name = newKey;
    Remove(oldKey);
  }
  for (auto& dictionary : moved) {
    std::u16string key = dictionary->name;
    Enter(std::move(key), std::move(dictionary));
  }
  return 0;
}

std::int32_t MxDictionarys::ReplaceDfNames(std::u16string_view list) {
  for (const RenamePair& pair : ReadRenames(list)) {
    for (const auto& entry : dictionaries_) {
      MxDictionary& dictionary = *entry.second;
      const Renamed kind = KindOf(dictionary);
      if (!kind.takesPart) continue;
      const FieldNames names = NamesOf(pair, kind.isTemplate);
      ChangeWords(dictionary, [&](MxWord& word) {
        if (!RenameField(word, kind.isTemplate, names)) return false;
        word.fldName = pair.to;
        word.fldRealName = QuoteName(pair.to);
        return true;
      });
    }
  }
  return 0;
}

}  // namespace ORKBASE
