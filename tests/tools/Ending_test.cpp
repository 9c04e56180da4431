// How the tool ends before its work is done: it was asked to, or nobody reads what it writes.
#include "Terminal.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <thread>

namespace {

/// A pipe; its ends are closed on the way out.
class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe2(ends_, O_CLOEXEC), 0); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    CloseOut();
    CloseIn();
  }
  int Out() const { return ends_[0]; }
  int In() const { return ends_[1]; }
  void CloseOut() { Close(ends_[0]); }
  void CloseIn() { Close(ends_[1]); }

  void Write(const std::string& text) const {
    EXPECT_EQ(write(In(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  std::string ReadSome() const {
    char block[65536];
    const ssize_t count = read(Out(), block, sizeof block);
    return {block, static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }
  std::string ReadAll() const {
    std::string all;
    for (std::string some = ReadSome(); !some.empty(); some = ReadSome()) all += some;
    return all;
  }

 private:
  static void Close(int& end) {
    if (end >= 0) close(end);
    end = -1;
  }
  int ends_[2] = {-1, -1};
};

struct Command {
  std::vector<std::string> arguments;
  std::string line;       // a line of its input
  std::string answer;     // to that line
  std::string told = "";  // what is told at the end, up to the number of lines
};

const Command kCommands[] = {
    // clang-format off
    {{"sql"},                   "1 + 2",                "1 + 2"},
    {{"sql", "--json"},         "1 + 2",                R"({"expression":"1 + 2","dialect":"default","sql":"1 + 2"})"},
    {{"format"},                "1+2",                  "1 + 2"},
    {{"uses", "--tables", "T"}, "T.a",                  "yes"},
    {{"batch"},                 R"({"op":"new","id":1})", R"({"id":1,"errNumber":0,"errDescription":""})"},
    {{"rename"},                "1 + 2",                "1 + 2", "orkrule: renamed 0 of "},
    // clang-format on
};

/// How many rules were done is told where the command tells it at all; nothing else is.
bool Tells(const Command& command, const std::string& text) {
  return command.told.empty() ? text.empty() : text.starts_with(command.told);
}

TEST(AskedToEnd, HandsOverWhatItAnsweredAndEndsByTheSignal) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    for (const Command& command : kCommands) {
      Pipe in;
      Pipe out;
      Pipe err;
      const int process = StartTool(command.arguments, in.Out(), out.In(), err.In());
      out.CloseIn();
      err.CloseIn();
      in.Write(command.line + "\n" + command.line + "\n" + command.line);  // the last is not whole
      std::string answers;
      while (std::count(answers.begin(), answers.end(), '\n') < 2) answers += out.ReadSome();
      kill(process, signal);
      EXPECT_EQ(ShellStatusOf(process), 128 + signal) << command.arguments.front();
      EXPECT_EQ(answers + out.ReadAll(), command.answer + "\n" + command.answer + "\n");
      EXPECT_TRUE(Tells(command, err.ReadAll())) << command.arguments.front();
    }
  }
}

/// Writes a line over and over until nobody reads it any more.
class EndlessInput {
 public:
  EndlessInput(Pipe& pipe, const std::string& line)
      : thread_([&pipe, line] {
          std::string block;
          while (block.size() < 4096) block += line + "\n";
          while (write(pipe.In(), block.data(), block.size()) > 0) {
          }
        }) {}
  EndlessInput(const EndlessInput&) = delete;
  EndlessInput& operator=(const EndlessInput&) = delete;
  ~EndlessInput() { thread_.join(); }

 private:
  std::thread thread_;
};

/// The tool at work on input without an end.
struct EndlessRun {
  explicit EndlessRun(const Command& command)
      : process(StartTool(command.arguments, in.Out(), out.In(), err.In())) {
    in.CloseOut();
    out.CloseIn();
    err.CloseIn();
    input.emplace(in, command.line);
  }

  Pipe in;
  Pipe out;
  Pipe err;
  int process;
  std::optional<EndlessInput> input;
};

class Ending : public testing::Test {
 protected:
  void SetUp() override { signal(SIGPIPE, SIG_IGN); }
};

TEST_F(Ending, InTheMiddleOfItsWorkIsBehindAWholeLine) {
  for (const Command& command : kCommands) {
    EndlessRun run(command);
    std::string answers = run.out.ReadSome();
    kill(run.process, SIGINT);
    answers += run.out.ReadAll();
    EXPECT_EQ(ShellStatusOf(run.process), 128 + SIGINT) << command.arguments.front();
    const std::string line = command.answer + "\n";
    ASSERT_EQ(answers.size() % line.size(), 0u) << command.arguments.front();
    for (std::size_t at = 0; at < answers.size(); at += line.size()) {
      ASSERT_EQ(answers.compare(at, line.size(), line), 0) << command.arguments.front();
    }
    EXPECT_TRUE(Tells(command, run.err.ReadAll())) << command.arguments.front();
  }
}

TEST_F(Ending, IsSilentWhereNobodyReadsOn) {
  for (const Command& command : kCommands) {
    EndlessRun run(command);
    EXPECT_TRUE(run.out.ReadSome().starts_with(command.answer + "\n"));
    run.out.CloseOut();
    EXPECT_EQ(ShellStatusOf(run.process), 128 + SIGPIPE) << command.arguments.front();
    EXPECT_EQ(run.err.ReadAll(), "");
  }
}

TEST_F(Ending, IsSilentForHelpAndListsToo) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"messages"}, {"--help"}, {"sql", "1"}, {"functions"}}) {
    Pipe out;
    Pipe err;
    out.CloseOut();
    const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
    const int process = StartTool(arguments, null, out.In(), err.In());
    close(null);
    err.CloseIn();
    EXPECT_EQ(ShellStatusOf(process), 128 + SIGPIPE) << arguments.front();
    EXPECT_EQ(err.ReadAll(), "");
  }
}

TEST_F(Ending, DoesNotComeBySignalsThatAreIgnored) {
  signal(SIGHUP, SIG_IGN);  // as `nohup` does; inherited
  Pipe in;
  Pipe out;
  const int process = StartTool({"sql"}, in.Out(), out.In(), STDERR_FILENO);
  signal(SIGHUP, SIG_DFL);
  out.CloseIn();
  in.Write("1\n");
  EXPECT_EQ(out.ReadSome(), "1\n");
  kill(process, SIGHUP);
  in.Write("2\n");
  EXPECT_EQ(out.ReadSome(), "2\n");
  in.CloseIn();
  EXPECT_EQ(ShellStatusOf(process), 0);
}

}  // namespace
