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

MxExpression::State::State(const State& other) : dictionaries(other.dictionaries) {
  CopyModes(other);
}

MxExpression::State& MxExpression::State::operator=(const State& other) {
  if (this == &other) return *this;
  dictionaries = other.dictionaries;
  CopyModes(other);
  return *this;
}

void MxExpression::State::CopyModes(const State& other) {
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
  return state_->error;
}

void MxExpression::Reset() noexcept {
  ResetError();
  state_->error = {};
}

void MxExpression::Raise(MxErrorRecord error) {
  myRaiseError(error.number, DescriptionOf(error));
  state_->error = std::move(error);
}

bool MxExpression::Verify(MXRULE_DATATYPE type, const std::u16string& expression,
                          std::u16string& document) {
  Reset();
  State& state = *state_;
  state.dictionaries.BeginCall();
  state.lexer.source = &state.dictionaries;
  std::vector<WordView>& words = state.words;
  const ClearAtEnd clear{words};
  std::forward_list<std::u16string> composed;
  state.lexer.ReadWords(expression, CurrentLanguage(), words, composed);
  MxErrorRecord error;
  for (WordView& word : words) {
    if (state.lexer.VerifyToken(word, error)) continue;
    SetPlace(error, expression, &word);
    Raise(std::move(error));
    return false;
  }
  // kept: type 2, and 8 with it, is parsed as 5: a text may be made of a value of any type.
  const bool isText = type == kStrDataType || type == kMemoDataType;
  std::int32_t refused = -1;
  if (state.parser.ParseExpr(isText ? kVarDataType : type, words, document, error, refused)) {
    return true;
  }
  if (refused >= 0) {
    const auto index = static_cast<std::size_t>(refused);
    SetPlace(error, expression, index < words.size() ? &words[index] : nullptr);
  }
  Raise(std::move(error));
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
