// The dictionary set, the one owner of metadata: everything that a word can mean, the way to the
// metadata database, and what was not found there.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DataAccess.h"
#include "MxErrorRecord.h"
#include "MxRuleEnums.h"
#include "dictionary/DictionaryMap.h"
#include "dictionary/MxDictionary.h"
#include "foundation/LastError.h"
#include "foundation/RenameList.h"
#include "foundation/WordSource.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

struct BaseVocabulary;

/// What the keys, and names, of dictionaries begin with that were read from the database.
inline constexpr std::u16string_view kDataTableMark = u"dt:";
inline constexpr std::u16string_view kTemplateMark = u"rt:";
/// What the keys of CAD documents begin with; the type follows.
inline constexpr std::u16string_view kCaxMark = u"cax:";

/// Named dictionaries in key order, which settles what wins when a word stands in several: "base",
/// "cax:" + CAX type, "dt:" + data table, "rt:" + report-template id. A copy shares dictionaries
/// and connection with its source and has keys of its own. One set serves one thread at a time,
/// copies may be in other threads: what one of them replaces, the others see when they next begin a
/// call; the connection serves one query at a time.
class MxDictionarys final : public WordSource {
 public:
  /// Holds the base vocabulary in a language.
  explicit MxDictionarys(Language language = CurrentLanguage());

  /// The error of the last operation that failed. One that succeeds leaves it.
  const MxErrorRecord& Error() const noexcept { return error_.Get(); }
  std::int32_t ErrNumber() const noexcept { return Error().number; }
  std::u16string ErrDescription() const;

  /// Stores how to reach the database; nothing is opened yet. The arguments are those of
  /// `MxExpression::Connect`.
  void Connect(const std::u16string& server, std::int32_t port, const ORKDB::MxProxyInfo& proxyInfo,
               const std::u16string& dbArgA, const std::u16string& dbArgB, ORKDB_DSType_ENUM dsType,
               bool flagA, bool flagB, const std::u16string& dbArgC,
               std::int32_t loadSeconds = kDefaultLoadSeconds);

  /// Begins a call of the engine: takes over what copies have changed, and forgets which tables
  /// were missing. Words that were found before may be gone. The loads of a call share one limit of
  /// time.
  void BeginCall();

  /// Tells two states apart: equal stamps of one set, or of a set and its copy, mean equal keys,
  /// contents and connection.
  struct Stamp {
    std::uint64_t own = 0;     ///< changed with every load, rename, refresh and connection
    std::uint64_t shared = 0;  ///< changed by what copies replace
    friend bool operator==(const Stamp&, const Stamp&) = default;
  };
  Stamp StampNow() const noexcept { return {stamp_, dictionaries_.SharedVersion()}; }
  /// The same, but loads that found nothing leave it: only what words are found counts.
  Stamp ContentNow() const noexcept { return {content_, dictionaries_.SharedVersion()}; }

  /// For a copy that serves calls beside its source: what would ask the database fails from now on,
  /// leaves no trace, and sets `asked`. Copies of this copy do the same.
  void ForbidAsking(std::shared_ptr<bool> asked) noexcept { forbidden_ = std::move(asked); }

  /// For a copy that serves questions beside the engine: gives every word the display form that it
  /// would have if all had been built and loaded under a language. What was read stays.
  void SpeakLanguage(Language language);
  /// From now on `BeginCall` keeps in mind which tables there are not, up to a limit.
  void RememberMissing() noexcept { remembersMissing_ = true; }

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
  /// Reads every loaded data table and report template anew, under its present name; see
  /// `MxExpression::Refresh`. 0, or the number of the load that failed, and nothing has changed.
  std::int32_t Refresh();

  /// What the database has, without loading it: the name of each data table, once, and the words of
  /// one table in the database's order. False, with the error, where it does not answer, or where
  /// there is no such table.
  bool ReadTableNames(std::vector<std::u16string>& names);
  bool ReadFields(std::u16string_view table, std::vector<MxWord>& fields);

  /// The word of the first dictionary that has it, or null. Valid until the next call begins,
  /// unless its dictionary is removed or replaced before.
  const MxWord* FindByDesc(std::u16string_view text) const override;
  const MxWord* FindByPrimary(std::u16string_view text) const;
  /// `LoadDataTable`, asking the database but once in a call for a table that cannot be loaded.
  bool BindTable(std::u16string_view name, MxErrorRecord& error) override;

  void Remove(std::u16string_view key) {
    Changed();
    dictionaries_.Remove(key);
  }
  const MxDictionary* Find(std::u16string_view key) const { return dictionaries_.Find(key); }
  void Enter(std::u16string key, std::shared_ptr<const MxDictionary> dictionary);
  const DictionaryMap::Entries& dictionaries() const noexcept { return dictionaries_.All(); }

  /// Renaming in the loaded dictionaries, tables first: see `MxExpression::ReplaceDtOrDfNames`. 0,
  /// or -1 with the error where a word becomes too long. All or nothing, also when memory runs out.
  std::int32_t ReplaceNames(std::u16string_view tables, std::u16string_view fields);
  std::int32_t ReplaceDtNames(std::u16string_view list) { return ReplaceNames(list, {}); }
  std::int32_t ReplaceDfNames(std::u16string_view list) { return ReplaceNames({}, list); }
  /// The name between the identifier quotes of the connected database.
  std::u16string QuoteName(std::u16string_view name) const;

  const std::u16string& operatorsDoc() const noexcept;
  const std::u16string& funcsDoc() const noexcept;
  const std::u16string& sysVarDoc() const noexcept;

 private:
  using Dictionary = std::shared_ptr<MxDictionary>;
  struct Connection;

  std::int32_t Fail(MxErrorRecord error);
  /// The rows that `ask` gets of the accessor, or null with the error.
  template <class Ask>
  std::unique_ptr<ORKDB::CDBRecordSet> Query(Ask ask);
  /// Read a dictionary; null with the error. `tables` receives the names of the template's tables.
  Dictionary ReadReportTemplate(std::u16string_view id, Language language, std::u16string& tables);
  Dictionary ReadDataTable(std::u16string_view name);
  /// The rows of a data table, at least one; null with the error.
  std::unique_ptr<ORKDB::CDBRecordSet> DataTableRows(std::u16string_view name);
  /// Puts a newly read content into each entry that was read from the database.
  bool ReadAnew(DictionaryMap::Entries& entries);
  /// False where a word becomes too long.
  bool RenameFields(DictionaryMap::Change& change, std::u16string_view list) const;

  /// Makes the stamp another; `content`: that of the content too.
  void Changed(bool content = true) noexcept;
  /// Whether the database may not be asked; it is noted that a call wants to.
  bool MustNotAsk() noexcept;
  void ForgetMissing();

  LastError error_;
  std::uint64_t stamp_ = 0;
  std::uint64_t content_ = 0;
  std::shared_ptr<bool> forbidden_;  ///< null where the database may be asked
  bool remembersMissing_ = false;
  std::shared_ptr<Connection> connection_;
  std::uint64_t load_ = 0;  ///< number that the connection gave to this call's load; 0 for none yet
  std::shared_ptr<const BaseVocabulary> base_;
  DictionaryMap dictionaries_;
  /// Why tables could not be loaded in the present call, by the name that was asked for.
  std::map<std::u16string, MxErrorRecord, std::less<>> missing_;
  NameQuotes quotes_;
};

/// Name of the CAD program of a CAX type, as enumeration words begin with it.
std::u16string_view CaxProgramName(std::int32_t caxType) noexcept;

}  // namespace ORKBASE
