// What each word becomes in the default dialect. A word that stands in no table keeps its own text.
#include "foundation/Text.h"
#include "translator/MxSql92Translator.h"

namespace ORKBASE {
namespace {

using T = MxSql92Translator;

// clang-format off
constexpr ReplacementRow kOperatorRows[] = {
    {u"not_in",   u"not in"},
    {u"not_null", u"is not null"},
    {u"null",     u"is null"},
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

constexpr ReplacementRow kLikeRow[] = {
    {u"like", u"", &T::TransLike},
};

constexpr ReplacementRow kFunctionRows[] = {
    {u"average",                 u"avg"},
    {u"quarter",                 u"", &T::TransQuarter},
    {u"weekDay",                 u"", &T::TransWeekDay},
    {u"fisYear",                 u"", &T::TransFisYear},
    {u"fisMonth",                u"", &T::TransFisMonth},
    {u"fisQuarter",              u"", &T::TransFisQuarter},
    {u"timeInterval",            u"datediff"},
    {u"length",                  u"len"},
    {u"Exponent",                u"exp"},
    {u"count1",                  u"", &T::TransCount1},
    {u"fRandBetween",            u"dbo.fRandBetween"},
    {u"ToNumber",                u"", &T::TransToNumber},
    {u"hour",                    u"", &T::TransHour},
    {u"minute",                  u"", &T::TransMinute},
    {u"fUnixTimestamp",          u"dbo.fUnixTimestamp"},
    {u"toUpper",                 u"upper"},
    {u"ToText",                  u"", &T::TransToText},
    {u"fHMAC",                   u"dbo.fHMAC"},
    {u"fBase64Encode",           u"dbo.fBase64Encode"},
    {u"fVarbintohexstr",         u"dbo.fVarbintohexstr"},
    {u"fStringSplit",            u"dbo.fStringSplit"},
    {u"fStringDistinct",         u"dbo.fStringDistinct"},
    {u"fSHA256",                 u"dbo.fSHA256"},
    {u"fHmac2Base64",            u"dbo.fHmac2Base64"},
    {u"fMd5",                    u"dbo.fMd5"},
    {u"toLower",                 u"lower"},
    {u"fUrlEncode",              u"dbo.fUrlEncode"},
    {u"lastDate",                u"max"},
    {u"firstDate",               u"min"},
    {u"fstDayOfMonth",           u"", &T::TransFstDayOfMonth},
    {u"lstDayOfMonth",           u"", &T::TransLstDayOfMonth},
    {u"fstDayOfFisMonth",        u"", &T::TransFstDayOfFisMonth},
    {u"endOfFisMonth",           u"", &T::TransEndOfFisMonth},
    {u"fstDayOfYear",            u"", &T::TransFstDayOfYear},
    {u"endOfYear",               u"", &T::TransEndOfYear},
    {u"fstDayOfFisYear",         u"", &T::TransFstDayOfFisYear},
    {u"endOfFisYear",            u"", &T::TransEndOfFisYear},
    {u"fstDayOfQuarter",         u"", &T::TransFstDayOfQuarter},
    {u"endOfQuarter",            u"", &T::TransEndOfQuarter},
    {u"fstDayOfFisQuarter",      u"", &T::TransFstDayOfFisQuarter},
    {u"endOfFisQuarter",         u"", &T::TransEndOfFisQuarter},
    {u"ToDate",                  u"", &T::TransToDate},
    {u"fUnixTimestamp2Datetime", u"dbo.fUnixTimestamp2Datetime"},
    {u"thisYear",                u"", &T::TransThisYear},
    {u"thisFisYear",             u"", &T::TransThisFisYear},
    {u"lastYear",                u"", &T::TransLastYear},
    {u"lastFisYear",             u"", &T::TransLastFisYear},
    {u"thisQuarter",             u"", &T::TransThisQuarter},
    {u"thisFisQuarter",          u"", &T::TransThisFisQuarter},
    {u"lastQuarter",             u"", &T::TransLastQuarter},
    {u"lastFisQuarter",          u"", &T::TransLastFisQuarter},
    {u"thisMonth",               u"", &T::TransThisMonth},
    {u"thisFisMonth",            u"", &T::TransThisFisMonth},
    {u"lastMonth",               u"", &T::TransLastMonth},
    {u"lastFisMonth",            u"", &T::TransLastFisMonth},
    {u"switch",                  u"", &T::TransSwitch},
    {u"thisSet",                 u"", &T::TransThisSet},
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

static_assert(std::size(kSystemVariableRows) == 18);
static_assert(std::size(kFunctionRows) == 57);
static_assert(HasUniqueWords());

}  // namespace

void MxSql92Translator::InitOperators(ReplacementMap& map, const DialectFields& fields) {
  map.AddRows(kOperatorRows);
  map.AddReplacement(u"&", TransType::kPlain, fields.concatOp, nullptr);
  map.AddReplacementList(kDateStyleLiterals, fields.dateStyles);
  map.AddRows(kSystemVariableRows);
  map.AddRows(kLikeRow);
}

void MxSql92Translator::InitFunctions(ReplacementMap& map) {
  map.AddRows(kFunctionRows);
}

}  // namespace ORKBASE
