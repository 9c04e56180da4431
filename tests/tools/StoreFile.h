// Stores of rules for tests: a table `rules` in an SQLite file, and what stands in it.
#pragma once

#include "SampleDatabase.h"
#include "ToolRun.h"

#include <sqlite3.h>

#include <stdexcept>
#include <string>
#include <vector>

inline constexpr const char* kRulesTable =
    "create table rules (id integer primary key, name text, type text, expression text, "
    "document text, language text, sql_oracle text);";
inline const std::string kSelectRules = "select id, type, expression, document from rules";

/// A rule of each number, `Orders.Amount > NUMBER`.
inline std::string ManyRules(int count) {
  const std::string last = std::to_string(count);
  return "with recursive n(id) as (select 1 union all select id + 1 from n where id < " + last +
         ") insert into rules (id, type, expression) select id, 'logic', 'Orders.Amount > ' || id "
         "from n;";
}

/// A store with the table `rules`, filled by SQL.
class StoreFile {
 public:
  explicit StoreFile(const std::string& inserts) : file_(kRulesTable + inserts) {}

  const std::string& Path() const { return file_.Path(); }
  void Run(const std::string& sql) const { file_.Run(sql); }

  /// The rows of a query, one a line, values between bars; NULL is "-".
  std::string Read(const std::string& query) const {
    sqlite3* database = nullptr;
    std::string text;
    const auto add = [](void* out, int count, char** values, char**) {
      std::string line;
      for (int i = 0; i < count; ++i) {
        line.append(i == 0 ? "" : "|").append(values[i] == nullptr ? "-" : values[i]);
      }
      static_cast<std::string*>(out)->append(line).append("\n");
      return 0;
    };
    int status = sqlite3_open(Path().c_str(), &database);
    sqlite3_busy_timeout(database, 10'000);  // the tool may be writing
    if (status == SQLITE_OK) status = sqlite3_exec(database, query.c_str(), add, &text, nullptr);
    sqlite3_close(database);
    if (status != SQLITE_OK) throw std::runtime_error("SQLite refuses " + query);
    return text;
  }

  /// Runs `orkrule store COMMAND` on it, with the sample metadata.
  ToolResult Tool(const std::string& command, const std::vector<std::string>& options,
                  const std::string& select = kSelectRules) const {
    std::vector<std::string> arguments = {"store", command,   "--store",  Path(),
                                          "--db",  kSampleDb, "--select", select};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunTool(arguments);
  }

 private:
  TempDatabase file_;
};
