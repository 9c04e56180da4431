// The batch by several threads, what it counts, and when it ends early.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;

/// The rules of the examples as lines, with calls between that change something.
std::string ExampleLines() {
  std::string lines = ConnectLine() + "\n";
  std::ifstream file(ORKRULE_SOURCE_DIR "/examples/rules.txt");
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    const std::size_t blank = line.find(' ');
    if (line.starts_with('#') || blank == line.npos) continue;
    const std::string rule = line.substr(line.find_first_not_of(' ', blank));
    const std::string op = ++number % 40 == 0 ? "Check" : "Translate";
    lines += Json{{"id", number}, {"op", op}, {"type", 5}, {"expression", rule}}.dump() + "\n";
    if (number % 20 == 0) lines += "\n{\"op\":\"get\"}\n{\"op\":\n";
    if (number % 50 == 0)
      lines += Json{{"op", "set"}, {"rtId", std::to_string(number)}}.dump() + "\n";
  }
  return lines;
}

TEST(BatchJobs, AnswerWithTheSameBytes) {
  std::string lines;
  while (lines.size() < 600'000) lines += ExampleLines();  // some thousand lines
  const ToolResult one = RunTool({"batch"}, lines);
  EXPECT_EQ(one.status, 0);
  EXPECT_EQ(one.err, "");
  EXPECT_GT(one.out.size(), lines.size());
  for (const char* jobs : {"2", "3", "0"}) {
    const ToolResult many = RunTool({"batch", "--jobs", jobs}, lines);
    EXPECT_EQ(many.status, 0);
    EXPECT_EQ(many.err, "");
    EXPECT_TRUE(many.out == one.out) << jobs;
  }
}

TEST(BatchJobs, AreANumber) {
  for (const char* jobs : {"-1", "257", "two", ""}) {
    EXPECT_EQ(RunTool({"batch", "--jobs", jobs}).status, 2) << jobs;
  }
}

TEST(BatchCounts, TellTheTruthByStatusAndOnStandardError) {
  const std::string good = R"({"op":"Verify","type":1,"expression":"1","want":[]})";
  const std::string refused = R"({"op":"Verify","type":1,"expression":"foo","want":[]})";
  const std::string bad = R"({"op":"nothing"})";
  struct Row {
    std::vector<std::string> options;
    std::vector<std::string> lines;
    int status;
    std::size_t answers;
    const char* err;
  };
  const Row rows[] = {
      // clang-format off
      {{},                                {good, refused, bad},     0, 3, ""},
      {{"--keep-going"},                  {good, refused, bad},     0, 3, ""},
      {{"--strict"},                      {},                       0, 0, "orkrule: 0 lines answered, 0 refused, 0 bad\n"},
      {{"--strict"},                      {good, "", good},         0, 2, "orkrule: 2 lines answered, 0 refused, 0 bad\n"},
      {{"--strict"},                      {good, " ", refused, refused},
                                                                    1, 3, "orkrule: 3 lines answered, 2 refused (the first in line 3), 0 bad\n"},
      {{"--strict"},                      {bad, good},              1, 2, "orkrule: 2 lines answered, 0 refused, 1 bad (the first in line 1)\n"},
      {{"--no-keep-going"},               {good, good},             0, 2, "orkrule: 2 lines answered, 0 refused, 0 bad\n"},
      {{"--no-keep-going"},               {good, refused, bad},     1, 2, "orkrule: 2 lines answered, 1 refused (the first in line 2), 0 bad\n"},
      {{"--no-keep-going", "--strict"},   {good, bad, good},        1, 2, "orkrule: 2 lines answered, 0 refused, 1 bad (the first in line 2)\n"},
      // clang-format on
  };
  for (const Row& row : rows) {
    std::string input;
    for (const std::string& line : row.lines) input += line + "\n";
    for (const char* jobs : {"1", "2"}) {
      std::vector<std::string> arguments{"batch", "--jobs", jobs};
      arguments.insert(arguments.end(), row.options.begin(), row.options.end());
      const ToolResult result = RunTool(arguments, input);
      EXPECT_EQ(result.status, row.status) << result.err;
      EXPECT_EQ(result.Json().size(), row.answers) << result.out;
      EXPECT_EQ(result.err, row.err);
    }
  }
}

TEST(BatchHelp, ListsEveryOperationWithItsFields) {
  const std::string help = RunTool({"batch", "--help"}).out;
  const std::string rows[] = {
      "\n  new\n",
      "\n  copy from*\n",
      "\n  Verify type* expression* -> result document\n",
      "\n  SetRt id_* -> result\n",
      "\n  Connect server* port=0 proxy=\"\"",
      "\n  Format expression* width=100 language=\"\" -> expression\n",
  };
  for (const std::string& row : rows) EXPECT_NE(help.find(row), help.npos) << row;
  const std::vector<Json> answers = RunBatch({R"({"op":"help"})"});
  for (const Json& operation : answers.at(0).at("operations")) {
    EXPECT_NE(help.find("\n  " + operation.at("name").get<std::string>()), help.npos) << operation;
  }
}

}  // namespace
