// The arena tree of expression documents, every operation on a tag and on the null tag.
#include "document/TagTree.h"

#include "document/TagReader.h"

#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>

using namespace ORKBASE;

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// The document whose elements are these.
std::string Declared(const char* elements) {
  std::string document = kDeclaration;
  document += elements;
  return document;
}

/// Element names with their children in brackets: `a(b c(d))`.
std::string Shape(Tag tag) {
  if (!tag) return "-";
  std::string out = U8(tag.node()->text);
  if (!tag.FirstChild()) return out;
  out += '(';
  for (Tag child = tag.FirstChild(); child; child = child.Next()) {
    if (child.Previous()) out += ' ';
    out += Shape(child);
  }
  return out + ')';
}

struct Read : TagTree {
  explicit Read(std::u16string_view text) { EXPECT_TRUE(ReadTagTree(text, *this)) << U8(text); }
};

}  // namespace

TEST(Tag, NullTagReadsAsNothingAndIgnoresWrites) {
  TagTree tree;
  Tag null;
  EXPECT_FALSE(null);
  EXPECT_TRUE(null == Tag());
  EXPECT_FALSE(null.Has(Attr::kText));
  EXPECT_EQ(U8(null.Get(Attr::kText)), "");
  EXPECT_EQ(null.GetInt(Attr::kSymbol), 0);
  null.Set(Attr::kText, u"x");
  null.Set(Attr::kText, 1);
  EXPECT_FALSE(null.Parent());
  EXPECT_FALSE(null.FirstChild());
  EXPECT_FALSE(null.LastChild());
  EXPECT_FALSE(null.Next());
  EXPECT_FALSE(null.Previous());
  EXPECT_FALSE(null.ChildAt(0));
  EXPECT_FALSE(null.ChildAt(-1));
  EXPECT_EQ(null.ChildCount(), 0);
  EXPECT_FALSE(null.HasOneChild());
  EXPECT_FALSE(null.DeepCopy());
  EXPECT_FALSE(null.NextInDocument(null));
  EXPECT_FALSE(null.NextBehind(null));
  null.Unlink();
  null.AddChild(null);
  Tag tag = tree.NewTag();
  null.AddChild(tag);
  null.ReplaceBy(tag);
  tag.AddChild(null);
  tag.ReplaceBy(null);
  EXPECT_EQ(tag.ChildCount(), 0);
}

TEST(TagTree, EmptyTreeHasNoRootAndNoText) {
  TagTree tree;
  EXPECT_FALSE(tree.Root());
  EXPECT_EQ(U8(tree.ToText()), "");
  EXPECT_TRUE(tree.ReadsBack());
  EXPECT_EQ(tree.CountElements(), 0u);
  EXPECT_EQ(tree.MadeElements(), 0u);
}

TEST(Tag, KeepsTheOrderInWhichAttributesWereFirstSet) {
  TagTree tree;
  Tag tag = tree.NewTag();
  tree.SetRoot(tag);
  tag.Set(Attr::kText, u"b");
  tag.Set(Attr::kPrimary, u"a");
  tag.Set(Attr::kSymbol, -7);
  tag.Set(Attr::kText, u"c");
  EXPECT_EQ(U8(tree.ToText()), Declared("<tag text=\"c\" primary=\"a\" symbol=\"-7\"/>\n"));
  EXPECT_EQ(tag.GetInt(Attr::kSymbol), -7);
}

TEST(Tag, TellsAnEmptyAttributeFromAnAbsentOneByHasOnly) {
  TagTree tree;
  Tag tag = tree.NewTag();
  tag.Set(Attr::kText, u"");
  EXPECT_TRUE(tag.Has(Attr::kText));
  EXPECT_FALSE(tag.Has(Attr::kContent));
  EXPECT_EQ(U8(tag.Get(Attr::kText)), "");
  EXPECT_EQ(U8(tag.Get(Attr::kContent)), "");
}

TEST(Tag, ReadsNumbersByTheirLeadingDigits) {
  TagTree tree;
  Tag tag = tree.NewTag();
  tag.Set(Attr::kSymbol, u" 27x");
  EXPECT_EQ(tag.GetInt(Attr::kSymbol), 27);
  tag.Set(Attr::kSymbol, u"x27");
  EXPECT_EQ(tag.GetInt(Attr::kSymbol), 0);
}

TEST(Tag, MakesTextsFitForADocument) {
  TagTree tree;
  Tag tag = tree.NewTag();
  tag.Set(Attr::kText, std::u16string_view(u"a\0b", 3));
  EXPECT_EQ(U8(tag.Get(Attr::kText)), "a");
  const char16_t lone[] = {u'a', 0xD83D, u'b', 0xDE00, 0};
  tag.Set(Attr::kText, lone);
  EXPECT_TRUE(tag.Get(Attr::kText) ==
              u"a\xFFFD"
              u"b\xFFFD");
  const char16_t pair[] = {0xD83D, 0xDE00, 0};
  tag.Set(Attr::kText, pair);
  EXPECT_TRUE(tag.Get(Attr::kText) == pair);
}

TEST(Tag, WalksElementsOnly) {
  Read tree(u"<r> <a/>\n<b/> <c/> </r>");
  const Tag root = tree.Root();
  EXPECT_EQ(root.ChildCount(), 3);
  EXPECT_EQ(Shape(root.FirstChild()), "a");
  EXPECT_EQ(Shape(root.LastChild()), "c");
  EXPECT_EQ(Shape(root.ChildAt(1)), "b");
  EXPECT_FALSE(root.ChildAt(3));
  EXPECT_FALSE(root.ChildAt(-1));
  EXPECT_EQ(Shape(root.LastChild().Previous().Previous()), "a");
  EXPECT_FALSE(root.FirstChild().Previous());
  EXPECT_FALSE(root.LastChild().Next());
  EXPECT_TRUE(root.FirstChild().Parent() == root);
  EXPECT_FALSE(root.Parent());
  EXPECT_FALSE(root.HasOneChild());
}

TEST(Tag, MovedNodeLeavesTheWhiteSpaceAroundItBehind) {
  Read tree(u"<r>\n  <a/>\n  <b/>\n</r>");
  Tag root = tree.Root();
  root.LastChild().AddChild(root.FirstChild());
  EXPECT_EQ(U8(tree.ToText()), Declared("<r>\n  \n  <b><a/></b>\n</r>\n"));
}

TEST(Tag, UnlinksFirstMiddleLastAndRoot) {
  struct Case {
    std::int32_t child;
    std::string left;
  };
  for (const Case& c : {Case{0, "r(b c)"}, Case{1, "r(a c)"}, Case{2, "r(a b)"}}) {
    Read tree(u"<r><a/><b/><c/></r>");
    Tag child = tree.Root().ChildAt(c.child);
    child.Unlink();
    EXPECT_EQ(Shape(tree.Root()), c.left);
    EXPECT_FALSE(child.Parent());
    EXPECT_FALSE(child.Next());
    EXPECT_FALSE(child.Previous());
  }
  Read tree(u"<r><a/></r>");
  Tag root = tree.Root();
  root.Unlink();
  EXPECT_FALSE(tree.Root());
  EXPECT_EQ(Shape(root), "r(a)");
  EXPECT_EQ(U8(tree.ToText()), "");
}

TEST(Tag, AddChildTakesTheNodeOutOfItsOldPlace) {
  Read tree(u"<r><a><x/></a><b/></r>");
  const Tag x = tree.Root().FirstChild().FirstChild();
  tree.Root().LastChild().AddChild(x);
  EXPECT_EQ(Shape(tree.Root()), "r(a b(x))");
  tree.Root().AddChild(tree.Root().FirstChild());
  EXPECT_EQ(Shape(tree.Root()), "r(b(x) a)");
}

TEST(Tag, ReplaceByPutsANodeInTheSamePlace) {
  struct Case {
    std::int32_t child;
    std::string after;
  };
  for (const Case& c : {Case{0, "r(n b c)"}, Case{1, "r(a n c)"}, Case{2, "r(a b n)"}}) {
    Read tree(u"<r><a/><b/><c/></r>");
    Tag old = tree.Root().ChildAt(c.child);
    old.ReplaceBy(tree.NewTag(u"n"));
    EXPECT_EQ(Shape(tree.Root()), c.after);
    EXPECT_FALSE(old.Parent());
  }
}

TEST(Tag, ReplaceByItsOwnChildLiftsTheChild) {
  Read tree(u"<r><a><x><y/></x></a></r>");
  Tag a = tree.Root().FirstChild();
  a.ReplaceBy(a.FirstChild());
  EXPECT_EQ(Shape(tree.Root()), "r(x(y))");
  Tag root = tree.Root();
  root.ReplaceBy(root.FirstChild());
  EXPECT_EQ(Shape(tree.Root()), "x(y)");
  EXPECT_FALSE(tree.Root().Parent());
  EXPECT_EQ(Shape(root), "r");
}

TEST(Tag, ReplaceByItselfChangesNothing) {
  Read tree(u"<r><a/><b/></r>");
  tree.Root().FirstChild().ReplaceBy(tree.Root().FirstChild());
  tree.Root().ReplaceBy(tree.Root());
  EXPECT_EQ(Shape(tree.Root()), "r(a b)");
}

TEST(Tag, ReplaceByABrotherTakesTheBrotherAway) {
  Read tree(u"<r><a/><b/><c/></r>");
  tree.Root().FirstChild().ReplaceBy(tree.Root().LastChild());
  EXPECT_EQ(Shape(tree.Root()), "r(c b)");
  tree.Root().LastChild().ReplaceBy(tree.Root().FirstChild());
  EXPECT_EQ(Shape(tree.Root()), "r(c)");
}

TEST(Tag, DeepCopyStandsAloneWithAllThatBelongsToIt) {
  Read tree(u"<r><a x='1' text='t'> <b/><!-- k --><c><d/></c></a><e/></r>");
  Tag a = tree.Root().FirstChild();
  Tag copy = a.DeepCopy();
  EXPECT_EQ(Shape(copy), "a(b c(d))");
  EXPECT_FALSE(copy.Parent());
  EXPECT_FALSE(copy.Next());
  copy.Set(Attr::kText, u"changed");
  EXPECT_EQ(U8(a.Get(Attr::kText)), "t");
  tree.SetRoot(copy);
  EXPECT_NE(U8(tree.ToText()).find("<a x=\"1\" text=\"changed\"> <b/><!-- k --><c><d/></c></a>"),
            std::string::npos);
  EXPECT_EQ(Shape(tree.NewTag(u"leaf").DeepCopy()), "leaf");
}

TEST(Tag, WalksInDocumentOrderBelowATop) {
  Read tree(u"<r><a><b/><c/></a><d/></r>");
  const auto walk = [](Tag top) {
    std::string names;
    for (Tag at = top; at; at = at.NextInDocument(top)) names += U8(at.node()->text);
    return names;
  };
  EXPECT_EQ(walk(tree.Root()), "rabcd");
  EXPECT_EQ(walk(tree.Root().FirstChild()), "abc");
  EXPECT_EQ(walk(tree.Root().LastChild()), "d");
  EXPECT_EQ(Shape(tree.Root().FirstChild().NextBehind(tree.Root())), "d");
  EXPECT_FALSE(tree.Root().NextBehind(tree.Root()));
}

TEST(TagTree, CountsWhatHangsAtTheRootAndWhatWasMade) {
  Read tree(u"<r><a/><b/></r>");
  EXPECT_EQ(tree.CountElements(), 3u);
  EXPECT_EQ(tree.MadeElements(), 3u);
  const Tag copy = tree.Root().DeepCopy();
  EXPECT_TRUE(copy);
  EXPECT_EQ(tree.CountElements(), 3u);
  EXPECT_EQ(tree.MadeElements(), 6u);
  tree.Clear();
  EXPECT_EQ(tree.CountElements(), 0u);
  EXPECT_EQ(tree.MadeElements(), 0u);
}

TEST(TagTree, KnowsWhetherItsTextCouldBeReadAgain) {
  struct Case {
    std::u16string text;
    bool reads;
  };
  const Case cases[] = {
      {u"plain", true},         {u"\t\n\r", true}, {u"\x1", false},    {u"a\x1F", false},
      {u"\x7F", true},          {u"\xFFFD", true}, {u"\xFFFE", false}, {u"\xFFFF", false},
      {{0xD83D, 0xDE00}, true}, {{0xD83D}, true},
  };
  for (const Case& c : cases) {
    TagTree tree;
    Tag root = tree.NewTag();
    tree.SetRoot(root);
    Tag child = tree.NewTag();
    root.AddChild(child);
    child.Set(Attr::kText, c.text);
    EXPECT_EQ(tree.ReadsBack(), c.reads) << U8(c.text);
    TagTree again;
    EXPECT_EQ(ReadTagTree(tree.ToText(), again), c.reads) << U8(c.text);
    child.Set(Attr::kText, u"");
    EXPECT_TRUE(tree.ReadsBack());
  }
}

TEST(TagTree, IsUsedAgainAfterAClear) {
  TagTree tree;
  for (int round = 0; round < 3; ++round) {
    tree.Clear();
    Tag root = tree.NewTag();
    tree.SetRoot(root);
    for (int i = 0; i < 5000; ++i) {
      Tag child = tree.NewTag();
      child.Set(Attr::kText, i);
      root.AddChild(child);
    }
    EXPECT_EQ(root.ChildCount(), 5000);
    EXPECT_EQ(U8(root.LastChild().Get(Attr::kText)), "4999");
  }
}

TEST(TagTree, WritesEachTextAnew) {
  TagTree tree;
  EXPECT_EQ(U8(tree.ToText()), "");
  tree.SetRoot(tree.NewTag());
  EXPECT_EQ(U8(tree.ToText()), Declared("<tag/>\n"));
  tree.Root().Set(Attr::kText, u"new");
  EXPECT_EQ(U8(tree.ToText()), Declared("<tag text=\"new\"/>\n"));
  tree.Clear();
  EXPECT_EQ(U8(tree.ToText()), "");
}

TEST(TagTree, NoOperationRecursesOverTheDepth) {
  TagTree tree;
  Tag at = tree.NewTag();
  tree.SetRoot(at);
  for (int i = 1; i < 100000; ++i) {
    Tag child = tree.NewTag();
    at.AddChild(child);
    at = child;
  }
  EXPECT_EQ(tree.CountElements(), 100000u);
  const Tag copy = tree.Root().DeepCopy();
  tree.SetRoot(copy);
  EXPECT_EQ(tree.CountElements(), 100000u);
  EXPECT_TRUE(tree.ReadsBack());
  TagTree again;
  EXPECT_TRUE(ReadTagTree(tree.ToText(), again));
  EXPECT_EQ(again.CountElements(), 100000u);
}

TEST(AttrNames, AreFoundByName) {
  for (std::size_t i = 0; i < std::size(kAttrNames); ++i) {
    EXPECT_EQ(static_cast<std::size_t>(AttrOf(kAttrNames[i])), i);
  }
  EXPECT_EQ(AttrOf(u"Primary"), Attr::kOther);
  EXPECT_EQ(AttrOf(u""), Attr::kOther);
}
