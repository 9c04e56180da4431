// The tool's way between UTF-8 and 16-bit text, and widths on a screen.
#include "Text.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace ORKTOOL {
namespace {

using namespace std::string_literals;

TEST(Text, ConvertsBothWays) {
  struct Row {
    std::string utf8;
    std::u16string wide;
  };
  const Row rows[] = {
      // clang-format off
      {"",                        u""},
      {"abc",                     u"abc"},
      {"a\0b"s,                   u"a\0b"s},
      {"\xC2\x80",                u"\x0080"},
      {"\xDF\xBF",                u"\x07FF"},
      {"\xE0\xA0\x80",            u"\x0800"},
      {"\xE4\xB8\xAD\xE6\x96\x87", u"\x4E2D\x6587"},
      {"\xEF\xBF\xBF",            u"\xFFFF"},
      {"\xF0\x90\x80\x80",        u"\xD800\xDC00"},
      {"\xF4\x8F\xBF\xBF",        u"\xDBFF\xDFFF"},
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(FromUtf8(row.utf8), row.wide) << row.utf8;
    EXPECT_EQ(ToUtf8(row.wide), row.utf8);
  }
}

TEST(Text, RefusesWhatIsNotUtf8) {
  const std::string rows[] = {
      "\x80",              // a trail byte alone
      "\xC0\x80",          // two bytes for what takes one
      "\xC1\xBF",          //
      "\xE0\x9F\xBF",      // three bytes for what takes two
      "\xF0\x8F\xBF\xBF",  // four bytes for what takes three
      "\xED\xA0\x80",      // a surrogate
      "\xF4\x90\x80\x80",  // beyond the last character
      "\xF5\x80\x80\x80",  //
      "\xFF",              //
      "a\xE4\xB8",         // cut off
      "\xE4\xB8 a",        //
  };
  for (const std::string& row : rows) {
    EXPECT_FALSE(FromUtf8(row)) << testing::PrintToString(row);
    EXPECT_TRUE(BadUtf8At(row)) << testing::PrintToString(row);
  }
}

TEST(Text, KnowsWhereItIsNotUtf8) {
  struct Row {
    std::string text;
    std::optional<std::size_t> at;
  };
  const Row rows[] = {
      // clang-format off
      {"",                       std::nullopt},
      {"a\0b"s,                  std::nullopt},
      {"\xC2\x80\xDF\xBF",       std::nullopt},
      {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", std::nullopt},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", std::nullopt},
      {"a\xFF",                  1u},
      {"\xE4\xB8\xAD\xE4\xB8",   3u},  // the first byte of what is cut off
      {"\xE4\xB8" "a",          0u},
      {"\xF1\x80\x80z",         0u},
      {"ab\xED\xA0\x80",        2u},
      // clang-format on
  };
  for (const Row& row : rows) EXPECT_EQ(BadUtf8At(row.text), row.at) << row.text;
}

TEST(Text, WritesLoneSurrogatesAsReplacements) {
  EXPECT_EQ(ToUtf8(u"a\xD800"), "a\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(u"\xDC00z"), "\xEF\xBF\xBDz");
  EXPECT_EQ(ToUtf8(u"\xD800\xD800\xDC00"), "\xEF\xBF\xBD\xF0\x90\x80\x80");
  EXPECT_EQ(ToUtf8(u"\xD800x"), "\xEF\xBF\xBDx");
}

TEST(Text, KnowsWidths) {
  EXPECT_EQ(DisplayWidth(u""), 0u);
  EXPECT_EQ(DisplayWidth(u"abc"), 3u);
  EXPECT_EQ(DisplayWidth(u"中文"), 4u);
  EXPECT_EQ(DisplayWidth(u"，"), 2u);       // full-width comma
  EXPECT_EQ(DisplayWidth(u"e\x0301"), 1u);  // combining accent
  EXPECT_EQ(DisplayWidth(u"\xD840\xDC0B"), 2u);
  EXPECT_EQ(Padded("中", 4), "中  ");
  EXPECT_EQ(Padded("long", 2), "long");
}

}  // namespace
}  // namespace ORKTOOL
