// Requests in JSON: what becomes of each form of a value, the text of an id, and what is refused.
#include "service/JsonReader.h"

#include "Utf8.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace ORKBASE {
namespace {

using namespace std::string_literals;

/// The value of the field `x`, read as the type that it has.
std::string ValueOf(const std::string& json) {
  JsonRequest request = ReadJson(json);
  for (const FieldType type :
       {FieldType::kText, FieldType::kInteger, FieldType::kBoolean, FieldType::kTexts,
        FieldType::kIntegers, FieldType::kRecord, FieldType::kRecords}) {
    try {
      const Value value = request.fields.Take({"x", type, Required()});
      std::string told = U8(NameOf(type)) + " ";
      if (const auto* text = std::get_if<std::u16string>(&value)) return told + U8(*text);
      if (const auto* number = std::get_if<std::int64_t>(&value))
        return told + std::to_string(*number);
      if (const auto* truth = std::get_if<bool>(&value)) return told + (*truth ? "true" : "false");
      if (const auto* numbers = std::get_if<Integers>(&value)) {
        for (const std::int64_t each : *numbers) told += std::to_string(each) + "|";
        return told;
      }
      for (const std::u16string& text : std::get<Texts>(value)) told += U8(text) + "|";
      return told;
    } catch (const BadRequest&) {
    }
  }
  return "other";
}

std::string Refusal(const std::string& json) {
  try {
    ReadJson(json);
  } catch (const BadRequest& bad) {
    return U8(bad.what);
  }
  return "";
}

TEST(JsonReader, KeepsWhatACallCanTake) {
  struct Row {
    const char* value;
    const char* kept;
  };
  const Row rows[] = {
      // clang-format off
      {R"("a")",                  "text a"},
      {R"("")",                   "text "},
      {R"("\"\\\/\b\f\n\r\t")",   "text \"\\/\b\f\n\r\t"},
      {R"("\u4e2d\uD840\udc0B")", "text 中\xF0\xA0\x80\x8B"},
      {R"("中")",                 "text 中"},
      {"true",                    "boolean true"},
      {"false",                   "boolean false"},
      {"0",                       "integer 0"},
      {"-0",                      "integer 0"},
      {"2147483647",              "integer 2147483647"},
      {"-2147483648",             "integer -2147483648"},
      {"2147483648",              "other"},
      {"-2147483649",             "other"},
      {"9223372036854775807",     "other"},
      {"9223372036854775808",     "other"},
      {"18446744073709551616",    "other"},
      {"1.0",                     "other"},
      {"1e2",                     "other"},
      {"1e999",                   "other"},
      {"-1e99999999999999999999", "other"},
      {"1e-999",                  "other"},
      {"null",                    "other"},
      {R"(["a","b"])",            "texts a|b|"},
      {R"([ ])",                  "texts "},
      {R"(["a",1])",              "other"},
      {R"([1,"a"])",              "other"},
      {"[0, -1,2147483647]",      "integers 0|-1|2147483647|"},
      {"[-2147483648]",           "integers -2147483648|"},
      {"[1,2147483648]",          "other"},
      {"[-2147483649,1]",         "other"},
      {"[9223372036854775808]",   "other"},
      {"[1,2.0]",                 "other"},
      {"[1,true]",                "other"},
      {"[null,1]",                "other"},
      {"[1,[2]]",                 "other"},
      {"[[1],2]",                 "other"},
      {R"([null,"a"])",           "other"},
      {R"(["a",["b"]])",          "other"},
      {R"([["b"],"a"])",          "other"},
      {R"([[],"a"])",             "other"},
      {R"(["a",{"b":"c"}])",      "other"},
      {R"([{}])",                 "other"},
      {R"({"x":"a"})",            "other"},
      {R"({"y":["a"]})",          "other"},
      {"{}",                      "other"},
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ValueOf("{\"x\":"s + row.value + "}"), row.kept) << row.value;
    EXPECT_EQ(ValueOf("{\"w\" : [1,{\"x\":2}] , \"x\" : "s + row.value + " ,\"y\":[]}"), row.kept);
  }
}

TEST(JsonReader, KeepsAnEmptyListForWhoeverAsks) {
  JsonRequest request = ReadJson(R"({"texts":[],"integers":[]})");
  const Value texts = request.fields.Take({"texts", FieldType::kTexts, Required()});
  EXPECT_EQ(std::get<Texts>(texts), Texts{});
  const Value integers = request.fields.Take({"integers", FieldType::kIntegers, Required()});
  EXPECT_EQ(std::get<Integers>(integers), Integers{});
}

TEST(JsonReader, KeepsZerosInTexts) {
  JsonRequest request = ReadJson(R"({"x":"a\u0000b","x\u0000":1})");
  EXPECT_EQ(std::get<std::u16string>(request.fields.Take({"x", FieldType::kText, Required()})),
            u"a\0b"s);
}

TEST(JsonReader, TakesTheLastOfSeveral) {
  EXPECT_EQ(ValueOf(R"({"x":1,"x":"a","y":2})"), "text a");
  EXPECT_EQ(ValueOf(R"({"x":"a","\u0078":[]})"), "texts ");
  EXPECT_EQ(ReadJson(R"({"id":1,"x":{"id":3},"\u0069d":[2 ],"x":[{"id":4}]})").id, "[2 ]");
}

TEST(JsonReader, KeepsTheTextOfAnId) {
  const std::string ids[] = {"1",
                             "-0",
                             "1.0",
                             "1E+05",
                             "1e999",
                             "123456789012345678901234567890",
                             "null",
                             "true",
                             "\"\"",
                             R"("\u4e2d \" } , :")",
                             R"({"b" : 1,"a":[2,{"id":3}], "b":":"})",
                             "[ 1e999 , \"]\" ]",
                             "{ }"};
  for (const std::string& id : ids) {
    for (const char* space : {"", " ", "\t\r\n "}) {
      const std::string padded = space + id + space;
      EXPECT_EQ(ReadJson("{\"id\":" + padded + "}").id, id);
      EXPECT_EQ(ReadJson("{\"id\"" + std::string(space) + ":" + padded + ",\"x\":1}").id, id);
      EXPECT_EQ(ReadJson(" {\"x\":[\"id\"],\"id\":" + padded + "} ").id, id);
    }
  }
  EXPECT_EQ(ReadJson("{}").id, "");
  EXPECT_EQ(ReadJson("\xEF\xBB\xBF{\"id\":7}").id, "7");
}

// The byte is the last one of the word that should not be there. A number beyond all doubles with
// rubbish glued to it once ended the run.
TEST(JsonReader, RefusesWhatIsNoJson) {
  const std::string large = "1" + std::string(400, '0');
  const std::pair<std::string, int> rows[] = {
      // clang-format off
      {"",                               1},
      {"x",                              1},
      {"{",                              2},
      {"{}}",                            3},
      {"{\"x\":1,}",                     8},
      {"{'x':1}",                        2},
      {"{\"x\":01}",                     7},
      {"{\"x\":1e}",                     8},
      {"{\"x\":+1}",                     6},
      {"{\"x\":NaN}",                    6},
      {"{\"x\":\"\t\"}",                 7},
      {"{\"x\":\"\\ud800\"}",            13},
      {"{\"x\":\"\\udc00\"}",            12},
      {"{\"x\":\"\xFF\"}",               7},
      {"{\"x\":\"\xED\xA0\x80\"}",       8},
      {"{\"\\ud800\":1}",                9},
      {"{\"x\":" + large + "-0}",       408},
      // clang-format on
  };
  for (const auto& [json, byte] : rows) {
    EXPECT_EQ(Refusal(json), "the line is not JSON from its byte " + std::to_string(byte) + " on")
        << json;
  }
  EXPECT_EQ(Refusal("{\"x\":\"\0\"}"s), "the line is not JSON: it holds a zero byte");
  EXPECT_EQ(Refusal("{}\0"s), "the line is not JSON: it holds a zero byte");
}

TEST(JsonReader, RefusesWhatIsNoObject) {
  for (const char* json : {"[]", "1", "1e999", "null", "\"id\"", "[{\"id\":1}]", "[\"id\",1]"})
    EXPECT_EQ(Refusal(json), "the line is not a JSON object") << json;
}

TEST(JsonReader, TakesThirtyTwoLevelsAndNoMore) {
  const auto nested = [](std::size_t levels, char open, char close) {
    std::string text;
    for (std::size_t i = 0; i < levels; ++i) text += open == '{' ? "{\"a\":" : "[";
    return text + "1" + std::string(levels, close);
  };
  for (const char* const form : {"[]", "{}"}) {
    const std::string good = nested(31, form[0], form[1]);
    EXPECT_EQ(ReadJson("{\"id\":" + good + "}").id, good);
    EXPECT_EQ(ReadJson("{\"x\":" + good + ",\"id\":2}").id, "2");
    const std::string bad = nested(32, form[0], form[1]);
    EXPECT_EQ(Refusal("{\"id\":" + bad + "}"), "the line is nested more than 32 levels deep");
    EXPECT_EQ(Refusal("{\"x\":" + bad + "}"), "the line is nested more than 32 levels deep");
    EXPECT_EQ(Refusal(nested(1000000, form[0], form[1])),
              "the line is nested more than 32 levels deep");
  }
}

TEST(JsonReader, TakesManyFields) {
  std::string json = "{";
  for (int i = 0; i < 200000; ++i) json += "\"f" + std::to_string(i) + "\":1,";
  EXPECT_EQ(ValueOf(json + "\"x\":\"a\"}"), "text a");
}

}  // namespace
}  // namespace ORKBASE
