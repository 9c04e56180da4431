// The text helpers, each with the inputs at which helpers of this kind go wrong.
#include "foundation/Text.h"

#include "foundation/KeyMap.h"
#include "foundation/RenameList.h"

#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

constexpr char16_t kLead = 0xD83D;   // of U+1F600
constexpr char16_t kTrail = 0xDE00;  // of U+1F600

std::string Joined(const std::vector<std::u16string_view>& pieces) {
  std::string out;
  for (const std::u16string_view piece : pieces) out += "<" + U8(piece) + ">";
  return out;
}

}  // namespace

TEST(Text, ConvertsToUtf8AndBack) {
  struct Case {
    std::u16string wide;
    std::string utf8;
  };
  const Case cases[] = {
      {u"", ""},
      {u"T.a > 1", "T.a > 1"},
      {u"\x7F\x80\x7FF\x800\xFFFD", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD"},
      {u"客户.金额", "\xE5\xAE\xA2\xE6\x88\xB7.\xE9\x87\x91\xE9\xA2\x9D"},
      {{kLead, kTrail}, "\xF0\x9F\x98\x80"},
      {u"\xFFFE\xFFFF", "\xEF\xBF\xBE\xEF\xBF\xBF"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(WideToUtf8(c.wide), c.utf8);
    EXPECT_EQ(U8(Utf8ToWide(c.utf8)), c.utf8);
    EXPECT_TRUE(Utf8ToWide(c.utf8) == c.wide) << c.utf8;
  }
}

TEST(Text, EndsAtTheFirstZeroWhenConverted) {
  EXPECT_EQ(WideToUtf8(std::u16string_view(u"ab\0cd", 5)), "ab");
  EXPECT_EQ(WideToUtf8(std::u16string_view(u"\0cd", 3)), "");
  EXPECT_TRUE(Utf8ToWide(std::string_view("ab\0cd", 5)) == u"ab");
  EXPECT_EQ(U8(UpToZero(std::u16string_view(u"ab\0cd", 5))), "ab");
  EXPECT_EQ(U8(UpToZero(u"ab")), "ab");
}

TEST(Text, PutsTheReplacementCharacterForLoneSurrogatesAndBrokenUtf8) {
  const std::string replaced = "\xEF\xBF\xBD";
  EXPECT_EQ(WideToUtf8(std::u16string{kLead}), replaced);
  EXPECT_EQ(WideToUtf8(std::u16string{kTrail}), replaced);
  EXPECT_EQ(WideToUtf8(std::u16string{u'a', kLead, u'b'}), "a" + replaced + "b");
  EXPECT_EQ(WideToUtf8(std::u16string{kTrail, kLead}), replaced + replaced);
  EXPECT_EQ(WideToUtf8(std::u16string{kLead, kLead, kTrail}), replaced + "\xF0\x9F\x98\x80");
  EXPECT_TRUE(Utf8ToWide("a\xFFz") == u"a\xFFFDz");
  EXPECT_TRUE(Utf8ToWide("a\xC3") == u"a\xFFFD");
}

TEST(Text, LowersAndRaisesEachUnitByItselfAndKeepsTheLength) {
  struct Case {
    std::u16string text, lower, upper;
  };
  const Case cases[] = {
      {u"", u"", u""},
      {u"SysVar.UserName", u"sysvar.username", u"SYSVAR.USERNAME"},
      {u"[]{}@`^~_19", u"[]{}@`^~_19", u"[]{}@`^~_19"},
      {u"ÄÖÜ äöü", u"äöü äöü", u"ÄÖÜ ÄÖÜ"},
      {u"Журнал", u"журнал", u"ЖУРНАЛ"},
      {u"ΑΣ ας", u"ασ ας", u"ΑΣ ΑΣ"},  // no final sigma: it would need the neighbours
      {u"ß", u"ß", u"ß"},              // "SS" would be longer
      {u"\x130", u"i", u"\x130"},      // dotted capital I
      {u"Ａａ", u"ａａ", u"ＡＡ"},     // full width
      {u"客户", u"客户", u"客户"},
      {{0xD801, 0xDC00}, {0xD801, 0xDC00}, {0xD801, 0xDC00}},  // U+10400 has a small letter
      {{0xD801}, {0xD801}, {0xD801}},
  };
  for (const Case& c : cases) {
    EXPECT_TRUE(ToLower(c.text) == c.lower) << U8(c.text);
    EXPECT_TRUE(ToUpper(c.text) == c.upper) << U8(c.text);
    EXPECT_TRUE(EqualsIgnoringCase(c.text, c.lower)) << U8(c.text);
  }
  for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
    const std::u16string text(1, static_cast<char16_t>(unit));
    ASSERT_EQ(ToLower(text).size(), 1u) << unit;
    ASSERT_EQ(ToUpper(text).size(), 1u) << unit;
  }
}

TEST(Text, ComparesByLowerCase) {
  EXPECT_TRUE(EqualsIgnoringCase(u"", u""));
  EXPECT_FALSE(EqualsIgnoringCase(u"", u"a"));
  EXPECT_FALSE(EqualsIgnoringCase(u"ab", u"abc"));
  EXPECT_FALSE(EqualsIgnoringCase(u"\x131", u"i"));  // the dotless i is its own small letter
  EXPECT_FALSE(EqualsIgnoringCase(u"ß", u"SS"));
}

TEST(Text, SplitsAtTheWholeSeparator) {
  struct Case {
    std::u16string text, separator;
    std::string pieces;
  };
  const Case cases[] = {
      {u"", u",", ""},
      {u"a", u",", "<a>"},
      {u"a,b", u",", "<a><b>"},
      {u"a,b,", u",", "<a><b>"},
      {u",a", u",", "<><a>"},
      {u",", u",", "<>"},
      {u",,", u",", "<><>"},
      {u"a,,b", u",", "<a><><b>"},
      {u"0||~~||", u"||~~||", "<0>"},
      {u"1||~~||h||~~||||~~||u", u"||~~||", "<1><h><><u>"},
      {u"||~~||~~||", u"||~~||", "<><~~||>"},
      {u"a|b||c", u"||", "<a|b><c>"},
      {u"T.a", u".", "<T><a>"},
      {u"T.", u".", "<T>"},
      {u".a", u".", "<><a>"},
      {u".", u".", "<>"},
      {u"a.b.c", u".", "<a><b><c>"},
      {u"客户，金额", u"，", "<客户><金额>"},
  };
  for (const Case& c : cases) EXPECT_EQ(Joined(SplitText(c.text, c.separator)), c.pieces);
}

TEST(Text, FindsWholeItemsOfACommaList) {
  struct Case {
    std::u16string list, item;
    bool found;
  };
  const Case cases[] = {
      {u"T1,T2", u"T1", true},   {u"T1,T2", u"T2", true},     {u"T1,T2", u"T", false},
      {u"T1,T2", u"1,T", false}, {u"T1,T2", u"T1,T2", false}, {u"T1,T2", u"t1", false},
      {u"T1, T2", u"T2", false}, {u"T1, T2", u" T2", true},   {u"", u"", false},
      {u"", u"T1", false},       {u",T1", u"T1", true},       {u"T1,", u"T1", true},
      {u"T1,,T2", u"", false},   {u"T1", u"T1T1", false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsListItem(c.list, c.item), c.found) << U8(c.list) << " / " << U8(c.item);
  }
}

TEST(Text, ReplacesEveryOccurrenceButNeverInsideWhatItPutIn) {
  EXPECT_EQ(U8(ReplaceAll(u".A.A.x", u".A.", u".B.")), ".B.A.x");
  EXPECT_EQ(U8(ReplaceAll(u"aaaa", u"aa", u"a")), "aa");
  EXPECT_EQ(U8(ReplaceAll(u"abab", u"ab", u"xabx")), "xabxxabx");
  EXPECT_EQ(U8(ReplaceAll(u"abab", u"ab", u"")), "");
  EXPECT_EQ(U8(ReplaceAll(u"abc", u"z", u"y")), "abc");
  EXPECT_EQ(U8(ReplaceAll(u"", u"z", u"y")), "");
  EXPECT_EQ(U8(ReplaceAll(u"abc", u"", u"y")), "abc");
}

TEST(Text, KnowsBlankTexts) {
  EXPECT_TRUE(IsBlankText(u""));
  EXPECT_TRUE(IsBlankText(u"   "));
  EXPECT_TRUE(IsBlankText(u" \r\n "));
  EXPECT_FALSE(IsBlankText(u"\t"));  // a tab is a letter of the rule language
  EXPECT_FALSE(IsBlankText(u" a "));
  EXPECT_FALSE(IsBlankText(u"\x3000"));
  EXPECT_FALSE(IsBlankText(std::u16string_view(u"\0", 1)));
}

TEST(Text, TrimsBlanksOnly) {
  EXPECT_EQ(U8(TrimBlanks(u"  a b  ")), "a b");
  EXPECT_EQ(U8(TrimBlanks(u"\ta\t")), "\ta\t");
  EXPECT_EQ(U8(TrimBlanks(u"   ")), "");
  EXPECT_EQ(U8(TrimBlanks(u"")), "");
}

TEST(Text, ReadsLeadingNumbers) {
  struct Case {
    std::u16string text;
    std::int32_t value;
    bool whole;
  };
  const Case cases[] = {
      {u"", 0, false},
      {u"0", 0, true},
      {u"12", 12, true},
      {u"-12", -12, true},
      {u"+7", 7, true},
      {u"  7", 7, true},
      {u"\t\n7", 7, true},
      {u"7 ", 7, false},
      {u"7x", 7, false},
      {u"x7", 0, false},
      {u"- 7", 0, false},
      {u"--7", 0, false},
      {u"-", 0, false},
      {u"1.5", 1, false},
      {u"007", 7, true},
      {u"0x10", 0, false},
      {u"７", 0, false},
      {u"2147483647", 2147483647, true},
      {u"-2147483648", -2147483647 - 1, true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ReadInt(c.text), c.value) << U8(c.text);
    std::int32_t value = 99;
    EXPECT_EQ(ReadWholeInt(c.text, value), c.whole) << U8(c.text);
    EXPECT_EQ(value, c.whole ? c.value : 99) << U8(c.text);
  }
}

TEST(Text, HoldsNumbersTo32Bits) {
  EXPECT_EQ(ReadInt(u"2147483648"), 2147483647);
  EXPECT_EQ(ReadInt(u"99999999999999999999999999"), 2147483647);
  EXPECT_EQ(ReadInt(u"-99999999999999999999999999"), -2147483647 - 1);
}

TEST(Text, WritesDecimals) {
  EXPECT_EQ(U8(Decimal(0)), "0");
  EXPECT_EQ(U8(Decimal(-1)), "-1");
  EXPECT_EQ(U8(Decimal(-2147483647 - 1)), "-2147483648");
  EXPECT_EQ(U8(Decimal(1234567890)), "1234567890");
}

TEST(LookupKey, LowersShortAndLongTexts) {
  for (const std::size_t size : {0u, 1u, 47u, 48u, 49u, 5000u}) {
    const LookupKey key(std::u16string(size, u'Ä'));
    EXPECT_TRUE(key.text() == std::u16string(size, u'ä')) << size;
    KeyMap<int> map;
    map.emplace(std::u16string(size, u'ä'), 7);
    ASSERT_NE(map.find(key), map.end()) << size;
    EXPECT_EQ(map.find(key)->second, 7);
  }
}

TEST(RenameList, ReadsTheFirstTwoPiecesOfEachItem) {
  struct Case {
    std::u16string list;
    std::string pairs;
  };
  const Case cases[] = {
      {u"", ""},
      {u"A:B", "A>B;"},
      {u"A:B,C:D", "A>B;C>D;"},
      {u"A:B:X", "A>B;"},
      {u"A", "A>;"},
      {u"A:", "A>;"},
      {u":B", ">B;"},
      {u"A:B,,C:D", "A>B;>;C>D;"},
      {u"A:B,", "A>B;"},
      {u" A : B ", " A > B ;"},
      {u"T.a:b,T.b:a", "T.a>b;T.b>a;"},
  };
  for (const Case& c : cases) {
    std::string pairs;
    for (const RenameItem& pair : ReadRenames(c.list)) {
      pairs += U8(pair.from) + ">" + U8(pair.to) + ";";
    }
    EXPECT_EQ(pairs, c.pairs) << U8(c.list);
  }
}
