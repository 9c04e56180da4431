// The kind `sqlite:PATH`: metadata views in an SQLite file, the embedded default.
#pragma once

#include <memory>
#include <string>

#include "DataAccess.h"

struct sqlite3;

namespace ORKDB {

/// Reads an SQLite file, read-only. A file that is missing is an error of the query and is never
/// created; a file that was moved away or replaced since the last query is opened anew.
class SqliteAccessor final : public CDBAccessor {
 public:
  explicit SqliteAccessor(std::u16string path);
  ~SqliteAccessor() override;

  std::unique_ptr<CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                 const MxParams& params,
                                                 const std::u16string& reservedA,
                                                 std::int32_t reservedB,
                                                 std::int32_t reservedC) override;

 private:
  bool Open();
  void Close() noexcept;
  bool IsOnItsFile() const noexcept;
  std::unique_ptr<CDBRecordSet> Run(const std::u16string& statement, const MxParams& params,
                                    bool asNumbers);
  /// Takes over the connection's last error and returns null.
  std::unique_ptr<CDBRecordSet> Fail();

  std::u16string path_;
  sqlite3* connection_ = nullptr;
};

/// Makes an accessor for the file that the request's location names.
std::unique_ptr<CDBAccessor> MakeSqliteAccessor(const AccessorRequest& request);

}  // namespace ORKDB
