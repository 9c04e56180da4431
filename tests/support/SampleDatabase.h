// SQLite files for tests: the sample metadata database of examples/, or one made of any SQL text,
// in a temporary file that goes with the object.
#pragma once

#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "MxExpression.h"
#include "Utf8.h"

/// One database file. Every operation throws, and so fails the test, when SQLite refuses it.
class TempDatabase {
 public:
  explicit TempDatabase(const std::string& sql) : path_(NewPath()) { Run(sql); }
  ~TempDatabase() { unlink(path_.c_str()); }
  TempDatabase(const TempDatabase&) = delete;
  TempDatabase& operator=(const TempDatabase&) = delete;

  const std::string& Path() const { return path_; }
  /// What `Connect` takes.
  std::u16string Server() const { return U16("sqlite:" + path_); }

  /// Runs SQL statements (UTF-8) on the file, also while an engine is connected to it.
  void Run(const std::string& sql) const {
    sqlite3* database = nullptr;
    char* message = nullptr;
    int status = sqlite3_open(path_.c_str(), &database);
    if (status == SQLITE_OK) {
      status = sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &message);
    }
    const std::string text = message != nullptr ? message : "";
    sqlite3_free(message);
    sqlite3_close(database);
    if (status != SQLITE_OK) throw std::runtime_error("SQLite: " + text);
  }

 private:
  static std::string NewPath() {
    const char* folder = std::getenv("TMPDIR");
    std::string path = std::string(folder != nullptr ? folder : "/tmp") + "/orkrule-test-XXXXXX";
    const int file = mkstemp(path.data());
    if (file < 0) throw std::runtime_error("no temporary file " + path);
    close(file);
    return path;
  }

  std::string path_;
};

/// Text of a file of the source tree, named from its top.
inline std::string SourceText(const std::string& name) {
  std::ifstream file(ORKRULE_SOURCE_DIR "/" + name, std::ios::binary);
  if (!file) throw std::runtime_error("no file " + name);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

/// The shop of examples/shop.sql, made once per process, for tests that only read it: Orders,
/// Customer, T (a, b, d, s), Stock (other real names), a Chinese table, report template 7.
inline const TempDatabase& SampleDatabase() {
  static const TempDatabase database(SourceText("examples/shop.sql"));
  return database;
}

inline void ConnectTo(ORKBASE::MxExpression& rules, const TempDatabase& database,
                      ORKBASE::ORKDB_DSType_ENUM dsType = ORKBASE::kSqlServerDs) {
  rules.Connect(database.Server(), 0, u"", u"", u"", dsType, false, true, u"");
}

/// An engine that is connected to the sample database; nothing is loaded yet.
struct SampleExpression : ORKBASE::MxExpression {
  explicit SampleExpression(ORKBASE::ORKDB_DSType_ENUM dsType = ORKBASE::kSqlServerDs) {
    ConnectTo(*this, SampleDatabase(), dsType);
  }
};
