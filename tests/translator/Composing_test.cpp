// Composing against the plain way, over documents that no translation makes, and the rules that a
// reader would not expect.
#include "MxExpression.h"
#include "PlainComposer.h"
#include "Utf8.h"
#include "document/Composer.h"
#include "document/TagReader.h"

#include <gtest/gtest.h>

#include <random>

namespace ORKBASE {
namespace {

/// Random trees: every semantic type, absent and empty attributes, brackets that do not count,
/// aggregates under any symbol, empty words.
class OddTrees {
 public:
  explicit OddTrees(std::uint32_t seed) : engine_(seed) {}

  std::u16string Make(int depth) {
    std::u16string out = u"<tag";
    Add(out, u"semanticType",
        {u"0", u"0", u"0", u"1", u"1", u"2", u"2", u"3", u"4", u"5", u"", u"-"});
    Add(out, u"symbol", {u"20", u"20", u"19", u"27", u"27", u"16", u"0", u"", u"-"});
    Add(out, u"inBrackets", {u"-", u"-", u"-", u"1", u"1", u"0", u"2", u""});
    Add(out, u"ifgrpby", {u"-", u"-", u"1", u"0", u"", u" 1"});
    Add(out, u"text", {u"a", u"b", u" c ", u"and", u"=", u"", u"-"});
    Add(out, u"content", {u"x", u"y", u"", u"-"});
    out += u">";
    const int children = depth == 0 ? 0 : Pick(4);
    for (int i = 0; i < children; ++i) {
      if (Pick(4) == 0) out += u" \n ";
      out += Make(depth - 1);
    }
    return out + u"</tag>";
  }

 private:
  int Pick(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(engine_); }

  /// "-" leaves the attribute out.
  void Add(std::u16string& out, const char16_t* name,
           const std::vector<std::u16string_view>& values) {
    const std::u16string_view value =
        values[static_cast<std::size_t>(Pick(static_cast<int>(values.size())))];
    if (value == u"-") return;
    out.append(u" ").append(name).append(u"='").append(value).append(u"'");
  }

  std::mt19937 engine_;
};

constexpr const char16_t* kStarts[] = {u"", u"p", u"(q)"};

void CompareTwo(const std::u16string& document, Tag root) {
  MxExpression rules;
  for (const char16_t* firstA : kStarts) {
    for (const char16_t* firstB : kStarts) {
      std::u16string a = firstA;
      std::u16string b = firstB;
      std::u16string plainA = firstA;
      std::u16string plainB = firstB;
      rules.Compose(document, a, b);
      PlainCompose(root, plainA, plainB);
      ASSERT_EQ(U8(a) + " | " + U8(b), U8(plainA) + " | " + U8(plainB)) << U8(document);
    }
    std::u16string one = firstA;
    std::u16string plainOne = firstA;
    rules.Compose(document, one, one);
    PlainCompose(root, plainOne, plainOne);
    ASSERT_EQ(U8(one), U8(plainOne)) << U8(document);
  }
}

TEST(Composing, AgreesWithThePlainWayOnOddTrees) {
  OddTrees trees(5);
  MxExpression rules;
  for (int i = 0; i < 4000 && !testing::Test::HasFatalFailure(); ++i) {
    const std::u16string document = trees.Make(1 + i % 5);
    TagTree tree;
    ASSERT_TRUE(ReadTagTree(document, tree));
    std::u16string text;
    rules.Compose(document, text);
    ASSERT_EQ(U8(text), U8(PlainExpSpec1(tree.Root(), false))) << U8(document);
    ASSERT_EQ(U8(ExpSpec1(tree.Root(), WordsOf::kRule)), U8(PlainExpSpec1(tree.Root(), true)))
        << U8(document);
    CompareTwo(document, tree.Root());
  }
}

struct OneTextRow {
  const char16_t* document;
  const char* text;
};

// clang-format off
constexpr OneTextRow kOneTexts[] = {
    // an absent semantic type is a word, an empty one an operator between its operands
    {u"<tag text='a'><tag text='x'/></tag>",                                          "a"},
    {u"<tag text='a' semanticType=''><tag text='x'/><tag text='y'/></tag>",           "x a y"},
    {u"<tag text='a' semanticType='4'><tag text='x'/></tag>",                         "a"},
    {u"<tag text='a' semanticType='9'><tag text='x'/></tag>",                         "a"},
    // only brackets of exactly 1 count
    {u"<tag text='a' inBrackets='1'/>",                                               "(a)"},
    {u"<tag text='a' inBrackets='2'/>",                                               "a"},
    {u"<tag text='a' inBrackets='0'/>",                                               "a"},
    {u"<tag text='a' inBrackets=''/>",                                                "a"},
    // functions
    {u"<tag text='f' semanticType='1'/>",                                             "f()"},
    {u"<tag text='f' semanticType='1'><tag text='x'/><tag text='y'/></tag>",          "f(x,y)"},
    {u"<tag text='f' semanticType='1' inBrackets='1'/>",                              "(f())"},
    // operators before and behind
    {u"<tag text='not' semanticType='2'><tag text='x'/></tag>",                       "not x"},
    {u"<tag text='not' semanticType='2'/>",                                           "not"},
    {u"<tag text='not' semanticType='2'><tag text='x'/><tag text='y'/></tag>",        "not x y"},
    {u"<tag text='not' semanticType='2'><tag text=''/></tag>",                        "not "},
    {u"<tag text='null' semanticType='3'><tag text='x'/><tag text='y'/></tag>",       "x null"},
    {u"<tag text='null' semanticType='3'/>",                                          " null"},
    // operands without text vanish with their operator as long as nothing stands before them
    {u"<tag text='+' semanticType='0'><tag text=''/><tag text='y'/></tag>",           "y"},
    {u"<tag text='+' semanticType='0'><tag text='x'/><tag text=''/></tag>",           "x + "},
    {u"<tag text='+' semanticType='0'><tag/><tag/><tag text='z'/></tag>",             "z"},
    {u"<tag text='+' semanticType='0'><tag text='x'/></tag>",                         "x"},
    {u"<tag text='+' semanticType='0'/>",                                             ""},
    {u"<tag text='f' semanticType='1'><tag/><tag text='y'/></tag>",                   "f(y)"},
    {u"<tag text='f' semanticType='1'><tag text='x'/><tag/></tag>",                   "f(x,)"},
    {u"<tag text='+' semanticType='0' inBrackets='1'/>",                              "()"},
    // other element names, text and comments between
    {u"<a text='+' semanticType='0'>t<!-- c --><b text='x'/>t<c text='y'/></a>",      "x + y"},
    // what does not parse
    {u"",                                                                             ""},
    {u"x",                                                                            ""},
    {u"<tag text='a'>",                                                               ""},
};
// clang-format on

TEST(Composing, OneText) {
  MxExpression rules;
  for (const OneTextRow& row : kOneTexts) {
    std::u16string text = u"before";
    EXPECT_EQ(rules.Compose(row.document, text), 0);
    EXPECT_EQ(U8(text), row.text) << U8(row.document);
  }
}

struct TwoTextRow {
  const char16_t* document;
  const char* firstA;
  const char* firstB;
  const char* a;
  const char* b;
};

constexpr const char16_t* kConnective =
    u"<tag symbol='20' semanticType='0' text='and'>"
    u"<tag text='x'/><tag symbol='27' semanticType='1' ifgrpby='1' text='sum'/></tag>";
// Here "found" comes from a comparison, whose side B the connective takes.
constexpr const char16_t* kBoth =
    u"<tag symbol='20' semanticType='0' text='and' inBrackets='1'><tag text='x'/>"
    u"<tag symbol='19' semanticType='0' text='&gt;'>"
    u"<tag symbol='27' semanticType='1' ifgrpby='1' text='sum'/><tag text='2'/></tag></tag>";
constexpr const char16_t* kOtherSymbol =
    u"<tag symbol='19' semanticType='1' ifgrpby='1' text='f'/>";
constexpr const char16_t* kOtherMark = u"<tag symbol='27' semanticType='1' ifgrpby='2' text='f'/>";
constexpr const char16_t* kNot =
    u"<tag symbol='21' semanticType='2' text='not'>"
    u"<tag symbol='27' semanticType='1' ifgrpby='1' text='sum'/></tag>";
constexpr const char16_t* kBehind =
    u"<tag symbol='26' semanticType='3' text='is null'>"
    u"<tag symbol='27' semanticType='1' ifgrpby='1' text='sum'/></tag>";

// clang-format off
constexpr TwoTextRow kTwoTexts[] = {
    {kConnective,     "",  "",  "(x)",       "(sum())"},
    // a connective goes on behind what its texts hold, everything else replaces one of them
    {kConnective,     "p", "q", "(p and x)", "(q and sum())"},
    {u"<tag text='x'/>", "p", "q", "(x)",    "(q)"},
    {kNot,            "p", "q", "(not)",     "(q sum())"},
    {kBehind,         "p", "",  "(p)",       "(sum() is null)"},
    // only side A gets the brackets of a connective
    {kBoth,           "",  "",  "((x))",     "(sum() > 2)"},
    // an aggregate is marked by exactly 1 on a function
    {kOtherSymbol,    "",  "",  "(f())",     ""},
    {kOtherMark,      "",  "",  "(f())",     ""},
    {kNot,            "",  "",  "(not)",     "(not sum())"},
    {kBehind,         "",  "",  "",          "(sum() is null)"},
    // what does not parse leaves a word without text on side A
    {u"x",            "p", "q", "",          "(q)"},
};
// clang-format on

TEST(Composing, TwoTexts) {
  MxExpression rules;
  for (const TwoTextRow& row : kTwoTexts) {
    std::u16string a = U16(row.firstA);
    std::u16string b = U16(row.firstB);
    EXPECT_EQ(rules.Compose(row.document, a, b), 0);
    EXPECT_EQ(U8(a), row.a) << U8(row.document);
    EXPECT_EQ(U8(b), row.b) << U8(row.document);
  }
}

TEST(Composing, TwoTextsInOneVariable) {
  MxExpression rules;
  std::u16string one;
  rules.Compose(kConnective, one, one);
  // "x" on side A, then " and sum()" on side B of the same text, then both pairs of brackets
  EXPECT_EQ(U8(one), "((x and sum()))");
}

TEST(Composing, AFailureIsNoError) {
  MxExpression rules;
  std::u16string text;
  EXPECT_EQ(rules.Compose(u"<", text), 0);
  EXPECT_EQ(rules.errNumber(), 0);
}

}  // namespace
}  // namespace ORKBASE
