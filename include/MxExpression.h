// The rule engine: verify a rule, translate it to SQL, keep it in step with its tables.
//
//   ORKBASE::ConnectionSettings settings;
//   settings.server = u"sqlite:shop.db";
//   ORKBASE::MxExpression rules;
//   rules.Connect(settings);
//   std::u16string document, translated, where, having;
//   if (!rules.Verify(ORKBASE::kLogicDataType, u"Orders.Amount > 1", document))
//     return report(rules.errDescription());
//   try {
//     rules.GetSpec(document, ORKBASE::kSqlServerDs, translated, where, having, false);
//   } catch (const ORKBASE::Mx_Exception& refused) {  // the database has no form for it
//     report(refused.what());
//   }
//
// All texts are UTF-16 and end at their first zero where they become part of a document.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ConnectionSettings.h"
#include "MxErrorRecord.h"
#include "MxErrorState.h"
#include "MxRuleEnums.h"
#include "OrkExport.h"

namespace ORKBASE {

/// One rule engine with its dictionaries and its connection. A copy shares the loaded dictionaries
/// and the connection with its source, and has modes and errors of its own. What it loads itself is
/// its own; names that it changes and tables that it reads anew are changed for its source, and for
/// all copies, from their next call on.
///
/// One object serves one thread at a time. Separate objects are independent, copies too: each may
/// be used, copied and destroyed in a thread of its own while the others work. So to serve several
/// threads, prepare one engine and give each thread a copy. Copies that load at the same time wait
/// for each other, since the connection serves one query at a time; those that load nothing do not.
///
/// Operations that can fail reset the error first and leave number and text behind; `Compose`,
/// `AddIsNull`, `Connect` and the accessors leave it alone.
///
/// Exceptions. Every operation may throw `std::bad_alloc`, and those that load what a caller's own
/// kind of database throws. Beyond that `GetSpec` and `TranslateFor` throw `Mx_Exception` and
/// `std::out_of_range`, and `SetCAXDD` a `const char16_t*`, each as told there; nothing else
/// throws. The object stays valid.
class ORKRULE_EXPORT MxExpression : protected MxErrorState {
 public:
  MxExpression();
  MxExpression(const MxExpression& other);
  MxExpression& operator=(const MxExpression& other);
  ~MxExpression();

  std::int32_t errNumber() const noexcept { return ErrNumber(); }
  std::u16string errDescription() const { return ErrDescription(); }
  /// The last error as a record, from which number and text were made: message, arguments, place in
  /// the rule, cause. Valid until the next call.
  const MxErrorRecord& errRecord() const noexcept;

  /// Stores how to reach the metadata database. Nothing is opened before the first load, so what is
  /// wrong with the settings shows there.
  void Connect(const ConnectionSettings& settings);
  /// The same, field by field:
  /// - `server`: `sqlite:PATH`, `odbc:CONNECTION STRING`, a host, or what an own kind takes
  /// - `port`: 0 and less for the one that the driver takes by itself
  /// - `proxy`: empty, or five fields with "||~~||" between them: type (0 none), host, port and two
  ///   texts
  /// - `dbArgA`: the user
  /// - `dbArgB`: the database on the server
  /// - `dsType`: the database that `GetSpec` writes for, and the driver of a host
  /// - `flagA`: ask for an encrypted connection
  /// - `flagB`: ask for a read-only connection
  /// - `dbArgC`: the password
  /// A load may take `kDefaultLoadSeconds`.
  void Connect(const std::u16string& server, std::int32_t port, const std::u16string& proxy,
               const std::u16string& dbArgA, const std::u16string& dbArgB, ORKDB_DSType_ENUM dsType,
               bool flagA, bool flagB, const std::u16string& dbArgC);

  /// Loads a report template and the data tables of its fields. Returns false in every case:
  /// success is `errNumber() == 0`. The id is kept also when the load fails. A load that takes too
  /// long fails with message 6705; the error number is -1, or the database's own.
  bool SetRt(const std::u16string& id);
  /// Loads data tables (`T1,T2`), each once. Returns false in every case. Fails as `SetRt` does.
  bool SetDts(const std::u16string& tables);
  /// Takes the fields and enumerations of a CAD program (1, 2, 3, or another number) from an XML
  /// document. Returns false in every case. Throws a `const char16_t*` for a field whose data type
  /// is unknown; it lives as long as the library. The fields before it are then loaded.
  bool SetCAXDD(std::int32_t type, const std::u16string& document);

  /// Reads every data table and report template that this object has loaded anew, under the names
  /// of today (those of `ReplaceDtOrDfNames`), for a program that runs long and is to see a changed
  /// table. Copies see the new words too. Tables that were never loaded, the vocabulary and CAD
  /// documents are not read. True when all were read; otherwise the error is that of the load that
  /// failed, and all words are as they were.
  bool Refresh();

  /// Verifies a rule against an expected type and stores its document. False leaves `document` as
  /// it is. Types 2 and 8 accept a value of any type.
  bool Verify(MXRULE_DATATYPE type, const std::u16string& expression, std::u16string& document);

  /// Translates a document for the database of `Connect`, whatever `dsType` says, except that 3
  /// asks for Oracle; then as `TranslateFor`.
  bool GetSpec(std::u16string document, ORKDB_DSType_ENUM dsType, std::u16string& translated,
               std::u16string& a, std::u16string& b, bool twoParts);

  /// Translates a document for the database that is named, whatever `Connect` said, and composes
  /// it: into `a`, or, with `twoParts`, into `a` (what may stand in a plain filter) and `b` (what
  /// depends on a grouped function). In two-part form `a` and `b` are to be empty at the start;
  /// else `b` stays. False leaves all three texts and an error. A number that is no database of
  /// `RuleDialects()` is served like 0. Throws `Mx_Exception` for what the database cannot express,
  /// and `std::out_of_range` for a data field under `thisSet` whose SQL text is shorter than seven
  /// units and begins with a letter of "isnull(", such as `n.rcid`.
  bool TranslateFor(ORKDB_DSType_ENUM dialect, std::u16string document, std::u16string& translated,
                    std::u16string& a, std::u16string& b, bool twoParts);

  /// The composing half of `TranslateFor`, over a translated document. Always 0; a document that
  /// does not parse gives empty texts.
  std::int32_t Compose(const std::u16string& translated, std::u16string& out);
  std::int32_t Compose(const std::u16string& translated, std::u16string& a, std::u16string& b);

  /// Wraps an SQL text in "isnull(...)": type 1 with 0, types 2 and 8 with '' (key columns stay).
  void AddIsNull(MXRULE_DATATYPE type, std::u16string& expr);

  /// Cuts out of a rule all that depends on the given tables (`T1,T2`). An invalid rule stays as it
  /// is, with the error of `Verify`. A rule of which nothing is left becomes empty.
  void RemoveDt(std::u16string& expression, const std::u16string& tables, MXRULE_DATATYPE type);
  /// True when a token `table.field` of the text names one of the tables, in any case. The text
  /// need not be a valid rule.
  bool IsDtsInExp(const std::u16string& tables, const std::u16string& expression);
  /// Renames tables (`old:new,...`) and then fields (`table.old:new,...`) in the loaded
  /// dictionaries, as a whole or not at all. 0, or -1 with the error where a word would become
  /// longer than 1,000,000 units.
  std::int32_t ReplaceDtOrDfNames(const std::u16string& tableRenames,
                                  const std::u16string& fieldRenames);
  /// The rule text with the new names. Where these would make it longer than 1,000,000 units (and
  /// longer than it was), the text as it was, with error number -1.
  std::u16string ChangeExpWithNewDtDfNames(const std::u16string& tableRenames,
                                           const std::u16string& fieldRenames,
                                           const std::u16string& expression);

  /// The vocabulary for a rule editor: XML, `root` with one `item` a word, sorted by word. Made at
  /// construction, in the language of that moment.
  std::u16string GetDict_funcs();
  std::u16string GetDict_operators();
  std::u16string GetDict_sysVar();

  /// Name of the temporary table that a translated rule reads for words of this kind, as the last
  /// translation wrote it; before the first one, as one for the database of `Connect` would.
  std::u16string GetSysTabName(MXRULE_SYMBOL_TYPE symbolType, const std::u16string& text);

  /// 1: form fields are read from existing tables. Reaches the next translation.
  void set_formDataIn(std::int32_t value);
  std::int32_t get_formDataIn() const;
  /// Whether operands are wrapped in the is-null form. Reaches the next translation.
  void set_useIsNull(bool value);
  bool get_useIsNull() const;
  /// Id of the report template; becomes part of temporary table names.
  void set_rtId(const std::u16string& value);
  std::u16string get_rtId() const;
  /// False: the word before a field of the current record may be written but is not looked up.
  void set_thiscaseVarOn1RcId(bool value);
  bool get_thiscaseVarOn1RcId() const;

 private:
  friend struct EngineAccess;
  struct ORKRULE_LOCAL State;
  ORKRULE_LOCAL void Reset() noexcept;
  ORKRULE_LOCAL void Raise(MxErrorRecord error);
  std::unique_ptr<State> state_;
};

/// Index of the token (of `MxLexicalAnalyzer::GenerateOriginalTokens`) that the last `Verify`
/// refused, or -1 when it refused none or found the rule to end too early.
ORKRULE_EXPORT std::int32_t RefusedToken(const MxExpression& expression) noexcept;

}  // namespace ORKBASE
