// A throw-away PostgreSQL server for tests: its own folder under the temporary one, a free port of
// 127.0.0.1, no unix socket, nothing synced to disk. It ends with the object, and with the test
// program even when that is killed.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

/// One server at a time per object. It runs as the user postgres or nobody when the tests run as
/// root, since the server refuses root.
class PostgresServer {
 public:
  PostgresServer() = default;
  PostgresServer(const PostgresServer&) = delete;
  PostgresServer& operator=(const PostgresServer&) = delete;
  ~PostgresServer();

  /// Whether the server's programs are on this machine.
  static bool IsInstalled();

  /// Makes the folder on the first call and starts the server on the port of the first call.
  /// False with `Problem` set when that failed.
  bool Start();
  /// Ends the server at once; its clients lose their connections. The data stays for `Start`.
  void Stop();

  /// Stops every process of the server where it stands: connections stay open and are silent, new
  /// ones are taken by the kernel alone. False when no process of it could be found.
  bool Pause();
  /// Lets them go on.
  void Resume();

  /// Runs statements in the database `postgres`. False with `Problem` set when one failed.
  bool Run(const std::string& sql);

  std::int32_t Port() const { return port_; }
  static const char* User() { return "ork"; }
  static const char* Password() { return "s3cret;{}%41+"; }
  const std::string& Problem() const { return problem_; }

 private:
  bool MakeFolder();
  bool Launch();
  bool WaitUntilReady();
  bool Signal(int signal) const;

  std::string folder_;
  std::string problem_;
  std::int32_t port_ = 0;
  pid_t process_ = -1;
};
