#include "authoring/CallForms.h"

#include "authoring/WordKinds.h"
#include "foundation/Text.h"
#include "parser/CompiledGrammar.h"
#include "parser/SyntaxRules.h"
#include "platform/DisplayNames.h"
#include "platform/MessageTexts.h"

#include <algorithm>

namespace ORKBASE {
namespace {

/// What a row of the grammar asks for where it is a parameter. `message` is 0 where the type tells.
struct ParameterKind {
  std::u16string_view rule;
  MXRULE_DATATYPE dataType;
  std::int32_t message;
};

// clang-format off
/// Those whose name is not that of the type of a start rule.
constexpr ParameterKind kParameterKinds[] = {
    {u"<datePart>",      kNoDataType,  kMsgExpectDatePart},
    {u"<dateStyle>",     kNoDataType,  kMsgExpectDateStyle},
    {u"<ToText_1param>", kVarDataType, kMsgAnyInSignature},
    {u"<expr_var>",      kVarDataType, kMsgAnyInSignature},
};
// clang-format on

ParameterKind KindOf(std::u16string_view rule) {
  for (const ParameterKind& kind : kParameterKinds) {
    if (kind.rule == rule) return kind;
  }
  for (const StartRule& start : kStartRules) {
    if (start.name == rule) return {rule, start.dataType, 0};
  }
  return {rule, kVarDataType, 0};
}

bool IsGroup(std::u16string_view item) noexcept {
  return item.front() == u'{' || item.front() == u'[';
}

/// Adds the parameters of a run of items; `group` is that of the run, or empty.
void AddParameters(std::u16string_view items, std::u16string_view group, CallForm& form) {
  bool opens = !group.empty();
  for (const std::u16string_view item : CutIntoItems(items)) {
    if (IsGroup(item)) {
      AddParameters(item.substr(1, item.size() - 2), item, form);
    } else if (item.front() == u'<') {
      FormParameter parameter;
      parameter.rule = item;
      parameter.dataType = KindOf(item).dataType;
      parameter.optional = !group.empty();
      parameter.repeats = group.starts_with(u'{');
      parameter.opens = opens;
      opens = false;
      form.parameters.push_back(parameter);
    }
  }
}

std::vector<CallForm> ReadForms() {
  std::vector<CallForm> forms;
  for (const SyntaxRule& rule : kSyntaxRules) {
    if (rule.semanticType != kFunctionSemantic) continue;
    const std::size_t bracket = rule.body.find(u'(');
    CallForm form{rule.body.substr(0, bracket), rule.name, rule.dataType, {}};
    AddParameters(rule.body.substr(bracket + 1), {}, form);
    forms.push_back(std::move(form));
  }
  // Forms of one function side by side, else as they stand.
  std::vector<CallForm> sorted;
  for (const CallForm& form : forms) {
    const auto same = [&](const CallForm& other) { return other.function == form.function; };
    if (std::any_of(sorted.begin(), sorted.end(), same)) continue;
    std::copy_if(forms.begin(), forms.end(), std::back_inserter(sorted), same);
  }
  return sorted;
}

/// The `label: sentence` pieces of a function's text of parameters.
std::vector<std::u16string_view> ParameterTexts(std::u16string_view text) {
  return SplitText(text, u"|");
}

std::u16string ParametersText(const CallForm& form, Language language) {
  const std::int32_t info = InfoNumberOf(form.function);
  return info == 0 || form.parameters.empty() ? std::u16string{} : LoadMessage(info + 1, language);
}

}  // namespace

std::span<const CallForm> AllForms() {
  static const std::vector<CallForm> forms = ReadForms();
  return forms;
}

std::span<const CallForm> FormsOf(std::u16string_view primary) {
  const std::span<const CallForm> all = AllForms();
  const auto is = [primary](const CallForm& form) {
    return EqualsIgnoringCase(form.function, primary);
  };
  const auto first = std::find_if(all.begin(), all.end(), is);
  const auto last = std::find_if_not(first, all.end(), is);
  return {first, last};
}

std::u16string ParameterTypeName(const FormParameter& parameter, Language language) {
  const std::int32_t message = KindOf(parameter.rule).message;
  return message != 0 ? LoadMessage(message, language) : DataTypeName(parameter.dataType, language);
}

std::u16string SignatureText(const CallForm& form, std::u16string_view name, Language language) {
  std::u16string text(name);
  text += u'(';
  char16_t open = 0;
  const auto close = [&] {
    if (open != 0) text += open == u'{' ? u'}' : u']';
    open = 0;
  };
  bool isFirst = true;
  for (const FormParameter& parameter : form.parameters) {
    if (parameter.opens) {
      close();
      open = parameter.repeats ? u'{' : u'[';
      text += open;
    }
    if (!isFirst) text += u", ";
    isFirst = false;
    text += ParameterTypeName(parameter, language);
  }
  close();
  return text += u')';
}

std::vector<RuleParameter> ParametersOf(const CallForm& form, Language language) {
  const std::u16string texts = ParametersText(form, language);
  const std::vector<std::u16string_view> pieces = ParameterTexts(texts);
  std::vector<RuleParameter> parameters;
  for (std::size_t i = 0; i < form.parameters.size(); ++i) {
    const FormParameter& asked = form.parameters[i];
    RuleParameter parameter;
    parameter.dataType = TypeNameOf(asked.dataType);
    parameter.optional = asked.optional;
    parameter.repeats = asked.repeats;
    const std::u16string_view piece = i < pieces.size() ? pieces[i] : std::u16string_view{};
    const std::size_t colon = piece.find(u": ");
    parameter.label = piece.substr(0, colon);
    if (colon != piece.npos) parameter.info = piece.substr(colon + 2);
    if (parameter.label.empty()) parameter.label = ParameterTypeName(asked, language);
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

std::u16string SnippetOf(const CallForm& form, std::u16string_view name, Language language) {
  std::u16string snippet = std::u16string(name) + u'(';
  std::int32_t number = 0;
  for (const RuleParameter& parameter : ParametersOf(form, language)) {
    if (parameter.optional) continue;
    if (number > 0) snippet += u", ";
    snippet += u"${" + Decimal(++number) + u':' + parameter.label + u'}';
  }
  return snippet += u')';
}

}  // namespace ORKBASE
