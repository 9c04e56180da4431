// The grammar of the rule language as tables of texts: one row a rule, the order of alternatives
// within a body being the order in which they are tried.
//
// A body with "|" is a list of alternatives; otherwise it is a sequence of items: `<rule>`, a group
// `{...}` (zero or more times) or `[...]` (zero or one time), "(", ")" and ",", the name of a kind
// of word such as `kDataFieldSymbol`, or a word that must stand there. Groups do not nest.
#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>

#include "MxRuleEnums.h"

namespace ORKBASE {

struct SyntaxRule {
  std::u16string_view name;           ///< with its angle brackets
  MXRULE_DATATYPE dataType;           ///< what words of this rule are checked against
  MXRULE_SEMANTIC_TYPE semanticType;  ///< how the matched nodes combine
  bool checkDataType;                 ///< whether words of this rule are checked
  std::u16string_view body;
};

struct StartRule {
  MXRULE_DATATYPE dataType;
  std::u16string_view name;
};

struct TerminalSymbol {
  std::u16string_view name;
  MXRULE_SYMBOL_TYPE symbol;
};

// clang-format off
inline constexpr SyntaxRule kSyntaxRules[] = {
    {u"<expr_num>",                     kNumDataType,   kInfixSemantic,    false, u"<term_num>{<op_sum><term_num>}"},
    {u"<term_num>",                     kNumDataType,   kInfixSemantic,    false, u"<factor_num>{<op_multi><factor_num>}"},
    {u"<factor_num>",                   kNumDataType,   kInfixSemantic,    false, u"<constant_variant_num>|(<expr_num>)|<minus_expr_num>|<func_num>|<func_var>"},
    {u"<constant_variant_num>",         kNumDataType,   kInfixSemantic,    true,  u"kConstantSymbol|kDataFieldSymbol|kFormFieldSymbol|kInputSymbol|kSysvarSymbol|kSysvarCaseSymbol|kSmsSymbol|kSysvarUserSymbol|kCAXFieldSymbol|kCAXEnumSymbol"},
    // kept: the minus takes the whole sum behind it.
    {u"<minus_expr_num>",               kNumDataType,   kPrefixSemantic,   false, u"-<expr_num>"},
    {u"<op_sum>",                       kNumDataType,   kInfixSemantic,    false, u"+|-"},
    {u"<op_multi>",                     kNumDataType,   kInfixSemantic,    false, u"*|/|^|%"},
    {u"<expr_str>",                     kStrDataType,   kInfixSemantic,    false, u"<term_str>{<op_compose><term_str>}"},
    {u"<term_str>",                     kStrDataType,   kInfixSemantic,    false, u"<constant_variant_str>|(<expr_str>)|<func_str>|<func_var>"},
    {u"<constant_variant_str>",         kStrDataType,   kInfixSemantic,    true,  u"kConstantSymbol|kDataFieldSymbol|kFormFieldSymbol|kInputSymbol|kSysvarSymbol|kSysvarCaseSymbol|kSmsSymbol|kSysvarUserSymbol|kCAXFieldSymbol|kCAXEnumSymbol"},
    {u"<op_compose>",                   kStrDataType,   kInfixSemantic,    false, u"&"},
    // kept: the type of texts, where its words have that of dates.
    {u"<expr_date>",                    kStrDataType,   kInfixSemantic,    false, u"<constant_variant_date>|<func_date>|<func_var>"},
    // kept: no values of enumerations here.
    {u"<constant_variant_date>",        kDateDataType,  kInfixSemantic,    true,  u"kConstantSymbol|kDataFieldSymbol|kFormFieldSymbol|kInputSymbol|kSysvarSymbol|kSysvarCaseSymbol|kSmsSymbol|kSysvarUserSymbol|kCAXFieldSymbol"},
    {u"<expr_logic>",                   kLogicDataType, kInfixSemantic,    false, u"<term_logic>{<op_cond><term_logic>}"},
    {u"<term_logic>",                   kLogicDataType, kInfixSemantic,    false, u"<expr_comp>|<not_expr_logic>|(<expr_logic>)"},
    {u"<not_expr_logic>",               kLogicDataType, kPrefixSemantic,   false, u"not<expr_comp>|not<term_logic>"},
    // kept: a date compares to a text, a picture and a link to nothing else.
    {u"<expr_comp>",                    kLogicDataType, kInfixSemantic,    false, u"<expr_num><op_rela><expr_num>|<expr_str><op_rela><expr_str>|<expr_pic><op_rela><expr_str>|<expr_str><op_rela><expr_pic>|<expr_date><op_rela><expr_str>|<expr_str><op_rela><expr_date>|<expr_link><op_rela><expr_str>|<expr_str><op_rela><expr_link>|<expr_str>like<expr_str>|<expr_date><op_rela><expr_date>|<variant_field><op_join><variant_field>|<expr_var><op_in><func_set>|<expr_var>between<func_between>|<expr_isNull>"},
    {u"<variant_field>",                kLogicDataType, kInfixSemantic,    false, u"kDataFieldSymbol|kFormFieldSymbol"},
    // kept: both bind alike.
    {u"<op_cond>",                      kLogicDataType, kInfixSemantic,    false, u"and|or"},
    {u"<op_rela>",                      kLogicDataType, kInfixSemantic,    false, u"=|<>|>|>=|<|<="},
    // kept: nothing names this rule, `<expr_comp>` has the word itself.
    {u"<op_like>",                      kLogicDataType, kInfixSemantic,    false, u"like"},
    {u"<op_join>",                      kLogicDataType, kInfixSemantic,    false, u"*=|=*"},
    {u"<op_in>",                        kLogicDataType, kInfixSemantic,    false, u"in|not_in"},
    {u"<expr_isNull>",                  kLogicDataType, kPostfixSemantic,  false, u"<variant_field><op_isNull>"},
    {u"<op_isNull>",                    kLogicDataType, kInfixSemantic,    false, u"null|not_null"},
    {u"<func_sum>",                     kNumDataType,   kFunctionSemantic, false, u"sum(<expr_num>)"},
    {u"<func_average>",                 kNumDataType,   kFunctionSemantic, false, u"average(<expr_num>)"},
    {u"<func_count>",                   kNumDataType,   kFunctionSemantic, false, u"count(<expr_var>)"},
    {u"<func_max>",                     kNumDataType,   kFunctionSemantic, false, u"max(<expr_num>)"},
    {u"<func_min>",                     kNumDataType,   kFunctionSemantic, false, u"min(<expr_num>)"},
    {u"<func_year>",                    kNumDataType,   kFunctionSemantic, false, u"year(<expr_date>)"},
    {u"<func_month>",                   kNumDataType,   kFunctionSemantic, false, u"month(<expr_date>)"},
    {u"<func_day>",                     kNumDataType,   kFunctionSemantic, false, u"day(<expr_date>)"},
    {u"<func_quarter>",                 kNumDataType,   kFunctionSemantic, false, u"quarter(<expr_date>)"},
    {u"<func_weekDay>",                 kNumDataType,   kFunctionSemantic, false, u"weekDay(<expr_date>)"},
    {u"<func_fisYear>",                 kNumDataType,   kFunctionSemantic, false, u"fisYear(<expr_date>)"},
    {u"<func_fisMonth>",                kNumDataType,   kFunctionSemantic, false, u"fisMonth(<expr_date>)"},
    {u"<func_fisQuarter>",              kNumDataType,   kFunctionSemantic, false, u"fisQuarter(<expr_date>)"},
    {u"<func_timeInterval>",            kNumDataType,   kFunctionSemantic, false, u"timeInterval(<datePart>, <expr_date>, <expr_date>)"},
    {u"<datePart>",                     kNoDataType,    kInfixSemantic,    false, u"yy|qq|mm|dd|ww|hh|mi|ss"},
    {u"<func_length>",                  kNumDataType,   kFunctionSemantic, false, u"length(<expr_str>)"},
    {u"<func_log>",                     kNumDataType,   kFunctionSemantic, false, u"log(<expr_num>)"},
    {u"<func_log10>",                   kNumDataType,   kFunctionSemantic, false, u"log10(<expr_num>)"},
    {u"<func_Exponent>",                kNumDataType,   kFunctionSemantic, false, u"Exponent(<expr_num>)"},
    {u"<func_POWER>",                   kNumDataType,   kFunctionSemantic, false, u"POWER(<expr_num>, <expr_num>)"},
    {u"<func_ROUND>",                   kNumDataType,   kFunctionSemantic, false, u"ROUND(<expr_num>, <expr_num>)"},
    {u"<func_count1>",                  kNumDataType,   kFunctionSemantic, false, u"count1(<expr_var>)"},
    {u"<func_CEILING>",                 kNumDataType,   kFunctionSemantic, false, u"CEILING(<expr_num>)"},
    {u"<func_FLOOR>",                   kNumDataType,   kFunctionSemantic, false, u"FLOOR(<expr_num>)"},
    {u"<func_ToNumber>",                kNumDataType,   kFunctionSemantic, false, u"ToNumber(<expr_str>[,<expr_num>][,<expr_num>])"},
    {u"<func_hour>",                    kNumDataType,   kFunctionSemantic, false, u"hour(<expr_date>)"},
    {u"<func_minute>",                  kNumDataType,   kFunctionSemantic, false, u"minute(<expr_date>)"},
    {u"<func_fUnixTimestamp>",          kNumDataType,   kFunctionSemantic, false, u"fUnixTimestamp()"},
    {u"<func_CHARINDEX>",               kNumDataType,   kFunctionSemantic, false, u"CHARINDEX(<expr_str>,<expr_str>[,<expr_num>])"},
    {u"<func_RAND>",                    kNumDataType,   kFunctionSemantic, false, u"RAND()"},
    {u"<func_fRandBetween>",            kNumDataType,   kFunctionSemantic, false, u"fRandBetween(<expr_num>,<expr_num>)"},
    {u"<func_num>",                     kNumDataType,   kInfixSemantic,    false, u"<func_sum>|<func_average>|<func_count>|<func_max>|<func_min>|<func_year>|<func_month>|<func_day>|<func_quarter>|<func_weekDay>|<func_fisYear>|<func_fisMonth>|<func_fisQuarter>|<func_timeInterval>|<func_length>|<func_log>|<func_log10>|<func_Exponent>|<func_POWER>|<func_ROUND>|<func_count1>|<func_CEILING>|<func_FLOOR>|<func_ToNumber>|<func_hour>|<func_minute>|<func_fUnixTimestamp>|<func_CHARINDEX>|<func_RAND>|<func_fRandBetween>"},
    {u"<func_substring>",               kStrDataType,   kFunctionSemantic, false, u"substring(<expr_str>, <expr_num>, <expr_num>)"},
    {u"<func_toUpper>",                 kStrDataType,   kFunctionSemantic, false, u"toUpper(<expr_str>)"},
    {u"<func_max_str>",                 kStrDataType,   kFunctionSemantic, false, u"max(<expr_str>)"},
    {u"<func_min_str>",                 kStrDataType,   kFunctionSemantic, false, u"min(<expr_str>)"},
    {u"<func_ToText>",                  kStrDataType,   kInfixSemantic,    false, u"<func_ToText_notDate>|<func_ToText_date>"},
    {u"<func_ToText_notDate>",          kStrDataType,   kFunctionSemantic, false, u"ToText(<ToText_1param>)"},
    {u"<ToText_1param>",                kStrDataType,   kInfixSemantic,    false, u"<expr_num>|<expr_str>|<expr_pic>|<expr_link>"},
    {u"<func_ToText_date>",             kStrDataType,   kFunctionSemantic, false, u"ToText(<expr_date>,<dateStyle>)"},
    {u"<dateStyle>",                    kStrDataType,   kInfixSemantic,    false, u"'yyyymmdd'|'yyyy-mm-dd'|'mm-dd-yyyy'|'dd-mm-yyyy'|'yyyy/mm/dd'|'mm/dd/yyyy'|'dd/mm/yyyy'|'yymmdd'|'yy-mm-dd'|'mm-dd-yy'|'dd-mm-yy'|'yy/mm/dd'|'mm/dd/yy'|'dd/mm/yy'|'hh:mm:ss'|'hh:mm:ss:mmm'"},
    {u"<func_ltrim>",                   kStrDataType,   kFunctionSemantic, false, u"ltrim(<expr_str>)"},
    {u"<func_rtrim>",                   kStrDataType,   kFunctionSemantic, false, u"rtrim(<expr_str>)"},
    {u"<func_fBase64Encode>",           kStrDataType,   kFunctionSemantic, false, u"fBase64Encode(<expr_str>)"},
    {u"<func_fVarbintohexstr>",         kStrDataType,   kFunctionSemantic, false, u"fVarbintohexstr(<expr_str>)"},
    {u"<func_fHMAC>",                   kStrDataType,   kFunctionSemantic, false, u"fHMAC(<expr_str>, <expr_str>, <expr_str>)"},
    {u"<func_fSHA256>",                 kStrDataType,   kFunctionSemantic, false, u"fSHA256(<expr_str>)"},
    {u"<func_fHmac2Base64>",            kStrDataType,   kFunctionSemantic, false, u"fHmac2Base64(<expr_str>, <expr_str>, <expr_str>)"},
    {u"<func_fMd5>",                    kStrDataType,   kFunctionSemantic, false, u"fMd5(<expr_str>)"},
    {u"<func_REPLICATE>",               kStrDataType,   kFunctionSemantic, false, u"REPLICATE(<expr_str>, <expr_num>)"},
    {u"<func_toLower>",                 kStrDataType,   kFunctionSemantic, false, u"toLower(<expr_str>)"},
    {u"<func_fUrlEncode>",              kStrDataType,   kFunctionSemantic, false, u"fUrlEncode(<expr_str>)"},
    {u"<func_STRING_AGG>",              kStrDataType,   kFunctionSemantic, false, u"STRING_AGG(<expr_str>, <expr_str>)"},
    {u"<func_fStringSplit>",            kStrDataType,   kFunctionSemantic, false, u"fStringSplit(<expr_str>, <expr_str>)"},
    {u"<func_fStringDistinct>",         kStrDataType,   kFunctionSemantic, false, u"fStringDistinct(<expr_str>, <expr_str>)"},
    {u"<func_REPLACE>",                 kStrDataType,   kFunctionSemantic, false, u"REPLACE(<expr_str>, <expr_str>, <expr_str>)"},
    {u"<func_str>",                     kStrDataType,   kInfixSemantic,    false, u"<func_substring>|<func_toUpper>|<func_max_str>|<func_min_str>|<func_ToText>|<func_ltrim>|<func_rtrim>|<func_fBase64Encode>|<func_fVarbintohexstr>|<func_fHMAC>|<func_fSHA256>|<func_fHmac2Base64>|<func_fMd5>|<func_REPLICATE>|<func_toLower>|<func_fUrlEncode>|<func_STRING_AGG>|<func_fStringSplit>|<func_fStringDistinct>|<func_REPLACE>"},
    {u"<func_lastDate>",                kDateDataType,  kFunctionSemantic, false, u"lastDate(<expr_date>)"},
    {u"<func_firstDate>",               kDateDataType,  kFunctionSemantic, false, u"firstDate(<expr_date>)"},
    {u"<func_fstDayOfMonth>",           kDateDataType,  kFunctionSemantic, false, u"fstDayOfMonth(<expr_num>, <expr_num>)"},
    {u"<func_lstDayOfMonth>",           kDateDataType,  kFunctionSemantic, false, u"lstDayOfMonth(<expr_num>, <expr_num>)"},
    {u"<func_fstDayOfFisMonth>",        kDateDataType,  kFunctionSemantic, false, u"fstDayOfFisMonth(<expr_num>, <expr_num>)"},
    {u"<func_endOfFisMonth>",           kDateDataType,  kFunctionSemantic, false, u"endOfFisMonth(<expr_num>, <expr_num>)"},
    {u"<func_fstDayOfYear>",            kDateDataType,  kFunctionSemantic, false, u"fstDayOfYear(<expr_num>)"},
    {u"<func_endOfYear>",               kDateDataType,  kFunctionSemantic, false, u"endOfYear(<expr_num>)"},
    {u"<func_fstDayOfFisYear>",         kDateDataType,  kFunctionSemantic, false, u"fstDayOfFisYear(<expr_num>)"},
    {u"<func_endOfFisYear>",            kDateDataType,  kFunctionSemantic, false, u"endOfFisYear(<expr_num>)"},
    {u"<func_fstDayOfQuarter>",         kDateDataType,  kFunctionSemantic, false, u"fstDayOfQuarter(<expr_num>, <expr_num>)"},
    {u"<func_endOfQuarter>",            kDateDataType,  kFunctionSemantic, false, u"endOfQuarter(<expr_num>, <expr_num>)"},
    {u"<func_fstDayOfFisQuarter>",      kDateDataType,  kFunctionSemantic, false, u"fstDayOfFisQuarter(<expr_num>, <expr_num>)"},
    {u"<func_endOfFisQuarter>",         kDateDataType,  kFunctionSemantic, false, u"endOfFisQuarter(<expr_num>, <expr_num>)"},
    {u"<func_dateAdd>",                 kDateDataType,  kFunctionSemantic, false, u"dateAdd(<datePart>, <expr_num>, <expr_date>)"},
    {u"<func_ToDate>",                  kDateDataType,  kFunctionSemantic, false, u"ToDate(<expr_var>)"},
    {u"<func_max_date>",                kDateDataType,  kFunctionSemantic, false, u"max(<expr_date>)"},
    {u"<func_fUnixTimestamp2Datetime>", kDateDataType,  kFunctionSemantic, false, u"fUnixTimestamp2Datetime(<expr_num>,<expr_num>,<expr_num>)"},
    {u"<func_min_date>",                kDateDataType,  kFunctionSemantic, false, u"min(<expr_date>)"},
    {u"<func_date>",                    kDateDataType,  kInfixSemantic,    false, u"<func_lastDate>|<func_firstDate>|<func_fstDayOfMonth>|<func_lstDayOfMonth>|<func_fstDayOfFisMonth>|<func_endOfFisMonth>|<func_fstDayOfYear>|<func_endOfYear>|<func_fstDayOfFisYear>|<func_endOfFisYear>|<func_fstDayOfQuarter>|<func_endOfQuarter>|<func_fstDayOfFisQuarter>|<func_endOfFisQuarter>|<func_dateAdd>|<func_ToDate>|<func_max_date>|<func_fUnixTimestamp2Datetime>|<func_min_date>"},
    {u"<func_thisYear>",                kLogicDataType, kFunctionSemantic, false, u"thisYear(<expr_num>)"},
    {u"<func_thisFisYear>",             kLogicDataType, kFunctionSemantic, false, u"thisFisYear(<expr_num>)"},
    {u"<func_lastYear>",                kLogicDataType, kFunctionSemantic, false, u"lastYear(<expr_num>)"},
    {u"<func_lastFisYear>",             kLogicDataType, kFunctionSemantic, false, u"lastFisYear(<expr_num>)"},
    {u"<func_thisQuarter>",             kLogicDataType, kFunctionSemantic, false, u"thisQuarter(<expr_num>, <expr_num>)"},
    {u"<func_thisFisQuarter>",          kLogicDataType, kFunctionSemantic, false, u"thisFisQuarter(<expr_num>, <expr_num>)"},
    {u"<func_lastQuarter>",             kLogicDataType, kFunctionSemantic, false, u"lastQuarter(<expr_num>, <expr_num>)"},
    {u"<func_lastFisQuarter>",          kLogicDataType, kFunctionSemantic, false, u"lastFisQuarter(<expr_num>, <expr_num>)"},
    {u"<func_thisMonth>",               kLogicDataType, kFunctionSemantic, false, u"thisMonth(<expr_num>, <expr_num>)"},
    {u"<func_thisFisMonth>",            kLogicDataType, kFunctionSemantic, false, u"thisFisMonth(<expr_num>, <expr_num>)"},
    {u"<func_lastMonth>",               kLogicDataType, kFunctionSemantic, false, u"lastMonth(<expr_num>, <expr_num>)"},
    {u"<func_lastFisMonth>",            kLogicDataType, kFunctionSemantic, false, u"lastFisMonth(<expr_num>, <expr_num>)"},
    {u"<func_between>",                 kLogicDataType, kInfixSemantic,    false, u"<func_thisYear>|<func_thisFisYear>|<func_lastYear>|<func_lastFisYear>|<func_thisQuarter>|<func_thisFisQuarter>|<func_lastQuarter>|<func_lastFisQuarter>|<func_thisMonth>|<func_thisFisMonth>|<func_lastMonth>|<func_lastFisMonth>"},
    {u"<func_switch>",                  kVarDataType,   kInfixSemantic,    false, u"<func_switch_num>|<func_switch_str>|<func_switch_date>|<func_switch_pic>"},
    {u"<func_switch_num>",              kNumDataType,   kFunctionSemantic, false, u"switch(<expr_logic>, <expr_num>{, <expr_logic>, <expr_num>}[, <expr_num>])"},
    {u"<func_switch_str>",              kStrDataType,   kFunctionSemantic, false, u"switch(<expr_logic>, <expr_str>{, <expr_logic>, <expr_str>}[, <expr_str>])"},
    {u"<func_switch_date>",             kDateDataType,  kFunctionSemantic, false, u"switch(<expr_logic>, <expr_date>{, <expr_logic>, <expr_date>}[, <expr_date>])"},
    {u"<func_switch_pic>",              kPicDataType,   kFunctionSemantic, false, u"switch(<expr_logic>, <expr_pic>{, <expr_logic>, <expr_pic>}[, <expr_pic>])"},
    {u"<func_IsNull>",                  kVarDataType,   kFunctionSemantic, false, u"IsNull(<expr_var>, <expr_var>)"},
    {u"<func_var>",                     kVarDataType,   kInfixSemantic,    false, u"<func_switch>|<func_IsNull>"},
    {u"<func_set>",                     kVarDataType,   kFunctionSemantic, false, u"thisSet(<expr_var>{, <expr_var>})"},
    {u"<expr_var>",                     kVarDataType,   kInfixSemantic,    false, u"<expr_num>|<expr_str>|<expr_date>|<expr_pic>|<expr_link>"},
    {u"<expr_pic>",                     kPicDataType,   kInfixSemantic,    false, u"<constant_variant_pic>|<func_switch_pic>"},
    {u"<constant_variant_pic>",         kPicDataType,   kLeafSemantic,     true,  u"kDataFieldSymbol|kFormFieldSymbol|kSysvarSymbol"},
    {u"<expr_link>",                    kLinkDataType,  kLeafSemantic,     true,  u"kDataFieldSymbol|kFormFieldSymbol|kSysvarSymbol"},
};

inline constexpr StartRule kStartRules[] = {
    {kNumDataType,   u"<expr_num>"},
    {kStrDataType,   u"<expr_str>"},
    {kDateDataType,  u"<expr_date>"},
    {kLogicDataType, u"<expr_logic>"},
    {kVarDataType,   u"<expr_var>"},
    {kPicDataType,   u"<expr_pic>"},
    {kLinkDataType,  u"<expr_link>"},
};

inline constexpr TerminalSymbol kTerminalSymbols[] = {
    {u"kConstantSymbol",   kConstantSymbol},
    {u"kDataFieldSymbol",  kDataFieldSymbol},
    {u"kSmsSymbol",        kSmsSymbol},
    {u"kInputSymbol",      kInputSymbol},
    {u"kCAXFieldSymbol",   kCAXFieldSymbol},
    {u"kSysvarSymbol",     kSysvarSymbol},
    {u"kSysvarUserSymbol", kSysvarUserSymbol},
    {u"kSysvarCaseSymbol", kSysvarCaseSymbol},
    {u"kFormFieldSymbol",  kFormFieldSymbol},
    {u"kCAXEnumSymbol",    kCAXEnumSymbol},
};
// clang-format on

static_assert(std::size(kSyntaxRules) == 127);
static_assert(std::size(kStartRules) == 7);
static_assert(std::size(kTerminalSymbols) == 10);

/// Whether no two rules share a name.
constexpr bool HasUniqueNames() {
  for (std::size_t i = 0; i < std::size(kSyntaxRules); ++i) {
    for (std::size_t j = i + 1; j < std::size(kSyntaxRules); ++j) {
      if (kSyntaxRules[i].name == kSyntaxRules[j].name) return false;
    }
  }
  return true;
}
static_assert(HasUniqueNames());

}  // namespace ORKBASE
