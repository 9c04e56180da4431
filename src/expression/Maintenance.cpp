// The facade: keeping stored rules in step when tables and fields change.
#include "MxExpression.h"

#include "document/Composer.h"
#include "document/SubTreeRemoval.h"
#include "document/TagReader.h"
#include "expression/ExpressionState.h"
#include "foundation/Text.h"
#include "lexer/Tokeniser.h"

#include <utility>

namespace ORKBASE {
namespace {

/// The table of a token of the form table.field, without its bracket; empty for any other token.
std::u16string_view TableOfToken(std::u16string_view token) {
  const auto pieces = SplitText(token, u".");
  if (pieces.size() != 2) return {};
  std::u16string_view table = pieces[0];
  if (table.starts_with(u'[')) {
    table.remove_prefix(1);
    // kept: what stands last goes with the bracket, whatever it is.
    if (!table.empty()) table.remove_suffix(1);
  }
  return table;
}

}  // namespace

bool MxExpression::IsDtsInExp(const std::u16string& tables, const std::u16string& expression) {
  Reset();
  const std::u16string list = ToUpper(tables);
  for (const std::u16string_view token : Tokens(expression)) {
    if (IsListItem(list, ToUpper(TableOfToken(token)))) return true;
  }
  return false;
}

void MxExpression::RemoveDt(std::u16string& expression, const std::u16string& tables,
                            MXRULE_DATATYPE type) {
  Reset();
  std::u16string document;
  if (!Verify(type, expression, document)) return;
  TagTree tree;
  if (!ReadTagTree(document, tree)) return;
  const Tag left = RemoveSubTree(tables, tree.Root());
  expression = left ? ExpSpec1(left, WordsOf::kRule) : std::u16string{};
}

std::int32_t MxExpression::ReplaceDtOrDfNames(const std::u16string& tableRenames,
                                              const std::u16string& fieldRenames) {
  Reset();
  MxDictionarys& dictionaries = state_->dictionaries;
  const std::int32_t number = dictionaries.ReplaceNames(tableRenames, fieldRenames);
  if (number != 0) Raise(dictionaries.Error());
  return number;
}

std::u16string MxExpression::ChangeExpWithNewDtDfNames(const std::u16string& tableRenames,
                                                       const std::u16string& fieldRenames,
                                                       const std::u16string& expression) {
  Reset();
  std::u16string renamed;
  MxErrorRecord error;
  if (!state_->lexer.ChangeNames(state_->dsType, tableRenames, fieldRenames, expression, renamed,
                                 error)) {
    Raise(std::move(error));
  }
  return renamed;
}

}  // namespace ORKBASE
