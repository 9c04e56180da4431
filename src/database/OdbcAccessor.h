// The kinds that go through unixODBC: `odbc:CONNECTION STRING`, and every host of a server.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "DataAccess.h"
#include "database/OdbcConnectionText.h"
#include "database/TimedAccessor.h"

namespace ORKDB {

inline constexpr std::u16string_view kOdbcKind = u"odbc:";

class OdbcConnection;
struct OdbcFailure;
struct OdbcResult;

/// Queries one ODBC data source. A connection that a query finds lost is opened once more within
/// that query; one that cannot be opened is tried again by the next load. A driver that does not
/// return in time is cancelled and, if that does not help, left alone with its connection.
class OdbcAccessor final : public TimedAccessor {
 public:
  OdbcAccessor(OdbcConnectionText text, const AccessorRequest& request);
  ~OdbcAccessor() override;

 private:
  std::unique_ptr<CDBRecordSet> Query(const std::u16string& statement,
                                      const MxParams& params) override;
  bool Open();
  /// Nothing when the driver did not return in time; the error is then set.
  std::shared_ptr<OdbcResult> Run(const std::u16string& statement, const MxParams& params);
  void Close();
  void Fail(const OdbcFailure& failure);

  OdbcConnectionText text_;
  bool readOnly_;
  std::shared_ptr<OdbcConnection> connection_;  // shared with a driver that works on it
};

/// Makes an accessor for the connection string that the request's location is. The string itself
/// says whether the connection is encrypted.
std::unique_ptr<CDBAccessor> MakeOdbcAccessor(const AccessorRequest& request);

/// Makes an accessor for the host that the request's location names, by its database type.
std::unique_ptr<CDBAccessor> MakeServerAccessor(const AccessorRequest& request);

}  // namespace ORKDB
