// Reading report templates and data tables from the metadata views.
#include <mutex>
#include <unordered_set>
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
const std::u16string kTableNamesStatement = u"select distinct dtName from mx_v_datafield";
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

/// kept: the names go into the template of the display form, so a "%" in one is a directive.
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

/// A comma list that takes each name once. A name that holds commas is not found again, but each
/// of its pieces is.
class NameList {
 public:
  void Add(const std::u16string& name) {
    if (name.empty() || pieces_.contains(name)) return;
    if (!text.empty()) text += u',';
    text += name;
    for (const std::u16string_view piece : SplitText(name, u",")) pieces_.emplace(piece);
  }

  std::u16string text;

 private:
  std::unordered_set<std::u16string> pieces_;
};

std::u16string ReadTemplateRows(ORKDB::CDBRecordSet& rows, MxDictionary& dictionary) {
  const std::u16string prefix = LoadMessage(kMsgThisReport, dictionary.language);
  NameList tables;
  for (; !rows.EndOfRows(); rows.NextRow()) {
    const MxWord word = ReadFormField(rows, prefix);
    dictionary.AddEntry(word);
    tables.Add(word.dtName);
  }
  return std::move(tables.text);
}

std::u16string KeyOf(std::u16string_view mark, std::u16string_view name) {
  return std::u16string(mark).append(name);
}

/// The error of a query that failed.
MxErrorRecord ErrorOf(const ORKDB::CDBAccessor& accessor) {
  MxErrorRecord error;
  error.cause = kDatabaseCause;
  error.number = accessor.errNumber != 0 ? accessor.errNumber : kOwnError;
  error.text = accessor.ErrDescription();
  return error;
}

}  // namespace

/// The accessor that copies share. It serves one query at a time; its rows are then the asker's
/// own.
struct MxDictionarys::Connection {
  std::mutex mutex;
  std::unique_ptr<ORKDB::CDBAccessor> accessor;
  std::uint64_t load = 0;  ///< number of the load that the last query belonged to
};

void MxDictionarys::Connect(const std::u16string& server, std::int32_t port,
                            const ORKDB::MxProxyInfo& proxyInfo, const std::u16string& dbArgA,
                            const std::u16string& dbArgB, ORKDB_DSType_ENUM dsType, bool flagA,
                            bool flagB, const std::u16string& dbArgC, std::int32_t loadSeconds) {
  Changed();
  quotes_.Follow(dsType);
  const ORKDB::MxSvrInfo serverInfo(server, port, dbArgA, u"");
  auto connection = std::make_shared<Connection>();
  connection->accessor = ORKDB::CDBAccessorCreator::instance()->CreateAccessor(
      {serverInfo, u"", proxyInfo, dbArgB, dsType, flagA, flagB, dbArgC, u"", loadSeconds});
  connection_ = std::move(connection);
  load_ = 0;
}

template <class Ask>
std::unique_ptr<ORKDB::CDBRecordSet> MxDictionarys::Query(Ask ask) {
  if (!connection_ || !connection_->accessor || MustNotAsk()) {
    Fail(MakeError(kRequestCause, kMsgNoConnection));
    return nullptr;
  }
  const std::lock_guard lock(connection_->mutex);
  ORKDB::CDBAccessor& accessor = *connection_->accessor;
  if (load_ == 0 || load_ != connection_->load) {  // where copies take turns, each begins anew
    accessor.BeginLoad();
    load_ = ++connection_->load;
  }
  std::unique_ptr<ORKDB::CDBRecordSet> rows = ask(accessor);
  if (rows && accessor.errNumber == 0) return rows;
  Fail(ErrorOf(accessor));
  return nullptr;
}

MxDictionarys::Dictionary MxDictionarys::ReadReportTemplate(std::u16string_view id,
                                                            Language language,
                                                            std::u16string& tables) {
  const auto rows = Query([id](ORKDB::CDBAccessor& accessor) {
    return accessor.QueryByStatement(kTemplateStatement, OneParam(u"rtId", id));
  });
  if (!rows) return nullptr;
  if (rows->EndOfRows()) {
    Fail(MakeError(kRequestCause, kMsgNoReportTemplate, {id}));
    return nullptr;
  }
  auto dictionary = std::make_shared<MxDictionary>();
  dictionary->name = KeyOf(kTemplateMark, id);
  dictionary->language = language;
  tables = ReadTemplateRows(*rows, *dictionary);
  return dictionary;
}

std::unique_ptr<ORKDB::CDBRecordSet> MxDictionarys::DataTableRows(std::u16string_view name) {
  auto rows = Query([name](ORKDB::CDBAccessor& accessor) {
    return accessor.SelectByTable(kDataFieldView, kDataFieldColumns, OneParam(u"dtName", name));
  });
  if (!rows || !rows->EndOfRows()) return rows;
  Fail(MakeError(kRequestCause, kMsgNoDataTable, {name}));
  return nullptr;
}

MxDictionarys::Dictionary MxDictionarys::ReadDataTable(std::u16string_view name) {
  const auto rows = DataTableRows(name);
  if (!rows) return nullptr;
  auto dictionary = std::make_shared<MxDictionary>();
  dictionary->name = KeyOf(kDataTableMark, name);
  for (; !rows->EndOfRows(); rows->NextRow()) dictionary->AddEntry(ReadDataField(*rows));
  return dictionary;
}

bool MxDictionarys::ReadTableNames(std::vector<std::u16string>& names) {
  const auto rows = Query([](ORKDB::CDBAccessor& accessor) {
    return accessor.QueryByStatement(kTableNamesStatement, ORKDB::MxParams(false));
  });
  if (!rows) return false;
  std::u16string name;
  for (; !rows->EndOfRows(); rows->NextRow()) {
    names.push_back(rows->TextColumn(name, u"dtName", u""));
  }
  return true;
}

bool MxDictionarys::ReadFields(std::u16string_view table, std::vector<MxWord>& fields) {
  const auto rows = DataTableRows(table);
  if (!rows) return false;
  for (; !rows->EndOfRows(); rows->NextRow()) fields.push_back(ReadDataField(*rows));
  return true;
}

std::int32_t MxDictionarys::LoadReportTemplate(const std::u16string& id, Language language) {
  Remove(KeyOf(kTemplateMark, id));
  std::u16string tables;
  const Dictionary dictionary = ReadReportTemplate(id, language, tables);
  if (!dictionary) return ErrNumber();
  Enter(dictionary->name, dictionary);
  // kept: an error of a data table stays in this object: the lexer meets the missing table later.
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
  if (Find(KeyOf(kDataTableMark, name))) return 0;
  if (connection_ && MustNotAsk()) return Fail(MakeError(kRequestCause, kMsgNoConnection));
  Changed(false);  // also where there is none: who asks anew wants the answer of now
  const Dictionary dictionary = ReadDataTable(name);
  if (!dictionary) return ErrNumber();
  Enter(dictionary->name, dictionary);
  return 0;
}

bool MxDictionarys::ReadAnew(DictionaryMap::Entries& entries) {
  std::u16string tables;
  for (auto& [key, entry] : entries) {
    const std::u16string_view name = entry->name;
    if (name.starts_with(kTemplateMark)) {
      entry.content =
          ReadReportTemplate(name.substr(kTemplateMark.size()), entry->language, tables);
    } else if (name.starts_with(kDataTableMark)) {
      entry.content = ReadDataTable(name.substr(kDataTableMark.size()));
    }
    if (!entry.content) return false;
  }
  return true;
}

std::int32_t MxDictionarys::Refresh() {
  Changed();
  for (;;) {
    dictionaries_.Renew();
    DictionaryMap::Change change = dictionaries_.BeginChange();
    if (!ReadAnew(change.entries)) return ErrNumber();
    if (dictionaries_.Commit(change)) return 0;
  }
}

}  // namespace ORKBASE
