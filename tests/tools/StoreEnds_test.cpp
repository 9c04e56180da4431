// How runs over a store end that do not come to their end: a database that is lost in the middle, a
// request to end, a process that is killed.
#include "StoreFile.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

namespace {

/// An error that SQLite meets when it reads the row, not when it looks at the statement.
constexpr const char* kFailingValue = "abs(-9223372036854775807 - 1)";

std::string ContentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(StoreEnds, TellsHowFarItCameWhenTheStoreIsLost) {
  const StoreFile store(ManyRules(100) + "update rules set expression = 'foo' where id = 49");
  const std::string select = std::string("select id, type, case when id = 50 then ") +
                             kFailingValue + " else expression end as expression from rules";
  for (const char* jobs : {"1", "3"}) {
    const ToolResult result = store.Tool("check", {"--jobs", jobs}, select);
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err.rfind("orkrule: stopped after 49 rules: ", 0), 0U) << result.err;
    EXPECT_EQ(result.out.rfind("49      refused ", 0), 0U) << result.out;
    EXPECT_NE(result.out.find("49 rules: 48 well, 1 refused"), result.out.npos) << result.out;
    const auto json = store.Tool("check", {"--json", "--jobs", jobs}, select).Json();
    EXPECT_EQ(json.back()["summary"]["isComplete"], false);
  }
}

TEST(StoreEnds, TellsHowFarItCameWhenTheMetadataAreLost) {
  const StoreFile store(ManyRules(100) +
                        "update rules set expression = 'T.a > 1' where id between 50 and 60");
  TempDatabase metadata(SourceText("examples/shop.sql"));
  metadata.Run(std::string("drop view mx_v_datafield; create view mx_v_datafield as select "
                           "t.dtName, f.fldName, f.realName as fldRealName, case when t.dtName = "
                           "'T' then ") +
               kFailingValue +
               " else f.baseType end as baseType, t.dtId, f.fldId, t.realName as tabRealName, "
               "t.refName as tabRefName, t.state from data_tables t join data_fields f on f.dtId "
               "= t.dtId");
  const ToolResult result = RunTool({"store", "check", "--store", store.Path(), "--db",
                                     metadata.Path(), "--select", kSelectRules});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.err.rfind("orkrule: stopped after 49 rules: ", 0), 0U) << result.err;
  EXPECT_EQ(result.out, "49 rules: 49 well, 0 refused, 0 changed, 0 not translatable\n");
  const ToolResult renamed =
      RunTool({"store", "rename", "--store", store.Path(), "--db", metadata.Path(), "--select",
               kSelectRules, "--tables", "Orders:Sales", "--apply", "--update",
               "update rules set expression = :expression where id = :id"});
  EXPECT_EQ(renamed.status, 3);
  EXPECT_NE(renamed.err.find("orkrule: nothing was written\n"), renamed.err.npos) << renamed.err;
  EXPECT_EQ(store.Read("select count(*) from rules where expression like '%Sales%'"), "0\n");
}

TEST(StoreEnds, EndsBehindAWholeLineWhenAsked) {
  const StoreFile store("");
  const std::string endless =
      "with recursive n(id) as (select 1 union all select id + 1 from n) select id, 'number' as "
      "type, 'foo' as expression from n";
  const std::string out = store.Path() + ".out";
  const int null = open("/dev/null", O_RDWR);
  for (const char* jobs : {"1", "2"}) {
    std::FILE* const file = std::fopen(out.c_str(), "w+");
    std::FILE* const err = std::tmpfile();
    const int process = StartTool(
        {"store", "check", "--json", "--jobs", jobs, "--store", store.Path(), "--select", endless},
        null, fileno(file), fileno(err));
    while (ContentOf(out).empty()) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    kill(process, SIGINT);
    EXPECT_EQ(WaitForTool(process), -1);  // ended by the signal, as shells want to know
    const std::string text = ContentOf(out);
    const std::size_t last = text.find_last_of('\n', text.size() - 2);
    const auto summary = nlohmann::ordered_json::parse(text.substr(last + 1))["summary"];
    EXPECT_EQ(summary["isComplete"], false);
    EXPECT_EQ(summary["rules"], summary["refused"]);
    char line[64] = {};
    std::rewind(err);
    EXPECT_NE(std::fgets(line, sizeof line, err), nullptr);
    EXPECT_EQ(line, "orkrule: interrupted after " + summary["rules"].dump() + " rules\n");
    std::fclose(file);
    std::fclose(err);
  }
  close(null);
  unlink(out.c_str());
}

/// Each rule exchanges its two tables, which done twice would be as before.
TEST(StoreEnds, AKilledRunIsFinishedByTheNextOne) {
  constexpr int kRules = 800;
  const StoreFile store(ManyRules(kRules) + "update rules set expression = expression || ' + T.a'");
  // clang-format off
  const std::vector<std::string> options = {
      "store", "rename", "--store", store.Path(), "--db", kSampleDb, "--select", kSelectRules,
      "--tables", "Orders:x,T:Orders,x:T", "--commit-every", "5", "--apply",
      "--update", "update rules set expression = :expression where id = :id"};
  // clang-format on
  const std::string count = "select count(*) from rules where expression like ";
  const int null = open("/dev/null", O_RDWR);
  int done = 0;
  for (int i = 0; i < 20 && done == 0; ++i) {
    const int process = StartTool(options, null, null, null);
    std::this_thread::sleep_for(std::chrono::milliseconds(100 + 50 * i));
    kill(process, SIGKILL);
    WaitForTool(process);
    done = std::stoi(store.Read(count + "'T.Amount > % + Orders.a'"));
    EXPECT_EQ(store.Read(count + "'Orders.Amount > % + T.a'"),
              std::to_string(kRules - done) + "\n");
  }
  close(null);
  EXPECT_GT(done, 0);
  const ToolResult last = RunTool(options);
  EXPECT_EQ(last.status, 0) << last.out << last.err;
  EXPECT_EQ(store.Read(count + "'T.Amount > % + Orders.a'"), std::to_string(kRules) + "\n");
  if (done < kRules) {
    EXPECT_NE(last.out.find("changed " + std::to_string(kRules - done) + " of 800 rules; " +
                            std::to_string(done) + " were changed by an earlier run\n"),
              last.out.npos)
        << last.out;
  }
}

}  // namespace
