// Renaming inside rule text. Tables go first, so the field list names a table by its new name. A
// name inside a text constant is a token's part like any other: table renames reach it.
#include "lexer/TextRenamer.h"

#include "foundation/RenameList.h"
#include "foundation/Text.h"
#include "lexer/Tokeniser.h"

#include <vector>

namespace ORKBASE {
namespace {

std::u16string Joined(std::u16string_view a, std::u16string_view b, std::u16string_view c) {
  return std::u16string(a).append(b).append(c);
}

/// Replaces all of `from` in the token; false when it holds none.
bool ReplaceInToken(std::u16string& token, std::u16string_view from, std::u16string_view to) {
  if (token.find(from) == token.npos) return false;
  token = ReplaceAll(token, from, to);
  return true;
}

/// The three ways in which a token names a table, old and new.
struct TableRename {
  std::u16string head, newHead;            ///< `table.`
  std::u16string inner, newInner;          ///< `.table.`
  std::u16string bracketed, newBracketed;  ///< `[table]`
};

std::vector<TableRename> ReadTableRenames(std::u16string_view list, const NameQuotes& quotes) {
  std::vector<TableRename> renames;
  for (const RenamePair& pair : ReadRenames(list)) {
    renames.push_back({Joined(pair.from, u".", u""), Joined(pair.to, u".", u""),
                       Joined(u".", pair.from, u"."), Joined(u".", pair.to, u"."),
                       Joined(quotes.open, pair.from, quotes.close),
                       Joined(quotes.open, pair.to, quotes.close)});
  }
  return renames;
}

bool ChangeTable(std::u16string& token, const TableRename& rename) {
  if (token.starts_with(rename.head)) {
    token.replace(0, rename.head.size(), rename.newHead);
    return true;
  }
  return ReplaceInToken(token, rename.inner, rename.newInner) ||
         ReplaceInToken(token, rename.bracketed, rename.newBracketed);
}

bool ChangeExpWithNewDtNames(std::vector<std::u16string>& tokens, std::u16string_view list,
                             const NameQuotes& quotes) {
  const std::vector<TableRename> renames = ReadTableRenames(list, quotes);
  bool changed = false;
  for (std::u16string& token : tokens) {
    if (IsBlankText(token)) continue;
    for (const TableRename& rename : renames) changed |= ChangeTable(token, rename);
  }
  return changed;
}

struct FieldRename {
  std::u16string_view from;      ///< `table.field`
  std::u16string to;             ///< `table.newField`
  std::u16string tail, newTail;  ///< `.table.field`
};

std::vector<FieldRename> ReadFieldRenames(std::u16string_view list) {
  std::vector<FieldRename> renames;
  for (const RenamePair& pair : ReadRenames(list)) {
    const std::u16string_view table = pair.from.substr(0, pair.from.find(u'.'));
    const std::u16string to = Joined(table, u".", pair.to);
    renames.push_back({pair.from, to, Joined(u".", pair.from, u""), Joined(u".", to, u"")});
  }
  return renames;
}

/// A whole token that matches is replaced in the rule, while the renames behind it still look at
/// what it was: the last match wins.
bool ChangeField(std::u16string& token, std::u16string& looked, const FieldRename& rename) {
  if (EqualsIgnoringCase(looked, rename.from)) {
    token = rename.to;
    return true;
  }
  const std::size_t at = looked.find(rename.tail);
  if (at == looked.npos || at + rename.tail.size() != looked.size()) return false;
  looked.replace(at, rename.tail.size(), rename.newTail);
  token = looked;
  return true;
}

bool ChangeExpWithNewDfNames(std::vector<std::u16string>& tokens, std::u16string_view list) {
  const std::vector<FieldRename> renames = ReadFieldRenames(list);
  bool changed = false;
  for (std::u16string& token : tokens) {
    if (IsBlankText(token)) continue;
    std::u16string looked = token;
    for (const FieldRename& rename : renames) changed |= ChangeField(token, looked, rename);
  }
  return changed;
}

}  // namespace

std::u16string RenameInText(std::u16string_view tableRenames, std::u16string_view fieldRenames,
                            NameQuotes quotes, std::u16string_view expression) {
  std::vector<std::u16string> tokens;
  for (std::u16string_view rest = expression; !rest.empty();) {
    tokens.emplace_back(FirstToken(rest));
    rest.remove_prefix(tokens.back().size());
  }
  bool changed = false;
  if (!tableRenames.empty()) changed |= ChangeExpWithNewDtNames(tokens, tableRenames, quotes);
  if (!fieldRenames.empty()) changed |= ChangeExpWithNewDfNames(tokens, fieldRenames);
  if (!changed) return std::u16string(expression);
  std::u16string out;
  for (const std::u16string& token : tokens) out += token;
  return out;
}

}  // namespace ORKBASE
