// Members of a JSON line that go out as they came in.
#include "JsonRecord.h"

#include <gtest/gtest.h>

#include <string>

namespace ORKTOOL {
namespace {

TEST(JsonRecord, PassesMembersOnAsTheyWereWritten) {
  struct Row {
    const char* in;
    const char* own;  ///< members of the command
    const char* out;
  };
  const Row rows[] = {
      // clang-format off
      {R"({})",                        R"({})",               R"({})"},
      {R"({})",                        R"({"a":1})",          R"({"a":1})"},
      {R"( { "a" : 1 } )",             R"({})",               R"({"a":1})"},
      {R"({"n":1.50,"m":-0,"e":1E+2})", R"({"z":0})",         R"({"n":1.50,"m":-0,"e":1E+2,"z":0})"},
      {R"({"n":123456789012345678901234567890.10})", R"({})", R"({"n":123456789012345678901234567890.10})"},
      {R"({"a":{"b":[1, 2.0]},"c":null})", R"({"c":true})",   R"({"a":{"b":[1, 2.0]},"c":true})"},
      {R"({"a":"}\",{[","b":["]\\",{}]})", R"({})",           R"({"a":"}\",{[","b":["]\\",{}]})"},
      {R"({"\u0061":1,"b":2})",        R"({"a":3})",          R"({"\u0061":3,"b":2})"},
      {R"({"a":1,"b":2,"a":3})",       R"({})",               R"({"a":3,"b":2})"},
      {R"({"b":1,"a":2})",             R"({"z":0,"a":[],"b":{}})", R"({"b":{},"a":[],"z":0})"},
      {R"({"":1," ":2})",              R"({" ":3})",          R"({"":1," ":3})"},
      {"{\"\xE5\xAE\xA2\":\"\xE6\x88\xB7\"}\r", R"({})", "{\"\xE5\xAE\xA2\":\"\xE6\x88\xB7\"}"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const std::optional<JsonRecord> record = JsonRecord::Read(row.in);
    ASSERT_TRUE(record) << row.in;
    EXPECT_EQ(record->With(Json::parse(row.own)), row.out) << row.in;
  }
}

TEST(JsonRecord, IsMadeOfObjectsAlone) {
  for (const char* text :
       {"", " ", "1", "\"a\"", "[1]", "{", "{\"a\"}", "{\"a\":}", "{\"a\":1}}", "{\"a\":1} {}",
        "{\"a\":01}", "{'a':1}", "{\"a\":\"\xFF\"}", "{\"a\":1,}", "// {}", "{\"a\":NaN}"}) {
    EXPECT_FALSE(JsonRecord::Read(text)) << text;
  }
}

TEST(JsonRecord, FindsAddsAndRemovesMembers) {
  JsonRecord record = *JsonRecord::Read(R"({"a":"x","b":[1]})");
  ASSERT_TRUE(record.Find("b"));
  EXPECT_EQ(*record.Find("b"), "[1]");
  EXPECT_FALSE(record.Find("c"));
  record.Add("c", "null");
  record.Remove("a");
  record.Remove("nowhere");
  EXPECT_FALSE(record.Find("a"));
  EXPECT_EQ(record.With({}), R"({"b":[1],"c":null})");
  record.Add("a", "1");
  EXPECT_EQ(record.With(Json{{"a", 2}}), R"({"b":[1],"c":null,"a":2})");
}

TEST(JsonRecord, TakesAnyDepthAndNumberOfMembers) {
  const std::size_t many = 200'000;
  const std::string nested = std::string(many, '[') + std::string(many, ']');
  EXPECT_EQ(JsonRecord::Read("{\"a\":" + nested + "}")->With({}), "{\"a\":" + nested + "}");
  std::string object = "{\"0\":0";
  for (std::size_t i = 1; i < many; ++i) {
    object.append(",\"").append(std::to_string(i)).append("\":0");
  }
  EXPECT_EQ(JsonRecord::Read(object + "}")->With({{"x", 1}}), object + ",\"x\":1}");
}

}  // namespace
}  // namespace ORKTOOL
