// The kind `sqlite:PATH`: metadata views in an SQLite file, the embedded default.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "DataAccess.h"
#include "database/TimedAccessor.h"

struct sqlite3;

namespace ORKDB {

inline constexpr std::u16string_view kSqliteKind = u"sqlite:";

/// Reads an SQLite file, read-only. A file that is missing is an error of the query and is never
/// created; a file that was moved away or replaced since the last query is opened anew. A query
/// waits for a locked file as long as its load may take, but only briefly when the last one waited
/// in vain.
class SqliteAccessor final : public TimedAccessor {
 public:
  SqliteAccessor(std::u16string path, std::int32_t loadSeconds);
  ~SqliteAccessor() override;

 private:
  std::unique_ptr<CDBRecordSet> Query(const std::u16string& statement,
                                      const MxParams& params) override;
  bool Open();
  void Close() noexcept;
  bool IsOnItsFile() const noexcept;
  std::unique_ptr<CDBRecordSet> Run(const std::u16string& statement, const MxParams& params,
                                    bool asNumbers);
  /// Takes over the connection's last error and returns null.
  std::unique_ptr<CDBRecordSet> Fail();
  /// What SQLite calls while it works and while it finds the file locked.
  static int IsOver(void* accessor);
  static int WaitForLock(void* accessor, int count);

  std::u16string path_;
  sqlite3* connection_ = nullptr;
  bool wasLocked_ = false;  // the last query found the file locked to its end
  Deadline lockEnd_;        // of waiting for a lock, in the running query
};

/// Makes an accessor for the file that the request's location names.
std::unique_ptr<CDBAccessor> MakeSqliteAccessor(const AccessorRequest& request);

}  // namespace ORKDB
