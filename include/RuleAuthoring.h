// What a rule editor asks: what is wrong with a rule and how to mend it, what may come next, what a
// rule depends on, and how a document reads in words.
//
//   ORKBASE::MxExpression rules;                  // connected, tables loaded
//   ORKBASE::RuleAuthoring authoring(rules);
//   for (const ORKBASE::RuleProblem& problem :
//        authoring.Check(ORKBASE::kLogicDataType, u"Orders.Amout == 5"))
//     Underline(problem.offset, problem.length, problem.text);
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MxErrorRecord.h"
#include "MxExpression.h"
#include "MxRuleEnums.h"
#include "OrkExport.h"

namespace ORKBASE {

// Offsets and lengths count units of UTF-16 from the beginning of the rule text. A `string_view`
// in these records is one of a fixed list of words and lives as long as the process.

/// One replacement; of several in one fix each is told in the places of the text before any.
struct RuleEdit {
  std::int32_t offset = 0;
  std::int32_t length = 0;
  std::u16string text;
};

struct RuleFix {
  std::u16string label;  ///< a sentence without its full stop
  std::vector<RuleEdit> edits;
};

enum RuleSeverity : std::int32_t {
  kErrorSeverity,        ///< `Verify` refuses the rule
  kWarningSeverity,      ///< the rule verifies and does not mean what it seems to
  kInformationSeverity,  ///< it depends on what the metadata do not tell
};

/// One problem of a rule.
struct RuleProblem {
  std::int32_t offset = 0;
  std::int32_t length = 0;  ///< 0 at the end of a rule that ends too early
  RuleSeverity severity = kErrorSeverity;
  std::int32_t number = 0;               ///< of the message
  std::u16string text;                   ///< a sentence
  std::vector<std::u16string> expected;  ///< what may stand there, at most ten
  std::vector<RuleFix> fixes;            ///< at most five, the likeliest first
};

/// What may stand at the cursor.
struct RuleItem {
  std::u16string text;           ///< what is put in
  std::u16string_view kind;      ///< field, formField, table, function, operator, variable,
                                 ///< parameter, bracket, part
  std::u16string_view dataType;  ///< number, text, date, logic, any, picture, link; or empty
  std::u16string signature;      ///< of a function
  std::u16string info;           ///< a sentence
  bool fits = true;              ///< false: it may not stand here
  std::u16string snippet;        ///< of a call, `ROUND(${1:value}, ${2:places})`; or empty
  std::u16string reason;         ///< why it does not fit; or empty
};

struct RuleCompletion {
  std::int32_t offset = 0;  ///< of the word that an item replaces
  std::int32_t length = 0;
  std::vector<RuleItem> items;
  bool more = false;    ///< the limit cut the list
  bool unsure = false;  ///< the words before the cursor are no beginning of a rule
  std::vector<std::u16string_view> constants;  ///< types of constants that may stand there
};

struct RuleParameter {
  std::u16string label;
  std::u16string_view dataType;
  bool optional = false;
  bool repeats = false;
  std::u16string info;
};

struct RuleSignature {
  std::u16string name;  ///< empty where the offset is inside no call
  std::u16string text;  ///< `ToNumber(text[, number][, number])`
  std::vector<RuleParameter> parameters;
  std::int32_t active = -1;  ///< index of the parameter at the offset, -1 for one too many
  std::int32_t offset = 0;   ///< of the function's name
};

/// A text for one database.
struct RuleSql {
  std::u16string_view dialect;  ///< its name in `RuleDialects()`
  std::u16string sql;           ///< empty where the database refuses the function
};

struct RuleExplanation {
  std::int32_t offset = 0;
  std::int32_t length = 0;
  std::u16string_view kind;  ///< that of items, or "constant", "unknown"; empty between words
  std::u16string name;       ///< canonical spelling
  std::u16string_view dataType;
  std::u16string text;       ///< a sentence
  std::vector<RuleSql> sql;  ///< of a function: a sample call in each database
};

/// One word that a rule depends on.
struct RuleUse {
  std::u16string_view kind;  ///< field, formField, input, message, variable, cadField, cadEnum,
                             ///< function, unknown
  std::u16string name;       ///< as the engine spells it
  std::u16string table;      ///< of a field
  std::u16string field;
  std::int32_t offset = 0;
  std::int32_t length = 0;
};

/// What one database makes of a function.
struct RuleSupport {
  std::u16string_view dialect;
  std::u16string_view state;          ///< native, user, bare, refused
  std::u16string sql;                 ///< of the sample; empty for "refused"
  std::u16string text;                ///< why it is refused
  std::vector<std::u16string> needs;  ///< functions that the application supplies, of "user"
};

struct RuleFunction {
  std::u16string name;  ///< in the language of the call
  std::u16string_view dataType;
  std::u16string signature;
  std::u16string info;
  std::u16string sample;  ///< a call of it as a rule
  std::vector<RuleSupport> databases;
};

struct RuleTables {
  std::vector<std::u16string> tables;  ///< at most 1,000
  bool more = false;
};

struct RuleField {
  std::u16string name;
  std::u16string_view dataType;
  std::u16string realName;
};

/// The rule with the first fix of each problem applied. Where two fixes touch the same letters the
/// one of the earlier problem counts; what they have in common is done once.
ORKRULE_EXPORT std::u16string ApplyFirstFixes(std::u16string_view rule,
                                              std::span<const RuleProblem> problems);

/// The name that looks most like a text, in any case; empty where none is near. For programs that
/// ask back "did you mean".
ORKRULE_EXPORT std::u16string_view NearestName(std::u16string_view text,
                                               std::span<const std::u16string_view> names);

/// The calls behind a rule editor, over an engine that it refers to and does not own. They see what
/// the engine has loaded and load further tables that a rule names for themselves alone: what the
/// engine answers is as if none had been made. Goes with its engine in one thread at a time, and
/// not beyond its life. Keeps what it read until the engine loads, renames or refreshes.
///
/// Calls throw what `MxExpression` throws when it loads. What cannot be answered gives false, an
/// error record, and an empty result.
class ORKRULE_EXPORT RuleAuthoring {
 public:
  explicit RuleAuthoring(const MxExpression& engine);
  RuleAuthoring(const RuleAuthoring&) = delete;
  RuleAuthoring& operator=(const RuleAuthoring&) = delete;
  ~RuleAuthoring();

  /// The language of words and texts in the next calls, a BCP 47 tag: they answer as if the engine
  /// had been made and had loaded under it. Empty: words as the engine has them, texts in the
  /// language of the thread.
  void set_language(std::u16string tag);
  /// Why the last call gave false.
  const MxErrorRecord& errRecord() const noexcept;
  std::u16string errDescription() const;

  /// The problems of a rule, in the order of their places but the first error first; none exactly
  /// when `Verify` accepts it and nothing is worth a warning. With dialects, warnings about these
  /// databases too; `twoParts`: about the two texts of `GetSpec`.
  std::vector<RuleProblem> Check(MXRULE_DATATYPE type, const std::u16string& expression,
                                 std::span<const ORKDB_DSType_ENUM> dsTypes = {},
                                 bool twoParts = false);

  /// What may stand at an offset, in the order of its rank. `limit`: how many items at most, 0 and
  /// less for all; `all`: those that may not stand there too. False for an offset that is negative,
  /// behind the end or inside a surrogate pair, here and below.
  bool Complete(MXRULE_DATATYPE type, const std::u16string& expression, std::int32_t offset,
                std::int32_t limit, bool all, RuleCompletion& completion);
  /// The call around an offset.
  bool Signature(const std::u16string& expression, std::int32_t offset, RuleSignature& signature);
  /// The word at an offset.
  bool Explain(const std::u16string& expression, std::int32_t offset, RuleExplanation& explanation);

  /// What a text depends on, in the order of the text. It need not be a valid rule.
  std::vector<RuleUse> Uses(const std::u16string& expression);

  /// The rule of a document, in the language of the call: with the same tables and modes `Verify`
  /// gives the document again, `outDesc` and `content` aside. False for what cannot be written.
  bool Write(const std::u16string& document, std::u16string& expression);
  /// A rule text with the spacing of `Write` and its words in their display form. A line longer
  /// than `width` units is broken where it can be; 0 and less keep one line.
  std::u16string Format(const std::u16string& expression, std::int32_t width);

  /// Every function, with what each database makes of it.
  std::vector<RuleFunction> Capabilities();

  /// Names of data tables that contain a text in any case, read from the database. False where it
  /// gives no answer, here and below.
  bool Tables(const std::u16string& like, RuleTables& tables);
  /// The fields of a data table, read from the database.
  bool Fields(const std::u16string& table, std::vector<RuleField>& fields);

 private:
  friend struct AuthoringAccess;
  struct ORKRULE_LOCAL State;
  std::unique_ptr<State> state_;
};

}  // namespace ORKBASE
