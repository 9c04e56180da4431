// The limit of a load, and the memory of a server that failed in it.
#include "database/TimedAccessor.h"

#include "foundation/Format.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"

#include <utility>

namespace ORKDB {

TimedAccessor::TimedAccessor(std::int32_t loadSeconds)
    : loadSeconds_(loadSeconds > 0 ? loadSeconds : ORKBASE::kDefaultLoadSeconds) {}

void TimedAccessor::BeginLoad() {
  isWithinLoad_ = true;
  end_ = Clock::now() + std::chrono::seconds(loadSeconds_);
  serverError_ = {};
}

std::unique_ptr<CDBRecordSet> TimedAccessor::QueryByStatement(const std::u16string& statement,
                                                              const MxParams& params,
                                                              const std::u16string& /*reservedA*/,
                                                              std::int32_t /*reservedB*/,
                                                              std::int32_t /*reservedC*/) {
  if (isWithinLoad_ && serverError_.number != 0) {
    SetError(serverError_.number, serverError_.description);
    return nullptr;
  }
  ForgetError();
  if (!isWithinLoad_) end_ = Clock::now() + std::chrono::seconds(loadSeconds_);
  if (Clock::now() < end_) return Query(statement, params);
  SetTimeout(-1, loadSeconds_);
  return nullptr;
}

void TimedAccessor::SetServerError(std::int32_t number, std::u16string description) {
  serverError_ = {number, description};
  SetError(number, std::move(description));
}

void TimedAccessor::SetTimeout(std::int32_t number, std::int32_t seconds) {
  SetServerError(number, ORKBASE::Format(ORKBASE::LoadMessage(ORKBASE::kMsgDatabaseTimeout),
                                         {ORKBASE::Decimal(seconds)}));
}

void TimedAccessor::SetOwnError(std::int32_t message) {
  SetError(-1, ORKBASE::LoadMessage(message));
}

void TimedAccessor::ForgetError() noexcept {
  ResetError();
  serverError_ = {};
}

}  // namespace ORKDB
