// Runs many statements in one go on the throw-away server, each by itself, and keeps what became of
// each: psql does the work, so the tests need no client library.
#pragma once

#include "PostgresServer.h"

#include <string>
#include <vector>

/// SQLSTATE when all went well.
inline constexpr const char* kNoError = "00000";

/// What the server said to one statement.
struct Outcome {
  std::string state;  // SQLSTATE
  std::string text;   // the server's message, or the result
};

/// A database of its own on a started server. Sets it up with SQL files of tests/data/postgres.
class SqlSession {
 public:
  /// `setup` stands before the files: psql variables, extensions.
  SqlSession(PostgresServer& server, std::string database, std::string setup,
             const std::vector<std::string>& files);

  /// Has every statement parsed and analysed, as PREPARE does. Throws when the run as a whole
  /// failed, so also when the setup has a fault.
  std::vector<Outcome> Prepare(const std::vector<std::string>& statements);
  /// Runs queries that give one text each.
  std::vector<Outcome> Results(const std::vector<std::string>& queries);

 private:
  std::vector<Outcome> Run(const std::string& routine, const std::vector<std::string>& statements);

  PostgresServer& server_;
  std::string database_;
  std::string setup_;
};
