// The rows that every dialect begins with, and those that follow from a dialect's fields. A word
// that stands in no table keeps its own text.
#include "foundation/Text.h"
#include "translator/TranslatorFrame.h"

namespace ORKBASE {
namespace {

using T = TranslatorFrame;

constexpr bool kFirst = true;
constexpr bool kLast = false;
constexpr bool kFiscal = true;
constexpr bool kCalendar = false;
constexpr std::u16string_view kYear = u"'yy'";
constexpr std::u16string_view kQuarter = u"'qq'";
constexpr std::u16string_view kMonth = u"'mm'";

// clang-format off
constexpr ReplacementRow kOperatorRows[] = {
    {u"not_in",   u"not in"},
    {u"not_null", u"is not null"},
    {u"null",     u"is null"},
    {u"like",     HandleBy<&T::TransLike>},
};

/// What stands in braces or pointed brackets is filled in by whoever runs the SQL.
constexpr ReplacementRow kSystemVariableRows[] = {
    {u"sysVar.userName",                     u"{vUserName}"},
    {u"sysVar.userDept",                     u"{vDept}"},
    {u"sysVar.userWorkDept",                 u"{vUserWorkDept}"},
    {u"sysVar.CurrentDeptId",                u"{vDeptNo}"},
    {u"sysVar.CurrentOrganization",          u"{vOrg}"},
    {u"sysVar.CurrentLogin",                 u"{vUserLogin}"},
    {u"sysVar.userDispName",                 u"{vUserDisp}"},
    {u"sysVar.WholeNameOfDeptOfCurrentUser", u"{vDeptFullName}"},
    {u"sysVar.WholeNameOfOrgOfCurrentUser",  u"{vOrgFullName}"},
    {u"sysVar.userMobilePhone",              u"{vUserMobilePhone}"},
    {u"sysVar.userAgentName",                u"{vUserAgentName}"},
    {u"sysVar.currentDate",                  u"{vDate}"},
    {u"sysVar.currentDateTime",              u"{vNow}"},
    {u"sysVar.CurrentTask",                  u"{vTask}"},
    {u"sysVar.currentRcId",                  u"<rcid>"},
    {u"Constant.Null",                       u"NULL"},
    {u"Constant.Return",                     u"char(10)"},
    {u"WebApi.Body",                         u"{vWebApiBody}"},
};

constexpr ReplacementRow kFunctionRows[] = {
    {u"average",   u"avg"},
    {u"Exponent",  u"exp"},
    {u"toUpper",   u"upper"},
    {u"toLower",   u"lower"},
    {u"lastDate",  u"max"},
    {u"firstDate", u"min"},
    {u"count1",    HandleBy<&T::TransCount1>},
    {u"switch",    HandleBy<&T::TransSwitch>},
    {u"thisSet",   HandleBy<&T::TransThisSet>},
    {u"ToText",    HandleBy<&T::TransToText>},
    {u"ToDate",    HandleBy<&T::TransToDate>},
    {u"ToNumber",  HandleBy<&T::TransToNumber>},

    {u"fisYear",    FisDatePart{kYear}},
    {u"fisMonth",   FisDatePart{kMonth}},
    {u"fisQuarter", FisDatePart{kQuarter}},

    {u"fstDayOfYear",       PeriodBound{kFirst, kYear,    kCalendar}},
    {u"endOfYear",          PeriodBound{kLast,  kYear,    kCalendar}},
    {u"fstDayOfFisYear",    PeriodBound{kFirst, kYear,    kFiscal}},
    {u"endOfFisYear",       PeriodBound{kLast,  kYear,    kFiscal}},
    {u"fstDayOfQuarter",    PeriodBound{kFirst, kQuarter, kCalendar}},
    {u"endOfQuarter",       PeriodBound{kLast,  kQuarter, kCalendar}},
    {u"fstDayOfFisQuarter", PeriodBound{kFirst, kQuarter, kFiscal}},
    {u"endOfFisQuarter",    PeriodBound{kLast,  kQuarter, kFiscal}},
    {u"fstDayOfMonth",      PeriodBound{kFirst, kMonth,   kCalendar}},
    {u"lstDayOfMonth",      PeriodBound{kLast,  kMonth,   kCalendar}},
    {u"fstDayOfFisMonth",   PeriodBound{kFirst, kMonth,   kFiscal}},
    {u"endOfFisMonth",      PeriodBound{kLast,  kMonth,   kFiscal}},

    {u"thisYear",       WholePeriod{u"fstDayOfYear",       u"endOfYear"}},
    {u"thisFisYear",    WholePeriod{u"fstDayOfFisYear",    u"endOfFisYear"}},
    {u"thisQuarter",    WholePeriod{u"fstDayOfQuarter",    u"endOfQuarter"}},
    {u"thisFisQuarter", WholePeriod{u"fstDayOfFisQuarter", u"endOfFisQuarter"}},
    {u"thisMonth",      WholePeriod{u"fstDayOfMonth",      u"lstDayOfMonth"}},
    {u"thisFisMonth",   WholePeriod{u"fstDayOfFisMonth",   u"endOfFisMonth"}},

    // The argument that is one less: the year itself, or the quarter or month behind it.
    {u"lastYear",       OneLess{0, u"thisYear"}},
    {u"lastFisYear",    OneLess{0, u"thisFisYear"}},
    {u"lastQuarter",    OneLess{1, u"thisQuarter"}},
    {u"lastFisQuarter", OneLess{1, u"thisFisQuarter"}},
    {u"lastMonth",      OneLess{1, u"thisMonth"}},
    {u"lastFisMonth",   OneLess{1, u"thisFisMonth"}},
};

/// Functions of the business database; a dialect's prefix stands in front of their names.
constexpr std::u16string_view kUserFunctions[] = {
    u"fRandBetween",
    u"fUnixTimestamp",
    u"fUnixTimestamp2Datetime",
    u"fHMAC",
    u"fBase64Encode",
    u"fVarbintohexstr",
    u"fStringSplit",
    u"fStringDistinct",
    u"fSHA256",
    u"fHmac2Base64",
    u"fMd5",
    u"fUrlEncode",
};
// clang-format on

constexpr bool HasUniqueWords() {
  for (const ReplacementRow& row : kFunctionRows) {
    std::size_t count = 0;
    for (const ReplacementRow& other : kFunctionRows) count += row.word == other.word;
    if (count != 1) return false;
  }
  return true;
}

static_assert(HasUniqueWords());

}  // namespace

const ReplacementMap& TranslatorFrame::SharedMap() {
  static const ReplacementMap map = [] {
    ReplacementMap made;
    InitFunctions(made);
    return made;
  }();
  return map;
}

ReplacementMap TranslatorFrame::MakeMap(ReplacementMap begin, const DialectFields& fields,
                                        std::span<const ReplacementRow> rows) {
  InitOperators(begin, fields);
  InitUserFunctions(begin, fields);
  begin.AddRows(rows);
  return begin;
}

void TranslatorFrame::InitOperators(ReplacementMap& map, const DialectFields& fields) {
  map.AddRows(kOperatorRows);
  map.AddReplacement(u"&", fields.concatOp);
  map.AddReplacementList(kDateStyleLiterals, fields.dateStyles);
  map.AddRows(kSystemVariableRows);
}

void TranslatorFrame::InitUserFunctions(ReplacementMap& map, const DialectFields& fields) {
  for (const std::u16string_view name : kUserFunctions) {
    if (fields.userPrefix) {
      map.AddReplacement(name, std::u16string(*fields.userPrefix).append(name));
    } else {
      map.AddReplacement(name, OwnWord{});
    }
  }
}

void TranslatorFrame::InitFunctions(ReplacementMap& map) {
  map.AddRows(kFunctionRows);
}

std::u16string TranslatorFrame::UserFunction(std::u16string_view name) const {
  return std::u16string(fields_.userPrefix.value_or(u"")).append(name);
}

}  // namespace ORKBASE
