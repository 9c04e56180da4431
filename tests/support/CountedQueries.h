// Counts what an engine asks of its metadata database.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "DataAccess.h"
#include "SampleDatabase.h"
#include "Utf8.h"

/// What reached a database: queries, and loads that share a limit of time.
struct AskedQueries {
  int queries = 0;
  int loads = 0;
  std::vector<std::string> statements;
  std::vector<std::string> parameters;  ///< of all queries in order, each as `name=value`
};

/// Hands every query on and writes it down.
class CountingAccessor : public ORKDB::CDBAccessor {
 public:
  CountingAccessor(std::unique_ptr<ORKDB::CDBAccessor> inner, std::shared_ptr<AskedQueries> asked)
      : inner_(std::move(inner)), asked_(std::move(asked)) {}

  std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                        const ORKDB::MxParams& params,
                                                        const std::u16string& /*reservedA*/,
                                                        std::int32_t /*reservedB*/,
                                                        std::int32_t /*reservedC*/) override {
    ++asked_->queries;
    asked_->statements.push_back(U8(statement));
    for (const ORKDB::MxParam& param : params.Params()) {
      asked_->parameters.push_back(U8(param.name) + U8(param.operation) + U8(param.value));
    }
    auto rows = inner_->QueryByStatement(statement, params);
    SetError(inner_->errNumber, inner_->ErrDescription());
    return rows;
  }
  void BeginLoad() override { ++asked_->loads; }

 private:
  std::unique_ptr<ORKDB::CDBAccessor> inner_;
  std::shared_ptr<AskedQueries> asked_;
};

/// For its lifetime brings the kind `counting:`, the accessors of SQLite files with what they are
/// asked written down. One at a time, and for connections of one thread.
class CountedQueries {
 public:
  CountedQueries() {
    Creator().RegisterKind(u"counting:", [asked = asked_](const ORKDB::AccessorRequest& request) {
      const ORKDB::MxSvrInfo server(u"sqlite:" + request.location, 0, u"", u"");
      return std::make_unique<CountingAccessor>(
          Creator().CreateAccessor(server, request.proxy, u"", request.dsType, false, true, u"",
                                   u""),
          asked);
    });
  }
  ~CountedQueries() { Creator().RegisterKind(u"counting:", {}); }
  CountedQueries(const CountedQueries&) = delete;
  CountedQueries& operator=(const CountedQueries&) = delete;

  /// What `Connect` takes.
  static std::u16string Server(const TempDatabase& database) {
    return U16("counting:" + database.Path());
  }

  /// Everything that was asked since this object was made, or since `Forget`.
  const AskedQueries& Asked() const { return *asked_; }
  void Forget() { *asked_ = {}; }

 private:
  static ORKDB::CDBAccessorCreator& Creator() { return *ORKDB::CDBAccessorCreator::instance(); }

  std::shared_ptr<AskedQueries> asked_ = std::make_shared<AskedQueries>();
};
