// The dictionary set: everything that a word can mean, and the way to the metadata database.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "DataAccess.h"
#include "MxErrorRecord.h"
#include "MxRuleEnums.h"
#include "dictionary/MxDictionary.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

class MxXmlDoc;
struct BaseVocabulary;

/// Named dictionaries in key order, which settles what wins when a word stands in several: "base",
/// "cax:" + CAX type, "dt:" + data table, "rt:" + report-template id. A copy shares dictionaries
/// and connection with its source and has a map of its own. Used by one thread at a time.
class MxDictionarys {
 public:
  using Map = std::map<std::u16string, std::shared_ptr<MxDictionary>, std::less<>>;

  /// Holds the base vocabulary in a language.
  explicit MxDictionarys(Language language = CurrentLanguage());

  /// The error of the last load that failed. A load that succeeds leaves it.
  const MxErrorRecord& Error() const noexcept { return error_; }
  std::int32_t ErrNumber() const noexcept { return error_.number; }
  std::u16string ErrDescription() const;

  /// Stores how to reach the database; nothing is opened yet. The arguments are those of
  /// `MxExpression::Connect`.
  void Connect(const std::u16string& server, std::int32_t port, const ORKDB::MxProxyInfo& proxyInfo,
               const std::u16string& dbArgA, const std::u16string& dbArgB, ORKDB_DSType_ENUM dsType,
               bool flagA, bool flagB, const std::u16string& dbArgC,
               std::int32_t loadSeconds = kDefaultLoadSeconds);

  /// Begins a call of the facade that may load: its loads share one limit of time.
  void BeginCall();

  /// The loads return 0, or the number that they leave as error. A template is always read anew and
  /// brings its data tables along; a data table is read once. Display forms of form fields and of
  /// CAD words begin with a word of the language.
  std::int32_t LoadReportTemplate(const std::u16string& id, Language language = CurrentLanguage());
  std::int32_t LoadDataTables(std::u16string_view list);
  std::int32_t LoadDataTable(std::u16string_view name);
  /// Throws a `const char16_t*` for a field of unknown data type; the dictionary then stands with
  /// the words read so far.
  std::int32_t LoadCax(std::int32_t type, const std::u16string& document,
                       Language language = CurrentLanguage());

  /// The word of the first dictionary that has it, or null. Valid until that dictionary changes.
  const MxWord* FindByDesc(std::u16string_view text) const;
  const MxWord* FindByPrimary(std::u16string_view text) const;
  bool FindWord(std::u16string_view text, bool byPrimary, MxWord& out) const;

  void Remove(std::u16string_view key);
  MxDictionary* Find(std::u16string_view key) const;
  void Enter(std::u16string key, std::shared_ptr<MxDictionary> dictionary);
  const Map& dictionaries() const noexcept { return dictionaries_; }

  /// Renaming in the loaded dictionaries: see `MxExpression::ReplaceDtOrDfNames`. Always 0.
  std::int32_t ReplaceDtNames(std::u16string_view list);
  std::int32_t ReplaceDfNames(std::u16string_view list);
  /// The name between the identifier quotes of the connected database.
  std::u16string QuoteName(std::u16string_view name) const;

  const std::u16string& operatorsDoc() const noexcept;
  const std::u16string& funcsDoc() const noexcept;
  const std::u16string& sysVarDoc() const noexcept;

 private:
  std::int32_t Fail(MxErrorRecord error);
  /// The error of a query that failed, or one of our own where there is no connection.
  std::int32_t FailedQuery();
  static std::u16string ReadTemplateRows(ORKDB::CDBRecordSet& rows, MxDictionary& dictionary,
                                         Language language);

  MxErrorRecord error_;
  std::shared_ptr<ORKDB::CDBAccessor> accessor_;
  std::shared_ptr<const BaseVocabulary> base_;
  Map dictionaries_;
  std::u16string_view quoteOpen_ = u"[";
  std::u16string_view quoteClose_ = u"]";
};

/// Name of the CAD program of a CAX type, as enumeration words begin with it.
std::u16string_view CaxProgramName(std::int32_t caxType) noexcept;

}  // namespace ORKBASE
