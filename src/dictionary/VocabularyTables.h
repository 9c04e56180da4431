// The words of the rule language, in the order in which they are entered. The order matters where
// two words share a display form: the first keeps it.
#pragma once

#include <cstdint>
#include <iterator>
#include <string_view>

#include "MxRuleEnums.h"
#include "foundation/WordView.h"

namespace ORKBASE {

/// Where the display form of a word comes from.
enum class Display : std::uint8_t {
  kOwnText,        ///< the word itself; the row may then hold several words, with "|" between
  kMessage,        ///< the text of a message
  kMessageAndDot,  ///< the same with a full stop behind it: a prefix word
};

struct VocabularyRow {
  std::u16string_view primary;
  Display display;
  std::int32_t message;
  MXRULE_SYMBOL_TYPE symbol;
  MXRULE_DATATYPE dataType;
  PostfixCheck postfixCheck;
};

// clang-format off
inline constexpr VocabularyRow kOperatorRows[] = {
    {u"and",            Display::kMessage,       6306, kOpCondSymbol,    kLogicDataType, kNoPostfix},
    {u"or",             Display::kMessage,       6307, kOpCondSymbol,    kLogicDataType, kNoPostfix},
    {u"not",            Display::kMessage,       6308, kOpNotSymbol,     kLogicDataType, kNoPostfix},
    {u"in",             Display::kMessage,       6309, kOpInSymbol,      kVarDataType,   kNoPostfix},
    {u"not_in",         Display::kMessage,       6310, kOpInSymbol,      kVarDataType,   kNoPostfix},
    {u"between",        Display::kMessage,       6304, kOpInSymbol,      kVarDataType,   kNoPostfix},
    {u"not_null",       Display::kMessage,       6330, kOpIsNullSymbol,  kVarDataType,   kNoPostfix},
    {u"null",           Display::kMessage,       6331, kOpIsNullSymbol,  kVarDataType,   kNoPostfix},
    {u"&",              Display::kOwnText,          0, kOpComposeSymbol, kStrDataType,   kNoPostfix},
    {u"+|-",            Display::kOwnText,          0, kOpSumSymbol,     kNumDataType,   kNoPostfix},
    {u"*|/|^|%",        Display::kOwnText,          0, kOpMultiSymbol,   kNumDataType,   kNoPostfix},
    {u"like",           Display::kMessage,       6305, kOpRelaSymbol,    kStrDataType,   kNoPostfix},
    {u"=|<>|>|>=|<|<=", Display::kOwnText,          0, kOpRelaSymbol,    kVarDataType,   kNoPostfix},
    {u"*=|=*",          Display::kOwnText,          0, kOpJoinSymbol,    kVarDataType,   kNoPostfix},
    {u"(|)|,",          Display::kOwnText,          0, kDelimiterSymbol, kNoDataType,    kNoPostfix},
};

inline constexpr VocabularyRow kFunctionRows[] = {
    {u"sum",                     Display::kMessage,       6400, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"average",                 Display::kMessage,       6401, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"count",                   Display::kMessage,       6402, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"max",                     Display::kMessage,       6403, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"min",                     Display::kMessage,       6404, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"year",                    Display::kMessage,       6407, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"month",                   Display::kMessage,       6408, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"day",                     Display::kMessage,       6409, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"quarter",                 Display::kMessage,       6410, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"weekDay",                 Display::kMessage,       6411, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fisYear",                 Display::kMessage,       6513, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fisMonth",                Display::kMessage,       6516, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fisQuarter",              Display::kMessage,       6519, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"timeInterval",            Display::kMessage,       6419, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"length",                  Display::kMessage,       6424, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"log",                     Display::kOwnText,          0, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"log10",                   Display::kOwnText,          0, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"Exponent",                Display::kMessage,       6562, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"POWER",                   Display::kMessage,       6565, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"ROUND",                   Display::kMessage,       6568, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"count1",                  Display::kMessage,       6571, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"CEILING",                 Display::kMessage,       6140, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"FLOOR",                   Display::kMessage,       6143, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"ToNumber",                Display::kMessage,       6341, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"hour",                    Display::kMessage,       6585, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"minute",                  Display::kMessage,       6588, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"substring",               Display::kMessage,       6423, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"toUpper",                 Display::kMessage,       6425, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"ToText",                  Display::kMessage,       6412, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"ltrim",                   Display::kMessage,       6593, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"rtrim",                   Display::kMessage,       6594, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"lastDate",                Display::kMessage,       6405, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"firstDate",               Display::kMessage,       6406, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfMonth",           Display::kMessage,       6522, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lstDayOfMonth",           Display::kMessage,       6525, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfFisMonth",        Display::kMessage,       6528, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfFisMonth",           Display::kMessage,       6531, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfYear",            Display::kMessage,       6534, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfYear",               Display::kMessage,       6537, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfFisYear",         Display::kMessage,       6540, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfFisYear",            Display::kMessage,       6543, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfQuarter",         Display::kMessage,       6546, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfQuarter",            Display::kMessage,       6549, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfFisQuarter",      Display::kMessage,       6552, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfFisQuarter",         Display::kMessage,       6555, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"dateAdd",                 Display::kMessage,       6418, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"ToDate",                  Display::kMessage,       6415, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fUnixTimestamp2Datetime", Display::kMessage,       6186, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisYear",                Display::kMessage,       6474, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisFisYear",             Display::kMessage,       6477, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastYear",                Display::kMessage,       6480, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastFisYear",             Display::kMessage,       6483, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisQuarter",             Display::kMessage,       6486, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisFisQuarter",          Display::kMessage,       6489, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastQuarter",             Display::kMessage,       6492, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastFisQuarter",          Display::kMessage,       6495, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisMonth",               Display::kMessage,       6498, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisFisMonth",            Display::kMessage,       6501, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastMonth",               Display::kMessage,       6507, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastFisMonth",            Display::kMessage,       6510, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"switch",                  Display::kMessage,       6450, kFunctionSymbol, kVarDataType,  kNoPostfix},
    {u"IsNull",                  Display::kMessage,       6575, kFunctionSymbol, kVarDataType,  kNoPostfix},
    {u"thisSet",                 Display::kMessage,       6422, kFunctionSymbol, kVarDataType,  kNoPostfix},
    {u"fUnixTimestamp",          Display::kMessage,       6150, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fHMAC",                   Display::kMessage,       6153, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fBase64Encode",           Display::kMessage,       6156, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fVarbintohexstr",         Display::kMessage,       6159, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"STRING_AGG",              Display::kMessage,       6162, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fStringSplit",            Display::kMessage,       6165, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"CHARINDEX",               Display::kMessage,       6168, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fStringDistinct",         Display::kMessage,       6171, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"RAND",                    Display::kMessage,       6174, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fRandBetween",            Display::kMessage,       6177, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"REPLACE",                 Display::kMessage,       6180, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fSHA256",                 Display::kMessage,       6183, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fHmac2Base64",            Display::kMessage,       6189, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fMd5",                    Display::kMessage,       6192, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"REPLICATE",               Display::kMessage,       6196, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"toLower",                 Display::kMessage,       6101, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fUrlEncode",              Display::kMessage,       6104, kFunctionSymbol, kStrDataType,  kNoPostfix},
};

/// Date parts and styles, prefix words and system variables.
inline constexpr VocabularyRow kOtherRows[] = {
    {u"yy|qq|mm|dd|ww|hh|mi|ss",             Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yyyymmdd'",                          Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yyyy-mm-dd'",                        Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'mm-dd-yyyy'",                        Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'dd-mm-yyyy'",                        Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yyyy/mm/dd'",                        Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'mm/dd/yyyy'",                        Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'dd/mm/yyyy'",                        Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yymmdd'",                            Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yy-mm-dd'",                          Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'mm-dd-yy'",                          Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'dd-mm-yy'",                          Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yy/mm/dd'",                          Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'mm/dd/yy'",                          Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'dd/mm/yy'",                          Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'hh:mm:ss'",                          Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'hh:mm:ss:mmm'",                      Display::kOwnText,          0, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"Input.",                              Display::kMessageAndDot, 6311, kInputSymbol,      kVarDataType,  kTypePostfix},
    {u"Sms.",                                Display::kMessageAndDot, 6337, kSmsSymbol,        kVarDataType,  kTypePostfix},
    {u"thisDoc.",                            Display::kMessageAndDot, 6340, kCAXFieldSymbol,   kVarDataType,  kNoPostfix},
    // kept: the number of the row above, so that display forms lead to that one only.
    {u"CaxEnum.",                            Display::kMessageAndDot, 6340, kCAXFieldSymbol,   kVarDataType,  kNoPostfix},
    {u"sysVar.userName",                     Display::kMessage,       6320, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.userDept",                     Display::kMessage,       6321, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.userWorkDept",                 Display::kMessage,       6379, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.CurrentDeptId",                Display::kMessage,       6326, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.CurrentOrganization",          Display::kMessage,       6332, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.CurrentLogin",                 Display::kMessage,       6335, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.userDispName",                 Display::kMessage,       6580, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.WholeNameOfDeptOfCurrentUser", Display::kMessage,       6338, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.WholeNameOfOrgOfCurrentUser",  Display::kMessage,       6339, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.FillReportDate",               Display::kMessage,       6333, kSysvarCaseSymbol, kDateDataType, kNoPostfix},
    {u"sysVar.LastUpdatedDate",              Display::kMessage,       6334, kSysvarCaseSymbol, kDateDataType, kNoPostfix},
    {u"sysVar.RepFillTime",                  Display::kMessage,       6328, kSysvarCaseSymbol, kDateDataType, kNoPostfix},
    {u"sysVar.RepRevLastTime",               Display::kMessage,       6329, kSysvarCaseSymbol, kDateDataType, kNoPostfix},
    {u"sysVar.RepState",                     Display::kMessage,       6584, kSysvarCaseSymbol, kNumDataType,  kNoPostfix},
    {u"sysVar.RepLockState",                 Display::kMessage,       6504, kSysvarCaseSymbol, kNumDataType,  kNoPostfix},
    {u"sysVar.currentDate",                  Display::kMessage,       6322, kSysvarSymbol,     kDateDataType, kNoPostfix},
    {u"sysVar.currentDateTime",              Display::kMessage,       6323, kSysvarSymbol,     kDateDataType, kNoPostfix},
    {u"sysVar.CurrentTask",                  Display::kMessage,       6336, kSysvarSymbol,     kStrDataType,  kNoPostfix},
    {u"sysVar.currentRcId",                  Display::kMessage,       6395, kSysvarSymbol,     kStrDataType,  kNoPostfix},
    {u"sysVar.userMobilePhone",              Display::kMessage,       6591, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.userAgentName",                Display::kMessage,       6592, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"Constant.Null",                       Display::kMessage,       6574, kSysvarSymbol,     kVarDataType,  kNoPostfix},
    {u"Constant.Return",                     Display::kMessage,       6578, kSysvarSymbol,     kStrDataType,  kNoPostfix},
    {u"WebApi.Body",                         Display::kOwnText,          0, kSysvarSymbol,     kStrDataType,  kNoPostfix},
};
// clang-format on

static_assert(std::size(kOperatorRows) == 15);
static_assert(std::size(kFunctionRows) == 80);
static_assert(std::size(kOtherRows) == 45);

/// Whether no word of a table stands twice, case disregarded.
template <std::size_t N>
constexpr bool HasUniqueWords(const VocabularyRow (&rows)[N]) {
  const auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? c + 32 : +c; };
  const auto same = [&](std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
  };
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t j = i + 1; j < N; ++j) {
      if (same(rows[i].primary, rows[j].primary)) return false;
    }
  }
  return true;
}
static_assert(HasUniqueWords(kOperatorRows));
static_assert(HasUniqueWords(kFunctionRows));
static_assert(HasUniqueWords(kOtherRows));

}  // namespace ORKBASE
