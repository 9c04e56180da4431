// What is done to rules that an application keeps: are they still well, what do new names of tables
// and fields make of them, what is left of them without a table, what is their SQL today, what do
// they depend on. Works on one rule after the other; reading and writing them is `RuleStore.h`.
//
//   ORKBASE::UpkeepSettings settings;
//   settings.metadata = connection;
//   ORKBASE::RuleUpkeep upkeep(settings);
//   upkeep.Reach();
//   ORKBASE::StoredRule rule;
//   rule.type = ORKBASE::kLogicDataType;
//   rule.expression = u"Orders.Amount > 1";
//   for (const ORKBASE::UpkeepFinding& finding : upkeep.Check(rule).findings) Report(finding);
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ConnectionSettings.h"
#include "MxErrorRecord.h"
#include "MxExpression.h"
#include "MxRuleEnums.h"
#include "OrkExport.h"
#include "RuleAuthoring.h"

namespace ORKBASE {

/// The type of a rule that may be a value of any type or a condition.
inline constexpr auto kEitherType = static_cast<MXRULE_DATATYPE>(-1);

/// What became of the verification of a rule.
struct EitherVerification {
  std::optional<MXRULE_DATATYPE> type;  ///< what it was verified as, nothing if refused
  std::u16string document;
  MxErrorRecord error;  ///< of two refusals the one that got further through the rule
  MXRULE_DATATYPE tried = kNoDataType;  ///< the type of that refusal
};

/// `MxExpression::Verify`, where the type may be `kEitherType`: then as a value, and where that is
/// refused as a condition.
ORKRULE_EXPORT EitherVerification VerifyEither(MxExpression& rules, MXRULE_DATATYPE type,
                                               const std::u16string& expression);

/// A CAD document that rules may name.
struct UpkeepCax {
  std::u16string name;
  std::int32_t type = 0;
  std::u16string document;
};

struct UpkeepSettings {
  std::optional<ConnectionSettings> metadata;  ///< none: rules have no fields
  /// The metadata under the new names; none: those of `metadata`, as renamed.
  std::optional<ConnectionSettings> metadataAfter;
  std::u16string tables;          ///< loaded for every rule: `A,B`
  std::u16string reportTemplate;  ///< of rules that name none
  std::vector<UpkeepCax> cax;     ///< loaded for rules that do not say which
  std::int32_t formDataIn = 0;
  bool useIsNull = true;
  std::optional<std::u16string> rtId;
  std::vector<ORKDB_DSType_ENUM> dialects;  ///< whose SQL is made
  std::u16string tableRenames;              ///< `old:new,...`
  /// `table.old:new,...`. The table is named as it is today; also by its new name.
  std::u16string fieldRenames;
  std::u16string strippedTables;  ///< `A,B`
};

/// What a store keeps of a rule. What it does not have (no such column, NULL) is nothing.
struct StoredRule {
  MXRULE_DATATYPE type = kEitherType;
  std::optional<std::u16string> expression;
  std::optional<std::u16string> document;
  std::optional<std::u16string> reportTemplate;  ///< id; empty for none
  std::optional<std::u16string> cax;             ///< name of a CAD document; empty for none
  std::optional<std::u16string> language;  ///< of its words, a BCP 47 tag; empty: the thread's
  /// The SQL that is kept for each of the dialects of the settings, in their order; or empty.
  std::vector<std::optional<std::u16string>> sql;
};

enum UpkeepState : std::int32_t {
  kWellState,
  kRefusedState,          ///< `Verify` refuses it
  kChangedState,          ///< its document or SQL is not what is stored
  kNotTranslatableState,  ///< a database has no form for it
  kUnreadableState,       ///< there is no rule in the row: no text, no document, an unknown name
  kBrokenState,           ///< verifies today, and would not under the new names
  kNoticeState,           ///< nothing is wrong with it that keeps it from being written
};

/// One thing that is to be told of a rule.
struct UpkeepFinding {
  UpkeepState state = kWellState;
  std::int32_t number = 0;   ///< of the message
  std::u16string text;       ///< a sentence, in the language of the thread
  std::int32_t offset = -1;  ///< in the expression, in units; -1: none of its words is to blame
  std::int32_t length = 0;
  std::vector<RuleFix> fixes;
  std::u16string_view dialect;  ///< its name, where it is about one database; else empty
  bool isAfter = false;         ///< the place is one of the new expression
};

struct UpkeepResult {
  /// The worst comes first: its state is the state of the rule. None: it is well.
  std::vector<UpkeepFinding> findings;
  /// The rule as the store is to have it, the same where nothing changes. Its document and SQL are
  /// there where the stored rule has them.
  StoredRule after;
  bool changes = false;   ///< `after` differs from what is stored
  bool mayWrite = false;  ///< nothing speaks against writing it
};

/// A pair of the renames and what it met.
struct RenamePair {
  std::u16string oldName;  ///< `table` or `table.field`
  std::u16string newName;
  std::int64_t matched = 0;          ///< words that it renamed
  std::int64_t differingInCase = 0;  ///< words that would be the name in another case, left alone
};

/// Thrown where the metadata database gives no answer: no rule is to blame.
class ORKRULE_EXPORT UpkeepOutage : public std::exception {
 public:
  UpkeepOutage(std::int32_t number, std::u16string text);
  UpkeepOutage(const UpkeepOutage& other);
  UpkeepOutage& operator=(const UpkeepOutage& other);
  ~UpkeepOutage() override;
  std::int32_t Number() const noexcept { return number_; }
  const std::u16string& Text() const noexcept { return text_; }
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::int32_t number_;
  std::u16string text_;
  std::string what_;
};

/// One thread at a time; make another with the same settings for each further thread. Keeps an
/// engine for each combination of template, CAD document and language that it meets, and ends the
/// one that was not used for the longest time where there are many. Every operation throws
/// `UpkeepOutage`.
class ORKRULE_EXPORT RuleUpkeep {
 public:
  explicit RuleUpkeep(const UpkeepSettings& settings);
  RuleUpkeep(const RuleUpkeep&) = delete;
  RuleUpkeep& operator=(const RuleUpkeep&) = delete;
  ~RuleUpkeep();

  /// Asks both databases once, so that one that is down is known before the first rule.
  void Reach();

  /// Is the rule well: does it verify, is its document that of today (`outDesc` and `content`
  /// aside), has each dialect a form for it, is that the stored one? `after` has what is to be
  /// stored instead.
  UpkeepResult Check(const StoredRule& rule);
  /// The rule under the new names. A rule that is refused already gets the names and keeps its
  /// document; one that would be refused from then on (`kBrokenState`) may not be written.
  UpkeepResult Rename(const StoredRule& rule);
  /// The rule without what depends on the tables.
  UpkeepResult Strip(const StoredRule& rule);
  /// The rule with its document and SQL of today.
  UpkeepResult Translate(const StoredRule& rule);
  /// What the rule depends on; of one without text the text of its document.
  UpkeepResult Uses(const StoredRule& rule, std::vector<RuleUse>& uses);

  /// What is to be said of the renames themselves, whatever the rules are: a name that is taken, a
  /// name that no rule can hold. Asks the database.
  std::vector<UpkeepFinding> CheckRenames();
  /// The pairs of the renames, tables first, with what `Rename` met so far.
  const std::vector<RenamePair>& Pairs() const noexcept;

 private:
  struct ORKRULE_LOCAL State;
  std::unique_ptr<State> state_;
};

}  // namespace ORKBASE
