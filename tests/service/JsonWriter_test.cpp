// Values as JSON text, and every character of a text.
#include "service/JsonWriter.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <string>

namespace ORKBASE {
namespace {

using namespace std::string_literals;

std::string Written(std::u16string_view text) {
  std::string out;
  AppendJson(out, text);
  return out;
}

TEST(JsonWriter, EscapesWhatHasToBe) {
  struct Row {
    std::u16string text;
    std::string json;
  };
  const Row rows[] = {
      // clang-format off
      {u"",                  R"("")"},
      {u"a b/'",             R"("a b/'")"},
      {u"\"\\",              R"("\"\\")"},
      {u"\b\f\n\r\t",        R"("\b\f\n\r\t")"},
      {u"\x01\x0B\x1F\0"s,   R"("\u0001\u000b\u001f\u0000")"},
      {u"\x7F\x80\x7FF",     "\"\x7F\xC2\x80\xDF\xBF\""},
      {u"\x4E2D\xFFFF",      "\"\xE4\xB8\xAD\xEF\xBF\xBF\""},
      {u"\xD840\xDC0B",      "\"\xF0\xA0\x80\x8B\""},
      {u"\xD800",            "\"\xEF\xBF\xBD\""},
      {u"\xDC00z",           "\"\xEF\xBF\xBDz\""},
      {u"\xD800\xD840\xDC0B", "\"\xEF\xBF\xBD\xF0\xA0\x80\x8B\""},
      // clang-format on
  };
  for (const Row& row : rows) EXPECT_EQ(Written(row.text), row.json);
}

// Long texts go out in pieces: whatever stands where one ends comes out whole.
TEST(JsonWriter, WritesTextsOfAnyLength) {
  for (const std::u16string& unit : {u"\x4E2D"s, u"\xD840\xDC0B"s, u"\x01"s, u"\""s}) {
    for (std::size_t before = 0; before < 1100; ++before) {
      std::u16string text(before, u'x');
      for (int i = 0; i < 3; ++i) text += unit;
      std::string expected = '"' + std::string(before, 'x');
      const std::string one = Written(unit);
      for (int i = 0; i < 3; ++i) expected += one.substr(1, one.size() - 2);
      ASSERT_EQ(Written(text), expected + '"') << before;
    }
  }
}

TEST(JsonWriter, IsReadBackByAnother) {
  std::u16string all;
  for (std::uint32_t unit = 0; unit < 0xD800; ++unit) all += static_cast<char16_t>(unit);
  for (std::uint32_t unit = 0xE000; unit <= 0xFFFF; ++unit) all += static_cast<char16_t>(unit);
  const std::string written = Written(all);
  EXPECT_EQ(nlohmann::json::parse(written).dump(), written);
}

TEST(JsonWriter, WritesEveryFormOfAValue) {
  const Record record = {{"nothing", {}},
                         {"yes", true},
                         {"no", false},
                         {"least", std::int64_t{-2147483648}},
                         {"text", u"a\""},
                         {"texts", Texts{u"a", u""}},
                         {"none", Texts{}},
                         {"record", Record{{"a", std::int64_t{1}}}},
                         {"empty", Record{}},
                         {"records", Records{{}, {{"b", Records{}}}}},
                         {"numbers", Integers{0, -7}},
                         {"noNumbers", Integers{}}};
  std::string out;
  AppendMembers(out, record);
  EXPECT_EQ(out, R"("nothing":null,"yes":true,"no":false,"least":-2147483648,"text":"a\"",)"
                 R"("texts":["a",""],"none":[],"record":{"a":1},"empty":{},)"
                 R"("records":[{},{"b":[]}],"numbers":[0,-7],"noNumbers":[])");
}

}  // namespace
}  // namespace ORKBASE
