// Two routines of the session try a statement and return SQLSTATE and text in place of failing, so
// that one script can hold them all: one line of output for each.
#include "SqlSession.h"

#include "SampleDatabase.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

constexpr const char* kRoutines = R"sql(
create function pg_temp.prepared(statement text) returns text language plpgsql as $body$
begin
  execute 'prepare tried as ' || statement;
  deallocate tried;
  return '00000 ';
exception when others then
  return sqlstate || ' ' || replace(sqlerrm, chr(10), ' ');
end $body$;
create function pg_temp.result(query text) returns text language plpgsql as $body$
declare
  answer text;
begin
  execute query into answer;
  return '00000 ' || coalesce(answer, '');
exception when others then
  return sqlstate || ' ' || replace(sqlerrm, chr(10), ' ');
end $body$;
)sql";

/// A folder that the server's user can write to as well.
class OpenFolder {
 public:
  OpenFolder() : path_((fs::temp_directory_path() / "orkrule-sql-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no folder " + path_);
    fs::permissions(path_, fs::perms::all);
  }
  ~OpenFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

std::vector<Outcome> ReadOutcomes(const std::string& path) {
  std::vector<Outcome> outcomes;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.size() < 6) throw std::runtime_error("no outcome: " + line);
    outcomes.push_back({line.substr(0, 5), line.substr(6)});
  }
  return outcomes;
}

}  // namespace

SqlSession::SqlSession(PostgresServer& server, std::string database, std::string setup,
                       const std::vector<std::string>& files)
    : server_(server), database_(std::move(database)), setup_(std::move(setup)) {
  for (const std::string& file : files) setup_ += SourceText("tests/data/postgres/" + file);
}

std::vector<Outcome> SqlSession::Prepare(const std::vector<std::string>& statements) {
  return Run("prepared", statements);
}

std::vector<Outcome> SqlSession::Results(const std::vector<std::string>& queries) {
  return Run("result", queries);
}

std::vector<Outcome> SqlSession::Run(const std::string& routine,
                                     const std::vector<std::string>& statements) {
  const OpenFolder folder;
  const std::string out = folder.Path() + "/outcomes";
  std::string script = "set client_min_messages = error;\ndrop database if exists " + database_ +
                       ";\ncreate database " + database_ + ";\n\\connect " + database_ +
                       "\nset client_min_messages = error;\n" + setup_ + kRoutines +
                       "\\pset tuples_only on\n\\pset format unaligned\n\\o " + out + "\n";
  for (const std::string& statement : statements) {
    script += "select pg_temp." + routine + "($rule$" + statement + "$rule$);\n";
  }
  if (!server_.Run(script)) throw std::runtime_error(database_ + ": " + server_.Problem());
  std::vector<Outcome> outcomes = ReadOutcomes(out);
  if (outcomes.size() != statements.size()) throw std::runtime_error("outcomes are missing");
  return outcomes;
}
