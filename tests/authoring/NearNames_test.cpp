// Distances between names, by hand.
#include "authoring/NearNames.h"

#include "RuleAuthoring.h"
#include "Utf8.h"

#include <gtest/gtest.h>

using namespace ORKBASE;

TEST(NearNames, CountsChangesLettersMoreAndLessAndSwaps) {
  struct Row {
    const char16_t* a;
    const char16_t* b;
    std::size_t distance;
  };
  // clang-format off
  constexpr Row kRows[] = {
      {u"",       u"",       0},
      {u"and",    u"and",    0},
      {u"adn",    u"and",    1},  // neighbours swapped
      {u"amout",  u"amount", 1},
      {u"ammount", u"amount", 1},
      {u"abcd",   u"badc",   2},
      {u"ca",     u"abc",    3},  // restricted: a swapped pair is not changed again
      {u"kitten", u"sitting", 3},
      {u"\u91D1\u989Dx", u"\u91D1\u989D", 1},
  };
  // clang-format on
  for (const Row& row : kRows) {
    EXPECT_EQ(DistanceOf(row.a, row.b, 9), row.distance);
    EXPECT_EQ(DistanceOf(row.b, row.a, 9), row.distance);
    if (row.distance > 0) {
      EXPECT_EQ(DistanceOf(row.a, row.b, row.distance - 1), row.distance);
    }
  }
}

TEST(NearNames, AllowsAThirdOfTheLongerNameAndAtLeastOne) {
  EXPECT_EQ(NearLimit(u"abc", u"abcd"), 1U);
  EXPECT_EQ(NearLimit(u"abcdef", u"abc"), 2U);
  EXPECT_EQ(NearLimit(u"abcdefghi", u"a23456789"), 3U);
  EXPECT_EQ(NearLimit(u"ab", u"ax"), 1U);
  EXPECT_EQ(NearLimit(u"ab", u"xb"), 0U);  // short names begin alike
  EXPECT_EQ(NearLimit(u"", u"xb"), 0U);
}

TEST(NearestName, IsTheOneLikestToTheText) {
  constexpr std::u16string_view kNames[] = {u"sql", u"verify", u"vocabulary", u"store", u"strip"};
  struct Row {
    std::u16string text;
    std::u16string_view nearest;
  };
  const Row rows[] = {
      // clang-format off
      {u"verfy",                         u"verify"},
      {u"VERIFY",                        u"verify"},
      {u"stroe",                         u"store"},
      {u"stripe",                        u"strip"},
      {u"qsl",                           u"sql"},
      {u"x",                             u""},
      {u"",                              u""},
      {u"explain",                       u""},
      {u"\xD800",                        u""},
      {std::u16string(1'000'000, u'v'),  u""},
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(NearestName(row.text, kNames), row.nearest) << U8(row.text.substr(0, 20));
  }
  EXPECT_EQ(NearestName(u"sql", {}), u"");
}
