// A store of rules on a server, renamed by a run that is killed in the middle and finished by the
// next. The names are exchanged, so a rule that is renamed twice is back where it was; and the
// server counts how often each rule was written. ORKRULE_STORED_RULES says how many there are.
#include "PostgresSuite.h"
#include "SampleDatabase.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

constexpr const char* kRules = R"(
create table rules (
  id bigint primary key, type text, expression text, document text, written int not null default 0);
insert into rules (id, type, expression)
  select n, 'logic', case n % 4
    when 0 then 'Orders.Amount > ' || n
    when 1 then 'T.a > ' || n || ' and Orders.Qty < 5'
    when 2 then 'Customer.Name = ''' || n || ''''
    else 'sum(T.b) > ' || n end
  from generate_series(1, COUNT) n;
create function count_writing() returns trigger language plpgsql as
  'begin new.written = old.written + 1; return new; end';
create trigger counts before update on rules for each row execute function count_writing();
)";

/// What the server must find to be true; a statement that fails where it does not.
std::string Holds(const std::string& condition) {
  return "do $$ begin if not (" + condition + ") then raise exception 'no'; end if; end $$";
}

/// What stands in a rule once the names are exchanged.
constexpr const char* kExpected = R"(case id % 4
    when 0 then 'T.Amount > ' || id
    when 1 then 'Orders.a > ' || id || ' and T.Qty < 5'
    when 2 then 'Customer.Name = ''' || id || ''''
    else 'sum(Orders.b) > ' || id end)";

long RuleCount() {
  const char* const asked = std::getenv("ORKRULE_STORED_RULES");
  return asked != nullptr ? std::atol(asked) : 4000;
}

class StoreOnServer : public PostgresSuite {
 protected:
  static void SetUpTestSuite() {
    std::string sql = kRules;
    sql.replace(sql.find("COUNT"), 5, std::to_string(RuleCount()));
    StartServer(sql);
  }

  static std::vector<std::string> Rename() {
    const std::string store = "odbc:Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" +
                              std::to_string(server_->Port()) +
                              ";Database=postgres;UseDeclareFetch=1";
    return {"store",
            "rename",
            "--store",
            store,
            "--store-user",
            PostgresServer::User(),
            "--db",
            kSampleDb,
            "--select",
            "select id, type, expression, document from rules",
            "--tables",
            "Orders:x,T:Orders,x:T",
            "--apply",
            "--commit-every",
            "100",
            "--update",
            "update rules set expression = :expression, document = :document where id = :id"};
  }
  static std::vector<std::string> Password() {
    return {std::string("ORKRULE_STORE_PASSWORD=") + PostgresServer::Password()};
  }
  static bool IsTrue(const std::string& condition) { return server_->Run(Holds(condition)); }

  static bool HasEnded(int process) {
    siginfo_t ended{};
    waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT);
    return ended.si_pid == process;
  }

  /// Kills a run once so many rules are written; false where it came to its end before.
  static bool KillAfter(long written) {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    const int process = StartTool(Rename(), nothing, nothing, nothing, Password());
    const std::string enough =
        "(select count(*) from rules where written > 0) >= " + std::to_string(written);
    using std::chrono::steady_clock;
    const auto end = steady_clock::now() + std::chrono::minutes(3);
    while (!IsTrue(enough) && steady_clock::now() < end && !HasEnded(process)) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    kill(process, SIGKILL);
    const bool wasKilled = WaitForTool(process) == -1;
    close(nothing);
    return wasKilled;
  }
};

TEST_F(StoreOnServer, RenamesEachRuleOnceThoughTheRunIsKilledTwice) {
  const long count = RuleCount();
  ASSERT_TRUE(KillAfter(count / 10)) << RunTool(Rename(), "", Password()).err;
  EXPECT_TRUE(KillAfter(count / 3));
  EXPECT_TRUE(IsTrue("exists (select from rules where written = 0 and id % 4 <> 2)"))
      << "nothing was left for the last run";
  const ToolResult last = RunTool(Rename(), "", Password());
  EXPECT_EQ(last.status, 0) << last.out << last.err;
  EXPECT_TRUE(
      IsTrue(std::string("not exists (select from rules where expression <> ") + kExpected + ")"));
  EXPECT_TRUE(IsTrue("not exists (select from rules where id % 4 <> 2 and written <> 1)"));
  EXPECT_TRUE(IsTrue("not exists (select from rules where document is not null)"))
      << "a document was made that the store did not have";
  // One more run of the same command has nothing to do.
  const ToolResult again = RunTool(Rename(), "", Password());
  EXPECT_EQ(again.status, 0) << again.out << again.err;
  EXPECT_TRUE(IsTrue("not exists (select from rules where written > 1)"));
}

}  // namespace
