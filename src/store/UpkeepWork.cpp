#include "store/UpkeepWork.h"

#include "Mx_Exception.h"
#include "RuleDialects.h"
#include "document/TagComparison.h"
#include "document/TagReader.h"
#include "document/TagTree.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

namespace ORKBASE {
namespace {

enum class Likeness { kSame, kOther, kNoDocument };

/// How a stored document stands to one of the engine.
Likeness Compare(const std::u16string& stored, const std::u16string& made) {
  if (stored == made) return Likeness::kSame;
  TagTree old;
  TagTree today;
  if (!ReadTagTree(stored, old)) return Likeness::kNoDocument;
  ReadTagTree(made, today);
  return AreOfOneRule(old.Root(), today.Root()) ? Likeness::kSame : Likeness::kOther;
}

std::u16string_view NameOf(ORKDB_DSType_ENUM dialect) {
  const auto all = RuleDialects();
  const auto found = std::find_if(
      all.begin(), all.end(), [dialect](const RuleDialect& row) { return row.number == dialect; });
  return found == all.end() ? all.front().name : found->name;
}

UpkeepFinding NoForm(std::u16string_view dialect, std::u16string_view why) {
  UpkeepFinding finding = FindingOf(kNotTranslatableState, kMsgUpkeepNoForm, {dialect});
  finding.dialect = dialect;
  if (!why.empty()) finding.text = why;
  return finding;
}

/// The SQL of a document, or why there is none.
std::optional<UpkeepFinding> Translate(UpkeepEngine& engine, ORKDB_DSType_ENUM dialect,
                                       const std::u16string& document, std::u16string& sql) {
  try {
    if (engine.Translate(dialect, document, sql)) return std::nullopt;
    const MxErrorRecord& error = engine.Rules().errRecord();
    UpkeepFinding finding = NoForm(NameOf(dialect), ErrorText(error));
    if (error.message != 0) finding.number = error.message;
    return finding;
  } catch (const Mx_Exception& refused) {
    return NoForm(NameOf(dialect), refused.message);
  } catch (const std::out_of_range&) {
    return NoForm(NameOf(dialect), {});
  }
}

bool IsSame(const StoredRule& a, const StoredRule& b) {
  return a.expression == b.expression && a.document == b.document && a.sql == b.sql;
}

}  // namespace

UpkeepWork::UpkeepWork(UpkeepEngines& engines, const UpkeepSettings& settings,
                       const StoredRule& rule)
    : engines_(engines), settings_(settings), rule_(rule) {
  result_.after = rule;
}

bool UpkeepWork::Open() {
  const bool hasDocument = rule_.document && !rule_.document->empty();
  if (!hasDocument && (!rule_.expression || IsBlankText(*rule_.expression))) {
    Tell(FindingOf(kUnreadableState, kMsgUpkeepNoRule));
    return false;
  }
  engine_ = &engines_.Of(rule_, Names::kToday);
  if (engine_->Fault().cause != kNoCause) {
    Tell(FindingOf(kUnreadableState, engine_->Fault()));
    return false;
  }
  if (!rule_.expression) return OpenDocument();
  text_ = &*rule_.expression;
  return true;
}

bool UpkeepWork::OpenDocument() {
  MxErrorRecord error;
  text_ = &written_;
  TagTree tree;
  if (!ReadTagTree(*rule_.document, tree)) {
    Tell(FindingOf(kUnreadableState, kMsgUpkeepNoDocument));
    return false;
  }
  if (engine_->Write(*rule_.document, written_, error)) return true;
  Tell(FindingOf(kUnreadableState, error));
  return false;
}

bool UpkeepWork::Verify(bool wantsFixes) {
  today_ = engine_->Verify(rule_.type, Text());
  if (today_.type) return true;
  UpkeepFinding finding = FindingOf(kRefusedState, today_.error);
  if (wantsFixes && !IsWritten()) finding.fixes = engine_->Fixes(today_.tried, Text());
  Tell(std::move(finding));
  return false;
}

void UpkeepWork::LookAtDocument() {
  if (!rule_.document) return;
  TagTree tree;
  if (!ReadTagTree(*rule_.document, tree)) Tell(FindingOf(kUnreadableState, kMsgUpkeepNoDocument));
}

void UpkeepWork::CompareDocument() {
  if (!rule_.document) return;
  const Likeness likeness = Compare(*rule_.document, today_.document);
  if (likeness == Likeness::kSame) return;
  Tell(likeness == Likeness::kOther ? FindingOf(kChangedState, kMsgUpkeepDocumentChanged)
                                    : FindingOf(kUnreadableState, kMsgUpkeepNoDocument));
  result_.after.document = today_.document;
}

void UpkeepWork::KeepDocument(const std::u16string& document) {
  if (!rule_.document || Compare(*rule_.document, document) == Likeness::kSame) return;
  result_.after.document = document;
}

void UpkeepWork::TakeSql(UpkeepEngine& engine, const std::u16string& document, SqlUse use) {
  std::vector<std::optional<std::u16string>>& kept = result_.after.sql;
  const std::size_t stored = rule_.sql.size();
  if (use == SqlUse::kKeep) kept.resize(std::max(stored, settings_.dialects.size()));
  for (std::size_t i = 0; i < settings_.dialects.size(); ++i) {
    const bool isStored = i < stored && rule_.sql[i];
    if (use == SqlUse::kKeepStored && !isStored) continue;
    const ORKDB_DSType_ENUM dialect = settings_.dialects[i];
    std::u16string sql;
    if (auto finding = Translate(engine, dialect, document, sql)) {
      Tell(*std::move(finding));
      continue;
    }
    if (use == SqlUse::kCompare && isStored && *rule_.sql[i] != sql) {
      UpkeepFinding finding = FindingOf(kChangedState, kMsgUpkeepSqlChanged, {NameOf(dialect)});
      finding.dialect = NameOf(dialect);
      Tell(std::move(finding));
    }
    if (isStored || use == SqlUse::kKeep) kept[i] = std::move(sql);
  }
}

void UpkeepWork::TakeText(std::u16string text) {
  if (rule_.expression) result_.after.expression = std::move(text);
}

void UpkeepWork::TakeDocument(UpkeepEngine& engine, const std::u16string& document) {
  KeepDocument(document);
  TakeSql(engine, document, SqlUse::kKeepStored);
}

void UpkeepWork::TakeNothing() {
  TakeText({});
  if (rule_.document) result_.after.document.emplace();
  for (auto& sql : result_.after.sql) {
    if (sql) sql->clear();
  }
}

void UpkeepWork::Tell(UpkeepFinding finding) {
  if (IsWritten()) {
    finding.offset = -1;
    finding.length = 0;
  }
  result_.findings.push_back(std::move(finding));
}

UpkeepResult UpkeepWork::Finish(bool mayWrite) {
  SortByState(result_.findings);
  result_.changes = !IsSame(result_.after, rule_);
  result_.mayWrite = mayWrite;
  return std::move(result_);
}

}  // namespace ORKBASE
