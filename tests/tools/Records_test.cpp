// JSON in, JSON out: every command takes a record with a rule, gives the record with its answer,
// and takes what another gave.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;

/// The command with --jsonl and --json.
ToolResult Records(Arguments arguments, const std::string& input) {
  arguments.insert(arguments.end(), {"--jsonl", "--json"});
  return RunTool(arguments, input);
}

std::vector<std::string> KeysOf(const nlohmann::ordered_json& record) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : record.items()) keys.push_back(key);
  return keys;
}

TEST(Records, KeepWhatACommandDoesNotKnow) {
  struct Row {
    Arguments arguments;
    std::string out;
  };
  const std::string in = R"({"id":12345678901234567890.50,"expression":"1 = 1","x":{"y":[1.0]}})";
  const std::string begin = R"({"id":12345678901234567890.50,"expression":"1 = 1","x":{"y":[1.0]})";
  const Row rows[] = {
      // clang-format off
      {{"sql"},                        R"(,"dialect":"default","sql":"1 = 1"})"},
      {{"sql", "--dialect", "dm,oracle"}, R"(,"dialects":[{"dialect":"dm","sql":"1 = 1"},{"dialect":"oracle","sql":"1 = 1"}]})"},
      {{"sql", "--split"},             R"~(,"dialect":"default","where":"(1 = 1)","having":""})~"},
      {{"verify"},                     R"(,"valid":true})"},
      {{"check"},                      R"(,"problems":[],"errNumber":0,"errDescription":""})"},
      {{"check", "--fix"},             R"(,"original":"1 = 1","problems":[],"errNumber":0,"errDescription":""})"},
      {{"format"},                     R"(,"errNumber":0,"errDescription":""})"},
      {{"uses", "--tables", "T"},      R"(,"uses":false,"differsInCase":[]})"},
      {{"uses", "--list"},             R"(,"uses":[],"errNumber":0,"errDescription":""})"},
      {{"strip", "--tables", "T"},     R"(,"original":"1 = 1"})"},
      {{"rename", "--tables", "T:U"},  R"(,"original":"1 = 1","differsInCase":[]})"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = Records(row.arguments, in + "\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, begin + row.out + "\n");
  }
}

TEST(Records, HaveTheirRuleWhereItWas) {
  struct Row {
    Arguments arguments;
    std::string in;
    std::string out;
  };
  const Row rows[] = {
      // clang-format off
      {{"rename", "--tables", "T:U"}, R"({"expression":"T.a","id":1})",
       R"({"expression":"U.a","id":1,"original":"T.a","differsInCase":[]})"},
      {{"rename", "--tables", "T:U", "--key", "formula"}, R"({"expression":7,"formula":"T.a"})",
       R"({"expression":7,"formula":"U.a","original":"T.a","differsInCase":[]})"},
      {{"strip", "--db", kSampleDb, "--tables", "T"}, R"({"expression":"T.a > 1","id":1})",
       R"({"expression":"","id":1,"original":"T.a > 1"})"},
      {{"check", "--fix"}, R"({"expression":"1 == 1","type":"logic"})",
       R"({"expression":"1 = 1","type":"logic","original":"1 == 1","problems":[],"errNumber":0,"errDescription":""})"},
      {{"format"}, R"({"id":1,"expression":"1+1"})",
       R"({"id":1,"expression":"1 + 1","errNumber":0,"errDescription":""})"},
      {{"format"}, R"("1+1")", R"({"expression":"1 + 1","errNumber":0,"errDescription":""})"},
      // a member that a command has an answer to is replaced; an error that came in is an old one
      {{"sql"}, R"({"sql":"old","expression":"1","dialect":"old","error":{"text":"old"}})",
       R"({"sql":"1","expression":"1","dialect":"default"})"},
      // what a command need not know may be anything
      {{"format"}, R"({"type":{"a":1},"expression":"1"})",
       R"({"type":{"a":1},"expression":"1","errNumber":0,"errDescription":""})"},
      {{"verify"}, R"({"type":null,"expression":"1"})", R"({"type":null,"expression":"1","valid":true})"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = Records(row.arguments, row.in + "\n");
    EXPECT_EQ(result.status, 0) << row.in << result.err;
    EXPECT_EQ(result.out, row.out + "\n");
  }
  EXPECT_EQ(RunTool({"sql", "--json", "--key", "rule", "1"}).out,
            R"({"rule":"1","dialect":"default","sql":"1"})"
            "\n");
  EXPECT_EQ(RunTool({"verify", "--json", "--typed"}, "logic  1 = 1\n").out,
            R"({"type":"logic","expression":"1 = 1","valid":true})"
            "\n");
}

TEST(Records, GoFromOneCommandToTheNext) {
  const Arguments commands[] = {
      // clang-format off
      {"verify", "--db", kSampleDb, "--document"},
      {"sql", "--db", kSampleDb, "--dialect", "oracle"},
      {"check", "--db", kSampleDb},
      {"uses", "--tables", "T"},
      {"rename", "--tables", "Nowhere:Else"},
      {"format", "--db", kSampleDb},
      {"strip", "--db", kSampleDb, "--tables", "Stock"},
      {"write", "--db", kSampleDb, "--language", "zh-CN"},
      {"verify", "--db", kSampleDb, "--language", "zh-CN"},
      // clang-format on
  };
  std::string lines = R"({"id":1.0,"type":"logic","expression":"sum(T.a) > 1"})"
                      "\n"
                      R"({"id":2.0,"expression":"T.a + 1"})"
                      "\n";
  for (const Arguments& command : commands) {
    const ToolResult result = Records(command, lines);
    ASSERT_EQ(result.status, 0) << command.front() << result.err;
    lines = result.out;
  }
  const std::string first = lines.substr(0, lines.find('\n'));
  EXPECT_EQ(
      first.rfind(R"({"id":1.0,"type":"logic","expression":"求和(T.a) > 1","valid":true,)", 0), 0u)
      << first;
  EXPECT_EQ(KeysOf(nlohmann::ordered_json::parse(first)),
            (std::vector<std::string>{"id", "type", "expression", "valid", "document", "dialect",
                                      "sql", "problems", "errNumber", "errDescription", "uses",
                                      "differsInCase", "original", "result"}));
}

TEST(Records, OfRefusedRulesTellPlaceAndFixes) {
  struct Row {
    Arguments arguments;
    std::string rule;
    std::string error;
  };
  const std::string unknown =
      R"({"number":6260,"text":"The word \"T.aa\" is unknown.","offset":7,"length":4,"unit":"utf-16",)"
      R"("position":6,"fixes":[{"label":"Write T.a","edits":[{"offset":7,"length":4,"text":"T.a"}]}]})";
  const std::string rule = "'\xF0\xA0\x80\x8B' & T.aa";  // a character of two units
  const Row rows[] = {
      // clang-format off
      {{"sql"},                    rule, unknown},
      {{"verify"},                 rule, unknown},
      {{"strip", "--tables", "T"}, rule, unknown},
      {{"sql"},                    "1 +", R"({"number":6294,"text":"The rule ends too early, something is missing at its end.","offset":3,"length":0,"unit":"utf-16","position":3,"fixes":[]})"},
      {{"sql", "--dialect", "oracle"}, "1 in thisSet(1)", R"({"number":6256,"text":"This database does not support thisSet.","fixes":[]})"},
      // clang-format on
  };
  for (Row row : rows) {
    row.arguments.insert(row.arguments.end(), {"--db", kSampleDb, "--json", row.rule});
    const ToolResult result = RunTool(row.arguments);
    EXPECT_EQ(result.status, 1) << row.rule;
    EXPECT_EQ(result.err, "");
    const auto record = result.Json().at(0);
    EXPECT_EQ(record.at("expression"), row.rule);
    EXPECT_EQ(record.at("error").dump(), row.error);
  }
}

TEST(Records, ThatCannotBeReadGoOutWithTheReason) {
  const ToolResult result =
      RunTool({"verify", "--jsonl", "--json", "--keep-going"},
              "{\"id\":1.0}\nnonsense\n{\"id\":2,\"expression\":\"1\",\"type\":\"x\"}\n\"1\"\n");
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out,
            R"({"id":1.0,"error":{"number":0,"text":"standard input:1: the object has no text )"
            R"(\"expression\"","fixes":[]}})"
            "\n"
            R"({"error":{"number":0,"text":"standard input:2: the line is neither a JSON text nor )"
            R"(an object","fixes":[]}})"
            "\n"
            R"({"id":2,"expression":"1","type":"x","error":{"number":0,"text":"standard input:3: )"
            R"(\"type\" is neither the name nor the number of a type","fixes":[]}})"
            "\n"
            R"({"expression":"1","valid":true})"
            "\n");
  EXPECT_TRUE(result.err.ends_with("orkrule: 3 lines could not be read\n")) << result.err;
}

TEST(Records, OfDocumentsGiveTheRuleOrTheReason) {
  const std::string document =
      RunTool({"verify", "--db", kSampleDb, "--document", "--json", "T.a + 1"}).out;
  const auto written = Records({"write", "--db", kSampleDb}, document).Json().at(0);
  EXPECT_EQ(KeysOf(written), (std::vector<std::string>{"expression", "valid", "document", "result",
                                                       "errNumber", "errDescription"}));
  EXPECT_EQ(written.at("expression"), "T.a + 1");

  // Without the database there is no such field. The rule that stands beside the document stays.
  const std::string none = "No rule gives this document.";
  const std::string behind =
      "The word \"T.a\" is unknown. Nothing can be loaded without a database connection.";
  const auto refused = Records({"write"}, document).Json().at(0);
  EXPECT_EQ(refused.at("expression"), "T.a + 1");
  EXPECT_EQ(refused.at("result"), false);
  EXPECT_EQ(
      refused.at("error").dump(),
      nlohmann::ordered_json(
          {{"number", 7335}, {"text", none}, {"hint", behind}, {"fixes", nlohmann::json::array()}})
          .dump());
  EXPECT_EQ(RunTool({"write", "--jsonl"}, document).err,
            "orkrule: standard input:1: " + none + " " + behind + "\n");
  EXPECT_EQ(RunTool({"write", "--json", "<x/>"}).Json().at(0).at("expression"), "");

  const std::string sum = RunTool({"verify", "--document", "1 + 2"}).out;
  EXPECT_EQ(Records({"write", "--key", "doc"}, nlohmann::json{{"doc", sum}}.dump() + "\n")
                .Json()
                .at(0)
                .at("expression"),
            "1 + 2");
}

}  // namespace
