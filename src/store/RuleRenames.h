// New names of tables and fields: the lists in the form that the engine takes, what they make of a
// rule text, and what each pair met.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MxLexicalAnalyzer.h"
#include "RuleUpkeep.h"
#include "store/UpkeepEngine.h"

namespace ORKBASE {

/// One item of the lists.
struct ListedRename {
  bool isField = false;
  std::u16string today;  ///< the table as it is called today
  std::u16string table;  ///< of a field: what its table is called once all tables are renamed
  std::u16string oldName;
  std::u16string newName;

  /// The item as the engine takes it.
  std::u16string Item() const;
};

/// The items of both lists, tables first. A field's table, which may be called by either name, is
/// found under its new one; where its name is an old and a new one, it is the new one.
std::vector<ListedRename> ReadListedRenames(std::u16string_view tables, std::u16string_view fields);

/// What the new names make of a rule text.
struct RenamedText {
  std::u16string text;                 ///< the text as it was where it would become too long
  MxErrorRecord refusal;               ///< of no cause where it did not
  std::vector<UpkeepFinding> notices;  ///< names that were left alone; places in the old text
};

class RuleRenames {
 public:
  explicit RuleRenames(const UpkeepSettings& settings);

  const std::vector<ListedRename>& Listed() const noexcept { return listed_; }
  EngineRenames ForEngine() const;
  const std::vector<RenamePair>& Pairs() const noexcept { return pairs_; }

  /// Renames in a text, and counts.
  RenamedText Apply(const std::u16string& text);

 private:
  using Indices = std::vector<std::size_t>;

  void Find(std::u16string_view piece, Indices& found) const;
  void FindPieces(std::u16string_view text, Indices& found) const;
  Indices TouchedBy(std::u16string_view token) const;
  bool Change(const std::u16string& item, bool isField, std::u16string& token);
  void Count(const Indices& touched, std::u16string_view token, std::size_t at,
             RenamedText& renamed);
  void LookIntoText(std::u16string_view token, std::size_t at, RenamedText& renamed);
  void Tell(std::size_t pair, std::int32_t message, std::u16string_view word, std::size_t at,
            RenamedText& renamed);

  std::vector<ListedRename> listed_;
  std::vector<RenamePair> pairs_;
  std::vector<std::u16string> items_;
  std::vector<std::u16string> smallItems_;              ///< for texts in small letters
  std::unordered_map<std::u16string, Indices> byName_;  ///< in small letters
  Indices everywhere_;                                  ///< their names are cut by what cuts a word
  std::set<std::pair<std::size_t, std::int32_t>> told_;  ///< pairs and messages, of one text
  ORKDB_DSType_ENUM dialect_;
  MxLexicalAnalyzer lexer_;
};

}  // namespace ORKBASE
