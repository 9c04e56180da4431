#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File Scratch() {
  File file(std::tmpfile(), std::fclose);
  EXPECT_TRUE(file);
  return file;
}

std::string ContentOf(std::FILE* file) {
  std::string content;
  std::array<char, 65536> block{};
  std::rewind(file);
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), file))
    content.append(block.data(), count);
  return content;
}

/// The child's side of a start: does not return.
[[noreturn]] void Become(const std::vector<std::string>& arguments, std::array<int, 3> files,
                         const std::vector<std::string>& environment) {
  for (int i = 0; i < 3; ++i) {
    const int file = files[static_cast<std::size_t>(i)];
    if (file < 0)
      close(i);
    else
      dup2(file, i);
  }
  setenv("LC_ALL", "C", 1);
  unsetenv("ORKRULE_DB");
  for (const std::string& entry : environment) {
    const std::size_t sign = entry.find('=');
    setenv(entry.substr(0, sign).c_str(), entry.substr(sign + 1).c_str(), 1);
  }
  std::vector<char*> argv{const_cast<char*>(ORKRULE_TOOL)};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  execv(argv[0], argv.data());
  _exit(127);
}

}  // namespace

std::vector<nlohmann::ordered_json> ToolResult::Json() const {
  std::vector<nlohmann::ordered_json> values;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);)
    values.push_back(nlohmann::ordered_json::parse(line));
  return values;
}

int StartTool(const std::vector<std::string>& arguments, int in, int out, int err,
              const std::vector<std::string>& environment) {
  const pid_t process = fork();
  if (process == 0) Become(arguments, {in, out, err}, environment);
  return process;
}

int WaitForTool(int process) {
  int state = 0;
  if (waitpid(process, &state, 0) != process || !WIFEXITED(state)) return -1;
  return WEXITSTATUS(state);
}

ToolResult RunTool(const std::vector<std::string>& arguments, const std::string& input,
                   const std::vector<std::string>& environment) {
  const File in = Scratch();
  const File out = Scratch();
  const File err = Scratch();
  std::fwrite(input.data(), 1, input.size(), in.get());
  std::rewind(in.get());
  ToolResult result;
  const int process =
      StartTool(arguments, fileno(in.get()), fileno(out.get()), fileno(err.get()), environment);
  result.status = WaitForTool(process);
  result.out = ContentOf(out.get());
  result.err = ContentOf(err.get());
  return result;
}

std::vector<nlohmann::ordered_json> RunBatch(const std::vector<std::string>& lines) {
  std::string input;
  for (const std::string& line : lines) input += line + "\n";
  const ToolResult result = RunTool({"batch"}, input);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  return result.Json();
}

std::string ConnectLine() {
  return R"({"op":"Connect","server":"sqlite:)" ORKRULE_SAMPLE_DB R"("})";
}
