// The batch as a stream: order, large lines, a conversation over pipes, input and output that fail.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <string>

namespace {

TEST(BatchStream, KeepsTheOrderOfManyLines) {
  constexpr int kLines = 20000;
  std::string input;
  for (int i = 0; i < kLines; ++i) {
    input += "{\"id\":" + std::to_string(i) +
             ",\"op\":\"IsDtsInExp\",\"tables\":\"T\",\"expression\":\"T.a + 1\"}\n";
  }
  const auto answers = RunTool({"batch"}, input).Json();
  ASSERT_EQ(answers.size(), static_cast<std::size_t>(kLines));
  for (int i = 0; i < kLines; ++i) {
    const auto& answer = answers[static_cast<std::size_t>(i)];
    ASSERT_EQ(answer.at("id"), i);
    ASSERT_EQ(answer.at("result"), true);
  }
}

TEST(BatchStream, TakesLargeLines) {
  const std::string text(10 * 1024 * 1024, 'x');
  const auto isNull =
      RunBatch({"{\"op\":\"AddIsNull\",\"type\":1,\"expression\":\"" + text + "\"}"});
  EXPECT_TRUE(isNull.at(0).at("expression") == "isnull(" + text + ",0)");
  const auto composed =
      RunBatch({"{\"op\":\"Compose\",\"document\":\"<tag text='" + text + "'/>\"}"});
  EXPECT_TRUE(composed.at(0).at("a") == text);
}

TEST(BatchStream, RefusesDeepJsonAndGoesOn) {
  std::string input;
  std::string expected;
  for (const std::size_t levels : {31u, 32u, 100000u}) {
    const std::string deep = std::string(levels, '[') + std::string(levels, ']');
    input += "{\"op\":\"drop\",\"object\":\"none\",\"id\":" + deep + "}\n";
    expected += levels < 32
                    ? "{\"id\":" + deep + ",\"error\":\"there is no object \\\"none\\\"\"}\n"
                    : "{\"error\":\"the line is nested more than 32 levels deep\"}\n";
  }
  const ToolResult result = RunTool({"batch"}, input);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, expected);
}

/// The tool between two pipes, as another program talks to it.
class Conversation {
 public:
  explicit Conversation(const std::vector<std::string>& arguments) {
    int in[2];
    int out[2];
    EXPECT_EQ(pipe2(in, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(out, O_CLOEXEC), 0);
    process_ = StartTool(arguments, in[0], out[1], STDERR_FILENO);
    close(in[0]);
    close(out[1]);
    to_ = in[1];
    from_ = out[0];
  }
  ~Conversation() {
    CloseInput();
    if (from_ >= 0) close(from_);
  }
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  void Say(const std::string& text) {
    EXPECT_EQ(write(to_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }

  /// One line of the tool; what there is of it when no more comes for ten seconds.
  std::string Hear() {
    std::string line;
    for (char c = 0; c != '\n';) {
      pollfd state{from_, POLLIN, 0};
      if (poll(&state, 1, 10000) <= 0 || read(from_, &c, 1) != 1) break;
      line += c;
    }
    return line;
  }

  void CloseInput() {
    if (to_ >= 0) close(to_);
    to_ = -1;
  }
  void CloseOutput() {
    close(from_);
    from_ = -1;
  }
  int Wait() const { return WaitForTool(process_); }

 private:
  int process_ = 0;
  int to_ = -1;
  int from_ = -1;
};

TEST(BatchStream, AnswersWhileTheCallerWaits) {
  for (const bool flush : {false, true}) {
    std::vector<std::string> arguments{"batch"};
    if (flush) arguments.emplace_back("--flush");
    Conversation tool(arguments);
    tool.Say("{\"op\":\"drop\",\"object\":\"main\",\"id\":1}\n");
    EXPECT_EQ(tool.Hear(), "{\"id\":1}\n");
    tool.Say("{\"op\":\"new\",\"id\":2}\n{\"op\":\"drop\",\"id\":3}\n{\"op\":");
    EXPECT_EQ(tool.Hear(), "{\"id\":2,\"errNumber\":0,\"errDescription\":\"\"}\n");
    EXPECT_EQ(tool.Hear(), "{\"id\":3}\n");
    tool.Say("\"new\",\"id\":4}");
    tool.CloseInput();
    EXPECT_EQ(tool.Hear(), "{\"id\":4,\"errNumber\":0,\"errDescription\":\"\"}\n");
    EXPECT_EQ(tool.Wait(), 0);
  }
}

TEST(BatchStream, EndsWhenNobodyListens) {
  Conversation tool({"batch"});
  tool.Say("{\"op\":\"new\",\"id\":1}\n");
  EXPECT_NE(tool.Hear(), "");
  tool.CloseOutput();
  tool.Say("{\"op\":\"new\",\"id\":2}\n");
  EXPECT_EQ(tool.Wait(), -1);  // by the signal that ends other programs too
}

TEST(BatchStream, TellsOfInputAndOutputThatFail) {
  const int null = open("/dev/null", O_RDWR);
  const int full = open("/dev/full", O_RDWR);
  const int folder = open("/", O_RDONLY | O_DIRECTORY);
  EXPECT_EQ(WaitForTool(StartTool({"batch"}, null, null, null)), 0);
  EXPECT_EQ(WaitForTool(StartTool({"batch"}, folder, null, null)), 3);
  EXPECT_EQ(WaitForTool(StartTool({"batch"}, -1, null, null)), 3);
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  const std::string line = "{\"op\":\"get\"}\n";
  EXPECT_EQ(write(ends[1], line.data(), line.size()), static_cast<ssize_t>(line.size()));
  close(ends[1]);
  EXPECT_EQ(WaitForTool(StartTool({"batch"}, ends[0], full, null)), 3);
  for (const int file : {null, full, folder, ends[0]}) close(file);
}

}  // namespace
