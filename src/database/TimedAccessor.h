// What both kinds that come with the library do about time: one limit for all queries of a load,
// and one attempt within it at a server that fails.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "DataAccess.h"
#include "database/Job.h"

namespace ORKDB {

/// Until `BeginLoad` is called for the first time each query is a load by itself.
class TimedAccessor : public CDBAccessor {
 public:
  std::unique_ptr<CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                 const MxParams& params,
                                                 const std::u16string& reservedA,
                                                 std::int32_t reservedB,
                                                 std::int32_t reservedC) final;
  void BeginLoad() final;

 protected:
  /// `loadSeconds` of 0 and less stand for the usual limit.
  explicit TimedAccessor(std::int32_t loadSeconds);

  /// The query itself. Null with an error set when it failed.
  virtual std::unique_ptr<CDBRecordSet> Query(const std::u16string& statement,
                                              const MxParams& params) = 0;

  /// When the running query has to be over.
  Deadline End() const noexcept { return end_; }
  std::int32_t LoadSeconds() const noexcept { return loadSeconds_; }

  /// As `SetError`, for what every other query would meet too: the rest of the load fails with it.
  void SetServerError(std::int32_t number, std::u16string description);
  /// The error of a server that did not answer within so many seconds.
  void SetTimeout(std::int32_t number, std::int32_t seconds);
  /// An error of this library by the number of its text.
  void SetOwnError(std::int32_t message);
  /// Takes back what a first attempt left.
  void ForgetError() noexcept;

 private:
  struct ServerError {
    std::int32_t number = 0;
    std::u16string description;
  };

  std::int32_t loadSeconds_;
  bool isWithinLoad_ = false;
  Deadline end_;
  ServerError serverError_;  // of this load
};

}  // namespace ORKDB
