// How the engine reads its metadata views: connections, queries, record sets, and the kinds of
// database behind them.
//
// Role. `CDBAccessorCreator` makes an accessor out of a server text, `CDBAccessor` runs a query,
// `CDBRecordSet` walks its rows. Two kinds come with the library:
//
//   sqlite:PATH              the SQLite file at PATH, read-only, never created
//   odbc:CONNECTION STRING   an ODBC connection string; user and password are added when given
//   any other text           the host of a database server, through the ODBC driver of its type
//
// A caller with another source registers a kind of his own by the prefix of its server texts.
//
// Threads. The creator may be used by all threads at once. An accessor, and a record set, serves
// one thread at a time; a record set does not need its accessor any more.
//
// Errors. Nothing here throws. A query sets `errNumber` (0: it worked) and the text of
// `ErrDescription`, and returns null when it failed. The number is the database's own, or -1 where
// it has none. Making an accessor never fails and opens nothing: what is wrong with the server
// text, the proxy or the server shows at each query. No text ever shows a password.
//
//   ORKDB::MxSvrInfo server(u"sqlite:shop.db", 0, u"", u"");
//   auto accessor = ORKDB::CDBAccessorCreator::instance()->CreateAccessor(
//       server, ORKDB::MxProxyInfo(), u"", ORKBASE::kSqlServerDs, false, true, u"", u"");
//   ORKDB::MxParams params(false);
//   params.AddParam(0, u"dtName", u"Orders", false, false, u"=");
//   auto rows = accessor->SelectByTable(u"mx_v_datafield", u"fldName, baseType", params);
//   if (accessor->errNumber != 0) return Report(accessor->ErrDescription());
//   std::u16string name;
//   for (; !rows->EndOfRows(); rows->NextRow())
//     Use(rows->TextColumn(name, u"fldName", u""), rows->IntColumn(u"baseType", 0));
//
// All texts are UTF-16 and end at their first zero.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ConnectionSettings.h"
#include "MxRuleEnums.h"
#include "OrkExport.h"

namespace ORKBASE {

/// Kind of a proxy. Only "none" has a fixed meaning; other numbers mean what a kind of database
/// makes of them, and the kinds of this library take none.
enum ORKBASE_ProxyType_ENUM : std::int32_t {
  kNoProxy = 0,
};

}  // namespace ORKBASE

namespace ORKDB {

/// Where a database is and who asks.
class ORKRULE_EXPORT MxSvrInfo {
 public:
  MxSvrInfo(const std::u16string& server, std::int32_t port, const std::u16string& user,
            const std::u16string& reserved);
  MxSvrInfo(const MxSvrInfo& other);
  MxSvrInfo& operator=(const MxSvrInfo& other);
  ~MxSvrInfo();

  const std::u16string& Server() const noexcept { return server_; }
  /// 0 and less ask for the port that the driver takes by itself.
  std::int32_t Port() const noexcept { return port_; }
  const std::u16string& User() const noexcept { return user_; }
  /// Always empty when the engine asks.
  const std::u16string& Reserved() const noexcept { return reserved_; }

 private:
  std::u16string server_;
  std::int32_t port_;
  std::u16string user_;
  std::u16string reserved_;
};

/// A proxy on the way to the database; none until `init` names one.
class ORKRULE_EXPORT MxProxyInfo {
 public:
  MxProxyInfo();
  MxProxyInfo(const MxProxyInfo& other);
  MxProxyInfo& operator=(const MxProxyInfo& other);
  ~MxProxyInfo();

  void init(ORKBASE::ORKBASE_ProxyType_ENUM type, const std::u16string& host, std::int32_t port,
            const std::u16string& textA, const std::u16string& textB);

  ORKBASE::ORKBASE_ProxyType_ENUM Type() const noexcept { return type_; }
  const std::u16string& Host() const noexcept { return host_; }
  std::int32_t Port() const noexcept { return port_; }
  const std::u16string& TextA() const noexcept { return textA_; }
  const std::u16string& TextB() const noexcept { return textB_; }

 private:
  ORKBASE::ORKBASE_ProxyType_ENUM type_ = ORKBASE::kNoProxy;
  std::u16string host_;
  std::int32_t port_ = 0;
  std::u16string textA_;
  std::u16string textB_;
};

/// One value of a query: `name OP value`.
struct MxParam {
  std::int32_t kind = 0;     ///< reserved, 0
  std::u16string name;       ///< column; ASCII
  std::u16string value;      ///< any text; it is bound, never pasted into a statement
  bool flagA = false;        ///< reserved, false
  bool flagB = false;        ///< reserved, false
  std::u16string operation;  ///< "=", "<>", "<", "<=", ">", ">=" or "like"
};

/// The values of a query, in the order of the `?` of its statement.
class ORKRULE_EXPORT MxParams {
 public:
  /// `reserved` is false.
  explicit MxParams(bool reserved);
  MxParams(const MxParams& other);
  MxParams& operator=(const MxParams& other);
  virtual ~MxParams();

  void AddParam(std::int32_t kind, const std::u16string& name, const std::u16string& value,
                bool flagA, bool flagB, const std::u16string& operation);

  const std::vector<MxParam>& Params() const noexcept { return params_; }
  bool Reserved() const noexcept { return reserved_; }

 private:
  std::vector<MxParam> params_;
  bool reserved_;
};

/// The rows of a query, in the database's order, from the first one on.
class ORKRULE_EXPORT CDBRecordSet {
 public:
  virtual ~CDBRecordSet();

  /// Reads a column of the current row into `out` and returns `out`. Columns are found by name
  /// without regard to case. A NULL, a column that is not there, and the end of the rows give
  /// `defaultText`.
  virtual std::u16string& TextColumn(std::u16string& out, std::u16string_view column,
                                     std::u16string_view defaultText) = 0;
  /// Reads a column of the current row as a number, held to 32 bits; text that begins with no
  /// number is 0. `defaultValue` where `TextColumn` gives its default.
  virtual std::int32_t IntColumn(std::u16string_view column, std::int32_t defaultValue) = 0;
  virtual bool EndOfRows() const = 0;
  /// Nothing happens at the end.
  virtual void NextRow() = 0;

 protected:
  CDBRecordSet();
  CDBRecordSet(const CDBRecordSet&) = delete;
  CDBRecordSet& operator=(const CDBRecordSet&) = delete;
};

/// One connection. It opens at the first query, and once more at a query that finds it lost.
/// An own kind has to supply `QueryByStatement` alone. The library's own kinds end a query that
/// does not fit into the time of its load, and ask a server that failed only once in a load.
class ORKRULE_EXPORT CDBAccessor {
 public:
  virtual ~CDBAccessor();

  /// Text of the last error, empty after a query that worked.
  const std::u16string& ErrDescription() const noexcept { return errDescription_; }

  /// Reads `columns` (`a, b, c`) of the rows of a table or view whose columns meet all of `params`.
  /// Table, columns and names of parameters are plain ASCII names; anything else is an error.
  /// The operation as it is here writes the statement and runs `QueryByStatement`. The arguments
  /// behind `params` are reserved: empty and 0.
  virtual std::unique_ptr<CDBRecordSet> SelectByTable(
      const std::u16string& table, const std::u16string& columns, const MxParams& params,
      const std::u16string& reservedA = {}, const std::u16string& reservedB = {},
      const std::u16string& reservedC = {}, std::int32_t reservedD = 0, std::int32_t reservedE = 0,
      std::int32_t reservedF = 0);

  /// Runs one ASCII statement with a `?` for each of `params`, in their order; their names and
  /// operations do not count here. Null when it failed. The arguments behind `params` are reserved.
  virtual std::unique_ptr<CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                         const MxParams& params,
                                                         const std::u16string& reservedA = {},
                                                         std::int32_t reservedB = 0,
                                                         std::int32_t reservedC = 0) = 0;

  /// Says that the queries from here on, until the next call of this, belong to one load: what an
  /// accessor limits or remembers for the length of a load begins anew. Does nothing as it is here.
  virtual void BeginLoad();

  std::int32_t errNumber = 0;  ///< of the last query: 0, the database's number, or -1

 protected:
  CDBAccessor();
  CDBAccessor(const CDBAccessor&) = delete;
  CDBAccessor& operator=(const CDBAccessor&) = delete;

  void SetError(std::int32_t number, std::u16string description);
  void ResetError() noexcept;

 private:
  std::u16string errDescription_;
};

/// All that `CreateAccessor` was told: what the factory of a kind works with.
struct AccessorRequest {
  MxSvrInfo server;         ///< with the whole server text, prefix included
  std::u16string location;  ///< the server text behind the prefix of the kind
  MxProxyInfo proxy;
  std::u16string database;
  ORKBASE::ORKDB_DSType_ENUM dsType = ORKBASE::kSqlServerDs;
  bool encrypted = false;  ///< the connection is to be encrypted
  bool readOnly = false;   ///< the connection is to be read-only
  std::u16string password;
  std::u16string reserved;
  /// Limit for the queries of one load together; 0 and less stand for the usual one. A kind may do
  /// without.
  std::int32_t loadSeconds = ORKBASE::kDefaultLoadSeconds;
};

/// Makes an accessor of a kind. It opens no connection yet and does not throw. A kind that cannot
/// use the proxy of the request makes an accessor whose queries fail.
using AccessorFactory = std::function<std::unique_ptr<CDBAccessor>(const AccessorRequest&)>;

/// The kinds of database, and the one place where accessors are made.
class ORKRULE_EXPORT CDBAccessorCreator {
 public:
  /// The single creator. It lives as long as the process.
  static CDBAccessorCreator* instance();

  /// Makes an accessor of the kind whose prefix the server text begins with; of several, the
  /// longest. Never null. An accessor for what no kind serves fails each query. Its loads have the
  /// usual limit of time.
  std::unique_ptr<CDBAccessor> CreateAccessor(const MxSvrInfo& server, const MxProxyInfo& proxy,
                                              const std::u16string& database,
                                              ORKBASE::ORKDB_DSType_ENUM dsType, bool encrypted,
                                              bool readOnly, const std::u16string& password,
                                              const std::u16string& reserved);

  /// The same for a request with everything in it but its `location`, which is found here.
  std::unique_ptr<CDBAccessor> CreateAccessor(AccessorRequest request);

  /// Adds a kind for server texts that begin with `prefix` (such as `u"memory:"`), in any case. A
  /// prefix that is there already, also one of the library's own, gets the new factory; the empty
  /// prefix stands for every other text. An empty factory takes the kind away.
  void RegisterKind(const std::u16string& prefix, AccessorFactory factory);

 private:
  CDBAccessorCreator();
  ~CDBAccessorCreator();

  struct Kinds;
  std::unique_ptr<Kinds> kinds_;
};

}  // namespace ORKDB
