// The words of the rule language, in the order in which they are entered. The order matters where
// two words share a display form: the first keeps it.
#pragma once

#include <cstdint>
#include <iterator>
#include <string_view>

#include "MxRuleEnums.h"

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
  std::int32_t symbol;    ///< `MXRULE_SYMBOL_TYPE`
  std::int32_t dataType;  ///< `MXRULE_DATATYPE`
  std::int32_t postfixCheck;
};

// clang-format off
inline constexpr VocabularyRow kOperatorRows[] = {
    {u"and",            Display::kMessage,       6306, 20, 4, 0},
    {u"or",             Display::kMessage,       6307, 20, 4, 0},
    {u"not",            Display::kMessage,       6308, 21, 4, 0},
    {u"in",             Display::kMessage,       6309, 23, 5, 0},
    {u"not_in",         Display::kMessage,       6310, 23, 5, 0},
    {u"between",        Display::kMessage,       6304, 23, 5, 0},
    {u"not_null",       Display::kMessage,       6330, 26, 5, 0},
    {u"null",           Display::kMessage,       6331, 26, 5, 0},
    {u"&",              Display::kOwnText,          0, 18, 2, 0},
    {u"+|-",            Display::kOwnText,          0, 16, 1, 0},
    {u"*|/|^|%",        Display::kOwnText,          0, 17, 1, 0},
    {u"like",           Display::kMessage,       6305, 19, 2, 0},
    {u"=|<>|>|>=|<|<=", Display::kOwnText,          0, 19, 5, 0},
    {u"*=|=*",          Display::kOwnText,          0, 22, 5, 0},
    {u"(|)|,",          Display::kOwnText,          0, 24, 0, 0},
};

inline constexpr VocabularyRow kFunctionRows[] = {
    {u"sum",                     Display::kMessage,       6400, 27, 1, 0},
    {u"average",                 Display::kMessage,       6401, 27, 1, 0},
    {u"count",                   Display::kMessage,       6402, 27, 1, 0},
    {u"max",                     Display::kMessage,       6403, 27, 1, 0},
    {u"min",                     Display::kMessage,       6404, 27, 1, 0},
    {u"year",                    Display::kMessage,       6407, 27, 1, 0},
    {u"month",                   Display::kMessage,       6408, 27, 1, 0},
    {u"day",                     Display::kMessage,       6409, 27, 1, 0},
    {u"quarter",                 Display::kMessage,       6410, 27, 1, 0},
    {u"weekDay",                 Display::kMessage,       6411, 27, 1, 0},
    {u"fisYear",                 Display::kMessage,       6513, 27, 1, 0},
    {u"fisMonth",                Display::kMessage,       6516, 27, 1, 0},
    {u"fisQuarter",              Display::kMessage,       6519, 27, 1, 0},
    {u"timeInterval",            Display::kMessage,       6419, 27, 1, 0},
    {u"length",                  Display::kMessage,       6424, 27, 1, 0},
    {u"log",                     Display::kOwnText,          0, 27, 1, 0},
    {u"log10",                   Display::kOwnText,          0, 27, 1, 0},
    {u"Exponent",                Display::kMessage,       6562, 27, 1, 0},
    {u"POWER",                   Display::kMessage,       6565, 27, 1, 0},
    {u"ROUND",                   Display::kMessage,       6568, 27, 1, 0},
    {u"count1",                  Display::kMessage,       6571, 27, 1, 0},
    {u"CEILING",                 Display::kMessage,       6140, 27, 1, 0},
    {u"FLOOR",                   Display::kMessage,       6143, 27, 1, 0},
    {u"ToNumber",                Display::kMessage,       6341, 27, 1, 0},
    {u"hour",                    Display::kMessage,       6585, 27, 1, 0},
    {u"minute",                  Display::kMessage,       6588, 27, 1, 0},
    {u"substring",               Display::kMessage,       6423, 27, 2, 0},
    {u"toUpper",                 Display::kMessage,       6425, 27, 2, 0},
    {u"ToText",                  Display::kMessage,       6412, 27, 2, 0},
    {u"ltrim",                   Display::kMessage,       6593, 27, 2, 0},
    {u"rtrim",                   Display::kMessage,       6594, 27, 2, 0},
    {u"lastDate",                Display::kMessage,       6405, 27, 3, 0},
    {u"firstDate",               Display::kMessage,       6406, 27, 3, 0},
    {u"fstDayOfMonth",           Display::kMessage,       6522, 27, 3, 0},
    {u"lstDayOfMonth",           Display::kMessage,       6525, 27, 3, 0},
    {u"fstDayOfFisMonth",        Display::kMessage,       6528, 27, 3, 0},
    {u"endOfFisMonth",           Display::kMessage,       6531, 27, 3, 0},
    {u"fstDayOfYear",            Display::kMessage,       6534, 27, 3, 0},
    {u"endOfYear",               Display::kMessage,       6537, 27, 3, 0},
    {u"fstDayOfFisYear",         Display::kMessage,       6540, 27, 3, 0},
    {u"endOfFisYear",            Display::kMessage,       6543, 27, 3, 0},
    {u"fstDayOfQuarter",         Display::kMessage,       6546, 27, 3, 0},
    {u"endOfQuarter",            Display::kMessage,       6549, 27, 3, 0},
    {u"fstDayOfFisQuarter",      Display::kMessage,       6552, 27, 3, 0},
    {u"endOfFisQuarter",         Display::kMessage,       6555, 27, 3, 0},
    {u"dateAdd",                 Display::kMessage,       6418, 27, 3, 0},
    {u"ToDate",                  Display::kMessage,       6415, 27, 3, 0},
    {u"fUnixTimestamp2Datetime", Display::kMessage,       6186, 27, 3, 0},
    {u"thisYear",                Display::kMessage,       6474, 27, 3, 0},
    {u"thisFisYear",             Display::kMessage,       6477, 27, 3, 0},
    {u"lastYear",                Display::kMessage,       6480, 27, 3, 0},
    {u"lastFisYear",             Display::kMessage,       6483, 27, 3, 0},
    {u"thisQuarter",             Display::kMessage,       6486, 27, 3, 0},
    {u"thisFisQuarter",          Display::kMessage,       6489, 27, 3, 0},
    {u"lastQuarter",             Display::kMessage,       6492, 27, 3, 0},
    {u"lastFisQuarter",          Display::kMessage,       6495, 27, 3, 0},
    {u"thisMonth",               Display::kMessage,       6498, 27, 3, 0},
    {u"thisFisMonth",            Display::kMessage,       6501, 27, 3, 0},
    {u"lastMonth",               Display::kMessage,       6507, 27, 3, 0},
    {u"lastFisMonth",            Display::kMessage,       6510, 27, 3, 0},
    {u"switch",                  Display::kMessage,       6450, 27, 5, 0},
    {u"IsNull",                  Display::kMessage,       6575, 27, 5, 0},
    {u"thisSet",                 Display::kMessage,       6422, 27, 5, 0},
    {u"fUnixTimestamp",          Display::kMessage,       6150, 27, 1, 0},
    {u"fHMAC",                   Display::kMessage,       6153, 27, 2, 0},
    {u"fBase64Encode",           Display::kMessage,       6156, 27, 2, 0},
    {u"fVarbintohexstr",         Display::kMessage,       6159, 27, 2, 0},
    {u"STRING_AGG",              Display::kMessage,       6162, 27, 2, 0},
    {u"fStringSplit",            Display::kMessage,       6165, 27, 2, 0},
    {u"CHARINDEX",               Display::kMessage,       6168, 27, 1, 0},
    {u"fStringDistinct",         Display::kMessage,       6171, 27, 2, 0},
    {u"RAND",                    Display::kMessage,       6174, 27, 1, 0},
    {u"fRandBetween",            Display::kMessage,       6177, 27, 1, 0},
    {u"REPLACE",                 Display::kMessage,       6180, 27, 2, 0},
    {u"fSHA256",                 Display::kMessage,       6183, 27, 2, 0},
    {u"fHmac2Base64",            Display::kMessage,       6189, 27, 2, 0},
    {u"fMd5",                    Display::kMessage,       6192, 27, 2, 0},
    {u"REPLICATE",               Display::kMessage,       6196, 27, 2, 0},
    {u"toLower",                 Display::kMessage,       6101, 27, 2, 0},
    {u"fUrlEncode",              Display::kMessage,       6104, 27, 2, 0},
};

/// Date parts and styles, prefix words and system variables.
inline constexpr VocabularyRow kOtherRows[] = {
    {u"yy|qq|mm|dd|ww|hh|mi|ss",             Display::kOwnText,          0, 14, 0, 0},
    {u"'yyyymmdd'",                          Display::kOwnText,          0, 14, 0, 0},
    {u"'yyyy-mm-dd'",                        Display::kOwnText,          0, 14, 0, 0},
    {u"'mm-dd-yyyy'",                        Display::kOwnText,          0, 14, 0, 0},
    {u"'dd-mm-yyyy'",                        Display::kOwnText,          0, 14, 0, 0},
    {u"'yyyy/mm/dd'",                        Display::kOwnText,          0, 14, 0, 0},
    {u"'mm/dd/yyyy'",                        Display::kOwnText,          0, 14, 0, 0},
    {u"'dd/mm/yyyy'",                        Display::kOwnText,          0, 14, 0, 0},
    {u"'yymmdd'",                            Display::kOwnText,          0, 14, 0, 0},
    {u"'yy-mm-dd'",                          Display::kOwnText,          0, 14, 0, 0},
    {u"'mm-dd-yy'",                          Display::kOwnText,          0, 14, 0, 0},
    {u"'dd-mm-yy'",                          Display::kOwnText,          0, 14, 0, 0},
    {u"'yy/mm/dd'",                          Display::kOwnText,          0, 14, 0, 0},
    {u"'mm/dd/yy'",                          Display::kOwnText,          0, 14, 0, 0},
    {u"'dd/mm/yy'",                          Display::kOwnText,          0, 14, 0, 0},
    {u"'hh:mm:ss'",                          Display::kOwnText,          0, 14, 0, 0},
    {u"'hh:mm:ss:mmm'",                      Display::kOwnText,          0, 14, 0, 0},
    {u"Input.",                              Display::kMessageAndDot, 6311,  8, 5, 1},
    {u"Sms.",                                Display::kMessageAndDot, 6337,  7, 5, 1},
    {u"thisDoc.",                            Display::kMessageAndDot, 6340,  9, 5, 0},
    {u"CaxEnum.",                            Display::kMessageAndDot, 6340,  9, 5, 0},
    {u"sysVar.userName",                     Display::kMessage,       6320, 11, 2, 0},
    {u"sysVar.userDept",                     Display::kMessage,       6321, 11, 2, 0},
    {u"sysVar.userWorkDept",                 Display::kMessage,       6379, 11, 2, 0},
    {u"sysVar.CurrentDeptId",                Display::kMessage,       6326, 11, 2, 0},
    {u"sysVar.CurrentOrganization",          Display::kMessage,       6332, 11, 2, 0},
    {u"sysVar.CurrentLogin",                 Display::kMessage,       6335, 11, 2, 0},
    {u"sysVar.userDispName",                 Display::kMessage,       6580, 11, 2, 0},
    {u"sysVar.WholeNameOfDeptOfCurrentUser", Display::kMessage,       6338, 11, 2, 0},
    {u"sysVar.WholeNameOfOrgOfCurrentUser",  Display::kMessage,       6339, 11, 2, 0},
    {u"sysVar.FillReportDate",               Display::kMessage,       6333, 12, 3, 0},
    {u"sysVar.LastUpdatedDate",              Display::kMessage,       6334, 12, 3, 0},
    {u"sysVar.RepFillTime",                  Display::kMessage,       6328, 12, 3, 0},
    {u"sysVar.RepRevLastTime",               Display::kMessage,       6329, 12, 3, 0},
    {u"sysVar.RepState",                     Display::kMessage,       6584, 12, 1, 0},
    {u"sysVar.RepLockState",                 Display::kMessage,       6504, 12, 1, 0},
    {u"sysVar.currentDate",                  Display::kMessage,       6322, 10, 3, 0},
    {u"sysVar.currentDateTime",              Display::kMessage,       6323, 10, 3, 0},
    {u"sysVar.CurrentTask",                  Display::kMessage,       6336, 10, 2, 0},
    {u"sysVar.currentRcId",                  Display::kMessage,       6395, 10, 2, 0},
    {u"sysVar.userMobilePhone",              Display::kMessage,       6591, 11, 2, 0},
    {u"sysVar.userAgentName",                Display::kMessage,       6592, 11, 2, 0},
    {u"Constant.Null",                       Display::kMessage,       6574, 10, 5, 0},
    {u"Constant.Return",                     Display::kMessage,       6578, 10, 2, 0},
    {u"WebApi.Body",                         Display::kOwnText,          0, 10, 2, 0},
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
