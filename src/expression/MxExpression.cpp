// The facade: construction, modes, verification and the vocabulary.
#include "MxExpression.h"

#include <utility>

#include "OrkPlatform.h"
#include "expression/ExpressionState.h"
#include "platform/ErrorTexts.h"
#include "translator/IsNullForm.h"

namespace ORKBASE {
namespace {

/// The place of a refused word, or the end of the rule for none.
void SetPlace(MxErrorRecord& error, std::u16string_view rule, const WordView* word) {
  if (!word) {
    error.offset = static_cast<std::int32_t>(rule.size());
    return;
  }
  error.token = word->token;
  error.offset = static_cast<std::int32_t>(word->written.data() - rule.data());
  error.length = static_cast<std::int32_t>(word->written.size());
  error.word = word->written;
}

/// Words refer to texts that go with the call.
struct ClearAtEnd {
  std::vector<WordView>& words;
  ~ClearAtEnd() { words.clear(); }
};

}  // namespace

EngineState::EngineState(const EngineState& other) : dictionaries(other.dictionaries) {
  CopyModes(other);
}

EngineState& EngineState::operator=(const EngineState& other) {
  if (this == &other) return *this;
  dictionaries = other.dictionaries;
  CopyModes(other);
  return *this;
}

void EngineState::CopyModes(const EngineState& other) {
  lexer.thiscaseVarOn1RcId = other.lexer.thiscaseVarOn1RcId;
  lexer.quotes = other.lexer.quotes;
  last = other.last;
  formDataIn = other.formDataIn;
  useIsNull = other.useIsNull;
  rtId = other.rtId;
  dsType = other.dsType;
  error = other.error;
}

MxExpression::MxExpression() : state_(std::make_unique<State>()) {}
MxExpression::MxExpression(const MxExpression& other)
    : MxErrorState(other), state_(std::make_unique<State>(*other.state_)) {}
MxExpression& MxExpression::operator=(const MxExpression& other) {
  MxErrorState::operator=(other);
  *state_ = *other.state_;
  return *this;
}
MxExpression::~MxExpression() = default;

const MxErrorRecord& MxExpression::errRecord() const noexcept {
  return state_->error.Get();
}

void MxExpression::Reset() noexcept {
  ResetError();
  state_->error.Clear();
  ++state_->verdicts;
}

void MxExpression::Raise(MxErrorRecord error) {
  myRaiseError(error.number, DescriptionOf(error));
  state_->error.Set(std::move(error));
}

bool EngineState::Verify(MXRULE_DATATYPE type, std::u16string_view expression, Language language,
                         std::u16string& document, MxErrorRecord& refusal) {
  lexer.source = &dictionaries;
  const ClearAtEnd clear{words};
  std::forward_list<std::u16string> composed;
  lexer.ReadWords(expression, language, words, composed);
  for (WordView& word : words) {
    if (lexer.VerifyToken(word, refusal)) continue;
    SetPlace(refusal, expression, &word);
    return false;
  }
  std::int32_t refused = -1;
  if (parser.ParseExpr(ParsedType(type), words, document, refusal, refused)) return true;
  if (refused >= 0) {
    const auto index = static_cast<std::size_t>(refused);
    SetPlace(refusal, expression, index < words.size() ? &words[index] : nullptr);
  }
  return false;
}

bool MxExpression::Verify(MXRULE_DATATYPE type, const std::u16string& expression,
                          std::u16string& document) {
  Reset();
  state_->dictionaries.BeginCall();
  MxErrorRecord refusal;
  if (state_->Verify(type, expression, CurrentLanguage(), document, refusal)) return true;
  Raise(std::move(refusal));
  return false;
}

std::int32_t RefusedToken(const MxExpression& expression) noexcept {
  return expression.errRecord().token;
}

std::u16string MxExpression::GetDict_funcs() {
  Reset();
  return state_->dictionaries.funcsDoc();
}

std::u16string MxExpression::GetDict_operators() {
  Reset();
  return state_->dictionaries.operatorsDoc();
}

std::u16string MxExpression::GetDict_sysVar() {
  Reset();
  return state_->dictionaries.sysVarDoc();
}

void MxExpression::AddIsNull(MXRULE_DATATYPE type, std::u16string& expr) {
  WrapIsNull(type, expr, u"isnull");
}

void MxExpression::set_formDataIn(std::int32_t value) {
  state_->formDataIn = value;
}
std::int32_t MxExpression::get_formDataIn() const {
  return state_->formDataIn;
}

void MxExpression::set_useIsNull(bool value) {
  state_->useIsNull = value;
}
bool MxExpression::get_useIsNull() const {
  return state_->useIsNull;
}

void MxExpression::set_rtId(const std::u16string& value) {
  state_->rtId = value;
}
std::u16string MxExpression::get_rtId() const {
  return state_->rtId;
}

void MxExpression::set_thiscaseVarOn1RcId(bool value) {
  state_->lexer.thiscaseVarOn1RcId = value;
}
bool MxExpression::get_thiscaseVarOn1RcId() const {
  return state_->lexer.thiscaseVarOn1RcId;
}

}  // namespace ORKBASE
