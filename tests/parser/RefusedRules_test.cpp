// Words that are no rule: which message each gives, and which word it quotes. The failure that got
// furthest is told, among equals the most specific, of those the first.
#include "MxParser.h"
#include "OrkPlatform.h"
#include "RuleWords.h"
#include "Utf8.h"
#include "foundation/Format.h"
#include "foundation/MessageNumbers.h"
#include "platform/DisplayNames.h"
#include "platform/MessageTexts.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

struct Row {
  std::int32_t type;
  const char16_t* rule;
  MessageNumber message;
  const char16_t* word = u"";     ///< that is quoted
  std::int32_t expected = 0;      ///< number of a type or a kind of word, as the message tells
  const char16_t* literal = u"";  ///< the same for a word that must stand there
};

constexpr MessageNumber kEnd = kMsgEndsTooEarly;
constexpr MessageNumber kSurplus = kMsgSurplusWords;
constexpr MessageNumber kType = kMsgWrongDataType;
constexpr MessageNumber kKind = kMsgWrongSymbol;
constexpr MessageNumber kWord = kMsgWrongLiteral;

// clang-format off
constexpr Row kRefused[] = {
    // nothing there, or not all of it
    {1, u"",                              kEnd},
    {2, u"",                              kEnd},
    {3, u"",                              kEnd},
    {4, u"",                              kEnd},
    {5, u"",                              kEnd},
    {6, u"",                              kEnd},
    {7, u"",                              kEnd},
    {1, u"1 +",                           kEnd},
    {1, u"1 *",                           kEnd},
    {1, u"-",                             kEnd},
    {1, u"(1",                            kEnd},
    {1, u"sum(1",                         kEnd},
    {1, u"sum(",                          kEnd},
    {1, u"sum",                           kEnd},
    {2, u"'abc' &",                       kEnd},
    {4, u"1",                             kEnd},
    {4, u"T.a",                           kEnd},
    {4, u"T.a >",                         kEnd},
    {4, u"T.a > 1 and",                   kEnd},
    {4, u"T.a > 1 and T.b",               kEnd},
    {4, u"not",                           kEnd},
    {4, u"not T.a",                       kEnd},
    {4, u"(T.a > 1",                      kEnd},
    {4, u"T.a in",                        kEnd},
    // a rule, and then more
    {1, u"1 2",                           kSurplus},
    {1, u"1 )",                           kSurplus},
    {1, u"T.a T.b",                       kSurplus},
    {2, u"'abc' + 'x'",                   kSurplus},
    {5, u"'abc' + 'x'",                   kSurplus},
    {3, u"'2020-1-2' + 1",                kSurplus},
    {3, u"T.d > T.d",                     kSurplus},
    {4, u"T.a > 1 T.b > 2",               kSurplus},
    {4, u"T.a > 1 )",                     kSurplus},
    {4, u"T.d = '2020-1-2' = 1",          kSurplus},
    {4, u"T.s null null",                 kSurplus},
    // a number is tried first, so a first word of any type is a whole value
    {5, u"Constant.Null & 'abc'",         kSurplus},
    {5, u"switch(T.a>1,'a') & 'b'",       kSurplus},
    {4, u"Constant.Null = Constant.Null & 'abc'", kSurplus},
    // the right kind of word, of the wrong type
    {1, u"'a' + 1",                       kType, u"'a'",          1},
    {1, u"T.s",                           kType, u"T.s",          1},
    {1, u"T.d",                           kType, u"T.d",          1},
    {2, u"1",                             kType, u"1",            2},
    {2, u"AutoCADEnum.Color.Red",         kType, u"AutoCADEnum.Color.Red", 2},
    {3, u"T.a",                           kType, u"T.a",          3},
    {6, u"T.a",                           kType, u"T.a",          6},
    {6, u"Orders.File",                   kType, u"Orders.File",  6},
    {7, u"T.a",                           kType, u"T.a",          7},
    {4, u"T.a > 'abc'",                   kType, u"'abc'",        1},
    {4, u"T.s > 1",                       kType, u"1",            2},
    {4, u"T.d > 1",                       kType, u"1",            2},
    {4, u"T.a = Orders.Photo",            kType, u"Orders.Photo", 1},
    {4, u"Orders.Photo = T.d",            kType, u"T.d",          2},
    {4, u"Orders.Photo = Orders.Photo",   kType, u"Orders.Photo", 2},
    {4, u"Orders.File = 1",               kType, u"1",            2},
    {4, u"T.d between thisYear('a')",     kType, u"'a'",          1},
    {1, u"timeInterval(yy,1,T.d)",        kType, u"1",            3},
    {3, u"dateAdd(dd,T.d,T.d)",           kType, u"T.d",          1},
    {2, u"substring(1,1,1)",              kType, u"1",            2},
    {1, u"length(T.a)",                   kType, u"T.a",          2},
    {1, u"year(T.a)",                     kType, u"T.a",          3},
    // the wrong kind of word
    {1, u"+1",                            kKind, u"+",            0},
    {1, u")",                             kKind, u")",            0},
    {1, u"1 + + 2",                       kKind, u"+",            0},
    {1, u"sum()",                         kKind, u")",            0},
    {1, u"max()",                         kKind, u")",            0},
    {1, u"switch(T.a>1,1,)",              kKind, u")",            0},
    {3, u"AutoCADEnum.Color.Red",         kKind, u"AutoCADEnum.Color.Red", 0},
    {6, u"'abc'",                         kKind, u"'abc'",        4},
    {7, u"1",                             kKind, u"1",            4},
    {4, u"T.a *= 1",                      kKind, u"1",            4},
    {1, u"thisSet(1)",                    kKind, u"thisSet",      0},
    {5, u"thisSet(1)",                    kKind, u"thisSet",      0},
    {4, u"T.a > thisYear(1)",             kKind, u"thisYear",     0},
    {4, u"T.a > 1 and or",                kKind, u"or",           0},
    {4, u"null T.s",                      kKind, u"null",         0},
    // another word must stand there; "*" is the first that is tried behind a number, "&" behind a text
    {1, u"(1 2",                          kWord, u"2",            0, u"*"},
    {1, u"sum 1",                         kWord, u"1",            0, u"("},
    {1, u"RAND(1)",                       kWord, u"1",            0, u")"},
    {1, u"POWER(1)",                      kWord, u")",            0, u"*"},
    {1, u"IsNull(T.a)",                   kWord, u")",            0, u"*"},
    {1, u"ToNumber('1',2,3,4)",           kWord, u",",            0, u"*"},
    {1, u"timeInterval(T.d,T.d,T.d)",     kWord, u"T.d",          0, u"yy"},
    {2, u"substring('abc',1)",            kWord, u")",            0, u"*"},
    {2, u"ToText(T.d)",                   kWord, u")",            0, u","},
    {2, u"ToText(T.d,'abc')",             kWord, u"'abc'",        0, u"'yyyymmdd'"},
    {2, u"ToText(T.a,'yyyymmdd')",        kWord, u",",            0, u"*"},
    {4, u"T.a like 'abc'",                kWord, u"like",         0, u"*"},
    {4, u"1 null",                        kWord, u"null",         0, u"*"},
    {4, u"sum(T.a) null",                 kWord, u"null",         0, u"*"},
    {4, u"T.s & 'x' null",                kWord, u"null",         0, u"&"},
    {4, u"1 *= T.a",                      kWord, u"*=",           0, u"*"},
    {4, u"T.a in 1",                      kWord, u"1",            0, u"thisSet"},
    {4, u"T.a in (1,2)",                  kWord, u"(",            0, u"thisSet"},
    {4, u"T.a between 1",                 kWord, u"1",            0, u"thisYear"},
    {4, u"T.d between switch(T.a>1,1)",   kWord, u"switch",       0, u"thisYear"},
    // the comma of a last argument that does not fit is given back; what is behind it got further
    {1, u"switch(T.a>1)",                 kWord, u")",            0, u"*"},
    {1, u"switch(T.a>1,1,'abc')",         kWord, u")",            0, u"&"},
    {5, u"switch(T.a>1,'abc',2)",         kWord, u")",            0, u"*"},
    {1, u"switch(T.a>1,1,T.b>1)",         kWord, u")",            0, u"*"},
};
// clang-format on

std::u16string MessageOf(const Row& row) {
  const std::u16string text = LoadMessage(row.message);
  if (row.message == kType) return Format(text, {row.word, DataTypeName(row.expected)});
  if (row.message == kKind) return Format(text, {row.word, SymbolName(row.expected)});
  if (row.message == kWord) return Format(text, {row.word, row.literal});
  return text;
}

class RefusedRules : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }
};

TEST_F(RefusedRules, GiveTheMessageOfTheFurthestFailure) {
  MxParser parser;
  for (const Row& row : kRefused) {
    SCOPED_TRACE(U8(row.rule));
    const std::vector<MxWord> words = WordsOf(row.rule);
    std::u16string document = u"untouched";
    EXPECT_FALSE(parser.ParseExpr(static_cast<MXRULE_DATATYPE>(row.type), &words, document));
    EXPECT_EQ(parser.ErrNumber(), -1);
    EXPECT_EQ(U8(parser.ErrDescription()), U8(MessageOf(row)));
    EXPECT_EQ(U8(document), "untouched");
  }
}

TEST_F(RefusedRules, NameATypeThatNoRuleHas) {
  struct {
    std::int32_t type;
    const char* name;
  } const rows[] = {{0, "no value"},          {8, "long text"},     {9, "reserved type 9"},
                    {10, "reserved type 10"}, {11, "unknown type"}, {99, "unknown type"},
                    {-1, "unknown type"}};
  const std::vector<MxWord> words = WordsOf(u"1");
  MxParser parser;
  std::u16string document;
  for (const auto& row : rows) {
    EXPECT_FALSE(parser.ParseExpr(static_cast<MXRULE_DATATYPE>(row.type), &words, document));
    EXPECT_EQ(parser.ErrNumber(), -1);
    EXPECT_EQ(U8(parser.ErrDescription()),
              std::string("A rule cannot have this result type: ") + row.name + ".");
  }
}

TEST_F(RefusedRules, QuoteTheWordAsItWasWritten) {
  MxWord word = MakeRuleWord(u"T.s", kDataFieldSymbol, kStrDataType);
  word.content = u"%s t.S%d";
  MxParser parser;
  std::u16string document;
  const std::vector<MxWord> words{word};
  EXPECT_FALSE(parser.ParseExpr(kNumDataType, &words, document));
  EXPECT_EQ(U8(parser.ErrDescription()),
            "The word \"%s t.S%d\" has the wrong data type. Expected: number.");
}

TEST_F(RefusedRules, SpeakTheLanguageOfTheThread) {
  const std::vector<MxWord> words = WordsOf(u"1 2");
  MxParser parser;
  std::u16string document;
  EXPECT_FALSE(parser.ParseExpr(kNumDataType, &words, document));
  const std::u16string english = parser.ErrDescription();
  SetThreadLanguage(u"zh-CN");
  EXPECT_FALSE(parser.ParseExpr(kNumDataType, &words, document));
  EXPECT_EQ(U8(parser.ErrDescription()), U8(LoadMessage(kMsgSurplusWords)));
  EXPECT_NE(U8(parser.ErrDescription()), U8(english));
}

}  // namespace
}  // namespace ORKBASE
