// The facade: connecting and loading dictionaries.
#include "MxExpression.h"

#include "ConnectionSettings.h"
#include "DataAccess.h"
#include "expression/ExpressionState.h"
#include "foundation/Text.h"

namespace ORKBASE {
namespace {

constexpr std::u16string_view kProxySeparator = u"||~~||";
constexpr std::size_t kProxyFields = 5;

/// Type, host, port and two texts; missing fields read as empty, and type "0" is no proxy.
ORKDB::MxProxyInfo ReadProxy(std::u16string_view proxy) {
  ORKDB::MxProxyInfo info;
  auto fields = SplitText(proxy, kProxySeparator);
  if (fields.empty() || fields[0] == u"0") return info;
  fields.resize(kProxyFields);
  info.init(static_cast<ORKBASE_ProxyType_ENUM>(ReadInt(fields[0])), std::u16string(fields[1]),
            ReadInt(fields[2]), std::u16string(fields[3]), std::u16string(fields[4]));
  return info;
}

}  // namespace

void MxExpression::Connect(const std::u16string& server, std::int32_t port,
                           const std::u16string& proxy, const std::u16string& dbArgA,
                           const std::u16string& dbArgB, ORKDB_DSType_ENUM dsType, bool flagA,
                           bool flagB, const std::u16string& dbArgC) {
  ConnectionSettings settings;
  settings.server = server;
  settings.port = port;
  settings.proxy = proxy;
  settings.user = dbArgA;
  settings.database = dbArgB;
  settings.dsType = dsType;
  settings.encrypted = flagA;
  settings.readOnly = flagB;
  settings.password = dbArgC;
  Connect(settings);
}

void MxExpression::Connect(const ConnectionSettings& settings) {
  state_->dsType = settings.dsType;
  state_->dictionaries.Connect(settings.server, settings.port, ReadProxy(settings.proxy),
                               settings.user, settings.database, settings.dsType,
                               settings.encrypted, settings.readOnly, settings.password,
                               settings.loadSeconds);
}

// kept: false in every case, here and in the two below; the error tells how it went.
bool MxExpression::SetRt(const std::u16string& id) {
  Reset();
  state_->rtId = id;
  MxDictionarys& dictionaries = state_->dictionaries;
  dictionaries.BeginCall();
  if (dictionaries.LoadReportTemplate(id) != 0) {
    Raise(dictionaries.Error());
  }
  return false;
}

bool MxExpression::SetDts(const std::u16string& tables) {
  Reset();
  MxDictionarys& dictionaries = state_->dictionaries;
  dictionaries.BeginCall();
  if (dictionaries.LoadDataTables(tables) != 0) {
    Raise(dictionaries.Error());
  }
  return false;
}

bool MxExpression::SetCAXDD(std::int32_t type, const std::u16string& document) {
  Reset();
  MxDictionarys& dictionaries = state_->dictionaries;
  if (dictionaries.LoadCax(type, document) != 0) {
    Raise(dictionaries.Error());
  }
  return false;
}

bool MxExpression::Refresh() {
  Reset();
  MxDictionarys& dictionaries = state_->dictionaries;
  dictionaries.BeginCall();
  if (dictionaries.Refresh() == 0) return true;
  Raise(dictionaries.Error());
  return false;
}

}  // namespace ORKBASE
