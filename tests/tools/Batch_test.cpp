// The common fields of the batch protocol: ids, bad lines, objects, thrown forms, text.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> KeysOf(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& member : object.items()) keys.push_back(member.key());
  return keys;
}

TEST(Batch, CopiesTheIdAsItStands) {
  const std::string ids[] = {
      "1",
      "1.0",
      "-0",
      "1e999",
      "123456789012345678901234567890",
      "0.10000000000000000000001",
      "null",
      "false",
      "\"x\"",
      "\"\\u4e2d \\\" }\"",
      "{\"b\":1,\"a\":[2,{\"id\":3}]}",
      "[]",
      "{}",
      "[1e-999,\"]\"]",
  };
  std::string input;
  std::string expected;
  for (const std::string& id : ids) {
    input += "{\"op\":\"drop\",\"object\":\"none\", \"id\" : " + id + " }\n";
    expected += "{\"id\":" + id + ",\"error\":\"there is no object \\\"none\\\"\"}\n";
  }
  const ToolResult result = RunTool({"batch"}, input);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, expected);
}

TEST(Batch, TakesTheLastOfTwoIds) {
  const ToolResult result =
      RunTool({"batch"}, "{\"id\":1,\"\\u0069d\":2,\"x\":{\"id\":3},\"op\":\"drop\"}\n");
  EXPECT_EQ(result.out, "{\"id\":2}\n");
}

TEST(Batch, AnswersBadLinesAndGoesOn) {
  const std::string bad[] = {
      "x",
      "{\"op\":\"get\"",
      "[]",
      "1",
      "null",
      "\"get\"",
      "{}",
      "{\"op\":1}",
      "{\"op\":null}",
      "{\"op\":\"nonsense\"}",
      "{\"op\":\"verify\",\"type\":1,\"expression\":\"1\"}",
      "{\"op\":\"get\",\"object\":1}",
      "{\"op\":\"get\",\"object\":\"nobody\"}",
      "{\"op\":\"copy\",\"from\":\"nobody\"}",
      "{\"op\":\"copy\"}",
      "{\"op\":\"get\"} {}",
      "{\"op\":\"get\",}",
      "{'op':'get'}",
      "{\"op\":\"get\",\"x\":01}",
      "{\"op\":\"get\",\"x\":1e}",
      "{\"op\":\"get\",\"x\":NaN}",
      "{\"op\":\"Verify\",\"type\":1}",
      "{\"op\":\"Verify\",\"expression\":\"1\"}",
      "{\"op\":\"Verify\",\"type\":1,\"expression\":1}",
      "{\"op\":\"Verify\",\"type\":1,\"expression\":null}",
      "{\"op\":\"Verify\",\"type\":1,\"expression\":\"\\ud800\"}",
      "{\"op\":\"Verify\",\"type\":1,\"expression\":\"\\udc00x\"}",
      "{\"op\":\"Verify\",\"type\":1,\"expression\":\"\xFF\"}",
      "{\"op\":\"Verify\",\"type\":1,\"expression\":\"\xED\xA0\x80\"}",
      "{\"op\":\"Verify\",\"type\":1,\"expression\":\"\t\"}",
      "\xFF",
      std::string("{\"op\":\"get\"}\0", 13),
      "{\"op\":\"GetDict\",\"which\":\"nonsense\"}",
      "{\"op\":\"GetDict\",\"which\":1}",
      "{\"op\":\"Connect\"}",
      "{\"op\":\"Connect\",\"server\":\"x\",\"flagA\":1}",
      "{\"op\":\"Connect\",\"server\":\"x\",\"port\":\"1\"}",
      "{\"op\":\"GetSpec\",\"document\":\"x\",\"twoParts\":\"true\"}",
  };
  std::vector<std::string> lines;
  for (const std::string& line : bad) {
    lines.push_back(line);
    lines.emplace_back(R"({"op":"get","id":"good"})");
  }
  const std::vector<Json> answers = RunBatch(lines);
  ASSERT_EQ(answers.size(), lines.size());
  for (std::size_t i = 0; i < answers.size(); i += 2) {
    EXPECT_EQ(KeysOf(answers[i]), std::vector<std::string>{"error"}) << lines[i];
    EXPECT_EQ(answers[i + 1].at("id"), "good") << lines[i];
    EXPECT_EQ(answers[i + 1].at("errNumber"), 0) << lines[i];
  }
}

TEST(Batch, AsksForIntegersOf32Bits) {
  const std::string good[] = {"0", "-0", "2147483647", "-2147483648"};
  const std::string bad[] = {"true",
                             "1.0",
                             "null",
                             "2147483648",
                             "-2147483649",
                             "1e2",
                             "1e999",
                             "99999999999999999999",
                             "-99999999999999999999",
                             "\"1\"",
                             "[]"};
  for (const std::string& number : good) {
    const auto answers =
        RunBatch({R"({"op":"set","formDataIn":)" + number + "}", R"({"op":"get"})"});
    EXPECT_EQ(answers.at(1).at("formDataIn"), std::stoi(number)) << number;
  }
  for (const std::string& number : bad) {
    const auto answers = RunBatch({R"({"op":"set","formDataIn":)" + number + "}"});
    EXPECT_EQ(KeysOf(answers.at(0)), std::vector<std::string>{"error"}) << number;
  }
}

TEST(Batch, SkipsBlankLines) {
  const ToolResult result = RunTool({"batch"}, "\n  \t\r\n{\"op\":\"drop\",\"id\":1}\r\n\n");
  EXPECT_EQ(result.out, "{\"id\":1}\n");
  EXPECT_EQ(RunTool({"batch"}, "{\"op\":\"drop\"}").out, "{}\n");
}

TEST(Batch, SetsAllFieldsOrNone) {
  const auto answers = RunBatch({
      R"({"op":"set","formDataIn":5,"useIsNull":false,"rtId":"a.b","thiscaseVarOn1RcId":1})",
      R"({"op":"get"})",
      R"({"op":"set","formDataIn":5,"useIsNull":false,"rtId":"a.b","thiscaseVarOn1RcId":false})",
      R"({"op":"get"})",
      R"({"op":"set","rtId":"c"})",
      R"({"op":"get"})",
  });
  EXPECT_EQ(KeysOf(answers.at(0)), std::vector<std::string>{"error"});
  const Json fresh =
      Json::parse(R"({"formDataIn":0,"useIsNull":true,"rtId":"","thiscaseVarOn1RcId":true,)"
                  R"("errNumber":0,"errDescription":""})");
  EXPECT_EQ(answers.at(1), fresh);
  EXPECT_EQ(answers.at(2).dump(), R"({"errNumber":0,"errDescription":""})");
  const Json changed =
      Json::parse(R"({"formDataIn":5,"useIsNull":false,"rtId":"a.b","thiscaseVarOn1RcId":false,)"
                  R"("errNumber":0,"errDescription":""})");
  EXPECT_EQ(answers.at(3), changed);
  EXPECT_EQ(answers.at(5).at("rtId"), "c");
  EXPECT_EQ(answers.at(5).at("formDataIn"), 5);
}

TEST(Batch, KeepsObjectsApart) {
  const auto answers = RunBatch({
      R"({"op":"new","object":"a"})",
      R"({"op":"set","object":"a","formDataIn":3})",
      R"({"op":"copy","object":"b","from":"a"})",
      R"({"op":"set","object":"a","formDataIn":4})",
      R"({"op":"get","object":"b"})",
      R"({"op":"get"})",
      R"({"op":"drop","object":"a","id":7})",
      R"({"op":"get","object":"a"})",
      R"({"op":"copy","object":"b","from":"b"})",
      R"({"op":"get","object":"b"})",
      R"({"op":"new","object":"b"})",
      R"({"op":"get","object":"b"})",
      R"({"op":"drop"})",
      R"({"op":"get"})",
      R"({"op":"new"})",
      R"({"op":"get"})",
  });
  EXPECT_EQ(answers.at(0).dump(), R"({"errNumber":0,"errDescription":""})");
  EXPECT_EQ(answers.at(4).at("formDataIn"), 3);
  EXPECT_EQ(answers.at(5).at("formDataIn"), 0);
  EXPECT_EQ(answers.at(6).dump(), R"({"id":7})");
  EXPECT_TRUE(answers.at(7).contains("error"));
  EXPECT_EQ(answers.at(9).at("formDataIn"), 3);
  EXPECT_EQ(answers.at(11).at("formDataIn"), 0);
  EXPECT_EQ(answers.at(12).dump(), "{}");
  EXPECT_TRUE(answers.at(13).contains("error"));
  EXPECT_EQ(answers.at(15).at("formDataIn"), 0);
}

TEST(Batch, TellsWhatWasThrown) {
  const auto answers = RunBatch({
      ConnectLine(),
      R"({"op":"Verify","type":1,"expression":"foo"})",
      R"x({"op":"Translate","id":1,"type":4,"expression":"T.a in thisSet(1,2)","dsType":3})x",
      R"x({"op":"Translate","type":1,"expression":"fisYear(T.d)","dsType":3})x",
      R"({"op":"SetCAXDD","id":2,"type":1,"document":"<x/>"})",
      R"({"op":"get"})",
  });
  const Json& refused = answers.at(2);
  EXPECT_EQ(KeysOf(refused),
            (std::vector<std::string>{"id", "thrown", "errNumber", "errDescription"}));
  EXPECT_EQ(refused.at("thrown"),
            Json::parse(R"({"type":"Mx_Exception",)"
                        R"("message":"This database does not support thisSet.",)"
                        R"("module":"mx_PLSql_translator","function":"Fn_thisSet",)"
                        R"("location":802})"));
  EXPECT_EQ(refused.at("errNumber"), 0);
  EXPECT_EQ(answers.at(3).at("thrown").at("function"), "fDatePart_acct");
  EXPECT_EQ(answers.at(3).at("thrown").at("location"), 437);
  EXPECT_EQ(answers.at(4).at("errNumber"), 0);
  EXPECT_EQ(answers.at(5).at("errNumber"), 0);
}

TEST(Batch, KeepsZerosAndFarCharacters) {
  const auto answers = RunBatch({
      R"({"op":"AddIsNull","type":1,"expression":"a\u0000b"})",
      R"({"op":"AddIsNull","type":2,"expression":"\ud840\udc0b 中"})",
  });
  EXPECT_EQ(answers.at(0).at("expression"), std::string("isnull(a\0b,0)", 13));
  EXPECT_EQ(answers.at(1).at("expression"), "isnull(\xF0\xA0\x80\x8B 中,'')");
}

TEST(Batch, TakesALanguage) {
  const auto answers = RunBatch({
      R"({"op":"SetThreadLanguage","language":"zh-CN"})",
      R"({"op":"new","object":"zh"})",
      R"({"op":"GetDict","object":"zh","which":"funcs"})",
      R"({"op":"GetDict","which":"funcs"})",
      R"({"op":"SetThreadLanguage","language":""})",
      R"({"op":"new","object":"en"})",
      R"({"op":"GetDict","object":"en","which":"funcs"})",
  });
  EXPECT_EQ(answers.at(0).dump(), R"({"errNumber":0,"errDescription":""})");
  EXPECT_NE(answers.at(2).at("document"), answers.at(3).at("document"));
  EXPECT_EQ(answers.at(6).at("document"), answers.at(3).at("document"));
}

}  // namespace
