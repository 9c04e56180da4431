// Sample calls, and their way through all translators.
#include "authoring/SampleCalls.h"

#include "Mx_Exception.h"
#include "authoring/AuthoringCall.h"
#include "dialects/Capabilities.h"
#include "dialects/Dialects.h"
#include "document/Composer.h"
#include "document/TagReader.h"
#include "foundation/Text.h"

#include <algorithm>

namespace ORKBASE {
namespace {

struct ArgumentRow {
  std::u16string_view rule;  ///< of the parameter
  std::u16string_view argument;
};

struct SampleRow {
  std::u16string_view rule;  ///< of the form
  std::u16string_view arguments;
};

// clang-format off
/// What stands for a parameter where no sample of its own is given; no argument for a picture.
constexpr ArgumentRow kArguments[] = {
    {u"<expr_num>",      u"1.5"},
    {u"<expr_str>",      u"'abc'"},
    {u"<expr_date>",     u"'2024-01-15'"},
    {u"<expr_var>",      u"1.5"},
    {u"<ToText_1param>", u"1.5"},
    {u"<dateStyle>",     u"'yyyy-mm-dd'"},
};

/// Arguments that say more than those above.
constexpr SampleRow kSamples[] = {
    {u"<func_timeInterval>",            u"dd, '2024-01-15', '2024-02-01'"},
    {u"<func_POWER>",                   u"2, 3"},
    {u"<func_ROUND>",                   u"1.5, 0"},
    {u"<func_ToNumber>",                u"'42'"},
    {u"<func_CHARINDEX>",               u"'b', 'abc'"},
    {u"<func_fRandBetween>",            u"1, 6"},
    {u"<func_substring>",               u"'abc', 1, 2"},
    {u"<func_fHMAC>",                   u"'abc', 'key', 'SHA2_256'"},
    {u"<func_fHmac2Base64>",            u"'abc', 'key', 'SHA2_256'"},
    {u"<func_REPLICATE>",               u"'abc', 2"},
    {u"<func_STRING_AGG>",              u"'abc', ','"},
    {u"<func_fStringSplit>",            u"'a,b', ','"},
    {u"<func_fStringDistinct>",         u"'a,b,a', ','"},
    {u"<func_REPLACE>",                 u"'abc', 'b', 'd'"},
    {u"<func_dateAdd>",                 u"dd, 1, '2024-01-15'"},
    {u"<func_ToDate>",                  u"'2024-01-15'"},
    {u"<func_fUnixTimestamp2Datetime>", u"1705276800, 0, 8"},
    {u"<func_switch_num>",              u"1 = 1, 1.5, 0"},
    {u"<func_switch_str>",              u"1 = 1, 'abc', 'd'"},
    {u"<func_switch_date>",             u"1 = 1, '2024-01-15', '2024-02-01'"},
    {u"<func_IsNull>",                  u"1.5, 0"},
    {u"<func_set>",                     u"1.5, 2"},
};
// clang-format on

constexpr std::u16string_view kYearAndMonth[] = {u"2024", u"1"};

/// First and last days, and periods: their numbers are a year, and a quarter or month of it.
bool IsOfYear(const CallForm& form) {
  return form.dataType == kDateDataType || form.dataType == kLogicDataType;
}

std::u16string_view ArgumentFor(const CallForm& form, std::size_t index) {
  const FormParameter& parameter = form.parameters[index];
  if (IsOfYear(form) && parameter.dataType == kNumDataType) return kYearAndMonth[index];
  for (const ArgumentRow& row : kArguments) {
    if (row.rule == parameter.rule) return row.argument;
  }
  return {};
}

/// False where a parameter takes fields only.
bool AddArguments(const CallForm& form, std::u16string& text) {
  for (const SampleRow& row : kSamples) {
    if (row.rule != form.rule) continue;
    text += row.arguments;
    return true;
  }
  for (std::size_t i = 0; i < form.parameters.size(); ++i) {
    if (form.parameters[i].optional) break;
    const std::u16string_view argument = ArgumentFor(form, i);
    if (argument.empty()) return false;
    if (i > 0) text += u", ";
    text += argument;
  }
  return true;
}

std::u16string NameOf(AuthoringCall& call, std::u16string_view primary) {
  const MxWord* word = call.Dictionaries().FindByPrimary(primary);
  return word ? word->outDesc : std::u16string(primary);
}

/// Functions that the SQL of a tree calls.
std::vector<std::u16string_view> CallsIn(Tag root) {
  std::vector<std::u16string_view> names;
  for (Tag node = root; node; node = node.NextInDocument(root)) {
    if (node.GetInt(Attr::kSymbol) == kFunctionSymbol) names.push_back(node.Get(Attr::kText));
  }
  return names;
}

std::u16string RefusalText(const AuthoringCall& call, ORKDB_DSType_ENUM database,
                           std::u16string_view document) {
  TagTree tree;
  ReadTagTree(document, tree);
  for (Tag node = tree.Root(); node; node = node.NextInDocument(tree.Root())) {
    const Refusal* refusal =
        RefusalOf(database, node.Get(Attr::kPrimary), node.FirstChild().Get(Attr::kPrimary));
    if (refusal) return call.Text(refusal->message);
  }
  return {};
}

RuleSupport SupportOn(AuthoringCall& call, const DialectRow& row, std::u16string_view document) {
  RuleSupport support;
  support.dialect = row.dialect.name;
  const auto translator = call.Engine().CreateTranslator(row.dialect.number);
  try {
    std::u16string translated;
    if (translator->Translate(document, translated) != 0) {
      support.state = u"refused";
      support.text = call.TextOf(translator->error);
      return support;
    }
  } catch (const Mx_Exception& refusal) {
    support.state = u"refused";
    support.text = RefusalText(call, row.dialect.number, document);
    if (support.text.empty()) support.text = refusal.message;
    return support;
  }
  const Tag root = translator->TranslatedRoot();
  support.sql = ExpSpec1(root, WordsOf::kSql);
  bool isBare = false;
  for (const std::u16string_view name : CallsIn(root)) {
    const Known known = KnownOf(row.dialect.number, name);
    isBare |= known == Known::kMissing || known == Known::kUnwritten;
    const auto& needs = support.needs;
    if (known != Known::kSupplied || std::find(needs.begin(), needs.end(), name) != needs.end()) {
      continue;
    }
    support.needs.emplace_back(name);
  }
  support.state = isBare ? u"bare" : support.needs.empty() ? u"native" : u"user";
  return support;
}

}  // namespace

SampleCall SampleOf(AuthoringCall& call, const CallForm& form) {
  SampleCall sample{form.dataType, {}};
  std::u16string text = NameOf(call, form.function) + u"(";
  if (!AddArguments(form, text)) return sample;
  text += u')';
  std::u16string before;
  if (form.rule == u"<func_set>") {
    sample.type = kLogicDataType;
    before = u"1.5 " + NameOf(call, u"in") + u" ";
  } else if (form.dataType == kLogicDataType) {
    before = u"'2024-01-15' " + NameOf(call, u"between") + u" ";
  }
  sample.rule = before.append(text);
  return sample;
}

std::vector<RuleSupport> SupportOf(AuthoringCall& call, const SampleCall& sample) {
  std::vector<RuleSupport> databases;
  std::u16string document;
  MxErrorRecord refusal;
  if (!call.Verify(sample.type, sample.rule, document, refusal)) return databases;
  for (const DialectRow& row : Dialects()) databases.push_back(SupportOn(call, row, document));
  return databases;
}

}  // namespace ORKBASE
