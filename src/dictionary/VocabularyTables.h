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
  /// Number of the sentence that says what the word does. The further words of a row have the
  /// numbers behind it; that behind a function's is the text of its parameters, if it has any.
  std::int32_t info;
  MXRULE_SYMBOL_TYPE symbol;
  MXRULE_DATATYPE dataType;
  PostfixCheck postfixCheck;
};

// clang-format off
inline constexpr VocabularyRow kOperatorRows[] = {
    {u"and",            Display::kMessage,       6306, 6960, kOpCondSymbol,    kLogicDataType, kNoPostfix},
    {u"or",             Display::kMessage,       6307, 6961, kOpCondSymbol,    kLogicDataType, kNoPostfix},
    {u"not",            Display::kMessage,       6308, 6962, kOpNotSymbol,     kLogicDataType, kNoPostfix},
    {u"in",             Display::kMessage,       6309, 6963, kOpInSymbol,      kVarDataType,   kNoPostfix},
    {u"not_in",         Display::kMessage,       6310, 6964, kOpInSymbol,      kVarDataType,   kNoPostfix},
    {u"between",        Display::kMessage,       6304, 6965, kOpInSymbol,      kVarDataType,   kNoPostfix},
    {u"not_null",       Display::kMessage,       6330, 6966, kOpIsNullSymbol,  kVarDataType,   kNoPostfix},
    {u"null",           Display::kMessage,       6331, 6967, kOpIsNullSymbol,  kVarDataType,   kNoPostfix},
    {u"&",              Display::kOwnText,          0, 6968, kOpComposeSymbol, kStrDataType,   kNoPostfix},
    {u"+|-",            Display::kOwnText,          0, 6969, kOpSumSymbol,     kNumDataType,   kNoPostfix},
    {u"*|/|^|%",        Display::kOwnText,          0, 6971, kOpMultiSymbol,   kNumDataType,   kNoPostfix},
    {u"like",           Display::kMessage,       6305, 6975, kOpRelaSymbol,    kStrDataType,   kNoPostfix},
    {u"=|<>|>|>=|<|<=", Display::kOwnText,          0, 6976, kOpRelaSymbol,    kVarDataType,   kNoPostfix},
    {u"*=|=*",          Display::kOwnText,          0, 6982, kOpJoinSymbol,    kVarDataType,   kNoPostfix},
    {u"(|)|,",          Display::kOwnText,          0, 6984, kDelimiterSymbol, kNoDataType,    kNoPostfix},
};

inline constexpr VocabularyRow kFunctionRows[] = {
    {u"sum",                     Display::kMessage,       6400, 6800, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"average",                 Display::kMessage,       6401, 6802, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"count",                   Display::kMessage,       6402, 6804, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"max",                     Display::kMessage,       6403, 6806, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"min",                     Display::kMessage,       6404, 6808, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"year",                    Display::kMessage,       6407, 6810, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"month",                   Display::kMessage,       6408, 6812, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"day",                     Display::kMessage,       6409, 6814, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"quarter",                 Display::kMessage,       6410, 6816, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"weekDay",                 Display::kMessage,       6411, 6818, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fisYear",                 Display::kMessage,       6513, 6820, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fisMonth",                Display::kMessage,       6516, 6822, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fisQuarter",              Display::kMessage,       6519, 6824, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"timeInterval",            Display::kMessage,       6419, 6826, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"length",                  Display::kMessage,       6424, 6828, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"log",                     Display::kOwnText,          0, 6830, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"log10",                   Display::kOwnText,          0, 6832, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"Exponent",                Display::kMessage,       6562, 6834, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"POWER",                   Display::kMessage,       6565, 6836, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"ROUND",                   Display::kMessage,       6568, 6838, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"count1",                  Display::kMessage,       6571, 6840, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"CEILING",                 Display::kMessage,       6140, 6842, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"FLOOR",                   Display::kMessage,       6143, 6844, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"ToNumber",                Display::kMessage,       6341, 6846, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"hour",                    Display::kMessage,       6585, 6848, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"minute",                  Display::kMessage,       6588, 6850, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"substring",               Display::kMessage,       6423, 6852, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"toUpper",                 Display::kMessage,       6425, 6854, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"ToText",                  Display::kMessage,       6412, 6856, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"ltrim",                   Display::kMessage,       6593, 6858, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"rtrim",                   Display::kMessage,       6594, 6860, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"lastDate",                Display::kMessage,       6405, 6862, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"firstDate",               Display::kMessage,       6406, 6864, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfMonth",           Display::kMessage,       6522, 6866, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lstDayOfMonth",           Display::kMessage,       6525, 6868, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfFisMonth",        Display::kMessage,       6528, 6870, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfFisMonth",           Display::kMessage,       6531, 6872, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfYear",            Display::kMessage,       6534, 6874, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfYear",               Display::kMessage,       6537, 6876, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfFisYear",         Display::kMessage,       6540, 6878, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfFisYear",            Display::kMessage,       6543, 6880, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfQuarter",         Display::kMessage,       6546, 6882, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfQuarter",            Display::kMessage,       6549, 6884, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fstDayOfFisQuarter",      Display::kMessage,       6552, 6886, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"endOfFisQuarter",         Display::kMessage,       6555, 6888, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"dateAdd",                 Display::kMessage,       6418, 6890, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"ToDate",                  Display::kMessage,       6415, 6892, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"fUnixTimestamp2Datetime", Display::kMessage,       6186, 6894, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisYear",                Display::kMessage,       6474, 6896, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisFisYear",             Display::kMessage,       6477, 6898, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastYear",                Display::kMessage,       6480, 6900, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastFisYear",             Display::kMessage,       6483, 6902, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisQuarter",             Display::kMessage,       6486, 6904, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisFisQuarter",          Display::kMessage,       6489, 6906, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastQuarter",             Display::kMessage,       6492, 6908, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastFisQuarter",          Display::kMessage,       6495, 6910, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisMonth",               Display::kMessage,       6498, 6912, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"thisFisMonth",            Display::kMessage,       6501, 6914, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastMonth",               Display::kMessage,       6507, 6916, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"lastFisMonth",            Display::kMessage,       6510, 6918, kFunctionSymbol, kDateDataType, kNoPostfix},
    {u"switch",                  Display::kMessage,       6450, 6920, kFunctionSymbol, kVarDataType,  kNoPostfix},
    {u"IsNull",                  Display::kMessage,       6575, 6922, kFunctionSymbol, kVarDataType,  kNoPostfix},
    {u"thisSet",                 Display::kMessage,       6422, 6924, kFunctionSymbol, kVarDataType,  kNoPostfix},
    {u"fUnixTimestamp",          Display::kMessage,       6150, 6926, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fHMAC",                   Display::kMessage,       6153, 6928, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fBase64Encode",           Display::kMessage,       6156, 6930, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fVarbintohexstr",         Display::kMessage,       6159, 6932, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"STRING_AGG",              Display::kMessage,       6162, 6934, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fStringSplit",            Display::kMessage,       6165, 6936, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"CHARINDEX",               Display::kMessage,       6168, 6938, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fStringDistinct",         Display::kMessage,       6171, 6940, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"RAND",                    Display::kMessage,       6174, 6942, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"fRandBetween",            Display::kMessage,       6177, 6944, kFunctionSymbol, kNumDataType,  kNoPostfix},
    {u"REPLACE",                 Display::kMessage,       6180, 6946, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fSHA256",                 Display::kMessage,       6183, 6948, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fHmac2Base64",            Display::kMessage,       6189, 6950, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fMd5",                    Display::kMessage,       6192, 6952, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"REPLICATE",               Display::kMessage,       6196, 6954, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"toLower",                 Display::kMessage,       6101, 6956, kFunctionSymbol, kStrDataType,  kNoPostfix},
    {u"fUrlEncode",              Display::kMessage,       6104, 6958, kFunctionSymbol, kStrDataType,  kNoPostfix},
};

/// Date parts and styles, prefix words and system variables.
inline constexpr VocabularyRow kOtherRows[] = {
    {u"yy|qq|mm|dd|ww|hh|mi|ss",             Display::kOwnText,          0, 6987, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yyyymmdd'",                          Display::kOwnText,          0, 6995, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yyyy-mm-dd'",                        Display::kOwnText,          0, 6996, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'mm-dd-yyyy'",                        Display::kOwnText,          0, 6997, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'dd-mm-yyyy'",                        Display::kOwnText,          0, 6998, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yyyy/mm/dd'",                        Display::kOwnText,          0, 6999, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'mm/dd/yyyy'",                        Display::kOwnText,          0, 7000, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'dd/mm/yyyy'",                        Display::kOwnText,          0, 7001, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yymmdd'",                            Display::kOwnText,          0, 7002, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yy-mm-dd'",                          Display::kOwnText,          0, 7003, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'mm-dd-yy'",                          Display::kOwnText,          0, 7004, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'dd-mm-yy'",                          Display::kOwnText,          0, 7005, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'yy/mm/dd'",                          Display::kOwnText,          0, 7006, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'mm/dd/yy'",                          Display::kOwnText,          0, 7007, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'dd/mm/yy'",                          Display::kOwnText,          0, 7008, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'hh:mm:ss'",                          Display::kOwnText,          0, 7009, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"'hh:mm:ss:mmm'",                      Display::kOwnText,          0, 7010, kDatePartSymbol,   kNoDataType,   kNoPostfix},
    {u"Input.",                              Display::kMessageAndDot, 6311, 7011, kInputSymbol,      kVarDataType,  kTypePostfix},
    {u"Sms.",                                Display::kMessageAndDot, 6337, 7012, kSmsSymbol,        kVarDataType,  kTypePostfix},
    {u"thisDoc.",                            Display::kMessageAndDot, 6340, 7013, kCAXFieldSymbol,   kVarDataType,  kNoPostfix},
    // kept: the number of the row above, so that display forms lead to that one only.
    {u"CaxEnum.",                            Display::kMessageAndDot, 6340, 7014, kCAXFieldSymbol,   kVarDataType,  kNoPostfix},
    {u"sysVar.userName",                     Display::kMessage,       6320, 7015, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.userDept",                     Display::kMessage,       6321, 7016, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.userWorkDept",                 Display::kMessage,       6379, 7017, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.CurrentDeptId",                Display::kMessage,       6326, 7018, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.CurrentOrganization",          Display::kMessage,       6332, 7019, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.CurrentLogin",                 Display::kMessage,       6335, 7020, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.userDispName",                 Display::kMessage,       6580, 7021, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.WholeNameOfDeptOfCurrentUser", Display::kMessage,       6338, 7022, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.WholeNameOfOrgOfCurrentUser",  Display::kMessage,       6339, 7023, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.FillReportDate",               Display::kMessage,       6333, 7024, kSysvarCaseSymbol, kDateDataType, kNoPostfix},
    {u"sysVar.LastUpdatedDate",              Display::kMessage,       6334, 7025, kSysvarCaseSymbol, kDateDataType, kNoPostfix},
    {u"sysVar.RepFillTime",                  Display::kMessage,       6328, 7026, kSysvarCaseSymbol, kDateDataType, kNoPostfix},
    {u"sysVar.RepRevLastTime",               Display::kMessage,       6329, 7027, kSysvarCaseSymbol, kDateDataType, kNoPostfix},
    {u"sysVar.RepState",                     Display::kMessage,       6584, 7028, kSysvarCaseSymbol, kNumDataType,  kNoPostfix},
    {u"sysVar.RepLockState",                 Display::kMessage,       6504, 7029, kSysvarCaseSymbol, kNumDataType,  kNoPostfix},
    {u"sysVar.currentDate",                  Display::kMessage,       6322, 7030, kSysvarSymbol,     kDateDataType, kNoPostfix},
    {u"sysVar.currentDateTime",              Display::kMessage,       6323, 7031, kSysvarSymbol,     kDateDataType, kNoPostfix},
    {u"sysVar.CurrentTask",                  Display::kMessage,       6336, 7032, kSysvarSymbol,     kStrDataType,  kNoPostfix},
    {u"sysVar.currentRcId",                  Display::kMessage,       6395, 7033, kSysvarSymbol,     kStrDataType,  kNoPostfix},
    {u"sysVar.userMobilePhone",              Display::kMessage,       6591, 7034, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"sysVar.userAgentName",                Display::kMessage,       6592, 7035, kSysvarUserSymbol, kStrDataType,  kNoPostfix},
    {u"Constant.Null",                       Display::kMessage,       6574, 7036, kSysvarSymbol,     kVarDataType,  kNoPostfix},
    {u"Constant.Return",                     Display::kMessage,       6578, 7037, kSysvarSymbol,     kStrDataType,  kNoPostfix},
    {u"WebApi.Body",                         Display::kOwnText,          0, 7038, kSysvarSymbol,     kStrDataType,  kNoPostfix},
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

/// How many numbers a row takes from `info` up.
constexpr std::int32_t InfoCount(const VocabularyRow& row) {
  if (row.symbol == kFunctionSymbol) return 2;
  std::int32_t count = 1;
  for (const char16_t c : row.primary) count += c == u'|' ? 1 : 0;
  return count;
}

/// How many pairs of a row here and a row there have a number in common.
template <std::size_t N, std::size_t M>
constexpr std::size_t SharedInfos(const VocabularyRow (&rows)[N],
                                  const VocabularyRow (&others)[M]) {
  std::size_t count = 0;
  for (const VocabularyRow& row : rows) {
    for (const VocabularyRow& other : others) {
      const bool before = row.info + InfoCount(row) <= other.info;
      const bool behind = other.info + InfoCount(other) <= row.info;
      count += before || behind ? 0 : 1;
    }
  }
  return count;
}
// Within one table a row shares its numbers with itself only.
static_assert(SharedInfos(kOperatorRows, kOperatorRows) == std::size(kOperatorRows));
static_assert(SharedInfos(kFunctionRows, kFunctionRows) == std::size(kFunctionRows));
static_assert(SharedInfos(kOtherRows, kOtherRows) == std::size(kOtherRows));
static_assert(SharedInfos(kOperatorRows, kFunctionRows) == 0);
static_assert(SharedInfos(kFunctionRows, kOtherRows) == 0);
static_assert(SharedInfos(kOtherRows, kOperatorRows) == 0);

}  // namespace ORKBASE
