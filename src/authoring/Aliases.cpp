#include "authoring/Aliases.h"

#include "dictionary/BaseVocabulary.h"
#include "dictionary/MxDictionarys.h"
#include "foundation/KeyMap.h"
#include "foundation/Text.h"

namespace ORKBASE {
namespace {

// clang-format off
constexpr std::u16string_view kLanguages[] = {u"en", u"zh-CN"};

constexpr AliasRow kEnglish[] = {
    {u"avg",               AliasUse::kWord,     u"average"},
    {u"mean",              AliasUse::kWord,     u"average"},
    {u"total",             AliasUse::kWord,     u"sum"},
    {u"maximum",           AliasUse::kWord,     u"max"},
    {u"minimum",           AliasUse::kWord,     u"min"},
    {u"cnt",               AliasUse::kWord,     u"count"},
    {u"len",               AliasUse::kWord,     u"length"},
    {u"strlen",            AliasUse::kWord,     u"length"},
    {u"char_length",       AliasUse::kWord,     u"length"},
    {u"character_length",  AliasUse::kWord,     u"length"},
    {u"upper",             AliasUse::kWord,     u"toUpper"},
    {u"ucase",             AliasUse::kWord,     u"toUpper"},
    {u"uppercase",         AliasUse::kWord,     u"toUpper"},
    {u"to_upper",          AliasUse::kWord,     u"toUpper"},
    {u"lower",             AliasUse::kWord,     u"toLower"},
    {u"lcase",             AliasUse::kWord,     u"toLower"},
    {u"lowercase",         AliasUse::kWord,     u"toLower"},
    {u"to_lower",          AliasUse::kWord,     u"toLower"},
    {u"substr",            AliasUse::kWord,     u"substring"},
    {u"mid",               AliasUse::kWord,     u"substring"},
    {u"left",              AliasUse::kLeft,     u"substring"},
    {u"trim",              AliasUse::kTrim,     u"ltrim(rtrim"},
    {u"concat",            AliasUse::kJoin,     u"&"},
    {u"concatenate",       AliasUse::kJoin,     u"&"},
    {u"instr",             AliasUse::kSwap,     u"CHARINDEX"},
    {u"strpos",            AliasUse::kSwap,     u"CHARINDEX"},
    {u"locate",            AliasUse::kWord,     u"CHARINDEX"},
    {u"repeat",            AliasUse::kWord,     u"REPLICATE"},
    {u"rept",              AliasUse::kWord,     u"REPLICATE"},
    {u"group_concat",      AliasUse::kWord,     u"STRING_AGG"},
    {u"listagg",           AliasUse::kWord,     u"STRING_AGG"},
    {u"split",             AliasUse::kWord,     u"fStringSplit"},
    {u"if",                AliasUse::kWord,     u"switch"},
    {u"iif",               AliasUse::kWord,     u"switch"},
    {u"ifs",               AliasUse::kWord,     u"switch"},
    {u"case",              AliasUse::kWord,     u"switch"},
    {u"nvl",               AliasUse::kWord,     u"IsNull"},
    {u"coalesce",          AliasUse::kWord,     u"IsNull"},
    {u"ifnull",            AliasUse::kWord,     u"IsNull"},
    {u"now",               AliasUse::kVariable, u"sysVar.currentDateTime"},
    {u"getdate",           AliasUse::kVariable, u"sysVar.currentDateTime"},
    {u"sysdate",           AliasUse::kVariable, u"sysVar.currentDateTime"},
    {u"sysdatetime",       AliasUse::kVariable, u"sysVar.currentDateTime"},
    {u"current_timestamp", AliasUse::kVariable, u"sysVar.currentDateTime"},
    {u"today",             AliasUse::kVariable, u"sysVar.currentDate"},
    {u"curdate",           AliasUse::kVariable, u"sysVar.currentDate"},
    {u"current_date",      AliasUse::kVariable, u"sysVar.currentDate"},
    {u"current_user",      AliasUse::kVariable, u"sysVar.userName"},
    {u"date_add",          AliasUse::kWord,     u"dateAdd"},
    {u"dateDiff",          AliasUse::kWord,     u"timeInterval"},
    {u"date_diff",         AliasUse::kWord,     u"timeInterval"},
    {u"dayOfWeek",         AliasUse::kWord,     u"weekDay"},
    {u"dayOfMonth",        AliasUse::kWord,     u"day"},
    {u"to_char",           AliasUse::kWord,     u"ToText"},
    {u"toString",          AliasUse::kWord,     u"ToText"},
    {u"cstr",              AliasUse::kWord,     u"ToText"},
    {u"to_number",         AliasUse::kWord,     u"ToNumber"},
    {u"cdbl",              AliasUse::kWord,     u"ToNumber"},
    {u"to_date",           AliasUse::kWord,     u"ToDate"},
    {u"cdate",             AliasUse::kWord,     u"ToDate"},
    {u"pow",               AliasUse::kWord,     u"POWER"},
    {u"ceil",              AliasUse::kWord,     u"CEILING"},
    {u"exp",               AliasUse::kWord,     u"Exponent"},
    {u"ln",                AliasUse::kWord,     u"log"},
    {u"random",            AliasUse::kWord,     u"RAND"},
    {u"mod",               AliasUse::kBracket,  u"%"},
    {u"md5",               AliasUse::kWord,     u"fMd5"},
    {u"sha256",            AliasUse::kWord,     u"fSHA256"},
    {u"base64",            AliasUse::kWord,     u"fBase64Encode"},
    {u"unix_timestamp",    AliasUse::kWord,     u"fUnixTimestamp"},
    {u"contains",          AliasUse::kWord,     u"like"},
};

constexpr AliasRow kChinese[] = {
    {u"大于",     AliasUse::kWord,     u">"},
    {u"小于",     AliasUse::kWord,     u"<"},
    {u"等于",     AliasUse::kWord,     u"="},
    {u"不等于",   AliasUse::kWord,     u"<>"},
    {u"大于等于", AliasUse::kWord,     u">="},
    {u"大于或等于", AliasUse::kWord,   u">="},
    {u"不小于",   AliasUse::kWord,     u">="},
    {u"小于等于", AliasUse::kWord,     u"<="},
    {u"小于或等于", AliasUse::kWord,   u"<="},
    {u"不大于",   AliasUse::kWord,     u"<="},
    {u"并且",     AliasUse::kWord,     u"and"},
    {u"而且",     AliasUse::kWord,     u"and"},
    {u"和",       AliasUse::kWord,     u"and"},
    {u"与",       AliasUse::kWord,     u"and"},
    {u"或者",     AliasUse::kWord,     u"or"},
    {u"不",       AliasUse::kWord,     u"not"},
    {u"包含",     AliasUse::kWord,     u"like"},
    {u"像",       AliasUse::kWord,     u"like"},
    {u"在",       AliasUse::kWord,     u"in"},
    {u"不在",     AliasUse::kWord,     u"not_in"},
    {u"空",       AliasUse::kWord,     u"null"},
    {u"是空",     AliasUse::kWord,     u"null"},
    {u"非空",     AliasUse::kWord,     u"not_null"},
    {u"加",       AliasUse::kWord,     u"+"},
    {u"减",       AliasUse::kWord,     u"-"},
    {u"乘",       AliasUse::kWord,     u"*"},
    {u"乘以",     AliasUse::kWord,     u"*"},
    {u"除以",     AliasUse::kWord,     u"/"},
    {u"合计",     AliasUse::kWord,     u"sum"},
    {u"总和",     AliasUse::kWord,     u"sum"},
    {u"平均",     AliasUse::kWord,     u"average"},
    {u"均值",     AliasUse::kWord,     u"average"},
    {u"求平均",   AliasUse::kWord,     u"average"},
    {u"最大",     AliasUse::kWord,     u"max"},
    {u"最小",     AliasUse::kWord,     u"min"},
    {u"个数",     AliasUse::kWord,     u"count"},
    {u"数量",     AliasUse::kWord,     u"count"},
    {u"长度",     AliasUse::kWord,     u"length"},
    {u"大写",     AliasUse::kWord,     u"toUpper"},
    {u"小写",     AliasUse::kWord,     u"toLower"},
    {u"截取",     AliasUse::kWord,     u"substring"},
    {u"子串",     AliasUse::kWord,     u"substring"},
    {u"去空格",   AliasUse::kTrim,     u"ltrim(rtrim"},
    {u"连接",     AliasUse::kJoin,     u"&"},
    {u"合并",     AliasUse::kJoin,     u"&"},
    {u"替换",     AliasUse::kWord,     u"REPLACE"},
    {u"如果",     AliasUse::kWord,     u"switch"},
    {u"条件",     AliasUse::kWord,     u"switch"},
    {u"舍入",     AliasUse::kWord,     u"ROUND"},
    {u"取整",     AliasUse::kWord,     u"FLOOR"},
    {u"年",       AliasUse::kWord,     u"year"},
    {u"月",       AliasUse::kWord,     u"month"},
    {u"日期差",   AliasUse::kWord,     u"timeInterval"},
    {u"日期加",   AliasUse::kWord,     u"dateAdd"},
    {u"今天",     AliasUse::kVariable, u"sysVar.currentDate"},
    {u"今日",     AliasUse::kVariable, u"sysVar.currentDate"},
    {u"当前日期", AliasUse::kVariable, u"sysVar.currentDate"},
    {u"现在",     AliasUse::kVariable, u"sysVar.currentDateTime"},
    {u"当前时间", AliasUse::kVariable, u"sysVar.currentDateTime"},
};

struct PartRow {
  std::u16string_view alias;
  std::u16string_view part;
};
constexpr PartRow kParts[] = {
    {u"yy", u"yy"},      {u"yyyy", u"yy"},    {u"y", u"yy"},      {u"year", u"yy"},   {u"years", u"yy"},
    {u"qq", u"qq"},      {u"q", u"qq"},       {u"quarter", u"qq"}, {u"quarters", u"qq"},
    {u"mm", u"mm"},      {u"m", u"mm"},       {u"mon", u"mm"},    {u"month", u"mm"},  {u"months", u"mm"},
    {u"dd", u"dd"},      {u"d", u"dd"},       {u"day", u"dd"},    {u"days", u"dd"},
    {u"ww", u"ww"},      {u"w", u"ww"},       {u"wk", u"ww"},     {u"week", u"ww"},   {u"weeks", u"ww"},
    {u"hh", u"hh"},      {u"h", u"hh"},       {u"hour", u"hh"},   {u"hours", u"hh"},
    {u"mi", u"mi"},      {u"n", u"mi"},       {u"min", u"mi"},    {u"minute", u"mi"}, {u"minutes", u"mi"},
    {u"ss", u"ss"},      {u"s", u"ss"},       {u"sec", u"ss"},    {u"second", u"ss"}, {u"seconds", u"ss"},
    {u"年", u"yy"},      {u"年份", u"yy"},    {u"季", u"qq"},     {u"季度", u"qq"},   {u"月", u"mm"},
    {u"月份", u"mm"},    {u"日", u"dd"},      {u"天", u"dd"},     {u"周", u"ww"},     {u"星期", u"ww"},
    {u"时", u"hh"},      {u"小时", u"hh"},    {u"分", u"mi"},     {u"分钟", u"mi"},   {u"秒", u"ss"},
};
// clang-format on

}  // namespace

const AliasRow* AliasOf(std::u16string_view word) {
  static const KeyMap<const AliasRow*> rows = [] {
    KeyMap<const AliasRow*> made;
    for (const AliasRow& row : kEnglish) made.emplace(ToLower(row.alias), &row);
    for (const AliasRow& row : kChinese) made.emplace(ToLower(row.alias), &row);
    return made;
  }();
  const auto found = rows.find(LookupKey(word));
  return found == rows.end() ? nullptr : found->second;
}

std::u16string_view DatePartOf(std::u16string_view word) {
  if (word.size() > 2 && word.front() == u'\'' && word.back() == u'\'') {
    word = word.substr(1, word.size() - 2);
  }
  for (const PartRow& row : kParts) {
    if (EqualsIgnoringCase(row.alias, word)) return row.part;
  }
  return {};
}

Lexicon::Lexicon(AuthoringCall& call) : call_(call) {
  for (const std::u16string_view tag : kLanguages) {
    others_.push_back(SharedBaseVocabulary(LanguageNamed(tag)));
  }
}

std::u16string Lexicon::Display(std::u16string_view primary) const {
  const MxWord* word = call_.Dictionaries().FindByPrimary(primary);
  return word ? word->outDesc : std::u16string(primary);
}

const MxWord* Lexicon::OfOtherLanguage(std::u16string_view text) const {
  for (const auto& other : others_) {
    const MxWord* word = other->words->FindByDesc(LookupKey(text));
    if (!word) word = other->words->FindByPrimary(LookupKey(text));
    if (word) return word;
  }
  return nullptr;
}

std::u16string_view Lexicon::Meaning(const Draft& draft, std::size_t word) const {
  if (word >= draft.Size()) return {};
  if (!draft.IsRefused(word)) return draft.Word(word).primary;
  const std::u16string_view written = draft.Written(word);
  if (const MxWord* other = OfOtherLanguage(written)) return other->primary;
  const AliasRow* alias = AliasOf(written);
  return alias && alias->use == AliasUse::kWord ? alias->primary : written;
}

}  // namespace ORKBASE
