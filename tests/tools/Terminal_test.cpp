// The tool before somebody's eyes: usage instead of a mute wait, colours, Ctrl-C, Ctrl-D.
#include "Terminal.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <string>

namespace {

constexpr const char* kCtrlC = "\x03";
constexpr const char* kCtrlD = "\x04";
constexpr int kByCtrlC = 128 + SIGINT;

#define NEEDS_TERMINAL(terminal) \
  if (!(terminal).IsThere()) GTEST_SKIP() << "no pseudo terminal on this machine"

TEST(AtATerminal, CommandsWithoutInputShowHowTheyAreUsed) {
  const std::vector<std::string> rows[] = {
      {"sql"},    {"verify"},         {"check"},
      {"format"}, {"uses", "--list"}, {"rename"},
      {"write"},  {"sql", "--jsonl"}, {"strip", "--tables", "T"},
  };
  for (const std::vector<std::string>& row : rows) {
    Terminal terminal(row);
    NEEDS_TERMINAL(terminal);
    const std::string seen = terminal.ReadAll();
    EXPECT_EQ(terminal.Wait(), 2) << seen;
    EXPECT_NE(seen.find("orkrule " + row.front() + " ["), seen.npos) << seen;
    EXPECT_NE(seen.find("orkrule: there is no "), seen.npos) << seen;
  }
}

TEST(AtATerminal, TheUsageGoesToStandardError) {
  const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
  Terminal terminal({"sql"}, -1, null);
  close(null);
  NEEDS_TERMINAL(terminal);
  EXPECT_NE(terminal.ReadAll().find("orkrule sql ["), std::string::npos);
  EXPECT_EQ(terminal.Wait(), 2);
}

TEST(AtATerminal, RulesMayBeTypedWhereThatIsAskedFor) {
  Terminal terminal({"sql", "--file", "-"});
  NEEDS_TERMINAL(terminal);
  terminal.Type("1 + 2\n");
  EXPECT_EQ(terminal.ReadUntil("1 + 2\r\n1 + 2\r\n"), "1 + 2\r\n1 + 2\r\n");  // echo and answer
  terminal.Type(kCtrlD);
  terminal.ReadAll();
  EXPECT_EQ(terminal.Wait(), 0);
}

TEST(AtATerminal, ARuleOfTheCommandLineIsAnswered) {
  Terminal terminal({"sql", "1 + 2"});
  NEEDS_TERMINAL(terminal);
  EXPECT_EQ(terminal.ReadAll(), "1 + 2\r\n");
  EXPECT_EQ(terminal.Wait(), 0);
}

TEST(AtATerminal, BatchTellsWhatItWaitsForAndAnswersEachLine) {
  Terminal terminal({"batch"});
  NEEDS_TERMINAL(terminal);
  EXPECT_NE(terminal.ReadUntil("ends.").find("Ctrl-D"), std::string::npos);
  terminal.Type("{\"op\":\"drop\",\"id\":1}\n");
  EXPECT_NE(terminal.ReadUntil("\n{\"id\":1}\r\n").find("\n{\"id\":1}\r\n"), std::string::npos);
  terminal.Type(kCtrlD);
  terminal.ReadAll();
  EXPECT_EQ(terminal.Wait(), 0);
}

TEST(AtATerminal, BatchIsSilentWhereItsInputComesFromElsewhere) {
  const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
  Terminal terminal({"batch"}, null);
  close(null);
  NEEDS_TERMINAL(terminal);
  EXPECT_EQ(terminal.ReadAll(), "");
  EXPECT_EQ(terminal.Wait(), 0);
}

TEST(AtATerminal, CtrlCEndsTheWaitForALine) {
  struct Row {
    std::vector<std::string> arguments;
    std::string typed;
    std::string answer;
  };
  const Row rows[] = {
      {{"batch"}, "{\"op\":\"new\"}\n", "{\"errNumber\":0,\"errDescription\":\"\"}\r\n"},
      {{"sql", "--file", "-"}, "1+2\n", "1 + 2\r\n"},
      {{"write", "--jsonl", "--file", "-"}, "\"x\"\n", "document"},
  };
  for (const Row& row : rows) {
    Terminal terminal(row.arguments);
    NEEDS_TERMINAL(terminal);
    terminal.Type(row.typed);
    ASSERT_NE(terminal.ReadUntil(row.answer).find(row.answer), std::string::npos);
    terminal.Type("half a line");
    terminal.ReadUntil("half a line");
    terminal.Type(kCtrlC);
    const std::string seen = terminal.ReadAll();
    EXPECT_EQ(terminal.Wait(), kByCtrlC) << seen;
    EXPECT_TRUE(seen.ends_with("half a line^C")) << seen;  // no answer, no message
  }
}

TEST(AtATerminal, ProblemsAreColouredAndFitIntoItsColumns) {
  std::string rule = "foo";
  for (int i = 0; i < 60; ++i) rule.append(" + ").append(std::to_string(i));
  Terminal terminal({"check", rule});
  NEEDS_TERMINAL(terminal);
  const std::string seen = terminal.ReadAll();
  EXPECT_EQ(terminal.Wait(), 1);
  EXPECT_NE(seen.find("\x1B[1;31merror:\x1B[0m "), seen.npos) << seen;
  const std::size_t excerpt = seen.find("\n  \x1B[1;31mfoo\x1B[0m + 0");
  ASSERT_NE(excerpt, seen.npos) << seen;
  const std::size_t end = seen.find("\r\n", excerpt + 1);
  const std::size_t marks = std::string("\x1B[1;31m\x1B[0m").size();
  EXPECT_LE(end - excerpt - 1 - marks, 80u) << seen;
  EXPECT_EQ(seen.substr(end - 3, 3), "...") << seen;
}

}  // namespace
