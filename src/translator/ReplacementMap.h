// What the words of a rule become in one dialect: the kinds of rows, and the map that they make.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "document/TagTree.h"
#include "foundation/KeyMap.h"
#include "foundation/MessageNumbers.h"

namespace ORKBASE {

class TranslatorFrame;

/// Rebuilds a function node: moves its arguments into a new tree and returns that, or null when the
/// node is to stay as it is. Calls a virtual operation, so a dialect's override takes effect
/// through the row of the frame.
using Handler = Tag (*)(TranslatorFrame& translator, Tag node);

template <class Translator, class Operation>
Tag Call(TranslatorFrame& translator, Operation Translator::*operation, Tag node) {
  return (static_cast<Translator&>(translator).*operation)(node);
}

/// The handler `HandleBy<&Translator::TransSomething>` calls an operation of the frame, or of a
/// dialect's class for the rows of that class and of those derived from it.
template <auto kOperation>
Tag HandleBy(TranslatorFrame& translator, Tag node) {
  return Call(translator, kOperation, node);
}

/// The word goes to the database as the rule has it, whatever an inherited row says.
struct OwnWord {};

/// A part of a date, by `TransDatePart`.
struct DatePart {
  std::u16string_view part;
};

/// A part of a date in the fiscal calendar, by `TransFisDatePart`.
struct FisDatePart {
  std::u16string_view part;
};

/// The first or last day of a period, by `TransPeriodBound`.
struct PeriodBound {
  bool start;
  std::u16string_view part;
  bool fiscal;
};

/// Both bounds of a period: what the rows of two other words make of the same arguments.
struct WholePeriod {
  std::u16string_view lower;
  std::u16string_view upper;
};

/// What the row of another word makes with one argument less by one.
struct OneLess {
  std::int32_t argument;
  std::u16string_view period;
};

/// What the database has no form for. The fields are those of the `Mx_Exception` that is thrown.
struct Refusal {
  MessageNumber message;
  std::u16string_view module;
  std::u16string_view function;
  std::uint32_t location;
};

/// What stands in the place of a word; a plain text is the word's SQL.
using Replacement = std::variant<std::u16string_view, OwnWord, Handler, DatePart, FisDatePart,
                                 PeriodBound, WholePeriod, OneLess, Refusal>;

/// One row of a table.
struct ReplacementRow {
  std::u16string_view word;
  Replacement what;
};

enum class TransType : std::int32_t {
  kPlain = 1,    ///< the word's text is the target
  kHandler = 2,  ///< the node is rebuilt
};

struct TransEntry {
  Replacement what;       ///< a text has its home in `target`
  std::u16string target;  ///< of a text, else empty

  TransType transType() const noexcept {
    return std::holds_alternative<std::u16string_view>(what) ? TransType::kPlain
                                                             : TransType::kHandler;
  }
};

/// The replacement map of a class of translators, made once and then only read. Words are found in
/// any case; the last registration of a word wins.
class ReplacementMap {
 public:
  void AddReplacement(std::u16string_view name, const Replacement& what);
  /// Plain replacements from two "|" lists. A target list that is too short reads as empty texts.
  void AddReplacementList(std::u16string_view names, std::u16string_view targets);
  void AddRows(std::span<const ReplacementRow> rows);

  /// Null for a word without a row and for one that goes to the database as it stands.
  const TransEntry* Find(const LookupKey& word) const;

  /// All rows, those of `OwnWord` too, by lower-case word and in no order.
  auto begin() const noexcept { return entries_.begin(); }
  auto end() const noexcept { return entries_.end(); }

 private:
  KeyMap<TransEntry> entries_;
};

}  // namespace ORKBASE
