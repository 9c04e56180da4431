// Start and end of the throw-away server. The server process is started directly, not through
// pg_ctl, so that the kernel can end it together with the test program.
#include "PostgresServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <grp.h>
#include <netinet/in.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* kPrograms = "/usr/lib/postgresql/15/bin/";
constexpr auto kStartLimit = std::chrono::seconds(30);

/// The user the server runs as; null to stay the one we are.
const passwd* ServerUser() {
  if (geteuid() != 0) return nullptr;
  const passwd* user = getpwnam("postgres");
  return user != nullptr ? user : getpwnam("nobody");
}

void BecomeServerUser() {
  const passwd* user = ServerUser();
  if (user == nullptr) return;
  if (setgroups(0, nullptr) != 0 || setgid(user->pw_gid) != 0 || setuid(user->pw_uid) != 0) {
    _exit(126);
  }
}

/// Starts a program with its output in `log` and returns its process, -1 when it could not fork.
pid_t Spawn(const std::vector<std::string>& command, const std::string& log) {
  std::vector<char*> arguments;
  for (const std::string& part : command) arguments.push_back(const_cast<char*>(part.c_str()));
  arguments.push_back(nullptr);
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process != 0) return process;
  const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  const int in = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (out < 0 || in < 0 || chdir("/") != 0) _exit(126);
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(out, STDERR_FILENO);
  BecomeServerUser();
  prctl(PR_SET_PDEATHSIG, SIGQUIT);
  if (getppid() != parent) _exit(126);
  execv(arguments[0], arguments.data());
  _exit(127);
}

int WaitFor(pid_t process) {
  int status = -1;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

std::string ReadAll(const std::string& path) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

std::int32_t FreePort() {
  const int handle = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  const bool bound =
      handle >= 0 && bind(handle, any, size) == 0 && getsockname(handle, any, &size) == 0;
  if (handle >= 0) close(handle);
  return bound ? ntohs(address.sin_port) : 0;
}

}  // namespace

PostgresServer::~PostgresServer() {
  Stop();
  std::error_code ignored;
  if (!folder_.empty()) fs::remove_all(folder_, ignored);
}

bool PostgresServer::IsInstalled() {
  return access((std::string(kPrograms) + "postgres").c_str(), X_OK) == 0;
}

bool PostgresServer::Start() {
  if (folder_.empty() && !MakeFolder()) return false;
  return Launch() && WaitUntilReady();
}

void PostgresServer::Stop() {
  if (process_ <= 0) return;
  Resume();  // a stopped process does not end
  kill(process_, SIGQUIT);
  WaitFor(process_);
  process_ = -1;
}

bool PostgresServer::Run(const std::string& sql) {
  const std::string script = folder_ + "/script.sql";
  const std::string log = folder_ + "/psql.log";
  std::ofstream(script) << sql;
  std::error_code ignored;
  fs::remove(log, ignored);
  const std::string target =
      "host=127.0.0.1 dbname=postgres connect_timeout=5 port=" + std::to_string(port_) +
      " user=" + User() + " passfile=" + folder_ + "/pass";
  const pid_t process = Spawn({std::string(kPrograms) + "psql", "-X", "-q", "-v", "ON_ERROR_STOP=1",
                               "-d", target, "-f", script},
                              log);
  if (process > 0 && WaitFor(process) == 0) return true;
  problem_ = "psql: " + ReadAll(log);
  return false;
}

bool PostgresServer::Pause() {
  return Signal(SIGSTOP);
}

void PostgresServer::Resume() {
  Signal(SIGCONT);
}

/// To the server and its processes; a session of its own each, so they form no group.
bool PostgresServer::Signal(int signal) const {
  if (process_ <= 0) return false;
  const std::string process = std::to_string(process_);
  std::ifstream children("/proc/" + process + "/task/" + process + "/children");
  // The server first, so that it starts no other process meanwhile.
  if (kill(process_, signal) != 0) return false;
  int found = 0;
  for (pid_t child = 0; children >> child; ++found) kill(child, signal);
  return found > 0;
}

bool PostgresServer::MakeFolder() {
  std::string folder = (fs::temp_directory_path() / "orkrule-pg-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) {
    problem_ = "no temporary folder";
    return false;
  }
  folder_ = folder;
  // The colon-separated password file of psql; the server reads the bare password.
  std::ofstream(folder_ + "/password") << Password() << '\n';
  std::ofstream(folder_ + "/pass") << "*:*:*:" << User() << ':' << Password() << '\n';
  if (const passwd* user = ServerUser()) {
    for (const char* name : {"", "/password", "/pass"}) {
      if (chown((folder_ + name).c_str(), user->pw_uid, user->pw_gid) != 0) return false;
    }
  }
  fs::permissions(folder_ + "/pass", fs::perms::owner_read | fs::perms::owner_write);
  const std::string log = folder_ + "/initdb.log";
  const pid_t process = Spawn({std::string(kPrograms) + "initdb", "-D", folder_ + "/data", "-U",
                               User(), "-E", "UTF8", "--locale=C.UTF-8", "--no-sync",
                               "--auth=scram-sha-256", "--pwfile=" + folder_ + "/password"},
                              log);
  if (process > 0 && WaitFor(process) == 0) return true;
  problem_ = "initdb: " + ReadAll(log);
  return false;
}

bool PostgresServer::Launch() {
  if (port_ == 0) port_ = FreePort();
  process_ = Spawn(
      {std::string(kPrograms) + "postgres", "-D", folder_ + "/data", "-p", std::to_string(port_),
       "-c", "listen_addresses=127.0.0.1", "-c", "unix_socket_directories=", "-c", "fsync=off"},
      folder_ + "/server.log");
  if (process_ > 0) return true;
  problem_ = "the server could not be started";
  return false;
}

bool PostgresServer::WaitUntilReady() {
  const auto end = std::chrono::steady_clock::now() + kStartLimit;
  while (std::chrono::steady_clock::now() < end) {
    if (waitpid(process_, nullptr, WNOHANG) == process_) {
      process_ = -1;
      break;
    }
    if (Run("select 1 \\g /dev/null")) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  problem_ += "\nserver: " + ReadAll(folder_ + "/server.log");
  Stop();
  return false;
}
