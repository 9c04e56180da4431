// Both readers go line by line and throw what they do not understand.
#include "PostgresTables.h"

#include "SampleDatabase.h"

#include <sstream>
#include <stdexcept>

namespace {

/// Calls `take` with every line that is neither empty nor a remark.
template <typename Take>
void ForEachLine(const std::string& name, Take take) {
  std::istringstream lines(SourceText("tests/data/postgres/" + name));
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.front() != '#') take(line);
  }
}

[[noreturn]] void Refuse(const std::string& line) {
  throw std::runtime_error("not understood: " + line);
}

}  // namespace

bool Excuse::Names(const std::string& dialect) const {
  return (" " + dialects + " ").find(" " + dialect + " ") != std::string::npos;
}

bool Excuse::Covers(const RuleSql& rule) const {
  if (!Names(rule.dialect)) return false;
  return title.empty() ? std::regex_search(rule.sql, sql) : rule.title == title;
}

std::vector<Excuse> ReadExcuses() {
  const std::regex row(R"re(^([a-z ]+) (\w{5}) (?:/(.*)/|"(.*)")$)re");
  std::vector<Excuse> excuses;
  bool hasReason = false;
  ForEachLine("cannot_run.txt", [&](const std::string& line) {
    std::smatch found;
    if (line.starts_with("== ")) {
      hasReason = true;
    } else if (hasReason && std::regex_match(line, found, row)) {
      excuses.push_back({line, found[1], found[2], found[4], std::regex(found[3].str()), {}});
    } else {
      Refuse(line);
    }
  });
  return excuses;
}

std::vector<HandResult> ReadHandResults() {
  const std::regex rule(R"(^(\w+): (.*)$)");
  const std::regex value(R"(^([a-z ]+) \|(.*)\|$)");
  std::vector<HandResult> results;
  ForEachLine("results.txt", [&](const std::string& line) {
    std::smatch found;
    if (line.starts_with("== ")) {
      results.push_back({line.substr(3), {}, {}, {}});
    } else if (results.empty()) {
      Refuse(line);
    } else if (std::regex_match(line, found, rule)) {
      results.back().type = found[1];
      results.back().rule = found[2];
    } else if (std::regex_match(line, found, value)) {
      std::istringstream names(found[1]);
      for (std::string name; names >> name;) results.back().expected[name] = found[2];
    } else {
      Refuse(line);
    }
  });
  return results;
}

ORKBASE::MXRULE_DATATYPE RuleType(const std::string& name) {
  if (name == "number") return ORKBASE::kNumDataType;
  if (name == "text") return ORKBASE::kStrDataType;
  if (name == "date") return ORKBASE::kDateDataType;
  if (name == "logic") return ORKBASE::kLogicDataType;
  throw std::runtime_error("no type " + name);
}
