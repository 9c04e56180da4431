// An SQLite file by its name, and what SQLite's codes say about it: what reading metadata and the
// road to a store have in common.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "foundation/Text.h"

namespace ORKDB {

struct StatementCloser {
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, StatementCloser>;

/// A name for the file that SQLite takes as nothing else (a memory database, a URI).
inline std::string SqliteFileName(std::u16string_view path) {
  const std::string name = ORKBASE::WideToUtf8(path);
  return name.starts_with('/') ? name : "./" + name;
}

/// Something to which a file's name leads, but that holds no file: opening it might never return.
/// (A folder does no harm.)
inline bool IsNoFile(const std::string& name) {
  std::error_code ignored;
  const auto type = std::filesystem::status(name, ignored).type();
  using std::filesystem::file_type;
  return type == file_type::fifo || type == file_type::socket || type == file_type::character ||
         type == file_type::block;
}

constexpr int PrimaryCode(int code) {
  return code & 0xFF;
}

constexpr bool IsLostFile(int code) {
  const int primary = PrimaryCode(code);
  return primary == SQLITE_IOERR || primary == SQLITE_CORRUPT || primary == SQLITE_CANTOPEN ||
         primary == SQLITE_NOTADB;
}

}  // namespace ORKDB
