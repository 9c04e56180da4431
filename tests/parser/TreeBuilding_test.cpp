// From words to the tree: what every construct of the language folds to, and how it is written.
#include "CompactTree.h"
#include "MxParser.h"
#include "RuleWords.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace ORKBASE {
namespace {

struct Row {
  std::int32_t type;
  const char16_t* rule;
  const char* tree;
};

std::u16string DocumentOf(std::int32_t type, const std::vector<MxWord>& words) {
  MxParser parser;
  std::u16string document = u"untouched";
  EXPECT_TRUE(parser.ParseExpr(static_cast<MXRULE_DATATYPE>(type), &words, document))
      << U8(parser.ErrDescription());
  return document;
}

std::string TreeOf(const Row& row, CompactDetail detail = CompactDetail::kShape) {
  return CompactTree(DocumentOf(row.type, WordsOf(row.rule)), detail);
}

// clang-format off
constexpr Row kShapes[] = {
    // single words and brackets
    {1, u"5",                                  "5"},
    {1, u"(5)",                                "5()"},
    {1, u"((5))",                              "5()"},
    {1, u"(1+2)",                              "+(){1 2}"},
    {1, u"((1+2))",                            "+(){1 2}"},
    {1, u"-(1)",                               "-{1()}"},
    {1, u"(-1)",                               "-(){1}"},
    {2, u"('abc')",                            "'abc'()"},
    {2, u"('abc'&T.s)&'x'",                    "&{&(){'abc' T.s} 'x'}"},
    {4, u"(T.a>1)",                            ">(){T.a 1}"},
    {4, u"((T.a)>(1))",                        ">(){T.a() 1()}"},
    // precedence and association
    {1, u"1+2*3",                              "+{1 *{2 3}}"},
    {1, u"(1+2)*3",                            "*{+(){1 2} 3}"},
    {1, u"1-2-3",                              "-{-{1 2} 3}"},
    {1, u"1+2-3",                              "-{+{1 2} 3}"},
    {1, u"1-(2-3)",                            "-{1 -(){2 3}}"},
    {1, u"2*3^4%5/6",                          "/{%{^{*{2 3} 4} 5} 6}"},
    {1, u"1*2+3*4",                            "+{*{1 2} *{3 4}}"},
    // a minus takes the whole sum behind it
    {1, u"-1",                                 "-{1}"},
    {1, u"-1+2",                               "-{+{1 2}}"},
    {1, u"1*-2+3",                             "*{1 -{+{2 3}}}"},
    {1, u"1--2",                               "-{1 -{2}}"},
    {1, u"- -1",                               "-{-{1}}"},
    {1, u"(-1)+2",                             "+{-(){1} 2}"},
    // conditions: "and" and "or" rank alike
    {4, u"T.a+1>2",                            ">{+{T.a 1} 2}"},
    {4, u"(T.a+1)>2",                          ">{+(){T.a 1} 2}"},
    {4, u"T.a>1 and T.b>2 or T.a<3",           "or{and{>{T.a 1} >{T.b 2}} <{T.a 3}}"},
    {4, u"T.a>1 or T.b>2 and T.a<3",           "and{or{>{T.a 1} >{T.b 2}} <{T.a 3}}"},
    {4, u"T.a>1 and (T.b>2 or T.a<3)",         "and{>{T.a 1} or(){>{T.b 2} <{T.a 3}}}"},
    {4, u"not T.a>1",                          "not{>{T.a 1}}"},
    {4, u"not not T.a>1",                      "not{not{>{T.a 1}}}"},
    {4, u"not T.a>1 and T.b>1",                "and{not{>{T.a 1}} >{T.b 1}}"},
    {4, u"not (T.a>1 or T.b>1)",               "not{or(){>{T.a 1} >{T.b 1}}}"},
    {4, u"(not T.a>1)",                        "not(){>{T.a 1}}"},
    // comparisons over the types
    {4, u"T.a<>T.b",                           "<>{T.a T.b}"},
    {4, u"T.a>=1",                             ">={T.a 1}"},
    {4, u"T.a<=1",                             "<={T.a 1}"},
    {4, u"T.s='abc'",                          "={T.s 'abc'}"},
    {4, u"T.d='2020-1-2'",                     "={T.d '2020-1-2'}"},
    {4, u"T.d>'abc'",                          ">{T.d 'abc'}"},
    {4, u"'abc'>T.d",                          ">{'abc' T.d}"},
    {4, u"Orders.Photo='abc'",                 "={Orders.Photo 'abc'}"},
    {4, u"'abc'=Orders.Photo",                 "={'abc' Orders.Photo}"},
    {4, u"Orders.File='abc'",                  "={Orders.File 'abc'}"},
    {4, u"'abc'=Orders.File",                  "={'abc' Orders.File}"},
    {4, u"T.rcid=T.a",                         "={T.rcid T.a}"},
    {4, u"T.s=T.rcid",                         "={T.s T.rcid}"},
    {4, u"T.s like 'abc'",                     "like{T.s 'abc'}"},
    {4, u"T.s&'x' like 'a'&'b'",               "like{&{T.s 'x'} &{'a' 'b'}}"},
    // joins and is-null: fields of any type
    {4, u"T.a*=T.b",                           "*={T.a T.b}"},
    {4, u"T.s=*Orders.Photo",                  "=*{T.s Orders.Photo}"},
    {4, u"thisReport.Header.Total*=T.a",       "*={thisReport.Header.Total T.a}"},
    {4, u"T.s null",                           "null{T.s}"},
    {4, u"Orders.Photo not_null",              "not_null{Orders.Photo}"},
    {4, u"thisReport.Header.Total null",       "null{thisReport.Header.Total}"},
    // sets and periods
    {4, u"T.a in thisSet(1,2,3)",              "in{T.a thisSet{1 2 3}}"},
    {4, u"T.s not_in thisSet('a')",            "not_in{T.s thisSet{'a'}}"},
    {4, u"T.d in thisSet(1,'a',T.d,Orders.Photo,Orders.File)",
                                               "in{T.d thisSet{1 'a' T.d Orders.Photo Orders.File}}"},
    {4, u"T.d between thisYear(0)",            "between{T.d thisYear{0}}"},
    {4, u"T.d between lastFisMonth(1,T.a+1)",  "between{T.d lastFisMonth{1 +{T.a 1}}}"},
    // functions
    {1, u"sum(T.a)",                           "sum{T.a}"},
    {1, u"sum((T.a))",                         "sum{T.a()}"},
    {1, u"SUM(T.a)",                           "sum{T.a}"},
    {1, u"RAND()",                             "RAND"},
    {1, u"(RAND())+1",                         "+{RAND() 1}"},
    {1, u"fUnixTimestamp()",                   "fUnixTimestamp"},
    {1, u"count('abc')+count1(T.d)",           "+{count{'abc'} count1{T.d}}"},
    {1, u"count(Orders.Photo)",                "count{Orders.Photo}"},
    {1, u"POWER(ROUND(1,2),3)",                "POWER{ROUND{1 2} 3}"},
    {1, u"timeInterval(yy,T.d,'2020-1-2')",    "timeInterval{yy T.d '2020-1-2'}"},
    {3, u"dateAdd(mm,1,T.d)",                  "dateAdd{mm 1 T.d}"},
    {1, u"max(T.a)+min(T.b)",                  "+{max{T.a} min{T.b}}"},
    {2, u"max(T.s)&min(T.s)",                  "&{max{T.s} min{T.s}}"},
    {3, u"max(T.d)",                           "max{T.d}"},
    {3, u"min(T.d)",                           "min{T.d}"},
    {5, u"max(T.s)",                           "max{T.s}"},
    {1, u"ToNumber('1')",                      "ToNumber{'1'}"},
    {1, u"ToNumber('1',2)",                    "ToNumber{'1' 2}"},
    {1, u"ToNumber('1',2,3)",                  "ToNumber{'1' 2 3}"},
    {1, u"CHARINDEX('a','b')",                 "CHARINDEX{'a' 'b'}"},
    {1, u"CHARINDEX('a','b',2)",               "CHARINDEX{'a' 'b' 2}"},
    {2, u"ToText(1+2)",                        "ToText{+{1 2}}"},
    {2, u"ToText('abc')",                      "ToText{'abc'}"},
    {2, u"ToText(Orders.Photo)",               "ToText{Orders.Photo}"},
    {2, u"ToText(Orders.File)",                "ToText{Orders.File}"},
    {2, u"ToText(T.d,'yyyymmdd')",             "ToText{T.d 'yyyymmdd'}"},
    {2, u"ToText(T.d,'HH:MM:SS')",             "ToText{T.d 'hh:mm:ss'}"},
    {3, u"ToDate(T.a)",                        "ToDate{T.a}"},
    // what can stand anywhere
    {1, u"switch(T.a>1,1)",                    "switch{>{T.a 1} 1}"},
    {1, u"switch(T.a>1,1,T.a>2,2,3)",          "switch{>{T.a 1} 1 >{T.a 2} 2 3}"},
    {2, u"switch(T.a>1,'a',T.a>2,'b')&'c'",    "&{switch{>{T.a 1} 'a' >{T.a 2} 'b'} 'c'}"},
    {3, u"switch(T.a>1,T.d,'2020-1-2')",       "switch{>{T.a 1} T.d '2020-1-2'}"},
    {6, u"switch(T.a>1,Orders.Photo,Constant.Null)", "switch{>{T.a 1} Orders.Photo Constant.Null}"},
    {1, u"switch(T.a>1,'a')+1",                "+{switch{>{T.a 1} 'a'} 1}"},
    {3, u"IsNull(T.a,'x')",                    "IsNull{T.a 'x'}"},
    {4, u"IsNull(T.a,1)>IsNull('x',T.d)",      ">{IsNull{T.a 1} IsNull{'x' T.d}}"},
    // start rules of the other types
    {5, u"'abc'&T.s",                          "&{'abc' T.s}"},
    {5, u"T.d",                                "T.d"},
    {5, u"Orders.Photo",                       "Orders.Photo"},
    {5, u"Orders.File",                        "Orders.File"},
    {6, u"Constant.Null",                      "Constant.Null"},
    {7, u"Orders.File",                        "Orders.File"},
    {1, u"AutoCADEnum.Color.Red",              "AutoCADEnum.Color.Red"},
};

constexpr Row kTypes[] = {
    {1, u"5",                          "5"},
    {1, u"(5)",                        "5()"},
    {1, u"(1+2)*3",                    "*:0{+:0(){1 2} 3}"},
    {1, u"-1+2",                       "-:2{+:0{1 2}}"},
    {1, u"RAND()",                     "RAND:1"},
    {1, u"sum(T.a)",                   "sum:1{T.a}"},
    {4, u"not T.s null",               "not:2{null:3{T.s}}"},
    {4, u"T.a*=T.b",                   "*=:0{T.a T.b}"},
    {4, u"T.s like 'abc'",             "like:0{T.s 'abc'}"},
    {4, u"T.a in thisSet(1)",          "in:0{T.a thisSet:1{1}}"},
    {4, u"T.d between thisYear(-1)",   "between:0{T.d thisYear:1{-:2{1}}}"},
    {1, u"switch(T.a>1,1)",            "switch:1{>:0{T.a 1} 1}"},
    {2, u"ToText(T.d,'yyyymmdd')",     "ToText:1{T.d 'yyyymmdd'}"},
    {6, u"Orders.Photo",               "Orders.Photo"},
};
// clang-format on

TEST(TreeBuilding, ShapesByConstruct) {
  for (const Row& row : kShapes) EXPECT_EQ(TreeOf(row), row.tree) << U8(row.rule);
}

TEST(TreeBuilding, SemanticTypesByConstruct) {
  for (const Row& row : kTypes) {
    EXPECT_EQ(TreeOf(row, CompactDetail::kTypes), row.tree) << U8(row.rule);
  }
}

TEST(TreeBuilding, WritesAttributesInTheOrderInWhichTheyAreSet) {
  EXPECT_EQ(U8(DocumentOf(1, WordsOf(u"(5)"))),
            R"(<tag primary="5" outDesc="5" symbol="0" dataType="1" content="5" inBrackets="1"/>)");
  const char* const lines[] = {
      R"(<tag primary="+" outDesc="+" symbol="16" dataType="1" content="+")"
      R"( semanticType="0" inBrackets="1">)",
      R"(  <tag primary="1" outDesc="1" symbol="0" dataType="1" content="1"/>)",
      R"(  <tag primary="sum" outDesc="sum" symbol="27" dataType="1" content="SUM")"
      R"( semanticType="1">)",
      R"(    <tag primary="T.a" outDesc="T.a" symbol="4" dataType="1" content="T.a"/>)",
      "  </tag>",
      "</tag>",
  };
  std::string expected;
  for (const char* line : lines) expected += (expected.empty() ? "" : "\n") + std::string(line);
  EXPECT_EQ(U8(DocumentOf(1, WordsOf(u"(1+SUM(T.a))"))), expected);
}

/// A minus that counts as a delimiter is dropped, and its operand gets what the minus would.
TEST(TreeBuilding, SetsTheSemanticTypeBehindABracketMarkThatCameFirst) {
  std::vector<MxWord> words = WordsOf(u"-(5)");
  words[0].symbol = kDelimiterSymbol;
  EXPECT_EQ(U8(DocumentOf(1, words)),
            R"(<tag primary="5" outDesc="5" symbol="0" dataType="1" content="5")"
            R"( inBrackets="1" semanticType="2"/>)");
}

/// A constant spelled "(" makes a sum look like a bracketed form of three.
TEST(TreeBuilding, TakesAFirstWordSpelledLikeABracketForOne) {
  std::vector<MxWord> words = WordsOf(u"1+2");
  words[0].primary = u"(";
  EXPECT_EQ(CompactTree(DocumentOf(1, words)), "+()");
  words[0].primary = std::u16string(u"(\0x", 3);
  EXPECT_EQ(CompactTree(DocumentOf(1, words)), "+()");
  // Of five nodes the first and the last are left out.
  words = WordsOf(u"1+2+3");
  words[0].primary = u"(";
  EXPECT_EQ(CompactTree(DocumentOf(1, words), CompactDetail::kTypes), "2:0(){+ +}");
}

TEST(TreeBuilding, HasNoNodeForACallOfDelimitersAlone) {
  std::vector<MxWord> words = WordsOf(u"RAND()");
  words[0].symbol = kDelimiterSymbol;
  EXPECT_EQ(U8(DocumentOf(1, words)), "");
  words = WordsOf(u"POWER(RAND(),2)");
  words[0].symbol = words[2].symbol = kDelimiterSymbol;
  EXPECT_EQ(CompactTree(DocumentOf(1, words), CompactDetail::kTypes), "2:1");
  words = WordsOf(u"RAND()+1");
  words[0].symbol = kDelimiterSymbol;
  EXPECT_EQ(CompactTree(DocumentOf(1, words), CompactDetail::kTypes), "+:0{1}");
}

TEST(TreeBuilding, IndentsTwoBlanksALevelAndNeverMoreThanSixty) {
  const std::u16string minuses(40, u'-');
  std::istringstream lines(U8(DocumentOf(1, WordsOf(minuses + u"1"))));
  std::string line;
  for (std::size_t depth = 0; depth <= 80; ++depth) {
    const std::size_t level = depth <= 40 ? depth : 80 - depth;
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_EQ(line.find('<'), std::min<std::size_t>(2 * level, 60)) << depth;
  }
  EXPECT_FALSE(std::getline(lines, line));
}

TEST(TreeBuilding, EscapesValues) {
  MxWord word = MakeRuleWord(u"'\u540D\U0001F600<>&\"\t\n\r'", kConstantSymbol, kStrDataType);
  word.outDesc = u"";
  word.content = u"\u00E9";
  EXPECT_EQ(U8(DocumentOf(2, {word})),
            R"(<tag primary="'&#x540D;&#x1F600;&lt;&gt;&amp;&quot;&#9;&#10;&#13;'" outDesc="" )"
            R"(symbol="0" dataType="2" content="&#xE9;"/>)");
}

TEST(TreeBuilding, EndsAttributeTextsAtTheFirstZero) {
  const MxWord word = MakeRuleWord(std::u16string(u"1\0x", 3), kConstantSymbol, kNumDataType);
  EXPECT_EQ(U8(DocumentOf(1, {word})),
            R"(<tag primary="1" outDesc="1" symbol="0" dataType="1" content="1"/>)");
}

}  // namespace
}  // namespace ORKBASE
