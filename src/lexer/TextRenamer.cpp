// Renaming inside rule text. Tables go first, so the field list names a table by its new name. A
// name inside a text constant is a token's part like any other: table renames reach it.
#include "lexer/TextRenamer.h"

#include "foundation/Text.h"
#include "lexer/Tokeniser.h"

#include <utility>
#include <vector>

namespace ORKBASE {
namespace {

std::u16string Joined(std::u16string_view a, std::u16string_view b, std::u16string_view c) {
  return std::u16string(a).append(b).append(c);
}

/// The three ways in which a token names a table, old and new.
struct TableRename {
  std::u16string head, newHead;            ///< `table.`
  std::u16string inner, newInner;          ///< `.table.`
  std::u16string bracketed, newBracketed;  ///< `[table]`
};

std::vector<TableRename> ReadTableRenames(std::u16string_view list, const NameQuotes& quotes) {
  std::vector<TableRename> renames;
  for (const RenameItem& pair : ReadRenames(list)) {
    renames.push_back({Joined(pair.from, u".", u""), Joined(pair.to, u".", u""),
                       Joined(u".", pair.from, u"."), Joined(u".", pair.to, u"."),
                       Joined(quotes.open, pair.from, quotes.close),
                       Joined(quotes.open, pair.to, quotes.close)});
  }
  return renames;
}

struct FieldRename {
  std::u16string_view from;      ///< `table.field`
  std::u16string to;             ///< `table.newField`
  std::u16string tail, newTail;  ///< `.table.field`
};

std::vector<FieldRename> ReadFieldRenames(std::u16string_view list) {
  std::vector<FieldRename> renames;
  for (const RenameItem& pair : ReadRenames(list)) {
    const std::u16string_view table = pair.from.substr(0, pair.from.find(u'.'));
    const std::u16string to = Joined(table, u".", pair.to);
    renames.push_back({pair.from, to, Joined(u".", pair.from, u""), Joined(u".", to, u"")});
  }
  return renames;
}

/// Gives tokens their new names. What changes a token returns false where it would become longer
/// than `most`.
class TokenRenamer {
 public:
  TokenRenamer(std::vector<TableRename> tables, std::vector<FieldRename> fields, std::size_t most)
      : tables_(std::move(tables)), fields_(std::move(fields)), most_(most) {}

  bool Change(std::u16string& token) const {
    return ChangeExpWithNewDtNames(token) && (fields_.empty() || ChangeExpWithNewDfNames(token));
  }

 private:
  /// kept: a text constant is a token like any other, and tables named in it are renamed.
  bool ChangeExpWithNewDtNames(std::u16string& token) const {
    for (const TableRename& rename : tables_) {
      if (!ChangeTable(token, rename)) return false;
    }
    return true;
  }

  bool ChangeTable(std::u16string& token, const TableRename& rename) const {
    if (token.starts_with(rename.head)) {
      return ReplacePart(token, 0, rename.head.size(), rename.newHead, most_);
    }
    return token.find(rename.inner) != token.npos
               ? ReplaceAllWithin(token, rename.inner, rename.newInner, most_)
               : ReplaceAllWithin(token, rename.bracketed, rename.newBracketed, most_);
  }

  bool ChangeExpWithNewDfNames(std::u16string& token) const {
    std::u16string looked = token;
    for (const FieldRename& rename : fields_) {
      if (!ChangeField(token, looked, rename)) return false;
    }
    return true;
  }

  /// kept: a whole token that matches is replaced in the rule, while the renames behind it still
  /// look at what it was: the last match wins.
  bool ChangeField(std::u16string& token, std::u16string& looked, const FieldRename& rename) const {
    if (EqualsIgnoringCase(looked, rename.from)) {
      return ReplacePart(token, 0, token.size(), rename.to, most_);
    }
    const std::size_t at = looked.find(rename.tail);
    if (at == looked.npos || at + rename.tail.size() != looked.size()) return true;
    if (!ReplacePart(looked, at, rename.tail.size(), rename.newTail, most_)) return false;
    token = looked;
    return true;
  }

  std::vector<TableRename> tables_;
  std::vector<FieldRename> fields_;
  std::size_t most_;
};

}  // namespace

bool RenameInText(std::u16string_view tableRenames, std::u16string_view fieldRenames,
                  const NameQuotes& quotes, std::u16string_view expression, std::u16string& out) {
  const std::size_t most = MostRenamed(expression.size());
  const TokenRenamer renamer(ReadTableRenames(tableRenames, quotes), ReadFieldRenames(fieldRenames),
                             most);
  std::u16string renamed;
  std::u16string token;
  for (const std::u16string_view written : Tokens(expression)) {
    token = written;
    if (!IsBlankText(token) && !renamer.Change(token)) return false;
    if (!ReplacePart(renamed, renamed.size(), 0, token, most)) return false;
  }
  out = std::move(renamed);
  return true;
}

}  // namespace ORKBASE
