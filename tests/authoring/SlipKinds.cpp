#include "SlipKinds.h"

#include "MxRuleEnums.h"
#include "foundation/Text.h"

#include <algorithm>
#include <utility>

using namespace ORKBASE;

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// A word of the rule that a test holds for, any of them.
template <class Test>
std::size_t Any(const RuleTokens& tokens, const SlipWorld& world, Test test) {
  std::vector<std::size_t> fitting;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (test(i)) fitting.push_back(i);
  }
  return fitting.empty() ? kNone : fitting[world.Pick(fitting.size())];
}

bool Is(const RuleTokens& tokens, std::size_t i, std::u16string_view primary) {
  return i < tokens.size() && EqualsIgnoringCase(tokens[i].primary, primary);
}
bool IsField(const RuleToken& token) {
  return token.symbol == kDataFieldSymbol && token.text.find(u'.') != std::u16string::npos;
}
bool IsText(const RuleToken& token) {
  return token.symbol == kConstantSymbol && token.dataType == kStrDataType && token.text.size() > 3;
}
bool IsNumber(const RuleToken& token) {
  return token.symbol == kConstantSymbol && token.dataType == kNumDataType;
}

std::size_t Partner(const RuleTokens& tokens, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < tokens.size(); ++i) {
    if (tokens[i].primary == u"(") ++depth;
    if (tokens[i].primary == u")" && --depth == 0) return i;
  }
  return kNone;
}

RuleToken Plain(const std::u16string& text) {
  return {text, text, kUnknownSymbol, 0};
}

/// Replaces one word that has a row in a table of (canonical word, what is typed for it).
struct Swap {
  std::u16string_view primary;
  std::u16string_view typed;
};
bool SwapOne(SpoiltRule& rule, const SlipWorld& world, std::span<const Swap> table) {
  const auto fits = [&](std::size_t i, const Swap& row) {
    if (!Is(rule.spoilt, i, row.primary)) return false;
    return rule.spoilt[i].symbol != kDatePartSymbol || row.primary.size() == 2;
  };
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    return std::any_of(table.begin(), table.end(), [&](const Swap& row) { return fits(i, row); });
  });
  if (at == kNone) return false;
  std::vector<std::u16string_view> typed;
  for (const Swap& row : table) {
    if (fits(at, row)) typed.push_back(row.typed);
  }
  rule.spoilt[at] = Plain(std::u16string(typed[world.Pick(typed.size())]));
  return true;
}

// --- signs of other widths

bool WideBrackets(SpoiltRule& rule, const SlipWorld& world) {
  constexpr Swap kTable[] = {{u"(", u"（"}, {u")", u"）"}, {u",", u"，"}};
  return SwapOne(rule, world, kTable);
}
bool WideComparisons(SpoiltRule& rule, const SlipWorld& world) {
  constexpr Swap kTable[] = {{u"=", u"＝"},    {u">", u"＞"},    {u"<", u"＜"},
                             {u"<>", u"＜＞"}, {u">=", u"＞＝"}, {u"<=", u"＜＝"}};
  return SwapOne(rule, world, kTable);
}
bool WideDigits(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at =
      Any(rule.spoilt, world, [&](std::size_t i) { return IsNumber(rule.spoilt[i]); });
  if (at == kNone) return false;
  for (char16_t& unit : rule.spoilt[at].text) unit = static_cast<char16_t>(unit - u'!' + 0xFF01);
  return true;
}
bool WideQuotes(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    return IsText(rule.spoilt[i]) && rule.spoilt[i].text.find(u"''") == std::u16string::npos;
  });
  if (at == kNone) return false;
  std::u16string& text = rule.spoilt[at].text;
  const bool isDouble = world.Pick(2) == 0;
  text.front() = isDouble ? u'\u201C' : u'\u2018';
  text.back() = isDouble ? u'\u201D' : u'\u2019';
  return true;
}
bool OddBlanks(SpoiltRule& rule, const SlipWorld& world) {
  constexpr std::u16string_view kBlanks = u"\t\u00A0\u200B\u3000\uFEFF";
  const std::size_t at = world.Pick(rule.spoilt.size());
  rule.spoilt[at].text += kBlanks[world.Pick(kBlanks.size())];
  return true;
}

// --- notation

bool OtherComparisons(SpoiltRule& rule, const SlipWorld& world) {
  constexpr Swap kTable[] = {{u"=", u"=="}, {u"<>", u"!="}, {u">=", u"=>"}, {u"<=", u"=<"},
                             {u">=", u"≥"}, {u"<=", u"≤"},  {u"<>", u"≠"}};
  return SwapOne(rule, world, kTable);
}
bool OtherConditions(SpoiltRule& rule, const SlipWorld& world) {
  constexpr Swap kTable[] = {{u"and", u"&&"}, {u"or", u"||"}};
  return SwapOne(rule, world, kTable);
}
bool DoubleQuotes(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    return IsText(rule.spoilt[i]) && rule.spoilt[i].text.find(u"''") == std::u16string::npos;
  });
  if (at == kNone) return false;
  rule.spoilt[at].text.front() = rule.spoilt[at].text.back() = u'"';
  return true;
}
bool NullTests(SpoiltRule& rule, const SlipWorld& world) {
  const bool chinese = world.language != u"en";
  const Swap table[] = {{u"null", u"is null"},
                        {u"not_null", u"is not null"},
                        {u"null", u"= null"},
                        {u"not_null", u"<> null"},
                        {u"null", chinese ? std::u16string_view(u"= 为空") : u"== null"},
                        {u"not_null", chinese ? std::u16string_view(u"<> 为空") : u"!= null"}};
  return SwapOne(rule, world, table);
}
bool NotIn(SpoiltRule& rule, const SlipWorld& world) {
  const std::u16string typed = world.Own(u"not") + u' ' + world.Own(u"in");
  const Swap table[] = {{u"not_in", u"not in"}, {u"not_in", typed}};
  return SwapOne(rule, world, table);
}
bool BareIn(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at =
      Any(rule.spoilt, world, [&](std::size_t i) { return Is(rule.spoilt, i, u"thisSet"); });
  if (at == kNone) return false;
  rule.spoilt.erase(rule.spoilt.begin() + static_cast<std::ptrdiff_t>(at));
  return true;
}
bool Between(SpoiltRule& rule, const SlipWorld& world) {
  const std::u16string field = world.language == u"en" ? u"Orders.Qty" : u"客户.金额";
  const auto word = [&](std::u16string_view primary) { return Plain(world.Own(primary)); };
  RuleTokens typed = {Plain(field), Plain(u"between"), Plain(u"1"), word(u"and"), Plain(u"10")};
  RuleTokens meant = {Plain(u"("),  Plain(field), Plain(u">="), Plain(u"1"), word(u"and"),
                      Plain(field), Plain(u"<="), Plain(u"10"), Plain(u")")};
  for (RuleToken& token : meant) token.primary = token.text;
  rule.rule.push_back(word(u"or"));
  rule.spoilt.push_back(word(u"or"));
  rule.rule.insert(rule.rule.end(), meant.begin(), meant.end());
  rule.spoilt.insert(rule.spoilt.end(), typed.begin(), typed.end());
  return true;
}
bool QuotedNames(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at =
      Any(rule.spoilt, world, [&](std::size_t i) { return IsField(rule.spoilt[i]); });
  if (at == kNone) return false;
  std::u16string& text = rule.spoilt[at].text;
  const std::size_t dot = text.find(u'.');
  const std::u16string table = text.substr(0, dot);
  const std::u16string field = text.substr(dot + 1);
  switch (world.Pick(3)) {
    case 0:
      text = u'[' + table + u"].[" + field + u']';
      break;
    case 1:
      text = u'"' + table + u"\".\"" + field + u'"';
      break;
    default:
      text = table + u" . " + field;
      break;
  }
  return true;
}
bool Currency(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at =
      Any(rule.spoilt, world, [&](std::size_t i) { return IsNumber(rule.spoilt[i]); });
  if (at == kNone) return false;
  rule.spoilt[at].text.insert(0, 1, u'$');
  return true;
}
bool Percent(SpoiltRule& rule, const SlipWorld& /*world*/) {
  if (!IsNumber(rule.rule.back())) return false;
  rule.rule.back().text = u"0.50";
  rule.spoilt.back().text = u"50%";
  return true;
}
bool Thousands(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at =
      Any(rule.spoilt, world, [&](std::size_t i) { return IsNumber(rule.spoilt[i]); });
  if (at == kNone) return false;
  int depth = 0;
  for (std::size_t i = 0; i < at; ++i) {
    if (rule.spoilt[i].primary == u"(") ++depth;
    if (rule.spoilt[i].primary == u")") --depth;
  }
  if (depth > 0) return false;  // between arguments it is two of them
  rule.rule[at].text = u"1000.50";
  rule.spoilt[at].text = u"1,000.50";
  return true;
}
bool Comments(SpoiltRule& rule, const SlipWorld& world) {
  switch (world.Pick(3)) {
    case 0:
      rule.behind = u" -- only the big ones";
      return true;
    case 1:
      rule.behind = u" // only the big ones";
      return true;
    default:
      rule.spoilt.insert(
          rule.spoilt.begin() + static_cast<std::ptrdiff_t>(world.Pick(rule.spoilt.size())),
          Plain(u"/* big ones */"));
      return true;
  }
}
bool Semicolon(SpoiltRule& rule, const SlipWorld& world) {
  rule.behind = world.Pick(2) == 0 ? u";" : u"；";
  return true;
}

// --- words

bool Aliases(SpoiltRule& rule, const SlipWorld& world) {
  constexpr Swap kEnglish[] = {{u"average", u"avg"},
                               {u"average", u"mean"},
                               {u"length", u"len"},
                               {u"toUpper", u"upper"},
                               {u"toLower", u"lower"},
                               {u"substring", u"substr"},
                               {u"substring", u"mid"},
                               {u"switch", u"if"},
                               {u"switch", u"iif"},
                               {u"switch", u"case"},
                               {u"IsNull", u"nvl"},
                               {u"IsNull", u"coalesce"},
                               {u"IsNull", u"ifnull"},
                               {u"POWER", u"pow"},
                               {u"CEILING", u"ceil"},
                               {u"timeInterval", u"datediff"},
                               {u"sysVar.currentDate", u"today()"},
                               {u"sysVar.currentDate", u"curdate()"},
                               {u"ToText", u"to_char"}};
  constexpr Swap kChinese[] = {
      {u"average", u"平均"}, {u"sum", u"合计"},     {u"length", u"长度"},
      {u"toUpper", u"大写"}, {u"toLower", u"小写"}, {u"substring", u"截取"},
      {u"switch", u"如果"},  {u"max", u"最大"},     {u"min", u"最小"},
      {u"and", u"并且"},     {u"or", u"或者"},      {u">", u"大于"},
      {u"<", u"小于"},       {u"=", u"等于"},       {u"<>", u"不等于"},
      {u"average", u"avg"},  {u"IsNull", u"nvl"},   {u"sysVar.currentDate", u"今天"}};
  return world.language == u"en" ? SwapOne(rule, world, kEnglish) : SwapOne(rule, world, kChinese);
}
bool Concat(SpoiltRule& rule, const SlipWorld& world) {
  const std::u16string field = world.language == u"en" ? u"Customer.Name" : u"客户.名称";
  rule.rule = {Plain(field), Plain(u"&"), Plain(u"'-'"), Plain(u"&")};
  rule.rule.insert(rule.rule.end(), rule.spoilt.begin(), rule.spoilt.end());
  RuleTokens spoilt = {Plain(u"concat"), Plain(u"("),   Plain(field),
                       Plain(u","),      Plain(u"'-'"), Plain(u",")};
  spoilt.insert(spoilt.end(), rule.spoilt.begin(), rule.spoilt.end());
  spoilt.push_back(Plain(u")"));
  rule.spoilt = std::move(spoilt);
  return true;
}
bool DateParts(SpoiltRule& rule, const SlipWorld& world) {
  constexpr Swap kTable[] = {{u"yy", u"year"},   {u"mm", u"month"},   {u"dd", u"day"},
                             {u"dd", u"'dd'"},   {u"qq", u"quarter"}, {u"hh", u"hour"},
                             {u"mi", u"minute"}, {u"ss", u"second"},  {u"ww", u"week"},
                             {u"dd", u"天"},     {u"mm", u"月"}};
  return SwapOne(rule, world, kTable);
}
bool OtherLanguage(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    const RuleToken& token = rule.spoilt[i];
    const bool isWord = token.symbol == kFunctionSymbol || token.symbol == kSysvarSymbol ||
                        token.symbol == kSysvarUserSymbol || token.symbol >= kOpSumSymbol;
    return isWord && world.Foreign(token.primary) != token.text;
  });
  if (at == kNone) return false;
  rule.spoilt[at].text = world.Foreign(rule.spoilt[at].primary);
  return true;
}

/// One letter more, less, other, or two swapped.
bool Misspelt(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    const RuleToken& token = rule.spoilt[i];
    // Columns that no dictionary lists have no near names.
    const bool isName = (IsField(token) && token.dataType != kVarDataType) ||
                        token.symbol == kFunctionSymbol || token.symbol == kSysvarSymbol ||
                        token.symbol == kSysvarUserSymbol;
    return isName && token.text.size() >= (world.language == u"en" ? 6U : 3U);
  });
  if (at == kNone) return false;
  std::u16string& text = rule.spoilt[at].text;
  const std::size_t i = 1 + world.Pick(text.size() - 2);
  if (text[i] == u'.' || text[i + 1] == u'.') return false;
  switch (world.Pick(4)) {
    case 0:
      text.insert(i, 1, text[i]);
      break;
    case 1:
      text.erase(i, 1);
      break;
    case 2:
      text[i] = u'x';
      break;
    default:
      if (text[i] == text[i + 1]) return false;
      std::swap(text[i], text[i + 1]);
      break;
  }
  return true;
}
bool NoTable(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    return IsField(rule.spoilt[i]) && rule.spoilt[i].dataType != kVarDataType;
  });
  if (at == kNone) return false;
  std::u16string& text = rule.spoilt[at].text;
  text.erase(0, text.find(u'.') + 1);
  return true;
}
bool NoType(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    const std::int32_t symbol = rule.spoilt[i].symbol;
    return symbol == kInputSymbol || symbol == kSmsSymbol;
  });
  if (at == kNone) return false;
  rule.spoilt[at].text.resize(rule.spoilt[at].text.size() - 3);
  return true;
}

// --- marks

bool OpenBracket(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at =
      Any(rule.spoilt, world, [&](std::size_t i) { return rule.spoilt[i].primary == u")"; });
  if (at == kNone) return false;
  rule.spoilt.erase(rule.spoilt.begin() + static_cast<std::ptrdiff_t>(at));
  return true;
}
bool SurplusBracket(SpoiltRule& rule, const SlipWorld& world) {
  if (world.Pick(3) == 0) {
    rule.behind = u")";
    return true;
  }
  const std::size_t at =
      Any(rule.spoilt, world, [&](std::size_t i) { return rule.spoilt[i].primary == u")"; });
  if (at == kNone) return false;
  rule.spoilt[at].text = u"))";
  return true;
}
bool OpenText(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    return IsText(rule.spoilt[i]) && rule.spoilt[i].text.find(u"''") == std::u16string::npos;
  });
  if (at == kNone) return false;
  rule.spoilt[at].text.pop_back();
  return true;
}

// --- types

bool BareDate(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    return rule.spoilt[i].symbol == kConstantSymbol && rule.spoilt[i].dataType == kDateDataType;
  });
  if (at == kNone) return false;
  std::u16string& text = rule.spoilt[at].text;
  text = text.substr(1, text.size() - 2);
  return true;
}
bool QuotedNumber(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at =
      Any(rule.spoilt, world, [&](std::size_t i) { return IsNumber(rule.spoilt[i]); });
  if (at == kNone) return false;
  rule.spoilt[at].text = u'\'' + rule.spoilt[at].text + u'\'';
  return true;
}
/// Takes a conversion off.
bool NoConversion(SpoiltRule& rule, const SlipWorld& world, std::u16string_view function) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    return Is(rule.spoilt, i, function) && Partner(rule.spoilt, i + 1) == i + 3;
  });
  if (at == kNone) return false;
  const auto begin = rule.spoilt.begin() + static_cast<std::ptrdiff_t>(at);
  if (begin[2].dataType == kVarDataType || begin[2].dataType == kPicDataType ||
      begin[2].dataType == kLinkDataType) {
    return false;
  }
  rule.spoilt.erase(begin + 3);
  rule.spoilt.erase(begin, begin + 2);
  return true;
}
/// A comparison of a text with a value that was converted, behind the rule.
bool NoToText(SpoiltRule& rule, const SlipWorld& world) {
  constexpr std::u16string_view kValues[] = {u"Orders.Amount", u"5", u"T.a", u"2.5", u"Orders.Qty"};
  const std::u16string value(kValues[world.Pick(std::size(kValues))]);
  const std::u16string text = world.language == u"en" ? u"Customer.Name" : u"客户.名称";
  const bool isJoined = world.Pick(2) == 0;
  RuleTokens meant = {Plain(world.Own(u"or")), Plain(text)};
  if (isJoined) meant.insert(meant.end(), {Plain(u"&"), Plain(u"'-'")});
  meant.push_back(Plain(isJoined ? u"&" : u"="));
  RuleTokens typed = meant;
  meant.insert(meant.end(), {Plain(world.Own(u"ToText")), Plain(u"("), Plain(value), Plain(u")")});
  typed.push_back(Plain(value));
  if (isJoined) {
    meant.insert(meant.end(), {Plain(u"="), Plain(u"'a-5'")});
    typed.insert(typed.end(), {Plain(u"="), Plain(u"'a-5'")});
  }
  rule.rule.insert(rule.rule.end(), meant.begin(), meant.end());
  rule.spoilt.insert(rule.spoilt.end(), typed.begin(), typed.end());
  return true;
}
bool NoToNumber(SpoiltRule& rule, const SlipWorld& world) {
  return NoConversion(rule, world, u"ToNumber");
}
bool PlusForTexts(SpoiltRule& rule, const SlipWorld& world) {
  const std::size_t at = Any(rule.spoilt, world, [&](std::size_t i) {
    const auto isText = [](const RuleToken& token) {
      return token.dataType == kStrDataType && token.symbol != kFunctionSymbol;
    };
    return Is(rule.spoilt, i, u"&") && i > 0 && i + 1 < rule.spoilt.size() &&
           isText(rule.spoilt[i - 1]) && isText(rule.spoilt[i + 1]);
  });
  if (at == kNone) return false;
  rule.spoilt[at].text = u"+";
  return true;
}
/// A comparison with a date that was moved, behind the rule.
bool PlusForDates(SpoiltRule& rule, const SlipWorld& world) {
  constexpr std::u16string_view kDates[] = {u"Orders.OrderDate", u"T.d", u"sysVar.currentDate"};
  constexpr std::u16string_view kNumbers[] = {u"3", u"T.a", u"Orders.Qty"};
  const std::u16string date = world.Own(kDates[world.Pick(std::size(kDates))]);
  const std::u16string number(kNumbers[world.Pick(std::size(kNumbers))]);
  const bool isMinus = world.Pick(2) == 0;
  const RuleTokens head = {Plain(world.Own(u"or")), Plain(u"T.d"), Plain(u"<")};
  rule.rule.insert(rule.rule.end(), head.begin(), head.end());
  rule.spoilt.insert(rule.spoilt.end(), head.begin(), head.end());
  rule.rule.insert(rule.rule.end(),
                   {Plain(world.Own(u"dateAdd")), Plain(u"("), Plain(u"dd"), Plain(u","),
                    Plain((isMinus ? u"-" : u"") + number), Plain(u","), Plain(date), Plain(u")")});
  rule.spoilt.insert(rule.spoilt.end(), {Plain(date), Plain(isMinus ? u"-" : u"+"), Plain(number)});
  return true;
}

// clang-format off
constexpr SlipKind kKinds[] = {
    {"wide brackets and commas", u"<func_num>",         WideBrackets,     true},
    {"wide comparisons",         u"<op_rela>",          WideComparisons,  true},
    {"wide digits",              u"<expr_num>",         WideDigits,       true},
    {"wide quotes",              u"<op_compose>",       WideQuotes,       true},
    {"odd blanks",               u"<expr_comp>",        OddBlanks,        true},
    {"== != => =< etc.",         u"<op_rela>",          OtherComparisons, true},
    {"&& ||",                    u"<op_cond>",          OtherConditions,  true},
    {"\"text\"",                 u"<op_compose>",       DoubleQuotes,     true},
    {"is null etc.",             u"<expr_isNull>",      NullTests,        true},
    {"not in",                   u"<func_set>",         NotIn,            true},
    {"in (1, 2)",                u"<func_set>",         BareIn,           true},
    {"between a and b",          u"<expr_comp>",        Between,          true},
    {"[T].[f] etc.",             u"<expr_comp>",        QuotedNames,      true},
    {"$5",                       u"<expr_num>",         Currency,         true},
    {"50%",                      u"<op_rela>",          Percent,          true},
    {"1,000.50",                 u"<op_rela>",          Thousands,        true},
    {"comments",                 u"<expr_comp>",        Comments,         true},
    {"semicolon",                u"<expr_comp>",        Semicolon,        true},
    {"words of other systems",   u"<func_str>",         Aliases,          true},
    {"concat",                   u"<expr_str>",         Concat,           true},
    {"date parts",               u"<datePart>",         DateParts,        true},
    {"other language",           u"<func_num>",         OtherLanguage,    true},
    {"misspelt names",           u"<func_num>",         Misspelt,         false},
    {"field without table",      u"<expr_comp>",        NoTable,          false},
    {"parameter without type",   u"<expr_comp>",        NoType,           false},
    {"open bracket",             u"<func_num>",         OpenBracket,      false},
    {"surplus bracket",          u"<func_num>",         SurplusBracket,   false},
    {"open text",                u"<op_compose>",       OpenText,         false},
    {"date without quotes",      u"<constant_variant_date>",        BareDate,         true},
    {"quoted number",            u"<op_rela>",          QuotedNumber,     true},
    {"value for text",           u"<expr_comp>",        NoToText,         true},
    {"text for number",          u"<func_ToNumber>",    NoToNumber,       false},
    {"+ between texts",          u"<op_compose>",       PlusForTexts,     true},
    {"date plus number",         u"<expr_comp>",     PlusForDates,     true},
};
// clang-format on

}  // namespace

std::span<const SlipKind> SlipKinds() {
  return kKinds;
}
