// What the words of a rule become in one dialect.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "document/TagTree.h"
#include "foundation/KeyMap.h"

namespace ORKBASE {

class MxSql92Translator;

/// Rebuilds a function node: moves its arguments into a new tree and returns that, or null when the
/// node is to stay as it is. Points at a virtual operation, so a dialect's override takes effect
/// through the row of the base.
using Handler = Tag (MxSql92Translator::*)(Tag);

enum class TransType : std::int32_t {
  kPlain = 1,    ///< the word's text is the target
  kHandler = 2,  ///< a handler rebuilds the node
};

struct TransEntry {
  TransType transType = TransType::kPlain;
  std::u16string target;
  Handler handler = nullptr;
};

/// One row of a table: a word with its target, or with its handler.
struct ReplacementRow {
  std::u16string_view word;
  std::u16string_view target;
  Handler handler = nullptr;
};

/// The replacement map of a class of translators, made once and then only read. Words are found in
/// any case; the last registration of a word wins.
class ReplacementMap {
 public:
  void AddReplacement(std::u16string_view name, TransType transType, std::u16string_view target,
                      Handler handler);
  /// Plain replacements from two "|" lists. A target list that is too short reads as empty texts.
  void AddReplacementList(std::u16string_view names, std::u16string_view targets);
  void AddRows(std::span<const ReplacementRow> rows);
  void RemoveReplacement(std::u16string_view name);

  const TransEntry* Find(const LookupKey& word) const;

 private:
  KeyMap<TransEntry> entries_;
};

}  // namespace ORKBASE
