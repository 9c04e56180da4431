// An accessor for a request that no connection can serve: the reason shows at its first use, as
// every failure of a connection does.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "DataAccess.h"
#include "foundation/MessageNumbers.h"
#include "platform/MessageTexts.h"

namespace ORKDB {

class FailingAccessor final : public CDBAccessor {
 public:
  /// `reason` is the number of a message.
  explicit FailingAccessor(std::int32_t reason) : reason_(reason) {}

  std::unique_ptr<CDBRecordSet> QueryByStatement(const std::u16string&, const MxParams&,
                                                 const std::u16string&, std::int32_t,
                                                 std::int32_t) override {
    SetError(-1, ORKBASE::LoadMessage(reason_));
    return nullptr;
  }

 private:
  std::int32_t reason_;
};

/// What a kind without proxies answers to a request with one; null for a request without.
inline std::unique_ptr<CDBAccessor> RefuseProxy(const AccessorRequest& request) {
  if (request.proxy.Type() == ORKBASE::kNoProxy) return nullptr;
  return std::make_unique<FailingAccessor>(ORKBASE::kMsgProxyRefused);
}

}  // namespace ORKDB
