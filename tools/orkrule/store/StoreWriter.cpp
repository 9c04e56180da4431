#include "StoreWriter.h"

#include "Interrupt.h"
#include "Output.h"
#include "Progress.h"
#include "StoreValues.h"
#include "Text.h"

#include <unistd.h>

#include <algorithm>

namespace ORKTOOL {
namespace {

constexpr std::string_view kTableWord = "table";  // of --ledger

std::vector<std::size_t> GuardedColumns(const StoreColumns& columns) {
  std::vector<std::size_t> guarded;
  for (const std::u16string_view name : {u"expression", u"document"}) {
    if (const std::optional<std::size_t> column = columns.Find(name)) guarded.push_back(*column);
  }
  return guarded;
}

std::u16string LedgerOf(const WriteOptions& writing) {
  const bool isTable = writing.ledger == kTableWord;
  const bool isByItself = writing.ledger.empty() && writing.commitEvery > 0;
  return isTable || isByItself ? std::u16string(ORKDB::kLedgerTable) : Wide(writing.ledger);
}

ORKDB::ChangeSettings ChangeSettingsOf(const WriterPlan& plan) {
  ORKDB::ChangeSettings settings;
  settings.store = SettingsOf(plan.options.store, kStorePassword);
  settings.store.readOnly = false;
  settings.select = Wide(plan.options.select);
  settings.update = Wide(plan.writing.update);
  for (const std::size_t column : GuardedColumns(plan.columns)) {
    settings.guarded.push_back(plan.columns.Names()[column]);
  }
  settings.commitEvery = plan.writing.commitEvery;
  settings.ledger = LedgerOf(plan.writing);
  settings.run =
      Wide(plan.run + "\nselect: " + plan.options.select + "\nupdate: " + plan.writing.update);
  return settings;
}

struct LeftRow {
  ORKDB::LeftChange::Reason reason;
  const char* name;
  const char* words;
};

// clang-format off
constexpr LeftRow kLeftRows[] = {
    {ORKDB::LeftChange::kChangedMeanwhile, "changedMeanwhile", "was changed in the meantime"},
    {ORKDB::LeftChange::kGone,             "gone",             "is not there any more"},
    {ORKDB::LeftChange::kNotUnique,        "notUnique",        "several rows have this id"},
};
// clang-format on

const LeftRow& RowOf(ORKDB::LeftChange::Reason reason) {
  const auto is = [reason](const LeftRow& row) { return row.reason == reason; };
  return *std::find_if(std::begin(kLeftRows), std::end(kLeftRows) - 1, is);
}

}  // namespace

StoreWriter::StoreWriter(const WriterPlan& plan)
    : plan_(plan), guarded_(GuardedColumns(plan.columns)), changes_(ChangeSettingsOf(plan)) {
  for (const std::u16string& name : changes_.Names()) bound_.push_back(BoundOf(name));
}

StoreWriter::Bound StoreWriter::BoundOf(const std::u16string& name) const {
  Bound bound;
  bound.column = plan_.columns.Find(name);
  if (const ORKBASE::RuleDialect* const asked = DialectOfColumn(name)) {
    for (std::size_t i = 0; i < plan_.dialects.size(); ++i) {
      if (plan_.dialects[i].number == asked->number) bound.dialect = i;
    }
    if (bound.dialect) bound.column = plan_.columns.SqlOf(*asked);
  }
  if (IsSameName(name, u"expression") && bound.column) {
    bound.text = &ORKBASE::StoredRule::expression;
  }
  if (IsSameName(name, u"document") && (bound.column || plan_.makesDocuments)) {
    bound.text = &ORKBASE::StoredRule::document;
  }
  if (bound.column || bound.dialect || bound.text != nullptr) return bound;
  throw Failure{kBadUsage, "--update has :" + OneLine(name) +
                               ", which stands for nothing; there are " + KnownNames()};
}

std::string StoreWriter::KnownNames() const {
  std::string names;
  for (const std::u16string& name : plan_.columns.Names()) {
    names.append(names.empty() ? ":" : ", :").append(OneLine(name));
  }
  if (plan_.makesDocuments && !plan_.columns.Find(u"document")) names.append(", :document");
  for (const ORKBASE::RuleDialect& dialect : plan_.dialects) {
    if (plan_.columns.SqlOf(dialect)) continue;
    names.append(", :").append(ToUtf8(kSqlColumn)).append(ToUtf8(dialect.name));
  }
  return names;
}

/// The new text that a name stands for, null where there is none.
const std::u16string* StoreWriter::NewText(const Bound& bound, const ORKBASE::StoredRule& after) {
  const std::optional<std::u16string>* text = nullptr;
  if (bound.text != nullptr) text = &(after.*bound.text);
  if (bound.dialect && *bound.dialect < after.sql.size()) text = &after.sql[*bound.dialect];
  return text != nullptr && *text ? &**text : nullptr;
}

/// What stays as it was is bound as it was read, so that a number in a column of texts stays one.
ORKDB::StoreValue StoreWriter::ValueOf(const Bound& bound, const ORKDB::StoreRow& row,
                                       const ORKBASE::StoredRule& after) {
  ORKDB::StoreValue read = bound.column ? row[*bound.column] : ORKDB::StoreValue();
  const std::u16string* const text = NewText(bound, after);
  if (text == nullptr || TextOfValue(read) == *text) return read;
  return *text;
}

ORKDB::StoreChange StoreWriter::ChangeOf(const ORKDB::StoreRow& row,
                                         const ORKBASE::UpkeepResult& result) const {
  ORKDB::StoreChange change;
  change.id = row[plan_.columns.Id()];
  for (const std::size_t column : guarded_) change.before.push_back(row[column]);
  for (const Bound& bound : bound_) change.values.push_back(ValueOf(bound, row, result.after));
  return change;
}

bool StoreWriter::Replaces(const ORKDB::StoreRow& row, const ORKBASE::UpkeepResult& result) const {
  bool replaces = false;
  for (const Bound& bound : bound_) {
    if (!bound.column && NewText(bound, result.after) == nullptr) return false;
    replaces = replaces || !bound.column ||
               !ORKDB::IsSame(ValueOf(bound, row, result.after), row[*bound.column]);
  }
  return replaces;
}

bool StoreWriter::TakesDocument() const {
  return std::any_of(bound_.begin(), bound_.end(), [](const Bound& bound) {
    return bound.text == &ORKBASE::StoredRule::document;
  });
}

ExitStatus StoreWriter::Apply() {
  try {
    Progress progress("rules written", Report().added);
    const auto goesOn = [&progress](const ORKDB::ChangeReport& soFar) {
      progress.Show(soFar.written + soFar.doneBefore + soFar.leftCount);
      return !Interrupt::IsAsked();
    };
    if (plan_.writing.again) changes_.BeginAnew();  // not before the rows are read to their end
    changes_.Apply(goesOn);
  } catch (const ORKDB::StoreFailure& failure) {
    return ReportUnfinished("stopped: " + OneLine(failure.Text()));
  }
  for (const ORKDB::LeftChange& left : Report().left) ShowLeft(left);
  const auto shown = static_cast<std::int64_t>(Report().left.size());
  if (Report().leftCount > shown && !plan_.options.json) {
    Print("and " + CountOf(Report().leftCount - shown, "rule") + " more\n");
  }
  if (!Report().isComplete) return ReportUnfinished("interrupted");
  return Report().leftCount > 0 ? kRefused : kDone;
}

void StoreWriter::ShowLeft(const ORKDB::LeftChange& left) const {
  const LeftRow& row = RowOf(left.reason);
  if (plan_.options.json) {
    PrintJson({{"left", {{"id", JsonOfValue(left.id)}, {"reason", row.name}}}});
    return;
  }
  const Style style = StyleOf(STDOUT_FILENO, plan_.options.colour);
  Print(StoreLine(style, ShownValue(left.id), "left alone", Colour::kWarning, row.words));
}

ExitStatus StoreWriter::ReportUnfinished(const std::string& why) const {
  const std::int64_t done = Report().written + Report().doneBefore;
  const bool hasLedger = !LedgerOf(plan_.writing).empty();
  PrintError("orkrule: " + why + "\norkrule: " + std::to_string(done) + " of " +
             CountOf(Report().added, "change") + " are written" +
             (hasLedger ? "; the same command goes on from there\n" : "\n"));
  return kInputOutput;
}

}  // namespace ORKTOOL
