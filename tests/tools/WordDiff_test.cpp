// What changed in a rule, word by word in one line.
#include "WordDiff.h"

#include "EditScript.h"
#include "Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>

namespace ORKTOOL {
namespace {

using namespace std::string_literals;

TEST(WordDiff, MarksWhatIsTakenAwayAndWhatIsPutIn) {
  struct Row {
    std::u16string before;
    std::u16string after;
    std::string diff;
  };
  const Row rows[] = {
      // clang-format off
      {u"",                 u"",                 ""},
      {u"a",                u"a",                "a"},
      {u"",                 u"a",                "{+a+}"},
      {u"a",                u"",                 "[-a-]"},
      {u"T.a > 1",          u"T.a > 2",          "T.a > [-1-]{+2+}"},
      {u"Orders.Qty > 1",   u"Sales.Qty > 1",    "[-Orders.Qty-]{+Sales.Qty+} > 1"},
      {u"a_1+b",            u"a_2+b",            "[-a_1-]{+a_2+}+b"},
      {u"a and b or c",     u"a or c",           "a[- and b-] or c"},
      {u"a or c",           u"a and b or c",     "a{+ and b+} or c"},
      {u"((a))",            u"(a)",              "([-(-]a[-)-])"},
      {u"x=1 and y=2",      u"z=1 and y=3",      "[-x-]{+z+}=1 and y=[-2-]{+3+}"},
      {u"客户.金额>T.a",    u"顾客.金额>T.a",    "[-客户.金额-]{+顾客.金额+}>T.a"},
      {u"a\tb",             u"a\nb",             "a[- -]{+ +}b"},
      {u"a\0\x1B\x9Bz1"s,   u"a\0\x1B\x9Bz2"s,   "a   [-z1-]{+z2+}"},
      {u"\xD800 1",         u"\xD800 2",         "\xEF\xBF\xBD [-1-]{+2+}"},
      {u"\xD800",           u"\xDC00",           "[-\xEF\xBF\xBD-]{+\xEF\xBF\xBD+}"},
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(WordDiff(row.before, row.after, {}), row.diff) << ToUtf8(row.before);
  }
}

TEST(WordDiff, ShowsColoursInsteadOfSigns) {
  EXPECT_EQ(WordDiff(u"T.a > 1", u"T.b > 1", {true, 80}),
            "\x1B[31mT.a\x1B[0m\x1B[32mT.b\x1B[0m > 1");
}

std::u16string Times(std::size_t count, const std::u16string& text) {
  std::u16string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

TEST(WordDiff, CutsWhatIsTheSameToSomeWordsAroundTheChanges) {
  const std::u16string same = Times(100, u"abc + ");  // 24 columns hold four of its six
  EXPECT_EQ(
      WordDiff(same + u"1 + " + same + u"1 + " + same, same + u"2 + " + same + u"2 + " + same, {}),
      "...abc + abc + abc + abc + [-1-]{+2+} + abc + abc + abc + abc..."
      "abc + abc + abc + abc + [-1-]{+2+} + abc + abc + abc + abc...");
  // A Chinese character takes two columns, so there are twelve; a word that is too long is cut.
  const std::u16string wide = Times(100, u"中");
  EXPECT_EQ(WordDiff(wide + u"+1", wide + u"+2", {}),
            "..." + ToUtf8(Times(11, u"中")) + "+[-1-]{+2+}");
  EXPECT_EQ(WordDiff(u"1+" + wide, u"2+" + wide, {}),
            "[-1-]{+2+}+" + ToUtf8(Times(11, u"中")) + "...");
  // Rather no piece of a word: there would have been room for six letters of "defghijklmn".
  EXPECT_EQ(WordDiff(u"1 abcdefghijkl abc defghijklmn", u"2 abcdefghijkl abc defghijklmn", {}),
            "[-1-]{+2+} abcdefghijkl abc ...");
  EXPECT_EQ(WordDiff(same, same, {}), ToUtf8(Times(8, u"abc + ")) + "...");
}

TEST(WordDiff, CutsALongChangeInItsMiddle) {
  EXPECT_EQ(WordDiff(u"1", Times(1000, u"x"), {}),
            "[-1-]{+" + std::string(60, 'x') + "..." + std::string(60, 'x') + "+}");
}

TEST(WordDiff, CountsTheChangesBeyondTheFirst) {
  const std::string diff = WordDiff(Times(60, u"a,"), Times(60, u"b,"), {});
  const std::string shown = ToUtf8(Times(50, u"[-a-]{+b+},"));
  EXPECT_EQ(diff, shown + " (10 more changes)");
}

/// The list after, made of the list before and the edits; empty where the edits overlap.
Words Applied(const Words& before, const Words& after, const std::vector<Edit>& edits) {
  Words made;
  std::size_t at = 0;
  for (const Edit& edit : edits) {
    if (edit.before < at) return {};
    for (; at < edit.before; ++at) made.push_back(before[at]);
    if (edit.after != made.size()) return {};
    for (std::size_t i = 0; i < edit.added; ++i) made.push_back(after[edit.after + i]);
    at += edit.removed;
  }
  for (; at < before.size(); ++at) made.push_back(before[at]);
  return made;
}

std::size_t WordsIn(const std::vector<Edit>& edits) {
  std::size_t words = 0;
  for (const Edit& edit : edits) words += edit.removed + edit.added;
  return words;
}

/// The fewest words to take away and to put in, by the table of all beginnings.
std::size_t FewestWords(const Words& before, const Words& after) {
  std::vector<std::size_t> row(after.size() + 1);
  for (std::size_t i = 0; i <= after.size(); ++i) row[i] = i;
  for (const std::u16string_view word : before) {
    std::size_t diagonal = row[0]++;
    for (std::size_t i = 1; i <= after.size(); ++i) {
      const std::size_t way = word == after[i - 1] ? diagonal : std::min(row[i], row[i - 1]) + 1;
      diagonal = row[i];
      row[i] = way;
    }
  }
  return row.back();
}

Words RandomWords(std::mt19937& random, std::size_t most, std::size_t kinds) {
  static const std::u16string letters = u"abcdefghijklmnopqrstuvwxyz";
  Words words(random() % (most + 1));
  for (std::u16string_view& word : words) {
    word = std::u16string_view(letters).substr(random() % kinds, 1);
  }
  return words;
}

TEST(EditScript, IsTheShortestForListsThatDifferLittle) {
  std::mt19937 random(5);
  for (int i = 0; i < 3000; ++i) {
    const Words before = RandomWords(random, 30, 1 + i % 5);
    const Words after = RandomWords(random, 30, 1 + i % 4);
    const std::vector<Edit> edits = EditsOf(before, after);
    ASSERT_EQ(Applied(before, after, edits), after);
    ASSERT_EQ(WordsIn(edits), FewestWords(before, after));
  }
}

TEST(EditScript, MakesOneListOfTheOtherHoweverMuchTheyDiffer) {
  std::mt19937 random(6);
  for (int i = 0; i < 60; ++i) {
    const Words before = RandomWords(random, 3000, 1 + i % 26);
    const Words after = RandomWords(random, 3000, 1 + i % 23);
    const std::vector<Edit> edits = EditsOf(before, after);
    ASSERT_EQ(Applied(before, after, edits), after);
    for (std::size_t e = 1; e < edits.size(); ++e) {
      ASSERT_LT(edits[e - 1].before + edits[e - 1].removed, edits[e].before);
    }
  }
}

TEST(EditScript, FindsEachRenamedWordOfALongRule) {
  constexpr std::size_t kWords = 200000;
  Words before(kWords, u"+");
  for (std::size_t i = 0; i < kWords; i += 2) before[i] = i % 4 == 0 ? u"Orders.Qty" : u"T.a";
  Words after = before;
  std::replace(after.begin(), after.end(), std::u16string_view(u"Orders.Qty"),
               std::u16string_view(u"Sales.Qty"));
  const std::vector<Edit> edits = EditsOf(before, after);
  ASSERT_EQ(edits.size(), kWords / 4);
  for (std::size_t i = 0; i < edits.size(); ++i) {
    ASSERT_EQ(edits[i].before, i * 4);
    ASSERT_EQ(edits[i].removed + edits[i].added, 2u);
  }
}

TEST(WordDiff, OfHugeTextsTakesItsTime) {
  const auto begin = std::chrono::steady_clock::now();
  const std::u16string words = Times(100000, u"a1 ");
  const std::u16string signs = Times(300000, u")");
  const std::u16string word(1000000, u'x');
  for (const std::u16string& before : {words, signs, word, std::u16string(1000000, u'\x0301')}) {
    for (const std::u16string& after : {words + u"b", signs + u"(", word + u"y"}) {
      EXPECT_LT(WordDiff(before, after, {}).size(), 60000u);
    }
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  EXPECT_LT(seconds.count(), 30);
}

}  // namespace
}  // namespace ORKTOOL
