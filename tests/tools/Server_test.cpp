// The tool on a metadata database behind a server: the sample database in a PostgreSQL of its own.
#include "PostgresSuite.h"
#include "SampleDatabase.h"
#include "ToolRun.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <pty.h>
#include <unistd.h>

#include <optional>
#include <string>

namespace {

const std::string kPassword = PostgresServer::Password();

class Server : public PostgresSuite {
 protected:
  static void SetUpTestSuite() { StartServer(SourceText("examples/shop.sql")); }

  static std::string Port() { return std::to_string(server_->Port()); }
  static std::string OdbcText() {
    return "odbc:Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" + Port() +
           ";Database=postgres";
  }
  /// `orkrule sql` on the server by its host name; openGauss speaks through this server's driver.
  static std::vector<std::string> SqlByHost(const std::string& rule) {
    return {"sql",  "--dialect", "opengauss", "--db",       "127.0.0.1", "--port",
            Port(), "--user",    "ork",       "--database", "postgres",  rule};
  }
};

/// Runs the tool at a terminal of its own where `typed` is typed; returns all that is seen there.
/// Nothing where the machine has no pseudo terminals.
std::optional<std::string> RunAtTerminal(std::vector<std::string> arguments,
                                         const std::string& typed) {
  int terminal = -1;
  const pid_t process = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (process < 0) return std::nullopt;
  if (process == 0) {
    std::vector<char*> argv{const_cast<char*>(ORKRULE_TOOL)};
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    setenv("LC_ALL", "C", 1);
    unsetenv("ORKRULE_PASSWORD");
    alarm(60);  // ends a tool that waits for more than was typed
    execv(argv[0], argv.data());
    _exit(127);
  }
  std::string seen;
  char block[4096];
  bool asked = false;
  for (ssize_t count = 0; (count = read(terminal, block, sizeof block)) > 0;) {
    seen.append(block, static_cast<std::size_t>(count));
    if (asked || seen.find(": ") == seen.npos) continue;
    asked = true;
    EXPECT_EQ(write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
  }
  close(terminal);
  EXPECT_EQ(WaitForTool(process), 0) << seen;
  return seen;
}

TEST_F(Server, IsReachedByHostPortUserAndDatabase) {
  const ToolResult result =
      RunTool(SqlByHost("Stock.Count"), "", {"ORKRULE_PASSWORD=" + kPassword});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "COALESCE(\"Stock\".qty_left,0)\n");
}

TEST_F(Server, IsReachedByAConnectionString) {
  const ToolResult result = RunTool({"sql", "--db", OdbcText(), "--user", "ork", "客户.金额 > T.a"},
                                    "", {"ORKRULE_PASSWORD=" + kPassword});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "isnull([客户].金额,0) > isnull([T].a,0)\n");
}

TEST_F(Server, LoadsAReportTemplateAsTheEmbeddedDatabaseDoes) {
  const auto rules = [](const std::string& database) {
    return RunTool({"sql", "--db", database, "--user", "ork", "--rt", "7", "--file", "-"},
                   "Header.Total > 1\nsum(Lines.Qty)\nOrders.Amount\n",
                   {"ORKRULE_PASSWORD=" + kPassword});
  };
  const ToolResult embedded = rules(ORKRULE_SAMPLE_DB);
  const ToolResult served = rules(OdbcText());
  EXPECT_EQ(served.status, embedded.status) << served.err << embedded.err;
  EXPECT_EQ(served.out, embedded.out);
  EXPECT_EQ(served.err, embedded.err);
}

TEST_F(Server, WithAWrongPasswordIsAnErrorThatDoesNotShowIt) {
  const ToolResult result = RunTool(SqlByHost("T.a"), "", {"ORKRULE_PASSWORD=wr0ng"});
  EXPECT_NE(result.status, 0);
  EXPECT_NE(result.err, "");
  EXPECT_EQ(result.err.find("wr0ng"), std::string::npos) << result.err;
}

TEST_F(Server, AsksForThePasswordWithoutShowingIt) {
  std::vector<std::string> arguments = SqlByHost("T.a");
  arguments.insert(arguments.end() - 1, "--ask-password");
  const std::optional<std::string> seen = RunAtTerminal(arguments, kPassword + "\n");
  if (!seen) GTEST_SKIP() << "no pseudo terminal on this machine";
  EXPECT_EQ(*seen, "Password: \r\nCOALESCE(\"T\".a,0)\r\n");
}

/// An engine of the library on the server.
struct ServedExpression : ORKBASE::MxExpression {
  explicit ServedExpression(const std::string& server) {
    Connect(U16(server), 0, u"", u"ork", u"", ORKBASE::kSqlServerDs, false, true, U16(kPassword));
  }
  bool Knows(const std::u16string& rule) {
    std::u16string document;
    return Verify(ORKBASE::kNumDataType, rule, document);
  }
};

TEST_F(Server, ThatGoesAwayBetweenTwoLoadsIsAnErrorUntilItIsBack) {
  ServedExpression rules(OdbcText());
  rules.SetDts(u"T");
  EXPECT_EQ(rules.errNumber(), 0) << U8(rules.errDescription());
  server_->Stop();
  rules.SetDts(u"Orders");
  EXPECT_GT(rules.errNumber(), 0);
  EXPECT_NE(U8(rules.errDescription()), "");
  rules.SetRt(u"7");
  EXPECT_GT(rules.errNumber(), 0);
  EXPECT_FALSE(rules.Knows(u"Customer.Credit"));
  EXPECT_TRUE(rules.Knows(u"T.a + 1"));  // what was loaded stays
  ASSERT_TRUE(server_->Start()) << server_->Problem();
  rules.SetDts(u"Orders");
  EXPECT_EQ(rules.errNumber(), 0) << U8(rules.errDescription());
  EXPECT_TRUE(rules.Knows(u"Orders.Amount + T.a"));
}

TEST_F(Server, ServesBatchLines) {
  nlohmann::ordered_json connect = {{"op", "Connect"}, {"server", OdbcText()},
                                    {"dbArgA", "ork"}, {"dbArgC", kPassword},
                                    {"dsType", 0},     {"flagB", true}};
  const auto answers =
      RunBatch({connect.dump(), R"({"op":"Translate","type":1,"expression":"Orders.Amount + 1"})"});
  ASSERT_EQ(answers.size(), 2u);
  EXPECT_EQ(answers[1]["a"], "isnull([Orders].Amount,0) + 1") << answers[1];
}

}  // namespace
