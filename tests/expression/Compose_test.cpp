// Flattening translated documents into one text or two.
#include "MxExpression.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

using namespace ORKBASE;

namespace {

/// An element; `head` holds its attributes but for the text.
std::u16string Node(const std::u16string& text, const std::u16string& head,
                    std::initializer_list<std::u16string> children = {}) {
  std::u16string out = u"<tag text=\"" + text + u"\" " + head + u">\n ";
  for (const std::u16string& child : children) out += child + u"\n";
  return out + u"</tag>";
}

std::u16string Leaf(const std::u16string& text) {
  return Node(text, u"symbol='4'");
}

std::u16string Infix(const std::u16string& text, const std::u16string& left,
                     const std::u16string& right, const std::u16string& more = u"") {
  const bool connective = text == u"and" || text == u"or";
  return Node(
      text,
      (connective ? u"symbol='20' semanticType='0' " : u"symbol='19' semanticType='0' ") + more,
      {left, right});
}

std::u16string Prefix(const std::u16string& text, std::initializer_list<std::u16string> children,
                      const std::u16string& more = u"") {
  return Node(text, u"symbol='21' semanticType='2' " + more, children);
}

std::u16string Postfix(const std::u16string& text, std::initializer_list<std::u16string> children,
                       const std::u16string& more = u"") {
  return Node(text, u"symbol='26' semanticType='3' " + more, children);
}

std::u16string Call(const std::u16string& text, std::initializer_list<std::u16string> children,
                    const std::u16string& more = u"") {
  return Node(text, u"symbol='27' semanticType='1' " + more, children);
}

std::u16string Sum(const std::u16string& text) {
  return Call(u"sum", {Leaf(text)}, u"ifgrpby='1'");
}

constexpr const char16_t* kBrackets = u"inBrackets='1'";

std::string One(const std::u16string& document) {
  MxExpression rules;
  std::u16string out = u"former text";
  EXPECT_EQ(rules.Compose(document, out), 0);
  EXPECT_EQ(rules.errNumber(), 0);
  return U8(out);
}

/// Both texts with a bar between, after they held `a` and `b`.
std::string Two(const std::u16string& document, std::u16string a = u"", std::u16string b = u"") {
  MxExpression rules;
  EXPECT_EQ(rules.Compose(document, a, b), 0);
  return U8(a) + "|" + U8(b);
}

std::string Same(const std::u16string& document, std::u16string text = u"") {
  MxExpression rules;
  EXPECT_EQ(rules.Compose(document, text, text), 0);
  return U8(text);
}

const std::u16string kPlain = Infix(u"=", Leaf(u"x"), Leaf(u"1"));
const std::u16string kGrouped = Infix(u">", Sum(u"y"), Leaf(u"2"));

}  // namespace

TEST(ComposeOne, PrintsEachShape) {
  struct Case {
    std::u16string document;
    std::string text;
  };
  const Case cases[] = {
      {Leaf(u"x"), "x"},
      {Infix(u"and", Leaf(u"x"), Leaf(u"y")), "x and y"},
      {Node(u"+", u"semanticType='0'", {Leaf(u"x"), Leaf(u"y"), Leaf(u"z")}), "x + y + z"},
      {Node(u"+", u"semanticType='0'", {Leaf(u"x")}), "x"},
      {Node(u"+", u"semanticType='0'"), ""},
      {Call(u"f", {Leaf(u"x"), Leaf(u"y")}), "f(x,y)"},
      {Call(u"f", {}), "f()"},
      {Prefix(u"not", {Leaf(u"x")}), "not x"},
      {Prefix(u"not", {Leaf(u"x"), Leaf(u"y")}), "not x y"},
      {Prefix(u"not", {}), "not"},
      {Prefix(u"-", {Leaf(u"")}), "- "},
      {Postfix(u"is null", {Leaf(u"x")}), "x is null"},
      {Postfix(u"is null", {Leaf(u"x"), Leaf(u"y")}), "x is null"},
      {Postfix(u"is null", {}), " is null"},
      {Node(u"x", u"semanticType='4'", {Leaf(u"y")}), "x"},
      {Node(u"x", u"semanticType='7'", {Leaf(u"y")}), "x"},
      {Node(u"x", u"semanticType=''", {Leaf(u"y"), Leaf(u"z")}),
       "y x z"},                             // present and empty is 0
      {Node(u"x", u"", {Leaf(u"y")}), "x"},  // absent is a word
      {Infix(u"and", kPlain, Infix(u"or", Leaf(u"y"), Leaf(u"z"), kBrackets)),
       "x = 1 and (y or z)"},
  };
  for (const Case& c : cases) EXPECT_EQ(One(c.document), c.text) << U8(c.document);
}

TEST(ComposeOne, BracketsOnlyForExactlyOne) {
  EXPECT_EQ(One(Node(u"x", u"inBrackets='1'")), "(x)");
  for (const char16_t* mark : {u"inBrackets='2'", u"inBrackets='0'", u"inBrackets=''",
                               u"inBrackets='x'", u"inBrackets='11'", u""}) {
    EXPECT_EQ(One(Node(u"x", mark)), "x") << U8(mark);
  }
  EXPECT_EQ(One(Prefix(u"not", {Leaf(u"x")}, kBrackets)), "(not x)");
  EXPECT_EQ(One(Postfix(u"is null", {Leaf(u"x")}, kBrackets)), "(x is null)");
  EXPECT_EQ(One(Call(u"f", {Leaf(u"x")}, kBrackets)), "(f(x))");
}

TEST(ComposeOne, EmptyOperandsVanishAsLongAsNothingStandsBeforeThem) {
  const std::u16string empty = Leaf(u"");
  EXPECT_EQ(One(Infix(u"+", empty, Leaf(u"y"))), "y");
  EXPECT_EQ(One(Infix(u"+", Leaf(u"x"), empty)), "x + ");
  EXPECT_EQ(One(Infix(u"+", empty, empty)), "");
  EXPECT_EQ(One(Call(u"f", {empty, empty, Leaf(u"z")})), "f(z)");
  EXPECT_EQ(One(Call(u"f", {Leaf(u"x"), empty, Leaf(u"z")})), "f(x,,z)");
  EXPECT_EQ(One(Infix(u"+", Infix(u"*", empty, empty), Leaf(u"y"))), "y");
  EXPECT_EQ(One(Infix(u"+", Infix(u"*", empty, empty, kBrackets), Leaf(u"y"))), "() + y");
  EXPECT_EQ(One(Node(u"+", u"semanticType='0'", {empty, Leaf(u"y"), empty, Leaf(u"z")})),
            "y +  + z");
}

TEST(ComposeOne, WalksElementsOfAnyNameAndNothingElse) {
  EXPECT_EQ(
      One(u"<!-- c --><x text='+' semanticType='0'>t<y text='a'/><!-- c --><z text='b'/></x>"),
      "a + b");
  EXPECT_EQ(One(u"<tag/>"), "");
  EXPECT_EQ(One(u"<tag content='x'/>"), "");
}

TEST(Compose, TextThatIsNoDocumentGivesEmptyTexts) {
  for (const char16_t* text : {u"", u"x", u"<tag>", u"<tag text='&e;'/>",
                               u"<!DOCTYPE t [<!ENTITY e 'x'>]><t text='&e;'/>"}) {
    EXPECT_EQ(One(text), "") << U8(text);
    EXPECT_EQ(Two(text), "|") << U8(text);
    // The walk sees no root: an absent word is the empty text of side A.
    EXPECT_EQ(Two(text, u"a", u"b"), "|(b)") << U8(text);
  }
}

TEST(ComposeTwo, SplitsAtConnectives) {
  struct Case {
    std::u16string document;
    std::string texts;
  };
  const Case cases[] = {
      {Infix(u"and", kPlain, kGrouped), "(x = 1)|(sum(y) > 2)"},
      {Infix(u"and", kGrouped, kPlain), "(x = 1)|(sum(y) > 2)"},
      {Infix(u"&lt;", Leaf(u"2"), Sum(u"y")), "|(2 < sum(y))"},
      {kGrouped, "|(sum(y) > 2)"},
      {Infix(u"or", kPlain, Infix(u"=", Leaf(u"y"), Leaf(u"2"))), "(x = 1 or y = 2)|"},
      {kPlain, "(x = 1)|"},
      {Leaf(u"x"), "(x)|"},
      {Sum(u"y"), "|(sum(y))"},
      {Infix(u"and", Infix(u"and", Infix(u"and", kPlain, kGrouped), Leaf(u"c")), Sum(u"d")),
       "(x = 1 and c)|(sum(y) > 2 and sum(d))"},
      // what an operand gave to A moves along when a later one decides for B
      {Infix(u">", Infix(u"+", Leaf(u"x"), Sum(u"y")), Leaf(u"2")), "|(x + sum(y) > 2)"},
      {Infix(u">", Call(u"f", {Leaf(u"x"), Sum(u"y"), Leaf(u"z")}), Leaf(u"2")),
       "|(f(x,sum(y),z) > 2)"},
      {Call(u"f", {Leaf(u"x")}), "(f(x))|"},
      {Call(u"sum", {Leaf(u"x"), Leaf(u"y")}, u"ifgrpby='1'"), "|(sum(x,y))"},
      {Call(u"sum", {}, u"ifgrpby='1'"), "|(sum())"},
      // the mark has to be exactly 1, on a function
      {Call(u"sum", {Leaf(u"x")}, u"ifgrpby='2'"), "(sum(x))|"},
      {Node(u"sum", u"symbol='4' semanticType='1' ifgrpby='1'", {Leaf(u"x")}), "(sum(x))|"},
      // empty pieces
      {Infix(u"and", Leaf(u""), kGrouped), "|(sum(y) > 2)"},
      {Infix(u"+", Leaf(u""), Leaf(u"x")), "(x)|"},
      {Infix(u"+", Leaf(u"x"), Leaf(u"")), "(x)|"},
      {Call(u"f", {Leaf(u"x"), Leaf(u""), Leaf(u"y")}), "(f(x,y))|"},
  };
  for (const Case& c : cases) EXPECT_EQ(Two(c.document), c.texts) << U8(c.document);
}

TEST(ComposeTwo, OperatorsBeforeAndBehindDoNotReportThatTheyWentToB) {
  struct Case {
    std::u16string document;
    std::string texts;
  };
  const Case cases[] = {
      {Prefix(u"not", {kPlain}), "(not x = 1)|"},
      {Prefix(u"not", {kGrouped}), "(not)|(not sum(y) > 2)"},
      {Infix(u"and", kPlain, Prefix(u"not", {kGrouped})), "(x = 1 and not)|(not sum(y) > 2)"},
      {Prefix(u"not", {Infix(u"and", kPlain, kGrouped)}), "(not x = 1)|(not sum(y) > 2)"},
      {Prefix(u"not", {Infix(u"and", kPlain, kGrouped, kBrackets)}),
       "(not (x = 1))|(not sum(y) > 2)"},
      {Postfix(u"is null", {Leaf(u"x")}), "(x is null)|"},
      {Postfix(u"is null", {Sum(u"y")}), "|(sum(y) is null)"},
      {Infix(u"and", kPlain, Postfix(u"is null", {Sum(u"y")})), "(x = 1)|(sum(y) is null)"},
      // lost: neither side of the comparison is told
      {Infix(u"=", Postfix(u"is null", {Sum(u"y")}), Leaf(u"1")), "(1)|"},
      {Infix(u">", Prefix(u"-", {Sum(u"y")}), Leaf(u"1")), "(- > 1)|"},
      // one child of an operator in front sees what the one before it left
      {Prefix(u"p", {kGrouped, kPlain}), "(p)|(p sum(y) > 2 x = 1)"},
      {Prefix(u"p", {kPlain, kGrouped}), "(p x = 1 x = 1)|(p sum(y) > 2)"},
      {Prefix(u"p", {}), "(p)|"},
      {Postfix(u"is null", {}), "( is null)|"},
  };
  for (const Case& c : cases) EXPECT_EQ(Two(c.document), c.texts) << U8(c.document);
}

TEST(ComposeTwo, BracketsGoToOneSide) {
  struct Case {
    std::u16string document;
    std::string texts;
  };
  const Case cases[] = {
      {Infix(u">", Sum(u"y"), Leaf(u"2"), kBrackets), "|((sum(y) > 2))"},
      {Infix(u"or", Infix(u"and", kPlain, kGrouped, kBrackets), Leaf(u"z")),
       "((x = 1) or z)|(sum(y) > 2)"},
      // a side that is empty gets its brackets all the same
      {Infix(u"and", Leaf(u"z"), Infix(u"or", kGrouped, kGrouped, kBrackets)),
       "(z and ())|(sum(y) > 2 or sum(y) > 2)"},
      {Node(u"x", u"inBrackets='1'"), "((x))|"},
      {Node(u"x", u"inBrackets='2'"), "(x)|"},
      {Call(u"sum", {Leaf(u"x")}, u"ifgrpby='1' inBrackets='1'"), "|((sum(x)))"},
  };
  for (const Case& c : cases) EXPECT_EQ(Two(c.document), c.texts) << U8(c.document);
}

TEST(ComposeTwo, TextsThatAreNotEmptyBecomePart) {
  const std::u16string both = Infix(u"and", kPlain, kGrouped);
  EXPECT_EQ(Two(both, u"a0", u"b0"), "(a0 and x = 1)|(b0 and sum(y) > 2)");
  EXPECT_EQ(Two(both, u"a0", u""), "(a0 and x = 1)|(sum(y) > 2)");
  EXPECT_EQ(Two(Infix(u"and", kPlain, kPlain), u"a0", u"b0"), "(a0 and x = 1 and x = 1)|(b0)");
  EXPECT_EQ(Two(Infix(u"and", kPlain, kGrouped, kBrackets), u"a0", u"b0"),
            "((a0 and x = 1))|(b0 and sum(y) > 2)");
  // everything but a connective writes its side anew
  EXPECT_EQ(Two(kPlain, u"a0", u"b0"), "(x = 1)|(b0)");
  EXPECT_EQ(Two(kGrouped, u"a0", u"b0"), "(a0)|(sum(y) > 2)");
  EXPECT_EQ(Two(Leaf(u"x"), u"a0", u"b0"), "(x)|(b0)");
  EXPECT_EQ(Two(Prefix(u"not", {kPlain}), u"a0", u"b0"), "(not x = 1)|(b0)");
  // and an operator in front goes on with what B holds
  EXPECT_EQ(Two(Prefix(u"not", {kGrouped}), u"a0", u"b0"), "(not)|(b0 sum(y) > 2)");
  EXPECT_EQ(Two(Postfix(u"is null", {Sum(u"y")}), u"a0", u"b0"), "(a0)|(sum(y) is null)");
}

TEST(ComposeTwo, OneVariableServesForBoth) {
  EXPECT_EQ(Same(Infix(u"and", kPlain, kGrouped)), "((x = 1 and sum(y) > 2))");
  EXPECT_EQ(Same(Infix(u"and", kGrouped, kPlain)), "((sum(y) > 2 and x = 1))");
  EXPECT_EQ(Same(Infix(u"and", kPlain, kGrouped, kBrackets)), "(((x = 1 and sum(y) > 2)))");
  EXPECT_EQ(Same(kGrouped), "((sum(y) > 2))");
  EXPECT_EQ(Same(kPlain), "((x = 1))");
  EXPECT_EQ(Same(Prefix(u"not", {kGrouped})), "((not sum(y) > 2))");
  EXPECT_EQ(Same(Prefix(u"not", {Infix(u"and", kPlain, kGrouped)})), "((not x = 1 sum(y) > 2))");
  EXPECT_EQ(Same(Infix(u"and", kPlain, kGrouped), u"t0"), "((t0 and x = 1 and sum(y) > 2))");
  EXPECT_EQ(Same(Leaf(u"")), "");
}

TEST(ComposeOne, OneVariableServesForDocumentAndText) {
  MxExpression rules;
  std::u16string text = Infix(u"and", kPlain, kGrouped);
  EXPECT_EQ(rules.Compose(text, text), 0);
  EXPECT_EQ(U8(text), "x = 1 and sum(y) > 2");
  std::u16string b;
  text = kPlain;
  EXPECT_EQ(rules.Compose(text, text, b), 0);
  EXPECT_EQ(U8(text), "(x = 1)");
}

namespace {

class GetSpecTexts : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(rules_.Verify(kLogicDataType, u"T.a > 1 and sum(T.b) > 2", document_));
    std::u16string a, b;
    ASSERT_TRUE(rules_.GetSpec(document_, kSqlServerDs, translated_, a, b, true));
    EXPECT_EQ(U8(a), "(isnull([T].a,0) > 1)");
    EXPECT_EQ(U8(b), "(sum(isnull([T].b,0)) > 2)");
  }
  bool GetSpec(std::u16string& translated, std::u16string& a, std::u16string& b, bool two) {
    return rules_.GetSpec(document_, kSqlServerDs, translated, a, b, two);
  }

  const ScopedLanguage language_{u"en"};
  SampleExpression rules_;
  std::u16string document_;
  std::u16string translated_;
};

}  // namespace

TEST_F(GetSpecTexts, AgreeWithComposeOfTheTranslatedDocument) {
  std::u16string a, b, one;
  EXPECT_EQ(rules_.Compose(translated_, a, b), 0);
  EXPECT_EQ(U8(a), "(isnull([T].a,0) > 1)");
  EXPECT_EQ(U8(b), "(sum(isnull([T].b,0)) > 2)");
  EXPECT_EQ(rules_.Compose(translated_, one), 0);
  EXPECT_EQ(U8(one), "isnull([T].a,0) > 1 and sum(isnull([T].b,0)) > 2");
}

TEST_F(GetSpecTexts, ThatAreNotEmptyBecomePart) {
  std::u16string translated = u"former", a = u"a0", b = u"b0";
  ASSERT_TRUE(GetSpec(translated, a, b, true));
  EXPECT_EQ(U8(translated), U8(translated_));
  EXPECT_EQ(U8(a), "(a0 and isnull([T].a,0) > 1)");
  EXPECT_EQ(U8(b), "(b0 and sum(isnull([T].b,0)) > 2)");
  ASSERT_TRUE(GetSpec(translated, a, b, false));  // one text starts anew and leaves the other
  EXPECT_EQ(U8(a), "isnull([T].a,0) > 1 and sum(isnull([T].b,0)) > 2");
  EXPECT_EQ(U8(b), "(b0 and sum(isnull([T].b,0)) > 2)");
}

TEST_F(GetSpecTexts, MayBeOneVariable) {
  const std::string whole = "isnull([T].a,0) > 1 and sum(isnull([T].b,0)) > 2";
  std::u16string translated, x, y;
  ASSERT_TRUE(GetSpec(translated, x, x, true));
  EXPECT_EQ(U8(x), "((" + whole + "))");
  ASSERT_TRUE(GetSpec(x, x, y, false));
  EXPECT_EQ(U8(x), whole);
  EXPECT_EQ(U8(y), "");
  // The document that the variable got is there when the second text is begun.
  ASSERT_TRUE(GetSpec(x, x, y, true));
  EXPECT_EQ(U8(x), "(" + U8(translated_) + " and isnull([T].a,0) > 1)");
  EXPECT_EQ(U8(y), "(sum(isnull([T].b,0)) > 2)");
  y.clear();
  ASSERT_TRUE(GetSpec(x, y, x, true));
  EXPECT_EQ(U8(y), "(isnull([T].a,0) > 1)");
  EXPECT_EQ(U8(x), "(" + U8(translated_) + " and sum(isnull([T].b,0)) > 2)");
  ASSERT_TRUE(rules_.GetSpec(document_, kSqlServerDs, document_, document_, y, false));
  EXPECT_EQ(U8(document_), whole);
}
