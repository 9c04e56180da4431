// An accessor for a request that no connection can serve: the reason shows at its first use, as
// every failure of a connection does.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "DataAccess.h"

namespace ORKDB {

class FailingAccessor final : public CDBAccessor {
 public:
  explicit FailingAccessor(std::u16string reason) : reason_(std::move(reason)) {}

  std::unique_ptr<CDBRecordSet> QueryByStatement(const std::u16string&, const MxParams&,
                                                 const std::u16string&, std::int32_t,
                                                 std::int32_t) override {
    SetError(-1, reason_);
    return nullptr;
  }

 private:
  std::u16string reason_;
};

/// What a kind without proxies answers to a request with one; null for a request without.
inline std::unique_ptr<CDBAccessor> RefuseProxy(const AccessorRequest& request) {
  if (request.proxy.Type() == ORKBASE::kNoProxy) return nullptr;
  return std::make_unique<FailingAccessor>(
      u"A proxy was given, but connections of this kind cannot use one.");
}

}  // namespace ORKDB
