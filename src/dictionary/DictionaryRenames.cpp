// Renaming tables and fields in the loaded dictionaries, as if they had had the new names from the
// start. The metadata itself is the caller's to change.
#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "dictionary/MxDictionarys.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/ErrorTexts.h"

namespace ORKBASE {
namespace {

/// A dictionary takes part when its name says what it was loaded from.
/// kept: the name of a table that holds "rt:" makes its dictionary count as a template.
struct Kind {
  bool takesPart;
  bool isTemplate;
};

Kind KindOf(const MxDictionary& dictionary) {
  const bool isTemplate = dictionary.name.find(kTemplateMark) != std::u16string::npos;
  return {isTemplate || dictionary.name.find(kDataTableMark) != std::u16string::npos, isTemplate};
}

enum class Outcome { kUnchanged, kChanged, kTooLong };

/// One dictionary on the way to its new names. The old one stays as it is.
class DictionaryRenamer {
 public:
  explicit DictionaryRenamer(DictionaryMap::Content old) : old_(std::move(old)) {}

  /// Changes the words that `change` takes. The changed ones enter after all were looked at, in key
  /// order; the first of a key stays.
  template <class ChangeWord>
  Outcome ChangeWords(ChangeWord change) {
    std::vector<std::pair<MxWord, MxWord>> taken;
    for (const MxWord* word : Now().SortedWords()) {
      MxWord changed = *word;
      const Outcome outcome = change(changed);
      if (outcome == Outcome::kTooLong) return outcome;
      if (outcome == Outcome::kChanged) taken.emplace_back(*word, std::move(changed));
    }
    for (const auto& [old, changed] : taken) {
      New().RemoveEntry(old);
      New().AddEntry(changed);
    }
    return taken.empty() ? Outcome::kUnchanged : Outcome::kChanged;
  }

  MxDictionary& New() {
    if (!new_) new_ = std::make_shared<MxDictionary>(*old_);
    return *new_;
  }
  DictionaryMap::Content Result() const { return new_ ? new_ : old_; }

 private:
  const MxDictionary& Now() const { return new_ ? *new_ : *old_; }

  DictionaryMap::Content old_;
  std::shared_ptr<MxDictionary> new_;  ///< made when the first word changes
};

bool ReplaceHead(std::u16string& text, std::size_t length, std::u16string_view head) {
  return ReplacePart(text, 0, std::min(length, text.size()), head, MostRenamed(text.size()));
}

bool ReplaceTail(std::u16string& text, std::size_t length, std::u16string_view tail) {
  const std::size_t kept = text.size() - std::min(length, text.size());
  return ReplacePart(text, kept, text.size() - kept, tail, MostRenamed(text.size()));
}

bool ReplaceWhole(std::u16string& text, std::u16string_view by) {
  return ReplaceHead(text, text.size(), by);
}

bool ReplaceEach(std::u16string& text, std::u16string_view from, std::u16string_view to) {
  return ReplaceAllWithin(text, from, to, MostRenamed(text.size()));
}

std::u16string Joined(std::u16string_view a, std::u16string_view b, std::u16string_view c) {
  return std::u16string(a).append(b).append(c);
}

Outcome RenameTable(MxWord& word, bool isTemplate, const RenameItem& pair) {
  const std::u16string_view dot = isTemplate ? u"." : u"";
  const std::u16string oldPrefix = Joined(dot, pair.from, u".");
  const std::u16string newPrefix = Joined(dot, pair.to, u".");
  if (isTemplate) {
    if (word.primary.find(oldPrefix) == std::u16string::npos) return Outcome::kUnchanged;
    if (!ReplaceEach(word.primary, oldPrefix, newPrefix) ||
        !ReplaceEach(word.outDesc, oldPrefix, newPrefix)) {
      return Outcome::kTooLong;
    }
  } else {
    if (!word.primary.starts_with(oldPrefix)) return Outcome::kUnchanged;
    // kept: the display form is not looked at before its head goes.
    if (!ReplaceHead(word.primary, oldPrefix.size(), newPrefix) ||
        !ReplaceHead(word.outDesc, oldPrefix.size(), newPrefix)) {
      return Outcome::kTooLong;
    }
  }
  word.dtName = word.tabRealName = word.tabRefName = pair.to;
  return Outcome::kChanged;
}

struct FieldNames {
  std::u16string oldName;
  std::u16string newName;
};

/// `table.field` before and after, with a dot in front for the words of a template.
FieldNames NamesOf(const RenameItem& pair, bool isTemplate) {
  const auto pieces = SplitText(pair.from, u".");
  const std::u16string_view table = pieces.empty() ? u"" : pieces[0];
  const std::u16string_view field = pieces.size() > 1 ? pieces[1] : u"";
  const std::u16string head = Joined(isTemplate ? u"." : u"", table, u".");
  return {head + std::u16string(field), head + std::u16string(pair.to)};
}

Outcome RenameField(MxWord& word, bool isTemplate, const FieldNames& names) {
  bool fits = false;
  if (isTemplate) {
    // kept: here case counts, unlike below, and only the first place is looked at.
    const std::size_t at = word.primary.find(names.oldName);
    if (at == std::u16string::npos || at + names.oldName.size() != word.primary.size()) {
      return Outcome::kUnchanged;
    }
    fits = ReplaceTail(word.primary, names.oldName.size(), names.newName) &&
           ReplaceTail(word.outDesc, names.oldName.size(), names.newName);
  } else {
    if (!EqualsIgnoringCase(word.primary, names.oldName)) return Outcome::kUnchanged;
    fits = ReplaceWhole(word.primary, names.newName) && ReplaceWhole(word.outDesc, names.newName);
  }
  return fits ? Outcome::kChanged : Outcome::kTooLong;
}

using NewKeys = std::map<std::u16string, std::u16string>;  // by old key

/// Renames tables in the words, and notes the keys of the tables that had any. False where a word
/// becomes too long.
bool RenameTables(DictionaryMap::Entries& entries, const std::vector<RenameItem>& pairs,
                  NewKeys& newKeys) {
  for (auto& [key, entry] : entries) {
    const Kind kind = KindOf(*entry.content);
    if (!kind.takesPart) continue;
    DictionaryRenamer renamer(entry.content);
    for (const RenameItem& pair : pairs) {
      const Outcome outcome = renamer.ChangeWords(
          [&](MxWord& word) { return RenameTable(word, kind.isTemplate, pair); });
      if (outcome == Outcome::kTooLong) return false;
      if (outcome == Outcome::kUnchanged || kind.isTemplate) continue;
      renamer.New().name = newKeys[key] = std::u16string(kDataTableMark).append(pair.to);
    }
    entry.content = renamer.Result();
  }
  return true;
}

/// All out first, so that tables which swap their names do not lose each other.
void MoveKeys(DictionaryMap::Change& change, const NewKeys& newKeys) {
  std::vector<DictionaryMap::Entries::node_type> moved;
  for (const auto& [oldKey, newKey] : newKeys) {
    moved.push_back(change.entries.extract(oldKey));
    moved.back().key() = newKey;
  }
  for (auto& node : moved) {
    const auto result = change.entries.insert(std::move(node));
    if (result.inserted) continue;
    change.displaced.push_back(result.position->second);
    result.position->second = result.node.mapped();
  }
}

}  // namespace

bool MxDictionarys::RenameFields(DictionaryMap::Change& change, std::u16string_view list) const {
  const std::vector<RenameItem> pairs = ReadRenames(list);
  for (auto& [key, entry] : change.entries) {
    const Kind kind = KindOf(*entry.content);
    if (!kind.takesPart) continue;
    DictionaryRenamer renamer(entry.content);
    for (const RenameItem& pair : pairs) {
      const FieldNames names = NamesOf(pair, kind.isTemplate);
      const Outcome outcome = renamer.ChangeWords([&](MxWord& word) {
        const Outcome renamed = RenameField(word, kind.isTemplate, names);
        if (renamed != Outcome::kChanged) return renamed;
        word.fldName = pair.to;
        word.fldRealName = QuoteName(pair.to);
        return renamed;
      });
      if (outcome == Outcome::kTooLong) return false;
    }
    entry.content = renamer.Result();
  }
  return true;
}

std::int32_t MxDictionarys::ReplaceNames(std::u16string_view tables, std::u16string_view fields) {
  Changed();
  for (;;) {
    dictionaries_.Renew();
    DictionaryMap::Change change = dictionaries_.BeginChange();
    NewKeys newKeys;
    if (!RenameTables(change.entries, ReadRenames(tables), newKeys)) {
      return Fail(MakeError(kRequestCause, kMsgRenamedTooLong));
    }
    MoveKeys(change, newKeys);
    if (!RenameFields(change, fields)) return Fail(MakeError(kRequestCause, kMsgRenamedTooLong));
    if (dictionaries_.Commit(change)) return 0;
  }
}

}  // namespace ORKBASE
