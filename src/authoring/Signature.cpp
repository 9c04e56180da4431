// The call around a place, found by its brackets; its form, by what a parse of it reaches.
#include "authoring/Signature.h"

#include "authoring/AuthoringCall.h"
#include "authoring/CallForms.h"
#include "foundation/Text.h"
#include "lexer/Tokeniser.h"
#include "parser/CompiledGrammar.h"
#include "parser/NextWords.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace ORKBASE {
namespace {

/// A bracket that is open at the place; of a function or of none.
struct OpenBracket {
  const MxWord* function = nullptr;
  std::size_t begin = 0;     ///< of the function's name
  std::size_t argument = 0;  ///< where the last argument begins
  std::size_t commas = 0;
};

/// Follows the brackets of a text, token by token.
class BracketStack {
 public:
  void Take(std::u16string_view token, std::size_t begin, const MxWord* word) {
    const std::size_t end = begin + token.size();
    if (token == u"(") {
      open_.push_back({function_, function_ ? functionBegin_ : begin, end, 0});
    } else if (token == u")" && !open_.empty()) {
      open_.pop_back();
    } else if (token == u"," && !open_.empty()) {
      ++open_.back().commas;
      open_.back().argument = end;
    }
    function_ = word && word->symbol == kFunctionSymbol ? word : nullptr;
    functionBegin_ = begin;
  }

  /// The innermost bracket of a function; brackets that only group are passed over.
  const OpenBracket* Call() const noexcept {
    const auto isCall = [](const OpenBracket& bracket) { return bracket.function != nullptr; };
    const auto found = std::find_if(open_.rbegin(), open_.rend(), isCall);
    return found == open_.rend() ? nullptr : &*found;
  }

 private:
  std::vector<OpenBracket> open_;
  const MxWord* function_ = nullptr;  ///< the last word, where it is one
  std::size_t functionBegin_ = 0;
};

std::optional<OpenBracket> CallAround(AuthoringCall& call, std::u16string_view text,
                                      std::size_t place) {
  BracketStack brackets;
  std::size_t begin = 0;
  const auto take = [&](std::u16string_view token, const Lexer::Recognised& found) {
    const bool isWhole = found.postfix.empty();
    if (!found.isBlank) brackets.Take(token, begin, isWhole ? found.word : nullptr);
    begin += token.size();
  };
  call.Engine().lexer.RecogniseEach(Tokens(text.substr(0, place)), call.TextLanguage(), take);
  const OpenBracket* const around = brackets.Call();
  return around ? std::optional(*around) : std::nullopt;
}

/// The words of a piece of the rule, as far as the lexer takes them all.
class Piece {
 public:
  Piece(AuthoringCall& call, std::u16string_view text) : call_(call) {
    call.Read(text, reading_);
    for (std::size_t i = 0; i < reading_.words.size(); ++i) {
      isTaken_ = isTaken_ && !reading_.IsRefused(i);
    }
  }

  /// Whether a call may begin with these words in a form.
  bool Begins(const CallForm& form) const {
    if (!isTaken_) return false;
    NextWords next;
    const std::int16_t row = CompiledGrammar::Instance().RuleNamed(form.rule);
    call_.Engine().parser.FindNextIn(row, reading_.words, next);
    return next.IsReached();
  }

 private:
  AuthoringCall& call_;
  RuleReading reading_;
  bool isTaken_ = true;
};

/// The index of the parameter that takes an argument, -1 for none. Those that repeat do so for
/// ever.
std::int32_t ParameterAt(const CallForm& form, std::size_t argument) noexcept {
  const auto& asked = form.parameters;
  const auto repeats = [](const FormParameter& parameter) { return parameter.repeats; };
  const auto first = std::find_if(asked.begin(), asked.end(), repeats);
  const auto last = std::find_if_not(first, asked.end(), repeats);
  const auto before = static_cast<std::size_t>(first - asked.begin());
  const auto turn = static_cast<std::size_t>(last - first);
  if (turn > 0 && argument >= before) argument = before + (argument - before) % turn;
  return argument < asked.size() ? static_cast<std::int32_t>(argument) : -1;
}

/// The form that takes all that is written up to the place; else the one that takes the arguments
/// in front of the one at the place; else one that has a parameter there.
const CallForm& FormFor(AuthoringCall& call, std::span<const CallForm> forms,
                        std::u16string_view text, const OpenBracket& around, std::size_t place) {
  if (forms.size() == 1) return forms.front();
  for (const std::size_t end : {place, around.argument}) {
    const Piece piece(call, text.substr(around.begin, end - around.begin));
    for (const CallForm& form : forms) {
      if (piece.Begins(form)) return form;
    }
  }
  const auto has = [&](const CallForm& form) { return ParameterAt(form, around.commas) >= 0; };
  const auto found = std::find_if(forms.begin(), forms.end(), has);
  return found == forms.end() ? forms.front() : *found;
}

}  // namespace

RuleSignature SignatureAt(AuthoringCall& call, std::u16string_view text, std::int32_t offset) {
  const auto place = static_cast<std::size_t>(offset);
  const std::optional<OpenBracket> around = CallAround(call, text, place);
  if (!around) return {};
  const std::span<const CallForm> forms = FormsOf(around->function->primary);
  if (forms.empty()) return {};
  RuleSignature signature;
  signature.name = around->function->outDesc;
  const CallForm& form = FormFor(call, forms, text, *around, place);
  signature.text = SignatureText(form, signature.name, call.TextLanguage());
  signature.parameters = ParametersOf(form, call.TextLanguage());
  signature.active = ParameterAt(form, around->commas);
  signature.offset = static_cast<std::int32_t>(around->begin);
  return signature;
}

}  // namespace ORKBASE
