// The facade: translating a document and composing SQL text.
#include "MxExpression.h"
#include "document/Composer.h"
#include "document/TagReader.h"
#include "expression/ExpressionState.h"

#include <utility>

namespace ORKBASE {
namespace {

void ComposeTwo(Tag root, std::u16string& a, std::u16string& b) {
  ExpSpec2(root, a, b);
  for (std::u16string* side : {&a, &b}) {
    if (!side->empty()) *side = std::u16string(1, u'(').append(*side).append(1, u')');
  }
}

}  // namespace

// The document comes by value so that a caller may give the text that `translated` overwrites.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool MxExpression::GetSpec(std::u16string document, ORKDB_DSType_ENUM dsType,
                           std::u16string& translated, std::u16string& a, std::u16string& b,
                           bool twoParts) {
  Reset();
  State& state = *state_;
  state.CreateTranslator(dsType);
  if (state.translator->Translate(document, translated) != 0) {
    // What counts is a second attempt; the error of the first stays in any case.
    MxErrorRecord error;
    error.cause = kDocumentCause;
    error.number = state.translator->errorNo;
    error.text = state.translator->errorDesc;
    Raise(std::move(error));
    if (state.translator->Translate(document, translated) != 0) return false;
  }
  const Tag root = state.translator->TranslatedRoot();
  if (twoParts) {
    ComposeTwo(root, a, b);
  } else {
    a = ExpSpec1(root, WordsOf::kSql);
  }
  return true;
}

std::int32_t MxExpression::Compose(const std::u16string& translated, std::u16string& out) {
  TagTree tree;
  ReadTagTree(translated, tree);
  out = ExpSpec1(tree.Root(), WordsOf::kSql);
  return 0;
}

std::int32_t MxExpression::Compose(const std::u16string& translated, std::u16string& a,
                                   std::u16string& b) {
  TagTree tree;
  ReadTagTree(translated, tree);
  ComposeTwo(tree.Root(), a, b);
  return 0;
}

std::u16string MxExpression::GetSysTabName(MXRULE_SYMBOL_TYPE symbolType,
                                           const std::u16string& text) {
  Reset();
  if (!state_->translator) state_->CreateTranslator(kSqlServerDs);
  return state_->translator->GetTempColumnName(symbolType, text);
}

}  // namespace ORKBASE
