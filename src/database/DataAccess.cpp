// The value classes of the data access, the statement of a select by table, and the creator with
// its table of kinds.
#include "DataAccess.h"

#include "database/FailingAccessor.h"
#include "database/OdbcAccessor.h"
#include "database/SqliteAccessor.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"

#include <array>
#include <map>
#include <mutex>
#include <utility>

namespace ORKDB {
namespace {

struct OwnKind {
  std::u16string_view prefix;
  std::unique_ptr<CDBAccessor> (*make)(const AccessorRequest&);
};

// clang-format off
constexpr OwnKind kOwnKinds[] = {
    {kSqliteKind, MakeSqliteAccessor},
    {kOdbcKind,   MakeOdbcAccessor},
    {u"",         MakeServerAccessor},  // every other text is a host
};

constexpr std::array<std::u16string_view, 7> kOperations = {
    u"=", u"<>", u"<", u"<=", u">", u">=", u"like"};
// clang-format on

bool IsNameUnit(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
         (unit >= u'0' && unit <= u'9') || unit == u'_' || unit == u'.';
}

bool IsName(std::u16string_view text) {
  for (const char16_t unit : text) {
    if (!IsNameUnit(unit)) return false;
  }
  return !text.empty();
}

bool IsNameList(std::u16string_view text) {
  const auto names = ORKBASE::SplitText(text, u",");
  for (const std::u16string_view name : names) {
    if (!IsName(ORKBASE::TrimBlanks(name))) return false;
  }
  return !names.empty();
}

bool IsOperation(std::u16string_view text) {
  for (const std::u16string_view known : kOperations) {
    if (ORKBASE::EqualsIgnoringCase(known, text)) return true;
  }
  return false;
}

/// The statement of a select by table; empty for anything but plain names.
std::u16string SelectStatement(const std::u16string& table, const std::u16string& columns,
                               const MxParams& params) {
  if (!IsName(table) || !IsNameList(columns)) return {};
  std::u16string statement = u"select " + columns + u" from " + table;
  std::u16string_view joint = u" where ";
  for (const MxParam& param : params.Params()) {
    if (!IsName(param.name) || !IsOperation(param.operation)) return {};
    statement.append(joint).append(param.name).append(u" ").append(param.operation).append(u" ?");
    joint = u" and ";
  }
  return statement;
}

}  // namespace

MxSvrInfo::MxSvrInfo(const std::u16string& server, std::int32_t port, const std::u16string& user,
                     const std::u16string& reserved)
    : server_(server), port_(port), user_(user), reserved_(reserved) {}
MxSvrInfo::MxSvrInfo(const MxSvrInfo& other) = default;
MxSvrInfo& MxSvrInfo::operator=(const MxSvrInfo& other) = default;
MxSvrInfo::~MxSvrInfo() = default;

MxProxyInfo::MxProxyInfo() = default;
MxProxyInfo::MxProxyInfo(const MxProxyInfo& other) = default;
MxProxyInfo& MxProxyInfo::operator=(const MxProxyInfo& other) = default;
MxProxyInfo::~MxProxyInfo() = default;

void MxProxyInfo::init(ORKBASE::ORKBASE_ProxyType_ENUM type, const std::u16string& host,
                       std::int32_t port, const std::u16string& textA,
                       const std::u16string& textB) {
  type_ = type;
  host_ = host;
  port_ = port;
  textA_ = textA;
  textB_ = textB;
}

MxParams::MxParams(bool reserved) : reserved_(reserved) {}
MxParams::MxParams(const MxParams& other) = default;
MxParams& MxParams::operator=(const MxParams& other) = default;
MxParams::~MxParams() = default;

void MxParams::AddParam(std::int32_t kind, const std::u16string& name, const std::u16string& value,
                        bool flagA, bool flagB, const std::u16string& operation) {
  params_.push_back({kind, name, value, flagA, flagB, operation});
}

CDBRecordSet::CDBRecordSet() = default;
CDBRecordSet::~CDBRecordSet() = default;

CDBAccessor::CDBAccessor() = default;
CDBAccessor::~CDBAccessor() = default;

std::unique_ptr<CDBRecordSet> CDBAccessor::SelectByTable(
    const std::u16string& table, const std::u16string& columns, const MxParams& params,
    const std::u16string& /*reservedA*/, const std::u16string& /*reservedB*/,
    const std::u16string& /*reservedC*/, std::int32_t /*reservedD*/, std::int32_t /*reservedE*/,
    std::int32_t /*reservedF*/) {
  const std::u16string statement = SelectStatement(table, columns, params);
  if (!statement.empty()) return QueryByStatement(statement, params);
  SetError(-1, ORKBASE::LoadMessage(ORKBASE::kMsgNotPlainNames));
  return nullptr;
}

void CDBAccessor::BeginLoad() {}

void CDBAccessor::SetError(std::int32_t number, std::u16string description) {
  errNumber = number;
  errDescription_ = std::move(description);
}

void CDBAccessor::ResetError() noexcept {
  errNumber = 0;
  errDescription_.clear();
}

/// The kinds by lower-case prefix.
struct CDBAccessorCreator::Kinds {
  /// The factory with the longest prefix of the server text, and the length of that prefix.
  std::pair<AccessorFactory, std::size_t> Find(std::u16string_view server) {
    const std::u16string lower = ORKBASE::ToLower(server);
    const std::lock_guard lock(mutex);
    auto best = factories.end();
    // In ascending order a longer prefix of one text stands behind a shorter one.
    for (auto kind = factories.begin(); kind != factories.end(); ++kind) {
      if (lower.starts_with(kind->first)) best = kind;
    }
    if (best == factories.end()) return {};
    return {best->second, best->first.size()};
  }

  std::mutex mutex;
  std::map<std::u16string, AccessorFactory> factories;
};

CDBAccessorCreator::CDBAccessorCreator() : kinds_(std::make_unique<Kinds>()) {
  for (const OwnKind& kind : kOwnKinds) RegisterKind(std::u16string(kind.prefix), kind.make);
}

CDBAccessorCreator::~CDBAccessorCreator() = default;

CDBAccessorCreator* CDBAccessorCreator::instance() {
  // Never destroyed: accessors may still be made while static objects of a host go away.
  static auto* const creator = new CDBAccessorCreator;
  return creator;
}

std::unique_ptr<CDBAccessor> CDBAccessorCreator::CreateAccessor(
    const MxSvrInfo& server, const MxProxyInfo& proxy, const std::u16string& database,
    ORKBASE::ORKDB_DSType_ENUM dsType, bool encrypted, bool readOnly,
    const std::u16string& password, const std::u16string& reserved) {
  return CreateAccessor(
      {server, u"", proxy, database, dsType, encrypted, readOnly, password, reserved});
}

std::unique_ptr<CDBAccessor> CDBAccessorCreator::CreateAccessor(AccessorRequest request) {
  const std::u16string_view text = ORKBASE::UpToZero(request.server.Server());
  const auto [factory, prefixLength] = kinds_->Find(text);
  request.location = text.substr(prefixLength);
  std::unique_ptr<CDBAccessor> made;
  if (factory) made = factory(request);
  if (made) return made;
  return std::make_unique<FailingAccessor>(ORKBASE::kMsgNoDatabaseKind);
}

void CDBAccessorCreator::RegisterKind(const std::u16string& prefix, AccessorFactory factory) {
  const std::u16string key = ORKBASE::ToLower(ORKBASE::UpToZero(prefix));
  // The factory that was there leaves in the argument, so it is destroyed outside of the lock.
  const std::lock_guard lock(kinds_->mutex);
  std::swap(kinds_->factories[key], factory);
  if (!kinds_->factories[key]) kinds_->factories.erase(key);
}

}  // namespace ORKDB
