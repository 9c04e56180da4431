// Reading report templates and data tables from the metadata views.
#include <utility>

#include "dictionary/MxDictionarys.h"
#include "foundation/Format.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/ErrorTexts.h"
#include "platform/MessageTexts.h"

namespace ORKBASE {
namespace {

const std::u16string kTemplateStatement =
    u"select t.rttId, f.rtfId, t.dtName, f.fldName, f.realName as fldRealName, f.baseType,  "
    u"t.dtId, f.fldId, t.realName as tabRealName, t.refName as tabRefName, t.style,  "
    u"t.state as created  from mx_v_rtfs f,Mx_v_Rtts t  where t.rtId=? and f.rttId=t.rttId";
const std::u16string kDataFieldView = u"mx_v_datafield";
const std::u16string kDataFieldColumns =
    u"dtName, fldName, fldRealName, baseType, dtId, fldId, tabRealName, tabRefName, state";

ORKDB::MxParams OneParam(const std::u16string& name, std::u16string_view value) {
  ORKDB::MxParams params(false);
  params.AddParam(0, name, std::u16string(value), false, false, u"=");
  return params;
}

/// The columns that both views have.
MxWord ReadField(ORKDB::CDBRecordSet& rows) {
  MxWord word;
  rows.TextColumn(word.dtName, u"dtName", u"");
  rows.TextColumn(word.tabRealName, u"tabRealName", u"");
  rows.TextColumn(word.fldName, u"fldName", u"");
  rows.TextColumn(word.fldRealName, u"fldRealName", u"");
  rows.TextColumn(word.tabRefName, u"tabRefName", u"");
  word.baseType = rows.IntColumn(u"baseType", 0);
  if (word.baseType == kMemoDataType) word.baseType = kStrDataType;
  word.dtId = rows.IntColumn(u"dtId", 0);
  word.fldId = rows.IntColumn(u"fldId", 0);
  word.dataType = word.baseType;
  return word;
}

std::u16string QualifiedField(const MxWord& word) {
  return word.dtName + u"." + word.fldName;
}

MxWord ReadDataField(ORKDB::CDBRecordSet& rows) {
  MxWord word = ReadField(rows);
  word.created = rows.IntColumn(u"state", 0) != 0;
  word.symbol = kDataFieldSymbol;
  word.primary = word.outDesc = QualifiedField(word);
  return word;
}

/// The names go into the template of the display form, so a "%" in one of them is a directive.
MxWord ReadFormField(ORKDB::CDBRecordSet& rows, std::u16string_view prefix) {
  MxWord word = ReadField(rows);
  word.rttId = rows.IntColumn(u"rttId", 0);
  word.rtfId = rows.IntColumn(u"rtfId", 0);
  word.detailTable = rows.IntColumn(u"style", 0) != 1;
  word.created = rows.IntColumn(u"created", 0) == 1;
  word.symbol = kFormFieldSymbol;
  word.primary = u"thisReport." + QualifiedField(word);
  word.outDesc = Format(u"%s." + QualifiedField(word), {prefix});
  return word;
}

void AddName(std::u16string& list, const std::u16string& name) {
  if (name.empty() || IsListItem(list, name)) return;
  if (!list.empty()) list += u',';
  list += name;
}

}  // namespace

void MxDictionarys::Connect(const std::u16string& server, std::int32_t port,
                            const ORKDB::MxProxyInfo& proxyInfo, const std::u16string& dbArgA,
                            const std::u16string& dbArgB, ORKDB_DSType_ENUM dsType, bool flagA,
                            bool flagB, const std::u16string& dbArgC, std::int32_t loadSeconds) {
  if (dsType != kSqlServerDs) quoteOpen_ = quoteClose_ = u"\"";
  const ORKDB::MxSvrInfo serverInfo(server, port, dbArgA, u"");
  accessor_ = ORKDB::CDBAccessorCreator::instance()->CreateAccessor(
      {serverInfo, u"", proxyInfo, dbArgB, dsType, flagA, flagB, dbArgC, u"", loadSeconds});
}

void MxDictionarys::BeginCall() {
  if (accessor_) accessor_->BeginLoad();
}

std::int32_t MxDictionarys::FailedQuery() {
  if (!accessor_) return Fail(MakeError(kRequestCause, kMsgNoConnection));
  MxErrorRecord error;
  error.cause = kDatabaseCause;
  error.number = accessor_->errNumber != 0 ? accessor_->errNumber : kOwnError;
  error.text = accessor_->ErrDescription();
  return Fail(std::move(error));
}

std::u16string MxDictionarys::ReadTemplateRows(ORKDB::CDBRecordSet& rows, MxDictionary& dictionary,
                                               Language language) {
  const std::u16string prefix = LoadMessage(kMsgThisReport, language);
  std::u16string tables;
  for (; !rows.EndOfRows(); rows.NextRow()) {
    const MxWord word = ReadFormField(rows, prefix);
    dictionary.AddEntry(word);
    AddName(tables, word.dtName);
  }
  return tables;
}

std::int32_t MxDictionarys::LoadReportTemplate(const std::u16string& id, Language language) {
  std::u16string key = u"rt:" + id;
  Remove(key);
  const auto rows =
      accessor_ ? accessor_->QueryByStatement(kTemplateStatement, OneParam(u"rtId", id)) : nullptr;
  if (!rows || accessor_->errNumber != 0) return FailedQuery();
  if (rows->EndOfRows()) return Fail(MakeError(kRequestCause, kMsgNoReportTemplate, {id}));

  const auto dictionary = std::make_shared<MxDictionary>();
  dictionary->name = key;
  Enter(std::move(key), dictionary);
  const std::u16string tables = ReadTemplateRows(*rows, *dictionary, language);
  // An error of a data table stays in this object: the lexer meets the missing table later.
  if (!tables.empty()) LoadDataTables(tables);
  return 0;
}

std::int32_t MxDictionarys::LoadDataTables(std::u16string_view list) {
  for (const std::u16string_view name : SplitText(list, u",")) {
    if (const std::int32_t number = LoadDataTable(name); number != 0) return number;
  }
  return 0;
}

std::int32_t MxDictionarys::LoadDataTable(std::u16string_view name) {
  std::u16string key = std::u16string(u"dt:").append(name);
  if (Find(key)) return 0;
  const auto rows = accessor_ ? accessor_->SelectByTable(kDataFieldView, kDataFieldColumns,
                                                         OneParam(u"dtName", name))
                              : nullptr;
  if (!rows || accessor_->errNumber != 0) return FailedQuery();
  if (rows->EndOfRows()) return Fail(MakeError(kRequestCause, kMsgNoDataTable, {name}));

  auto dictionary = std::make_shared<MxDictionary>();
  dictionary->name = key;
  for (; !rows->EndOfRows(); rows->NextRow()) dictionary->AddEntry(ReadDataField(*rows));
  Enter(std::move(key), std::move(dictionary));
  return 0;
}

}  // namespace ORKBASE
