// The rules that are measured, and an engine over the sample database to measure them with.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <span>
#include <string>

#include "MxExpression.h"

namespace bench {

/// One rule, and the same in PostgreSQL's words.
struct SampleRule {
  const char* name;  ///< short, for the table
  ORKBASE::MXRULE_DATATYPE type;
  std::u16string text;
  std::string postgres;
};

/// The twelve rules of the table.
std::span<const SampleRule> SampleRules();

/// `count` conditions made by `condition` (which is given 1, 2, ...), with a connective between.
template <class Condition>
std::u16string Chain(int count, const char16_t* connective, Condition condition) {
  std::u16string text;
  for (int i = 1; i <= count; ++i) {
    if (i > 1) text += connective;
    text += condition(i);
  }
  return text;
}

std::u16string Number(int value);

/// An engine that is connected to the sample database.
class Engine {
 public:
  explicit Engine(ORKBASE::ORKDB_DSType_ENUM dsType = ORKBASE::kSqlServerDs);

  /// The document of a rule, verified twice so that its tables are loaded and its words full. Ends
  /// the program when the rule is refused: a benchmark of a refusal would mislead.
  std::u16string Document(ORKBASE::MXRULE_DATATYPE type, const std::u16string& rule);
  /// The translated document; ends the program like `Document`.
  std::u16string Translated(const std::u16string& document);

  /// One call, results kept from being optimised away.
  void Verify(ORKBASE::MXRULE_DATATYPE type, const std::u16string& rule);
  void GetSpec(const std::u16string& document);

 private:
  ORKBASE::MxExpression rules_;
  ORKBASE::ORKDB_DSType_ENUM dsType_;
  std::u16string document_, translated_, a_, b_;
};

/// Prints the text and ends the program.
[[noreturn]] void GiveUp(const std::string& text);

/// Reads the command line, runs what is registered and reports it.
int RunAll(int argc, char** argv);

}  // namespace bench
