// The kinds that go through unixODBC: `odbc:CONNECTION STRING`, and every host of a server.
#pragma once

#include <memory>
#include <string>

#include "DataAccess.h"
#include "database/OdbcConnectionText.h"

namespace ORKDB {

class OdbcConnection;

/// Queries one ODBC data source. A connection that a query finds lost is opened once more within
/// that query; one that cannot be opened is tried again by the next query.
class OdbcAccessor final : public CDBAccessor {
 public:
  OdbcAccessor(OdbcConnectionText text, bool readOnly);
  ~OdbcAccessor() override;

  std::unique_ptr<CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                 const MxParams& params,
                                                 const std::u16string& reservedA,
                                                 std::int32_t reservedB,
                                                 std::int32_t reservedC) override;

 private:
  bool Open();

  OdbcConnectionText text_;
  bool readOnly_;
  std::unique_ptr<OdbcConnection> connection_;
};

/// Makes an accessor for the connection string that the request's location is. The string itself
/// says whether the connection is encrypted.
std::unique_ptr<CDBAccessor> MakeOdbcAccessor(const AccessorRequest& request);

/// Makes an accessor for the host that the request's location names, by its database type.
std::unique_ptr<CDBAccessor> MakeServerAccessor(const AccessorRequest& request);

}  // namespace ORKDB
