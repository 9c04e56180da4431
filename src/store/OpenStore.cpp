// The kinds of stores. They are the library's own kinds of reading metadata: by the same server
// texts, with the same connection strings.
#include "DataAccess.h"
#include "RuleStore.h"
#include "database/FailingAccessor.h"
#include "database/OdbcAccessor.h"
#include "database/SqliteAccessor.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/OdbcStore.h"
#include "store/SqliteStore.h"
#include "store/StoreRefusal.h"

#include <bit>
#include <utility>

namespace ORKDB {
namespace {

MxProxyInfo ProxyOf(const ORKBASE::ConnectionSettings& settings) {
  MxProxyInfo proxy;
  const auto type = static_cast<ORKBASE::ORKBASE_ProxyType_ENUM>(ORKBASE::ReadInt(settings.proxy));
  proxy.init(type, settings.proxy, 0, u"", u"");
  return proxy;
}

AccessorRequest RequestOf(const ORKBASE::ConnectionSettings& settings) {
  return {MxSvrInfo(settings.server, settings.port, settings.user, u""),
          u"",
          ProxyOf(settings),
          settings.database,
          settings.dsType,
          settings.encrypted,
          settings.readOnly,
          settings.password,
          u"",
          settings.loadSeconds};
}

/// The request with its location, where the server text begins with a kind.
AccessorRequest Located(AccessorRequest request, std::u16string_view kind) {
  request.location = ORKBASE::UpToZero(request.server.Server()).substr(kind.size());
  return request;
}

bool IsOfKind(const AccessorRequest& request, std::u16string_view kind) {
  return ORKBASE::ToLower(request.server.Server()).starts_with(kind);
}

}  // namespace

std::unique_ptr<StoreConnection> OpenStore(const ORKBASE::ConnectionSettings& settings) {
  const AccessorRequest request = RequestOf(settings);
  // The creator alone knows which kind a server text belongs to. An accessor opens nothing yet.
  const auto accessor = CDBAccessorCreator::instance()->CreateAccessor(request);
  if (dynamic_cast<SqliteAccessor*>(accessor.get()) != nullptr) {
    return OpenSqliteStore(Located(request, kSqliteKind));
  }
  if (dynamic_cast<OdbcAccessor*>(accessor.get()) != nullptr) {
    const bool isString = IsOfKind(request, kOdbcKind);
    const AccessorRequest located = Located(request, isString ? kOdbcKind : u"");
    return OpenOdbcStore(isString ? TextOfString(located) : TextOfHost(located), located.readOnly);
  }
  if (dynamic_cast<FailingAccessor*>(accessor.get()) != nullptr) {
    accessor->QueryByStatement({}, MxParams(false));  // tells why no connection serves the request
    throw StoreFailure(accessor->errNumber, accessor->ErrDescription(), true);
  }
  Refuse(ORKBASE::kMsgStoreNotOwnKind);
}

bool IsSame(const StoreValue& one, const StoreValue& other) noexcept {
  const double* const fraction = std::get_if<double>(&one);
  const double* const otherFraction = std::get_if<double>(&other);
  if (fraction == nullptr || otherFraction == nullptr) return one == other;
  return std::bit_cast<std::uint64_t>(*fraction) == std::bit_cast<std::uint64_t>(*otherFraction);
}

}  // namespace ORKDB
