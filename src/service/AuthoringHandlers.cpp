// The handlers of what an editor asks: the records of `RuleAuthoring` as fields. None of them
// touches the engine's error pair.
#include "service/Call.h"
#include "service/Fields.h"
#include "service/Handlers.h"

#include "RuleDialects.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ORKBASE {
namespace {

MXRULE_DATATYPE TypeField(const Call& call) {
  return static_cast<MXRULE_DATATYPE>(call.Integer("type"));
}

RuleAuthoring& InItsLanguage(Call& call) {
  RuleAuthoring& authoring = call.Authoring();
  authoring.set_language(call.Text("language"));
  return authoring;
}

/// What cannot be asked: a place that is none.
void RefuseUnless(bool answered, const RuleAuthoring& authoring) {
  if (!answered) throw BadRequest{authoring.errDescription()};
}

/// What was asked and has no answer: the pair of this answer tells why.
void TellError(Call& call, const RuleAuthoring& authoring) {
  call.set_errorPair({authoring.errRecord().number, authoring.errDescription()});
}

std::u16string Text(std::u16string_view text) {
  return std::u16string(text);
}

template <typename Items, typename Tell>
Records ToldEach(const Items& items, Tell tell) {
  Records told;
  told.reserve(items.size());
  std::transform(items.begin(), items.end(), std::back_inserter(told), tell);
  return told;
}

/// The name of a dialect as the name of a field, which lives as long as the process.
std::string_view FieldNameOf(std::u16string_view dialect) {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> made;
    for (const RuleDialect& each : RuleDialects()) {
      made.emplace_back(each.name.begin(), each.name.end());
    }
    return made;
  }();
  const auto is = [dialect](const std::string& name) {
    return std::equal(name.begin(), name.end(), dialect.begin(), dialect.end());
  };
  const auto found = std::find_if(names.begin(), names.end(), is);
  return found == names.end() ? std::string_view() : *found;
}

std::u16string_view NameOf(RuleSeverity severity) {
  switch (severity) {
    case kErrorSeverity:
      return u"error";
    case kWarningSeverity:
      return u"warning";
    case kInformationSeverity:
      break;
  }
  return u"information";
}

Record Told(const RuleEdit& edit) {
  return {{"offset", std::int64_t{edit.offset}},
          {"length", std::int64_t{edit.length}},
          {"text", edit.text}};
}

Record Told(const RuleFix& fix) {
  return {{"label", fix.label},
          {"edits", ToldEach(fix.edits, [](const RuleEdit& edit) { return Told(edit); })}};
}

Record Told(const RuleProblem& problem) {
  return {{"offset", std::int64_t{problem.offset}},
          {"length", std::int64_t{problem.length}},
          {"severity", Text(NameOf(problem.severity))},
          {"number", std::int64_t{problem.number}},
          {"text", problem.text},
          {"expected", problem.expected},
          {"fixes", ToldEach(problem.fixes, [](const RuleFix& fix) { return Told(fix); })}};
}

Record Told(const RuleItem& item) {
  Record told = {
      {"text", item.text},           {"kind", Text(item.kind)}, {"dataType", Text(item.dataType)},
      {"signature", item.signature}, {"info", item.info},       {"fits", item.fits}};
  if (!item.snippet.empty()) Add(told, "snippet", item.snippet);
  if (!item.reason.empty()) Add(told, "reason", item.reason);
  return told;
}

Record Told(const RuleParameter& parameter) {
  return {{"label", parameter.label},
          {"dataType", Text(parameter.dataType)},
          {"optional", parameter.optional},
          {"repeats", parameter.repeats},
          {"info", parameter.info}};
}

Record Told(const RuleUse& use) {
  return {{"kind", Text(use.kind)},
          {"name", use.name},
          {"table", use.table},
          {"field", use.field},
          {"offset", std::int64_t{use.offset}},
          {"length", std::int64_t{use.length}}};
}

Record Told(const RuleSupport& support) {
  Record told = {{"state", Text(support.state)}};
  if (!support.needs.empty()) Add(told, "needs", support.needs);
  if (!support.sql.empty()) Add(told, "sql", support.sql);
  if (!support.text.empty()) Add(told, "text", support.text);
  return told;
}

Record Told(const RuleFunction& function) {
  Record databases;
  for (const RuleSupport& support : function.databases) {
    Add(databases, FieldNameOf(support.dialect), Told(support));
  }
  return {{"name", function.name},           {"dataType", Text(function.dataType)},
          {"signature", function.signature}, {"info", function.info},
          {"sample", function.sample},       {"databases", std::move(databases)}};
}

Record Told(const RuleField& field) {
  return {{"name", field.name}, {"dataType", Text(field.dataType)}, {"realName", field.realName}};
}

Texts ToldTexts(const std::vector<std::u16string_view>& texts) {
  return {texts.begin(), texts.end()};
}

}  // namespace

void RunCheck(Call& call) {
  std::vector<ORKDB_DSType_ENUM> databases;
  for (const std::int64_t number : call.IntegerList("dsTypes")) {
    databases.push_back(static_cast<ORKDB_DSType_ENUM>(number));
  }
  const std::vector<RuleProblem> problems = InItsLanguage(call).Check(
      TypeField(call), call.Text("expression"), databases, call.Boolean("twoParts"));
  const auto isError = [](const RuleProblem& each) { return each.severity == kErrorSeverity; };
  call.set_refused(std::any_of(problems.begin(), problems.end(), isError));
  call.Give("problems", ToldEach(problems, [](const RuleProblem& each) { return Told(each); }));
}

void RunComplete(Call& call) {
  RuleAuthoring& authoring = InItsLanguage(call);
  RuleCompletion found;
  RefuseUnless(authoring.Complete(TypeField(call), call.Text("expression"), call.Integer("offset"),
                                  call.Integer("limit"), call.Boolean("all"), found),
               authoring);
  call.Give("offset", std::int64_t{found.offset});
  call.Give("length", std::int64_t{found.length});
  call.Give("items", ToldEach(found.items, [](const RuleItem& each) { return Told(each); }));
  call.Give("more", found.more);
  call.Give("unsure", found.unsure);
  call.Give("constants", ToldTexts(found.constants));
}

void RunSignature(Call& call) {
  RuleAuthoring& authoring = InItsLanguage(call);
  RuleSignature found;
  RefuseUnless(authoring.Signature(call.Text("expression"), call.Integer("offset"), found),
               authoring);
  if (found.name.empty()) return;  // no call around the offset: nothing to tell
  call.Give("name", std::move(found.name));
  call.Give("text", std::move(found.text));
  call.Give("parameters",
            ToldEach(found.parameters, [](const RuleParameter& each) { return Told(each); }));
  call.Give("active", std::int64_t{found.active});
  call.Give("offset", std::int64_t{found.offset});
}

void RunExplain(Call& call) {
  RuleAuthoring& authoring = InItsLanguage(call);
  RuleExplanation found;
  RefuseUnless(authoring.Explain(call.Text("expression"), call.Integer("offset"), found),
               authoring);
  Record sql;
  for (RuleSql& each : found.sql) Add(sql, FieldNameOf(each.dialect), std::move(each.sql));
  call.Give("offset", std::int64_t{found.offset});
  call.Give("length", std::int64_t{found.length});
  call.Give("kind", Text(found.kind));
  call.Give("name", std::move(found.name));
  call.Give("dataType", Text(found.dataType));
  call.Give("text", std::move(found.text));
  call.Give("sql", std::move(sql));
}

void RunUses(Call& call) {
  const std::vector<RuleUse> uses = InItsLanguage(call).Uses(call.Text("expression"));
  call.Give("uses", ToldEach(uses, [](const RuleUse& each) { return Told(each); }));
}

void RunWrite(Call& call) {
  RuleAuthoring& authoring = InItsLanguage(call);
  std::u16string expression;
  const bool written = authoring.Write(call.Text("document"), expression);
  if (!written) TellError(call, authoring);
  call.Give("result", written);
  call.Give("expression", written ? std::move(expression) : std::u16string());
}

void RunFormat(Call& call) {
  call.Give("expression",
            InItsLanguage(call).Format(call.Text("expression"), call.Integer("width")));
}

void RunCapabilities(Call& call) {
  const std::vector<RuleFunction> functions = InItsLanguage(call).Capabilities();
  call.Give("functions", ToldEach(functions, [](const RuleFunction& each) { return Told(each); }));
}

void RunTables(Call& call) {
  RuleAuthoring& authoring = InItsLanguage(call);
  RuleTables found;
  if (!authoring.Tables(call.Text("like"), found)) {
    found = {};
    TellError(call, authoring);
  }
  call.Give("tables", std::move(found.tables));
  call.Give("more", found.more);
}

void RunFields(Call& call) {
  RuleAuthoring& authoring = InItsLanguage(call);
  std::vector<RuleField> fields;
  if (!authoring.Fields(call.Text("table"), fields)) {
    fields.clear();
    TellError(call, authoring);
  }
  call.Give("fields", ToldEach(fields, [](const RuleField& each) { return Told(each); }));
}

}  // namespace ORKBASE
