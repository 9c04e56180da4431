// The SQL of three dialects meets a database that knows most of it: PostgreSQL, which Kingbase and
// openGauss descend from, and its extension orafce for Oracle's. Every golden rule and every
// function of the language is parsed and analysed there against real tables; what cannot be is
// listed with its reason in tests/data/postgres/cannot_run.txt. Some are executed, too.
#include "PostgresTables.h"
#include "SqlSession.h"
#include "SqlStatements.h"

#include "GoldenFile.h"
#include "PostgresServer.h"
#include "SampleDatabase.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <sstream>

namespace {

struct Dialect {
  const char* name;
  ORKBASE::ORKDB_DSType_ENUM dsType;
  const char* setup;  // what stands before the files
  std::vector<std::string> files;
};

const Dialect kKingbase = {"kingbase",
                           ORKBASE::kKingbaseDs,
                           "\\set moment timestamp\n",
                           {"tables.sql", "shims.sql", "descendants.sql", "kingbase.sql"}};

const Dialect kOpenGauss = {"opengauss",
                            ORKBASE::kOpenGaussDs,
                            "\\set moment timestamp\n",
                            {"tables.sql", "shims.sql", "descendants.sql", "opengauss.sql"}};

// orafce puts its names into the schema oracle; they come first, or PostgreSQL's own would hide
// them.
const Dialect kOracle = {"oracle",
                         ORKBASE::kOracleDs,
                         "create extension orafce;\nset search_path = oracle, pg_catalog, public;\n"
                         "\\set moment oracle.date\n",
                         {"tables.sql", "shims.sql", "oracle.sql"}};

/// Starts the server and holds `hold` for each dialect that this machine can run. What is missing
/// is said and skipped.
template <typename Hold>
void ForEachDialect(Hold hold) {
  if (!PostgresServer::IsInstalled()) GTEST_SKIP() << "the package postgresql-15 is missing";
  PostgresServer server;
  ASSERT_TRUE(server.Start()) << server.Problem();
  hold(server, kKingbase);
  hold(server, kOpenGauss);
  if (!std::filesystem::exists("/usr/share/postgresql/15/extension/orafce.control")) {
    GTEST_SKIP() << "the package postgresql-15-orafce is missing: nothing was run for Oracle";
  }
  hold(server, kOracle);
}

/// SQL of a rule over the sample tables, in the modes of a golden block without any.
GoldenResult Translated(const std::string& type, const std::string& rule, const Dialect& dialect) {
  GoldenBlock block;
  block.type = RuleType(type);
  block.rule = rule;
  return RunGoldenBlock(block, dialect.dsType);
}

/// What the golden files say that their rules become. Refusals and empty sides are no SQL.
void AddGoldenRules(const Dialect& dialect, std::vector<RuleSql>& rules) {
  for (const std::string& file : GoldenFiles()) {
    for (const GoldenBlock& block : ReadGoldenFile(file)) {
      const GoldenResult& result = block.expected.at(dialect.name);
      const bool logic = block.type == ORKBASE::kLogicDataType;
      for (const std::string& sql : {result.a, result.b}) {
        if (!sql.empty()) rules.push_back({block.title, dialect.name, logic, sql});
      }
    }
  }
}

/// The rules of examples/: one for every function of the language, and some of everyday.
void AddExamples(const Dialect& dialect, std::vector<RuleSql>& rules) {
  std::istringstream lines(SourceText("examples/functions.txt") + SourceText("examples/rules.txt"));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::string type = line.substr(0, line.find(' '));
    const std::string rule = line.substr(line.find_first_not_of(' ', type.size()));
    const GoldenResult result = Translated(type, rule, dialect);
    if (result.failure.empty()) rules.push_back({rule, dialect.name, type == "logic", result.a});
    EXPECT_FALSE(result.failure.starts_with("refused")) << rule << ": " << result.failure;
  }
}

void HoldOutcome(const RuleSql& rule, const Outcome& outcome, std::vector<Excuse>& excuses) {
  const bool runs = outcome.state == kNoError;
  bool excused = runs;
  for (Excuse& excuse : excuses) {
    if (!excuse.Covers(rule)) continue;
    EXPECT_FALSE(runs) << "a row of cannot_run.txt for what does run: " << excuse.line << "\n  "
                       << rule.title << "\n  " << QueryOf(rule);
    if (excuse.state != outcome.state) continue;
    excused = true;
    excuse.used.insert(rule.dialect);
  }
  EXPECT_TRUE(excused) << rule.dialect << ", " << rule.title << "\n  " << QueryOf(rule) << "\n  "
                       << outcome.state << ' ' << outcome.text;
}

/// Every row is to be needed in each dialect that it names, as far as that was run.
void HoldNoIdleRow(const std::vector<Excuse>& excuses, const std::string& dialect) {
  for (const Excuse& excuse : excuses) {
    EXPECT_TRUE(!excuse.Names(dialect) || excuse.used.count(dialect) != 0)
        << "a row of cannot_run.txt that nothing needs for " << dialect << ": " << excuse.line;
  }
}

TEST(PostgresSql, EveryRuleIsPreparedOrListed) {
  std::vector<Excuse> excuses = ReadExcuses();
  ForEachDialect([&](PostgresServer& server, const Dialect& dialect) {
    std::vector<RuleSql> rules;
    AddGoldenRules(dialect, rules);
    AddExamples(dialect, rules);
    std::vector<std::string> statements;
    for (const RuleSql& rule : rules) statements.push_back(QueryOf(rule));
    const std::vector<Outcome> outcomes =
        SqlSession(server, dialect.name, dialect.setup, dialect.files).Prepare(statements);
    long good = 0;
    for (std::size_t i = 0; i < rules.size(); ++i) {
      HoldOutcome(rules[i], outcomes[i], excuses);
      good += outcomes[i].state == kNoError ? 1 : 0;
    }
    std::cout << dialect.name << ": " << good << " of " << rules.size() << " are prepared\n";
    HoldNoIdleRow(excuses, dialect.name);
  });
}

TEST(PostgresSql, ResultsAreThoseWorkedOutByHand) {
  const std::vector<HandResult> all = ReadHandResults();
  ForEachDialect([&](PostgresServer& server, const Dialect& dialect) {
    std::vector<HandResult> results;
    std::vector<std::string> queries;
    for (const HandResult& result : all) {
      if (result.expected.count(dialect.name) == 0) continue;
      const GoldenResult made = Translated(result.type, result.rule, dialect);
      ASSERT_EQ("", made.failure) << result.title;
      results.push_back(result);
      queries.push_back(
          ResultQueryOf({result.title, dialect.name, result.type == "logic", made.a}));
    }
    EXPECT_GE(results.size(), 12U);
    std::vector<std::string> files = dialect.files;
    files.emplace_back("rows.sql");
    const std::vector<Outcome> outcomes =
        SqlSession(server, dialect.name, dialect.setup, files).Results(queries);
    for (std::size_t i = 0; i < results.size(); ++i) {
      EXPECT_EQ(results[i].expected.at(dialect.name), outcomes[i].text)
          << dialect.name << ", " << results[i].title << "\n  " << queries[i];
    }
  });
}

}  // namespace
