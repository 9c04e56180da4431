// The facade: translating a document and composing SQL text.
#include "MxExpression.h"

#include "dialects/Dialects.h"
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

std::unique_ptr<IMxTranslator> EngineState::CreateTranslator(ORKDB_DSType_ENUM dialect) {
  std::unique_ptr<IMxTranslator> translator = DialectOf(dialect).newTranslator(tree);
  last = {dialect, rtId};
  translator->dictionaries = &dictionaries;
  translator->formDataIn = formDataIn;
  translator->useIsNull = useIsNull;
  translator->rtId = rtId;
  translator->InitCaxEnums();
  return translator;
}

ORKDB_DSType_ENUM EngineState::DialectFor(ORKDB_DSType_ENUM requested) const noexcept {
  return requested == kOracleDs ? kOracleDs : dsType;
}

bool MxExpression::GetSpec(std::u16string document, ORKDB_DSType_ENUM dsType,
                           std::u16string& translated, std::u16string& a, std::u16string& b,
                           bool twoParts) {
  return TranslateFor(state_->DialectFor(dsType), std::move(document), translated, a, b, twoParts);
}

// The document comes by value so that a caller may give the text that `translated` overwrites.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool MxExpression::TranslateFor(ORKDB_DSType_ENUM dialect, std::u16string document,
                                std::u16string& translated, std::u16string& a, std::u16string& b,
                                bool twoParts) {
  Reset();
  state_->dictionaries.BeginCall();
  const std::unique_ptr<IMxTranslator> translator = state_->CreateTranslator(dialect);
  if (translator->Translate(document, translated) != 0) {
    // kept: what counts is a second attempt; the error of the first stays in any case.
    Raise(translator->error);
    if (translator->Translate(document, translated) != 0) return false;
  }
  const Tag root = translator->TranslatedRoot();
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
  EngineState& state = *state_;
  if (!state.last) state.last = {state.DialectFor(kSqlServerDs), state.rtId};
  const auto translator = DialectOf(state.last->dialect).newTranslator(state.tree);
  translator->rtId = state.last->rtId;
  return translator->GetTempColumnName(symbolType, text);
}

}  // namespace ORKBASE
