// Exit statuses: 0 done, 1 a refused rule, 2 bad usage, 3 input or output that failed.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <string>

namespace {

TEST(ExitStatus, TellsWhatHappened) {
  struct Row {
    int status;
    std::vector<std::string> arguments;
  };
  const Row rows[] = {
      // clang-format off
      {0, {"sql", "1"}},
      {0, {"--help"}},
      {0, {"batch"}},
      {0, {"verify"}},
      {0, {"check", "1"}},
      {0, {"check", "--dialect", "all", "--split", "1 = 1"}},
      {0, {"write"}},
      {0, {"format", "--check", "1 + 2"}},
      {0, {"complete", ""}},
      {0, {"explain", "--offset", "3", "1 + 2"}},
      {0, {"uses", "--list", "foo"}},
      {0, {"tables", "--db", kSampleDb, "nowhere"}},
      {1, {"sql", "foo"}},
      {1, {"check", "--fix", "foo"}},
      {1, {"check", "--type", "date", "--fix", "1"}},
      {1, {"write", "x"}},
      {1, {"format", "--check", "1+2"}},
      {1, {"sql", "--type", "99", "1"}},
      {1, {"verify", "--type", "date", "1"}},
      {1, {"sql", "--db", kSampleDb, "Nowhere.x"}},
      {2, {}},
      {2, {"nonsense"}},
      {2, {"sql", "--nonsense", "1"}},
      {2, {"sql", "1", "2"}},
      {2, {"sql", "--type", "nonsense", "1"}},
      {2, {"sql", "--type", "1.5", "1"}},
      {2, {"sql", "--type", "99999999999", "1"}},
      {2, {"sql", "--dialect", "nonsense", "1"}},
      {2, {"rename", "--dialect", "all", "1"}},
      {2, {"sql", "--file", "x", "1"}},
      {2, {"sql", "--cax", "x=y", "1"}},
      {2, {"sql", "--port", "x", "1"}},
      {2, {"sql", "\xFF"}},
      {2, {"uses", "T.a"}},
      {2, {"uses", "--list", "--tables", "T", "T.a"}},
      {2, {"check", "--fix", "--json", "1"}},
      {2, {"check", "--color", "red", "1"}},
      {2, {"check", "--dialect", "nonsense", "1"}},
      {2, {"complete"}},
      {2, {"complete", "--offset", "2", "1"}},
      {2, {"explain", "--offset", "-1", "1"}},
      {2, {"explain", "--offset", "x", "1"}},
      {2, {"functions", "--dialect", "nonsense"}},
      {2, {"fields"}},
      {2, {"write", "--file", "x", "<x/>"}},
      {2, {"strip", "T.a"}},
      {2, {"vocabulary"}},
      {2, {"vocabulary", "nonsense"}},
      {2, {"batch", "--nonsense"}},
      {2, {"batch", "nonsense"}},
      {3, {"sql", "--file", "/nowhere/rules.txt"}},
      {3, {"sql", "--file", "/"}},
      {3, {"sql", "--db", "/nowhere/shop.db", "1"}},
      {3, {"sql", "--db", "nowhere.db", "1"}},
      {3, {"sql", "--db", "sqlite:/nowhere/shop.db", "T.a"}},
      {3, {"sql", "--cax", "1=/nowhere/cax.xml", "1"}},
      {3, {"sql", "--db", kSampleDb, "--tables", "Nowhere", "1"}},
      {3, {"complete", "--db", kSampleDb, "--tables", "Nowhere", "1"}},
      {3, {"check", "--db", kSampleDb, "--rt", "8", "1"}},
      {3, {"explain", "--cax", "1=/nowhere/cax.xml", "1"}},
      {3, {"write", "--file", "/nowhere/documents.txt"}},
      {3, {"tables"}},
      {3, {"fields", "--db", kSampleDb, "Nowhere"}},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = RunTool(row.arguments);
    EXPECT_EQ(result.status, row.status) << testing::PrintToString(row.arguments) << result.err;
    EXPECT_EQ(result.err.empty(), row.status == 0) << testing::PrintToString(row.arguments);
  }
}

TEST(ExitStatus, TellsOfInputThatIsNoText) {
  EXPECT_EQ(RunTool({"sql"}, "1\n\xFF\n").status, 3);
  EXPECT_EQ(RunTool({"sql", "--jsonl"}, "1\n").status, 3);
  EXPECT_EQ(RunTool({"sql", "--jsonl"}, "{\"expression\":1}\n").status, 3);
  EXPECT_EQ(RunTool({"sql", "--jsonl"}, "{\"expression\":\"1\",\"type\":\"x\"}\n").status, 3);
  EXPECT_EQ(RunTool({"write"}, "<x>\xFF</x>").status, 3);
  EXPECT_EQ(RunTool({"write", "--jsonl"}, "{\"expression\":\"1\"}\n").status, 3);
}

TEST(ExitStatus, TellsOfOutputThatFails) {
  const int null = open("/dev/null", O_RDWR);
  const int full = open("/dev/full", O_WRONLY);
  ASSERT_GE(full, 0);
  EXPECT_EQ(WaitForTool(StartTool({"messages"}, null, full, null)), 3);
  EXPECT_EQ(WaitForTool(StartTool({"sql", "1"}, null, full, null)), 3);
  EXPECT_EQ(WaitForTool(StartTool({"--help"}, null, full, null)), 3);
  EXPECT_EQ(WaitForTool(StartTool({"sql"}, -1, null, null)), 3);
  for (const int file : {null, full}) close(file);
}

}  // namespace
