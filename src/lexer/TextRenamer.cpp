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

bool ChangeTable(std::u16string& token, const RenamePair& pair, const NameQuotes& quotes) {
  const std::u16string head = Joined(pair.from, u".", u"");
  if (token.starts_with(head)) {
    token.replace(0, head.size(), Joined(pair.to, u".", u""));
    return true;
  }
  return ReplaceInToken(token, Joined(u".", pair.from, u"."), Joined(u".", pair.to, u".")) ||
         ReplaceInToken(token, Joined(quotes.open, pair.from, quotes.close),
                        Joined(quotes.open, pair.to, quotes.close));
}

bool ChangeExpWithNewDtNames(std::vector<std::u16string>& tokens, std::u16string_view list,
                             const NameQuotes& quotes) {
  const std::vector<RenamePair> pairs = ReadRenames(list);
  bool changed = false;
  for (std::u16string& token : tokens) {
    if (IsBlankText(token)) continue;
    for (const RenamePair& pair : pairs) changed |= ChangeTable(token, pair, quotes);
  }
  return changed;
}

struct FieldRename {
  std::u16string_view from;  ///< table.field
  std::u16string to;         ///< table.newField
};

std::vector<FieldRename> ReadFieldRenames(std::u16string_view list) {
  std::vector<FieldRename> renames;
  for (const RenamePair& pair : ReadRenames(list)) {
    const std::u16string_view table = pair.from.substr(0, pair.from.find(u'.'));
    renames.push_back({pair.from, Joined(table, u".", pair.to)});
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
  const std::u16string tail = Joined(u".", rename.from, u"");
  const std::size_t at = looked.find(tail);
  if (at == looked.npos || at + tail.size() != looked.size()) return false;
  looked.replace(at, tail.size(), Joined(u".", rename.to, u""));
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
