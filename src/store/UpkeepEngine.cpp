// Engines that share a language share a connection: they are copies of one that loads nothing, so
// what one of them loads or renames is no other's.
#include "store/UpkeepEngine.h"

#include "foundation/MessageNumbers.h"
#include "platform/ErrorTexts.h"

#include <algorithm>
#include <utility>

namespace ORKBASE {
namespace {

constexpr std::size_t kMostEngines = 64;
constexpr std::size_t kMostLanguages = 256;

/// A field whose table was loaded by the rule itself is without its text.
constexpr std::u16string_view kNoContent = u" content=\"\"";

/// The error that tells of the database; null where none does.
const MxErrorRecord* OutageIn(const MxErrorRecord& error) noexcept {
  if (!error.behind.empty()) {
    if (const MxErrorRecord& behind = error.behind.front(); behind.cause == kDatabaseCause) {
      return &behind;
    }
  }
  const bool isForeign = error.number != 0 && error.number != kOwnError;
  const bool isOutage =
      error.cause == kDatabaseCause || (isForeign && error.cause != kDocumentCause);
  return isOutage ? &error : nullptr;
}

}  // namespace

void ThrowIfOutage(const MxErrorRecord& error) {
  if (const MxErrorRecord* outage = OutageIn(error)) {
    throw UpkeepOutage(outage->number, ErrorText(*outage));
  }
}

template <class Ask>
auto UpkeepEngine::InItsLanguage(Ask ask) {
  if (ThreadLanguageId() == language_) return ask();
  const LanguageScope scope(language_);
  return ask();
}

EitherVerification UpkeepEngine::Verify(MXRULE_DATATYPE type, const std::u16string& text) {
  EitherVerification made = InItsLanguage([&] {
    EitherVerification first = VerifyEither(rules_, type, text);
    if (!first.type || first.document.find(kNoContent) == std::u16string::npos) return first;
    return VerifyEither(rules_, type, text);
  });
  if (made.type) return made;
  ThrowIfOutage(made.error);
  if (made.error.cause == kNoCause) Reach();  // a word with its table behind it tells no reason
  return made;
}

std::vector<RuleFix> UpkeepEngine::Fixes(MXRULE_DATATYPE type, const std::u16string& text) {
  std::vector<RuleProblem> problems = InItsLanguage([&] { return authoring_.Check(type, text); });
  return problems.empty() ? std::vector<RuleFix>{} : std::move(problems.front().fixes);
}

bool UpkeepEngine::Write(const std::u16string& document, std::u16string& text,
                         MxErrorRecord& error) {
  if (InItsLanguage([&] { return authoring_.Write(document, text); })) return true;
  error = authoring_.errRecord();
  ThrowIfOutage(error);
  return false;
}

std::vector<RuleUse> UpkeepEngine::Uses(const std::u16string& text) {
  std::vector<RuleUse> uses = InItsLanguage([&] { return authoring_.Uses(text); });
  const bool hasUnknown = std::any_of(uses.begin(), uses.end(),
                                      [](const RuleUse& use) { return use.kind == u"unknown"; });
  if (hasUnknown) Reach();
  return uses;
}

void UpkeepEngine::Strip(std::u16string& text, const std::u16string& tables, MXRULE_DATATYPE type) {
  InItsLanguage([&] { rules_.RemoveDt(text, tables, type); });
  if (rules_.errNumber() != 0) ThrowIfOutage(rules_.errRecord());
}

bool UpkeepEngine::Translate(ORKDB_DSType_ENUM dialect, const std::u16string& document,
                             std::u16string& sql) {
  std::u16string translated;
  std::u16string having;
  if (rules_.TranslateFor(dialect, document, translated, sql, having, false)) return true;
  ThrowIfOutage(rules_.errRecord());
  return false;
}

void UpkeepEngine::Reach() {
  std::vector<RuleField> fields;
  if (!authoring_.Fields(u"", fields)) ThrowIfOutage(authoring_.errRecord());
}

void UpkeepEngine::Load(const UpkeepSettings& settings, const std::u16string& reportTemplate,
                        const std::optional<std::u16string>& cax) {
  rules_.set_formDataIn(settings.formDataIn);
  rules_.set_useIsNull(settings.useIsNull);
  const bool isLoaded = LoadTemplate(reportTemplate) && LoadTables(settings.tables) &&
                        (cax ? LoadCaxNamed(settings, *cax)
                             : std::all_of(settings.cax.begin(), settings.cax.end(),
                                           [this](const UpkeepCax& one) { return LoadCax(one); }));
  if (isLoaded && settings.rtId) rules_.set_rtId(*settings.rtId);
}

bool UpkeepEngine::LoadTemplate(const std::u16string& id) {
  if (id.empty()) return true;
  rules_.SetRt(id);
  return Keep(rules_.errRecord());
}

bool UpkeepEngine::LoadTables(const std::u16string& tables) {
  if (tables.empty()) return true;
  rules_.SetDts(tables);
  return Keep(rules_.errRecord());
}

bool UpkeepEngine::LoadCax(const UpkeepCax& cax) {
  try {
    rules_.SetCAXDD(cax.type, cax.document);
  } catch (const char16_t* refusal) {
    return Keep(MakeError(kDocumentCause, kMsgUpkeepBadCax, {cax.name, refusal}));
  }
  const MxErrorRecord& error = rules_.errRecord();
  if (error.cause == kNoCause) return true;
  return Keep(MakeError(kDocumentCause, kMsgUpkeepBadCax, {cax.name, ErrorText(error)}));
}

bool UpkeepEngine::LoadCaxNamed(const UpkeepSettings& settings, const std::u16string& name) {
  if (name.empty()) return true;
  bool isThere = false;
  for (const UpkeepCax& one : settings.cax) {
    if (one.name != name) continue;
    isThere = true;
    if (!LoadCax(one)) return false;
  }
  return isThere || Keep(MakeError(kRequestCause, kMsgUpkeepNoCax, {name}));
}

void UpkeepEngine::Rename(const EngineRenames& renames) {
  for (const std::u16string& table : renames.loaded) {
    rules_.SetDts(table);
    ThrowIfOutage(rules_.errRecord());  // one that is not there has no words to rename
  }
  rules_.ReplaceDtOrDfNames(renames.tables, renames.fields);
  Keep(rules_.errRecord());
}

/// Whether there is no fault.
bool UpkeepEngine::Keep(MxErrorRecord fault) {
  ThrowIfOutage(fault);
  if (fault.cause == kNoCause) return true;
  if (fault_.cause == kNoCause) fault_ = std::move(fault);
  return false;
}

UpkeepEngines::UpkeepEngines(const UpkeepSettings& settings, EngineRenames renames)
    : settings_(settings), renames_(std::move(renames)) {}

LanguageId UpkeepEngines::LanguageOf(const std::optional<std::u16string>& tag) {
  if (!tag || tag->empty()) return ThreadLanguageId();
  if (const auto found = languages_.find(*tag); found != languages_.end()) return found->second;
  if (languages_.size() >= kMostLanguages) languages_.clear();
  return languages_[*tag] = LanguageOfTag(*tag);
}

UpkeepEngine& UpkeepEngines::Of(const StoredRule& rule, Names names) {
  Key key{names, LanguageOf(rule.language), rule.reportTemplate.value_or(settings_.reportTemplate),
          rule.cax};
  if (const auto found = kept_.find(key); found != kept_.end()) {
    uses_.splice(uses_.begin(), uses_, found->second.use);
    return *found->second.engine;
  }
  std::unique_ptr<UpkeepEngine> engine = Make(key);
  if (kept_.size() >= kMostEngines) EndOldest();
  uses_.push_front(key);
  Kept& kept = kept_[std::move(key)];
  kept = {std::move(engine), uses_.begin()};
  return *kept.engine;
}

UpkeepEngine& UpkeepEngines::Bare(Names names) {
  return Bare(names, ThreadLanguageId());
}

UpkeepEngine& UpkeepEngines::Bare(Names names, LanguageId language) {
  if (bare_.size() >= kMostEngines) bare_.clear();
  std::unique_ptr<UpkeepEngine>& bare = bare_[{names, language}];
  if (!bare) {
    const LanguageScope scope(language);
    MxExpression rules;
    const bool isNew = names == Names::kAfter && settings_.metadataAfter;
    if (const auto& connection = isNew ? settings_.metadataAfter : settings_.metadata) {
      rules.Connect(*connection);
    }
    bare = std::make_unique<UpkeepEngine>(rules, language);
  }
  return *bare;
}

std::unique_ptr<UpkeepEngine> UpkeepEngines::Make(const Key& key) {
  auto made = std::make_unique<UpkeepEngine>(Bare(key.names, key.language).Rules(), key.language);
  const LanguageScope scope(key.language);
  made->Load(settings_, key.reportTemplate, key.cax);
  if (key.names == Names::kAfter && !settings_.metadataAfter) made->Rename(renames_);
  return made;
}

void UpkeepEngines::EndOldest() {
  kept_.erase(uses_.back());
  uses_.pop_back();
}

}  // namespace ORKBASE
