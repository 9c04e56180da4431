// The grammar of the rule language, as it was written down: one row a rule, the order of
// alternatives within a body being the order in which they are tried.
#include "parser/SyntaxRules.h"

#include <iterator>

namespace ORKBASE {
namespace {

// clang-format off
constexpr SyntaxRule kRules[] = {
    {u"<expr_num>", u"<term_num>{<op_sum><term_num>}", 1, 0, false},
    {u"<term_num>", u"<factor_num>{<op_multi><factor_num>}", 1, 0, false},
    {u"<factor_num>", u"<constant_variant_num>|(<expr_num>)|<minus_expr_num>|<func_num>|<func_var>", 1, 0, false},
    {u"<constant_variant_num>", u"kConstantSymbol|kDataFieldSymbol|kFormFieldSymbol|kInputSymbol|kSysvarSymbol|kSysvarCaseSymbol|kSmsSymbol|kSysvarUserSymbol|kCAXFieldSymbol|kCAXEnumSymbol", 1, 0, true},
    {u"<minus_expr_num>", u"-<expr_num>", 1, 2, false},
    {u"<op_sum>", u"+|-", 1, 0, false},
    {u"<op_multi>", u"*|/|^|%", 1, 0, false},
    {u"<expr_str>", u"<term_str>{<op_compose><term_str>}", 2, 0, false},
    {u"<term_str>", u"<constant_variant_str>|(<expr_str>)|<func_str>|<func_var>", 2, 0, false},
    {u"<constant_variant_str>", u"kConstantSymbol|kDataFieldSymbol|kFormFieldSymbol|kInputSymbol|kSysvarSymbol|kSysvarCaseSymbol|kSmsSymbol|kSysvarUserSymbol|kCAXFieldSymbol|kCAXEnumSymbol", 2, 0, true},
    {u"<op_compose>", u"&", 2, 0, false},
    {u"<expr_date>", u"<constant_variant_date>|<func_date>|<func_var>", 2, 0, false},
    {u"<constant_variant_date>", u"kConstantSymbol|kDataFieldSymbol|kFormFieldSymbol|kInputSymbol|kSysvarSymbol|kSysvarCaseSymbol|kSmsSymbol|kSysvarUserSymbol|kCAXFieldSymbol", 3, 0, true},
    {u"<expr_logic>", u"<term_logic>{<op_cond><term_logic>}", 4, 0, false},
    {u"<term_logic>", u"<expr_comp>|<not_expr_logic>|(<expr_logic>)", 4, 0, false},
    {u"<not_expr_logic>", u"not<expr_comp>|not<term_logic>", 4, 2, false},
    {u"<expr_comp>", u"<expr_num><op_rela><expr_num>|<expr_str><op_rela><expr_str>|<expr_pic><op_rela><expr_str>|<expr_str><op_rela><expr_pic>|<expr_date><op_rela><expr_str>|<expr_str><op_rela><expr_date>|<expr_link><op_rela><expr_str>|<expr_str><op_rela><expr_link>|<expr_str>like<expr_str>|<expr_date><op_rela><expr_date>|<variant_field><op_join><variant_field>|<expr_var><op_in><func_set>|<expr_var>between<func_between>|<expr_isNull>", 4, 0, false},
    {u"<variant_field>", u"kDataFieldSymbol|kFormFieldSymbol", 4, 0, false},
    {u"<op_cond>", u"and|or", 4, 0, false},
    {u"<op_rela>", u"=|<>|>|>=|<|<=", 4, 0, false},
    {u"<op_like>", u"like", 4, 0, false},
    {u"<op_join>", u"*=|=*", 4, 0, false},
    {u"<op_in>", u"in|not_in", 4, 0, false},
    {u"<expr_isNull>", u"<variant_field><op_isNull>", 4, 3, false},
    {u"<op_isNull>", u"null|not_null", 4, 0, false},
    {u"<func_sum>", u"sum(<expr_num>)", 1, 1, false},
    {u"<func_average>", u"average(<expr_num>)", 1, 1, false},
    {u"<func_count>", u"count(<expr_var>)", 1, 1, false},
    {u"<func_max>", u"max(<expr_num>)", 1, 1, false},
    {u"<func_min>", u"min(<expr_num>)", 1, 1, false},
    {u"<func_year>", u"year(<expr_date>)", 1, 1, false},
    {u"<func_month>", u"month(<expr_date>)", 1, 1, false},
    {u"<func_day>", u"day(<expr_date>)", 1, 1, false},
    {u"<func_quarter>", u"quarter(<expr_date>)", 1, 1, false},
    {u"<func_weekDay>", u"weekDay(<expr_date>)", 1, 1, false},
    {u"<func_fisYear>", u"fisYear(<expr_date>)", 1, 1, false},
    {u"<func_fisMonth>", u"fisMonth(<expr_date>)", 1, 1, false},
    {u"<func_fisQuarter>", u"fisQuarter(<expr_date>)", 1, 1, false},
    {u"<func_timeInterval>", u"timeInterval(<datePart>, <expr_date>, <expr_date>)", 1, 1, false},
    {u"<datePart>", u"yy|qq|mm|dd|ww|hh|mi|ss", 0, 0, false},
    {u"<func_length>", u"length(<expr_str>)", 1, 1, false},
    {u"<func_log>", u"log(<expr_num>)", 1, 1, false},
    {u"<func_log10>", u"log10(<expr_num>)", 1, 1, false},
    {u"<func_Exponent>", u"Exponent(<expr_num>)", 1, 1, false},
    {u"<func_POWER>", u"POWER(<expr_num>, <expr_num>)", 1, 1, false},
    {u"<func_ROUND>", u"ROUND(<expr_num>, <expr_num>)", 1, 1, false},
    {u"<func_count1>", u"count1(<expr_var>)", 1, 1, false},
    {u"<func_CEILING>", u"CEILING(<expr_num>)", 1, 1, false},
    {u"<func_FLOOR>", u"FLOOR(<expr_num>)", 1, 1, false},
    {u"<func_ToNumber>", u"ToNumber(<expr_str>[,<expr_num>][,<expr_num>])", 1, 1, false},
    {u"<func_hour>", u"hour(<expr_date>)", 1, 1, false},
    {u"<func_minute>", u"minute(<expr_date>)", 1, 1, false},
    {u"<func_fUnixTimestamp>", u"fUnixTimestamp()", 1, 1, false},
    {u"<func_CHARINDEX>", u"CHARINDEX(<expr_str>,<expr_str>[,<expr_num>])", 1, 1, false},
    {u"<func_RAND>", u"RAND()", 1, 1, false},
    {u"<func_fRandBetween>", u"fRandBetween(<expr_num>,<expr_num>)", 1, 1, false},
    {u"<func_num>", u"<func_sum>|<func_average>|<func_count>|<func_max>|<func_min>|<func_year>|<func_month>|<func_day>|<func_quarter>|<func_weekDay>|<func_fisYear>|<func_fisMonth>|<func_fisQuarter>|<func_timeInterval>|<func_length>|<func_log>|<func_log10>|<func_Exponent>|<func_POWER>|<func_ROUND>|<func_count1>|<func_CEILING>|<func_FLOOR>|<func_ToNumber>|<func_hour>|<func_minute>|<func_fUnixTimestamp>|<func_CHARINDEX>|<func_RAND>|<func_fRandBetween>", 1, 0, false},
    {u"<func_substring>", u"substring(<expr_str>, <expr_num>, <expr_num>)", 2, 1, false},
    {u"<func_toUpper>", u"toUpper(<expr_str>)", 2, 1, false},
    {u"<func_max_str>", u"max(<expr_str>)", 2, 1, false},
    {u"<func_min_str>", u"min(<expr_str>)", 2, 1, false},
    {u"<func_ToText>", u"<func_ToText_notDate>|<func_ToText_date>", 2, 0, false},
    {u"<func_ToText_notDate>", u"ToText(<ToText_1param>)", 2, 1, false},
    {u"<ToText_1param>", u"<expr_num>|<expr_str>|<expr_pic>|<expr_link>", 2, 0, false},
    {u"<func_ToText_date>", u"ToText(<expr_date>,<dateStyle>)", 2, 1, false},
    {u"<dateStyle>", u"'yyyymmdd'|'yyyy-mm-dd'|'mm-dd-yyyy'|'dd-mm-yyyy'|'yyyy/mm/dd'|'mm/dd/yyyy'|'dd/mm/yyyy'|'yymmdd'|'yy-mm-dd'|'mm-dd-yy'|'dd-mm-yy'|'yy/mm/dd'|'mm/dd/yy'|'dd/mm/yy'|'hh:mm:ss'|'hh:mm:ss:mmm'", 2, 0, false},
    {u"<func_ltrim>", u"ltrim(<expr_str>)", 2, 1, false},
    {u"<func_rtrim>", u"rtrim(<expr_str>)", 2, 1, false},
    {u"<func_fBase64Encode>", u"fBase64Encode(<expr_str>)", 2, 1, false},
    {u"<func_fVarbintohexstr>", u"fVarbintohexstr(<expr_str>)", 2, 1, false},
    {u"<func_fHMAC>", u"fHMAC(<expr_str>, <expr_str>, <expr_str>)", 2, 1, false},
    {u"<func_fSHA256>", u"fSHA256(<expr_str>)", 2, 1, false},
    {u"<func_fHmac2Base64>", u"fHmac2Base64(<expr_str>, <expr_str>, <expr_str>)", 2, 1, false},
    {u"<func_fMd5>", u"fMd5(<expr_str>)", 2, 1, false},
    {u"<func_REPLICATE>", u"REPLICATE(<expr_str>, <expr_num>)", 2, 1, false},
    {u"<func_toLower>", u"toLower(<expr_str>)", 2, 1, false},
    {u"<func_fUrlEncode>", u"fUrlEncode(<expr_str>)", 2, 1, false},
    {u"<func_STRING_AGG>", u"STRING_AGG(<expr_str>, <expr_str>)", 2, 1, false},
    {u"<func_fStringSplit>", u"fStringSplit(<expr_str>, <expr_str>)", 2, 1, false},
    {u"<func_fStringDistinct>", u"fStringDistinct(<expr_str>, <expr_str>)", 2, 1, false},
    {u"<func_REPLACE>", u"REPLACE(<expr_str>, <expr_str>, <expr_str>)", 2, 1, false},
    {u"<func_str>", u"<func_substring>|<func_toUpper>|<func_max_str>|<func_min_str>|<func_ToText>|<func_ltrim>|<func_rtrim>|<func_fBase64Encode>|<func_fVarbintohexstr>|<func_fHMAC>|<func_fSHA256>|<func_fHmac2Base64>|<func_fMd5>|<func_REPLICATE>|<func_toLower>|<func_fUrlEncode>|<func_STRING_AGG>|<func_fStringSplit>|<func_fStringDistinct>|<func_REPLACE>", 2, 0, false},
    {u"<func_lastDate>", u"lastDate(<expr_date>)", 3, 1, false},
    {u"<func_firstDate>", u"firstDate(<expr_date>)", 3, 1, false},
    {u"<func_fstDayOfMonth>", u"fstDayOfMonth(<expr_num>, <expr_num>)", 3, 1, false},
    {u"<func_lstDayOfMonth>", u"lstDayOfMonth(<expr_num>, <expr_num>)", 3, 1, false},
    {u"<func_fstDayOfFisMonth>", u"fstDayOfFisMonth(<expr_num>, <expr_num>)", 3, 1, false},
    {u"<func_endOfFisMonth>", u"endOfFisMonth(<expr_num>, <expr_num>)", 3, 1, false},
    {u"<func_fstDayOfYear>", u"fstDayOfYear(<expr_num>)", 3, 1, false},
    {u"<func_endOfYear>", u"endOfYear(<expr_num>)", 3, 1, false},
    {u"<func_fstDayOfFisYear>", u"fstDayOfFisYear(<expr_num>)", 3, 1, false},
    {u"<func_endOfFisYear>", u"endOfFisYear(<expr_num>)", 3, 1, false},
    {u"<func_fstDayOfQuarter>", u"fstDayOfQuarter(<expr_num>, <expr_num>)", 3, 1, false},
    {u"<func_endOfQuarter>", u"endOfQuarter(<expr_num>, <expr_num>)", 3, 1, false},
    {u"<func_fstDayOfFisQuarter>", u"fstDayOfFisQuarter(<expr_num>, <expr_num>)", 3, 1, false},
    {u"<func_endOfFisQuarter>", u"endOfFisQuarter(<expr_num>, <expr_num>)", 3, 1, false},
    {u"<func_dateAdd>", u"dateAdd(<datePart>, <expr_num>, <expr_date>)", 3, 1, false},
    {u"<func_ToDate>", u"ToDate(<expr_var>)", 3, 1, false},
    {u"<func_max_date>", u"max(<expr_date>)", 3, 1, false},
    {u"<func_fUnixTimestamp2Datetime>", u"fUnixTimestamp2Datetime(<expr_num>,<expr_num>,<expr_num>)", 3, 1, false},
    {u"<func_min_date>", u"min(<expr_date>)", 3, 1, false},
    {u"<func_date>", u"<func_lastDate>|<func_firstDate>|<func_fstDayOfMonth>|<func_lstDayOfMonth>|<func_fstDayOfFisMonth>|<func_endOfFisMonth>|<func_fstDayOfYear>|<func_endOfYear>|<func_fstDayOfFisYear>|<func_endOfFisYear>|<func_fstDayOfQuarter>|<func_endOfQuarter>|<func_fstDayOfFisQuarter>|<func_endOfFisQuarter>|<func_dateAdd>|<func_ToDate>|<func_max_date>|<func_fUnixTimestamp2Datetime>|<func_min_date>", 3, 0, false},
    {u"<func_thisYear>", u"thisYear(<expr_num>)", 4, 1, false},
    {u"<func_thisFisYear>", u"thisFisYear(<expr_num>)", 4, 1, false},
    {u"<func_lastYear>", u"lastYear(<expr_num>)", 4, 1, false},
    {u"<func_lastFisYear>", u"lastFisYear(<expr_num>)", 4, 1, false},
    {u"<func_thisQuarter>", u"thisQuarter(<expr_num>, <expr_num>)", 4, 1, false},
    {u"<func_thisFisQuarter>", u"thisFisQuarter(<expr_num>, <expr_num>)", 4, 1, false},
    {u"<func_lastQuarter>", u"lastQuarter(<expr_num>, <expr_num>)", 4, 1, false},
    {u"<func_lastFisQuarter>", u"lastFisQuarter(<expr_num>, <expr_num>)", 4, 1, false},
    {u"<func_thisMonth>", u"thisMonth(<expr_num>, <expr_num>)", 4, 1, false},
    {u"<func_thisFisMonth>", u"thisFisMonth(<expr_num>, <expr_num>)", 4, 1, false},
    {u"<func_lastMonth>", u"lastMonth(<expr_num>, <expr_num>)", 4, 1, false},
    {u"<func_lastFisMonth>", u"lastFisMonth(<expr_num>, <expr_num>)", 4, 1, false},
    {u"<func_between>", u"<func_thisYear>|<func_thisFisYear>|<func_lastYear>|<func_lastFisYear>|<func_thisQuarter>|<func_thisFisQuarter>|<func_lastQuarter>|<func_lastFisQuarter>|<func_thisMonth>|<func_thisFisMonth>|<func_lastMonth>|<func_lastFisMonth>", 4, 0, false},
    {u"<func_switch>", u"<func_switch_num>|<func_switch_str>|<func_switch_date>|<func_switch_pic>", 5, 0, false},
    {u"<func_switch_num>", u"switch(<expr_logic>, <expr_num>{, <expr_logic>, <expr_num>}[, <expr_num>])", 1, 1, false},
    {u"<func_switch_str>", u"switch(<expr_logic>, <expr_str>{, <expr_logic>, <expr_str>}[, <expr_str>])", 2, 1, false},
    {u"<func_switch_date>", u"switch(<expr_logic>, <expr_date>{, <expr_logic>, <expr_date>}[, <expr_date>])", 3, 1, false},
    {u"<func_switch_pic>", u"switch(<expr_logic>, <expr_pic>{, <expr_logic>, <expr_pic>}[, <expr_pic>])", 6, 1, false},
    {u"<func_IsNull>", u"IsNull(<expr_var>, <expr_var>)", 5, 1, false},
    {u"<func_var>", u"<func_switch>|<func_IsNull>", 5, 0, false},
    {u"<func_set>", u"thisSet(<expr_var>{, <expr_var>})", 5, 1, false},
    {u"<expr_var>", u"<expr_num>|<expr_str>|<expr_date>|<expr_pic>|<expr_link>", 5, 0, false},
    {u"<expr_pic>", u"<constant_variant_pic>|<func_switch_pic>", 6, 0, false},
    {u"<constant_variant_pic>", u"kDataFieldSymbol|kFormFieldSymbol|kSysvarSymbol", 6, 4, true},
    {u"<expr_link>", u"kDataFieldSymbol|kFormFieldSymbol|kSysvarSymbol", 7, 4, true},
};

constexpr StartRule kStartRules[] = {
    {kNumDataType,   u"<expr_num>"},
    {kStrDataType,   u"<expr_str>"},
    {kDateDataType,  u"<expr_date>"},
    {kLogicDataType, u"<expr_logic>"},
    {kVarDataType,   u"<expr_var>"},
    {kPicDataType,   u"<expr_pic>"},
    {kLinkDataType,  u"<expr_link>"},
};

constexpr TerminalSymbol kTerminalSymbols[] = {
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

constexpr bool HasUniqueNames() {
  for (std::size_t i = 0; i < std::size(kRules); ++i) {
    for (std::size_t j = i + 1; j < std::size(kRules); ++j) {
      if (kRules[i].name == kRules[j].name) return false;
    }
  }
  return true;
}

static_assert(std::size(kRules) == 127);
static_assert(HasUniqueNames());

}  // namespace

std::span<const SyntaxRule> SyntaxRules() noexcept {
  return kRules;
}
std::span<const StartRule> StartRules() noexcept {
  return kStartRules;
}
std::span<const TerminalSymbol> TerminalSymbols() noexcept {
  return kTerminalSymbols;
}

}  // namespace ORKBASE
