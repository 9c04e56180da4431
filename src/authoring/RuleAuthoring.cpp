// The calls of an editor: each prepares the private engine of its language and hands over.
#include "RuleAuthoring.h"

#include "authoring/AuthoringCall.h"
#include "authoring/AuthoringCopy.h"
#include "authoring/Capabilities.h"
#include "authoring/Check.h"
#include "authoring/Completion.h"
#include "authoring/Explanation.h"
#include "authoring/Formatter.h"
#include "authoring/MetadataNames.h"
#include "authoring/Signature.h"
#include "authoring/Uses.h"
#include "authoring/Writer.h"
#include "foundation/MessageNumbers.h"
#include "platform/ErrorTexts.h"

#include <map>
#include <utility>

namespace ORKBASE {
namespace {

/// The engine's own words, or those of a language.
struct Spoken {
  bool byTag = false;
  Language language;
  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer in it
  friend auto operator<=>(const Spoken&, const Spoken&) = default;
};

}  // namespace

struct RuleAuthoring::State {
  explicit State(const MxExpression& engine) : source(EngineAccess::Of(engine)) {}

  AuthoringCall Begin() {
    error = {};
    const Spoken spoken{!tag.empty(), tag.empty() ? Language{} : LanguageNamed(tag)};
    AuthoringView& view = views[spoken];
    view.Follow(source, spoken.byTag ? &spoken.language : nullptr);
    return {view, spoken.byTag ? spoken.language : CurrentLanguage()};
  }

  /// Whether an offset can be asked about; else the error tells.
  bool TakesPlace(const std::u16string& text, std::int32_t offset) {
    error = {};
    if (IsPlace(text, offset)) return true;
    error = MakeError(kRequestCause, kMsgBadOffset);
    return false;
  }

  const EngineState& source;
  std::u16string tag;
  MxErrorRecord error;
  std::map<Spoken, AuthoringView> views;
};

void AuthoringAccess::TakeOver(RuleAuthoring& copy, const RuleAuthoring& source,
                               const std::shared_ptr<bool>& asked) {
  const MxDictionarys::Stamp now = source.state_->source.dictionaries.StampNow();
  for (const auto& [spoken, view] : source.state_->views) {
    copy.state_->views[spoken].TakeOver(view, now, asked);
  }
}

std::vector<MxDictionarys::Stamp> AuthoringAccess::Stamps(const RuleAuthoring& authoring) {
  std::vector<MxDictionarys::Stamp> stamps{authoring.state_->source.dictionaries.StampNow()};
  for (const auto& entry : authoring.state_->views) {
    stamps.push_back(entry.second.engine.dictionaries.StampNow());
  }
  return stamps;
}

RuleAuthoring::RuleAuthoring(const MxExpression& engine)
    : state_(std::make_unique<State>(engine)) {}
RuleAuthoring::~RuleAuthoring() = default;

void RuleAuthoring::set_language(std::u16string tag) {
  state_->tag = std::move(tag);
}

const MxErrorRecord& RuleAuthoring::errRecord() const noexcept {
  return state_->error;
}

std::u16string RuleAuthoring::errDescription() const {
  const Language language = state_->tag.empty() ? CurrentLanguage() : LanguageNamed(state_->tag);
  return state_->error.cause == kNoCause ? std::u16string{} : ErrorTextIn(state_->error, language);
}

std::vector<RuleProblem> RuleAuthoring::Check(MXRULE_DATATYPE type,
                                              const std::u16string& expression,
                                              std::span<const ORKDB_DSType_ENUM> dsTypes,
                                              bool twoParts) {
  AuthoringCall call = state_->Begin();
  return CheckRule(call, type, expression, dsTypes, twoParts);
}

bool RuleAuthoring::Complete(MXRULE_DATATYPE type, const std::u16string& expression,
                             std::int32_t offset, std::int32_t limit, bool all,
                             RuleCompletion& completion) {
  completion = {};
  if (!state_->TakesPlace(expression, offset)) return false;
  AuthoringCall call = state_->Begin();
  completion = CompleteAt(call, type, expression, offset, limit, all);
  return true;
}

bool RuleAuthoring::Signature(const std::u16string& expression, std::int32_t offset,
                              RuleSignature& signature) {
  signature = {};
  if (!state_->TakesPlace(expression, offset)) return false;
  AuthoringCall call = state_->Begin();
  signature = SignatureAt(call, expression, offset);
  return true;
}

bool RuleAuthoring::Explain(const std::u16string& expression, std::int32_t offset,
                            RuleExplanation& explanation) {
  explanation = {};
  if (!state_->TakesPlace(expression, offset)) return false;
  AuthoringCall call = state_->Begin();
  explanation = ExplainAt(call, expression, offset);
  return true;
}

std::vector<RuleUse> RuleAuthoring::Uses(const std::u16string& expression) {
  AuthoringCall call = state_->Begin();
  return UsesOf(call, expression);
}

bool RuleAuthoring::Write(const std::u16string& document, std::u16string& expression) {
  expression.clear();
  AuthoringCall call = state_->Begin();
  return WriteRule(call, document, expression, state_->error);
}

std::u16string RuleAuthoring::Format(const std::u16string& expression, std::int32_t width) {
  AuthoringCall call = state_->Begin();
  return FormatRule(call, expression, width);
}

std::vector<RuleFunction> RuleAuthoring::Capabilities() {
  AuthoringCall call = state_->Begin();
  return CapabilitiesOf(call);
}

bool RuleAuthoring::Tables(const std::u16string& like, RuleTables& tables) {
  tables = {};
  AuthoringCall call = state_->Begin();
  return TablesLike(call, like, tables, state_->error);
}

bool RuleAuthoring::Fields(const std::u16string& table, std::vector<RuleField>& fields) {
  fields.clear();
  AuthoringCall call = state_->Begin();
  return FieldsOf(call, table, fields, state_->error);
}

}  // namespace ORKBASE
