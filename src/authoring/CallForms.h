// The forms in which functions are called, read out of the rows of the grammar.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MxRuleEnums.h"
#include "RuleAuthoring.h"
#include "foundation/MessageNumbers.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// One argument of a form.
struct FormParameter {
  std::u16string_view rule;                ///< row of the grammar, `<expr_num>`
  MXRULE_DATATYPE dataType = kNoDataType;  ///< `kNoDataType` for date parts and styles
  bool optional = false;
  bool repeats = false;  ///< it and its neighbours that repeat may stand again
  bool opens = false;    ///< the first of an optional or repeated group
};

/// One way to call a function.
struct CallForm {
  std::u16string_view function;  ///< canonical spelling
  std::u16string_view rule;      ///< its row, `<func_max_str>`
  MXRULE_DATATYPE dataType;      ///< of the result, that of the row
  std::vector<FormParameter> parameters;
};

/// The forms of a function in the order in which the grammar tries them; none for other words.
std::span<const CallForm> FormsOf(std::u16string_view primary);
/// Every form, in the order of the grammar.
std::span<const CallForm> AllForms();

/// What the type of a parameter is called within a signature: "number", "unit of time".
std::u16string ParameterTypeName(const FormParameter& parameter, Language language);
/// `ToNumber(text[, number][, number])`, under the name that the function has in the language.
std::u16string SignatureText(const CallForm& form, std::u16string_view name, Language language);
/// The parameters with their names and sentences in a language.
std::vector<RuleParameter> ParametersOf(const CallForm& form, Language language);
/// `ROUND(${1:value}, ${2:places})`: optional parameters are left out.
std::u16string SnippetOf(const CallForm& form, std::u16string_view name, Language language);

}  // namespace ORKBASE
