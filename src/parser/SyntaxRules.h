// The grammar of the rule language as a table of texts.
//
// A body with "|" is a list of alternatives; otherwise it is a sequence of items: `<rule>`, a group
// `{...}` (zero or more times) or `[...]` (zero or one time), "(", ")" and ",", the name of a kind
// of word such as `kDataFieldSymbol`, or a word that must stand there. Groups do not nest.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "MxRuleEnums.h"

namespace ORKBASE {

struct SyntaxRule {
  std::u16string_view name;  ///< with its angle brackets
  std::u16string_view body;
  std::int32_t dataType;      ///< what words of this rule are checked against
  std::int32_t semanticType;  ///< how the matched nodes combine
  bool checkDataType;         ///< whether words of this rule are checked
};

struct StartRule {
  MXRULE_DATATYPE dataType;
  std::u16string_view name;
};

struct TerminalSymbol {
  std::u16string_view name;
  MXRULE_SYMBOL_TYPE symbol;
};

std::span<const SyntaxRule> SyntaxRules() noexcept;
std::span<const StartRule> StartRules() noexcept;
std::span<const TerminalSymbol> TerminalSymbols() noexcept;

}  // namespace ORKBASE
