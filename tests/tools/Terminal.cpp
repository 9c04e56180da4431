#include "Terminal.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

Terminal::Terminal(const std::vector<std::string>& arguments, int in, int out) {
  winsize size{};
  size.ws_col = 80;
  size.ws_row = 24;
  process_ = forkpty(&terminal_, nullptr, nullptr, &size);
  if (process_ != 0) return;
  if (in >= 0) dup2(in, STDIN_FILENO);
  if (out >= 0) dup2(out, STDOUT_FILENO);
  setenv("LC_ALL", "C", 1);
  setenv("TERM", "xterm", 1);
  unsetenv("NO_COLOR");
  std::vector<char*> argv{const_cast<char*>(ORKRULE_TOOL)};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  alarm(60);  // ends a tool that waits for more than is typed
  execv(argv[0], argv.data());
  _exit(127);
}

Terminal::~Terminal() {
  if (terminal_ >= 0) close(terminal_);
}

void Terminal::Type(const std::string& text) const {
  EXPECT_EQ(write(terminal_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

bool Terminal::Read(int milliseconds) {
  pollfd state{terminal_, POLLIN, 0};
  if (poll(&state, 1, milliseconds) <= 0) return false;
  char block[4096];
  const ssize_t count = read(terminal_, block, sizeof block);
  if (count <= 0) return false;
  seen_.append(block, static_cast<std::size_t>(count));
  return true;
}

const std::string& Terminal::ReadUntil(const std::string& text) {
  while (seen_.find(text) == seen_.npos && Read(10000)) {
  }
  return seen_;
}

const std::string& Terminal::ReadAll() {
  while (Read(60000)) {
  }
  return seen_;
}

int Terminal::Wait() {
  return ShellStatusOf(process_);
}

int ShellStatusOf(int process) {
  int state = 0;
  if (waitpid(process, &state, 0) != process) return -1;
  return WIFSIGNALED(state) ? 128 + WTERMSIG(state) : WEXITSTATUS(state);
}
