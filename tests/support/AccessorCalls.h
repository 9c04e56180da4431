// Short calls of the data access for its tests.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "DataAccess.h"
#include "Utf8.h"

/// The statement and the columns that the dictionaries read.
constexpr const char16_t* kTemplateStatement =
    u"select t.rttId, f.rtfId, t.dtName, f.fldName, f.realName as fldRealName, f.baseType,  "
    u"t.dtId, f.fldId, t.realName as tabRealName, t.refName as tabRefName, t.style,  t.state as "
    u"created  from mx_v_rtfs f,Mx_v_Rtts t  where t.rtId=? and f.rttId=t.rttId";
constexpr const char16_t* kFieldColumns =
    u"dtName, fldName, fldRealName, baseType, dtId, fldId, tabRealName, tabRefName, state";

inline std::unique_ptr<ORKDB::CDBAccessor> MakeAccessor(
    const std::u16string& server, const std::u16string& user = {},
    const std::u16string& password = {}, std::int32_t loadSeconds = ORKBASE::kDefaultLoadSeconds) {
  return ORKDB::CDBAccessorCreator::instance()->CreateAccessor(
      {ORKDB::MxSvrInfo(server, 0, user, u""), u"", ORKDB::MxProxyInfo(), u"",
       ORKBASE::kSqlServerDs, false, true, password, u"", loadSeconds});
}

inline ORKDB::MxParams Equals(const std::u16string& name, const std::u16string& value) {
  ORKDB::MxParams params(false);
  params.AddParam(0, name, value, false, false, u"=");
  return params;
}

inline std::unique_ptr<ORKDB::CDBRecordSet> SelectTable(ORKDB::CDBAccessor& accessor,
                                                        const std::u16string& table) {
  return accessor.SelectByTable(u"mx_v_datafield", kFieldColumns, Equals(u"dtName", table));
}

inline std::unique_ptr<ORKDB::CDBRecordSet> SelectTemplate(ORKDB::CDBAccessor& accessor,
                                                           const std::u16string& id) {
  return accessor.QueryByStatement(kTemplateStatement, Equals(u"rtId", id));
}

/// A column of all rows that are left, "," between them; the error of the accessor where there are
/// no rows to read at all.
inline std::string Column(const ORKDB::CDBAccessor& accessor,
                          const std::unique_ptr<ORKDB::CDBRecordSet>& rows,
                          std::u16string_view column) {
  if (!rows) return "error " + std::to_string(accessor.errNumber);
  std::string all;
  std::u16string text;
  for (; !rows->EndOfRows(); rows->NextRow()) {
    if (!all.empty()) all += ',';
    all += U8(rows->TextColumn(text, column, u"?"));
  }
  return all;
}

inline std::string FieldsOf(ORKDB::CDBAccessor& accessor, const std::u16string& table) {
  return Column(accessor, SelectTable(accessor, table), u"fldName");
}
