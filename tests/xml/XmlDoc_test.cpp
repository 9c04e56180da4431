// Trees of small documents, every operation on a node and on the null node.
#include "xml/XmlDoc.h"

#include "Utf8.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <string>

using namespace ORKBASE;

namespace {

/// A document that the test expects to parse.
struct Loaded : MxXmlDoc {
  explicit Loaded(std::u16string_view text) { EXPECT_EQ(Load(text), 0) << U8(text); }
};

}  // namespace

TEST(MxXmlNode, NullNodeReadsAsNothingAndIgnoresWrites) {
  MxXmlDoc doc;
  MxXmlNode null;
  EXPECT_FALSE(null);
  EXPECT_EQ(null.get(), nullptr);
  EXPECT_TRUE(null == doc.Root());
  null.SetAttr(u"a", u"b");
  null.SetAttr(u"a", 1);
  EXPECT_EQ(U8(null.GetAttr(u"a")), "");
  EXPECT_FALSE(null.FirstChild());
  EXPECT_FALSE(null.NextSibling());
  EXPECT_EQ(U8(null.ToText()), "");
  null.AddChild(null);
  null.AddChild(doc.NewNode(u"tag"));
  EXPECT_EQ(U8(doc.Root().ToText()), "<tag/>");
  MxXmlNode root = doc.Root();
  root.AddChild(null);
  EXPECT_EQ(U8(root.ToText()), "<tag/>");
}

TEST(MxXmlDoc, EmptyHandleReadsAsNothing) {
  MxXmlDoc doc;
  EXPECT_FALSE(doc.Root());
  EXPECT_FALSE(doc.Find(u"//tag"));
  EXPECT_EQ(doc.errNumber, 0);
  EXPECT_EQ(U8(doc.errDescription), "");
  doc.Free();
  EXPECT_FALSE(doc.Root());
}

TEST(MxXmlNode, ReadsAnEmptyAttributeAndAnAbsentOneAlike) {
  Loaded doc(u"<tag a=''/>");
  for (const std::u16string_view name : {u"a", u"b", u"A", u""}) {
    EXPECT_EQ(U8(doc.Root().GetAttr(name)), "") << U8(name);
  }
}

TEST(MxXmlNode, ReadsAttributesByTheirLocalNames) {
  Loaded doc(u"<tag xmlns:p='u' p:a='1' q:b='2' c='3' xml:d='4'/>");
  EXPECT_EQ(U8(doc.Root().GetAttr(u"a")), "1");
  EXPECT_EQ(U8(doc.Root().GetAttr(u"p:a")), "");
  EXPECT_EQ(U8(doc.Root().GetAttr(u"q:b")), "2");  // nothing declares this prefix
  EXPECT_EQ(U8(doc.Root().GetAttr(u"b")), "");
  EXPECT_EQ(U8(doc.Root().GetAttr(u"c")), "3");
  EXPECT_EQ(U8(doc.Root().GetAttr(u"d")), "4");
}

TEST(MxXmlNode, DoesNotReadTheDefaultOfADocumentType) {
  Loaded doc(u"<!DOCTYPE tag [<!ATTLIST tag a CDATA 'x'>]><tag b='y'/>");
  EXPECT_EQ(U8(doc.Root().GetAttr(u"a")), "");
  EXPECT_EQ(U8(doc.Root().GetAttr(u"b")), "y");
}

TEST(MxXmlNode, ReplacesAnAttributeAndKeepsItsPlace) {
  MxXmlDoc doc;
  MxXmlNode node = doc.NewNode(u"tag");
  node.SetAttr(u"a", u"1");
  node.SetAttr(u"b", -12);
  node.SetAttr(u"c", -2147483647 - 1);
  node.SetAttr(u"a", u"<&>\"'\t\n\r");
  EXPECT_EQ(U8(node.GetAttr(u"a")), "<&>\"'\t\n\r");
  EXPECT_EQ(U8(node.ToText()),
            "<tag a=\"&lt;&amp;&gt;&quot;'&#9;&#10;&#13;\" b=\"-12\" c=\"-2147483648\"/>");
}

TEST(MxXmlNode, EndsAttributesAtTheirFirstZero) {
  MxXmlDoc doc;
  MxXmlNode node = doc.NewNode(u"tag");
  node.SetAttr(u"a", std::u16string_view(u"x\0y", 3));
  EXPECT_EQ(U8(node.ToText()), "<tag a=\"x\"/>");
}

TEST(MxXmlNode, HasElementChildrenOnly) {
  Loaded doc(u"<tag> text <!-- c --><a/><![CDATA[x]]><?p i?><b/> </tag>");
  const MxXmlNode root = doc.Root();
  EXPECT_EQ(U8(root.FirstChild().ToText()), "<a/>");
  EXPECT_EQ(U8(root.FirstChild().NextSibling().ToText()), "<b/>");
  EXPECT_FALSE(root.FirstChild().NextSibling().NextSibling());
  EXPECT_FALSE(root.NextSibling());
}

TEST(MxXmlNode, WritesTheElementAloneAndIndented) {
  Loaded doc(u"<?xml version='1.0'?><!-- c --><a x='1'><b><c/><d/></b></a>");
  EXPECT_EQ(U8(doc.Root().ToText()), "<a x=\"1\">\n  <b>\n    <c/>\n    <d/>\n  </b>\n</a>");
  EXPECT_EQ(U8(doc.Root().FirstChild().ToText()), "<b>\n  <c/>\n  <d/>\n</b>");
}

TEST(MxXmlNode, WritesCharactersBeyondAsciiAsReferences) {
  MxXmlDoc doc;
  MxXmlNode node = doc.NewNode(u"tag");
  node.SetAttr(u"a", u"\x7F\x80é客\xD83D\xDE00");
  EXPECT_EQ(U8(node.ToText()), "<tag a=\"\x7F&#x80;&#xE9;&#x5BA2;&#x1F600;\"/>");
}

TEST(MxXmlDoc, FirstNewNodeBecomesTheRoot) {
  MxXmlDoc doc;
  const MxXmlNode first = doc.NewNode(u"first");
  const MxXmlNode second = doc.NewNode(u"second");
  EXPECT_TRUE(doc.Root() == first);
  EXPECT_FALSE(doc.Root() == second);
  EXPECT_EQ(U8(doc.Root().ToText()), "<first/>");
}

TEST(MxXmlDoc, NewNodeAfterALoadStandsAlone) {
  Loaded doc(u"<a/>");
  MxXmlNode made = doc.NewNode(u"b");
  EXPECT_EQ(U8(doc.Root().ToText()), "<a/>");
  doc.Root().AddChild(made);
  EXPECT_EQ(U8(doc.Root().ToText()), "<a>\n  <b/>\n</a>");
}

TEST(MxXmlDoc, FreesNodesThatWereNeverAdded) {  // the address sanitizer counts them
  MxXmlDoc doc;
  doc.NewNode(u"root");
  MxXmlNode lonely = doc.NewNode(u"lonely");
  lonely.AddChild(doc.NewNode(u"child"));
  doc.Root().AddChild(doc.NewNode(u"added"));
  EXPECT_EQ(U8(lonely.ToText()), "<lonely>\n  <child/>\n</lonely>");
  doc.Free();
  EXPECT_FALSE(doc.Root());
  EXPECT_EQ(U8(doc.NewNode(u"again").ToText()), "<again/>");
}

TEST(MxXmlNode, AddChildMovesANode) {
  Loaded doc(u"<r><a><c/></a><b/></r>");
  const MxXmlNode a = doc.Root().FirstChild();
  MxXmlNode b = a.NextSibling();
  b.AddChild(a.FirstChild());
  EXPECT_EQ(U8(doc.Root().ToText()), "<r>\n  <a/>\n  <b>\n    <c/>\n  </b>\n</r>");
}

TEST(MxXmlDoc, FailedLoadGivesOneAndAUsableHandle) {
  Loaded doc(u"<a/>");
  EXPECT_EQ(doc.Load(u"no document"), 1);
  EXPECT_EQ(doc.errNumber, 1);
  EXPECT_EQ(U8(doc.errDescription), "Document not parsed successfully. \n");
  EXPECT_FALSE(doc.Root());
  EXPECT_EQ(doc.Load(u"<b/>"), 0);
  EXPECT_EQ(U8(doc.Root().ToText()), "<b/>");
  EXPECT_EQ(doc.errNumber, 1);  // a success leaves an earlier error
  EXPECT_EQ(U8(doc.errDescription), "Document not parsed successfully. \n");
}

TEST(MxXmlDoc, RefusesWhatIsNoDocument) {
  const std::u16string_view texts[] = {
      u"",
      u" ",
      u"x",
      u"<",
      u"<a",
      u"<a>",
      u"<a></b>",
      u"<a/><b/>",
      u"<a x/>",
      u"<a x=1/>",
      u"<a x='1' x='2'/>",
      u"<!-- only -->",
      u"<?xml version='1.0'?>",
      u"&amp;",
      u"<a>&nosuch;</a>",
      u"<a x='&nosuch;'/>",
      u"<a x='<'/>",
      u"<a>\x1</a>",
      u"<a>&#1;</a>",
      u"<a>&#xFFFE;</a>",
      u"<p:a/",
      u"<1/>",
  };
  for (const std::u16string_view text : texts) {
    MxXmlDoc doc;
    EXPECT_EQ(doc.Load(text), 1) << U8(text);
    EXPECT_FALSE(doc.Root()) << U8(text);
  }
}

TEST(MxXmlDoc, LoadsTheTextUpToItsFirstZero) {
  Loaded doc(std::u16string_view(u"<a/>\0<b>", 8));
  EXPECT_EQ(U8(doc.Root().ToText()), "<a/>");
  MxXmlDoc empty;
  EXPECT_EQ(empty.Load(std::u16string_view(u"\0<a/>", 5)), 1);
}

TEST(MxXmlDoc, FindsTheFirstElementAtAPath) {
  Loaded doc(u"<dd><tabs><t n='1'><flds><f/></flds></t><t n='2'><flds><g/></flds></t></tabs></dd>");
  EXPECT_EQ(U8(doc.Find(u"//dd/tabs/t").GetAttr(u"n")), "1");
  EXPECT_EQ(U8(doc.Find(u"dd/tabs/t").GetAttr(u"n")), "1");
  const MxXmlNode second = doc.Find(u"//t").NextSibling();
  EXPECT_EQ(U8(doc.Find(u"flds", &second).FirstChild().ToText()), "<g/>");
  EXPECT_EQ(U8(doc.Find(u"flds/g", &second).ToText()), "<g/>");
  EXPECT_EQ(U8(doc.Find(u"//flds/f", &second).ToText()), "<f/>");  // from the document in any case
  EXPECT_FALSE(doc.Find(u"nosuch", &second));
  EXPECT_FALSE(doc.Find(u"g", &second));
  EXPECT_FALSE(doc.Find(u"t/flds", &second));
  const MxXmlNode null;
  EXPECT_EQ(U8(doc.Find(u"//dd/tabs/t", &null).GetAttr(u"n")), "1");
}

TEST(MxXmlDoc, FindGoesInDocumentOrder) {
  Loaded doc(u"<r><a><x><a><b n='1'/></a></x><b n='2'/></a><b n='3'/></r>");
  EXPECT_EQ(U8(doc.Find(u"//a/b").GetAttr(u"n")), "1");
  EXPECT_EQ(U8(doc.Find(u"r/a/b").GetAttr(u"n")), "2");
  EXPECT_EQ(U8(doc.Find(u"r/b").GetAttr(u"n")), "3");
}

TEST(MxXmlDoc, FindPassesNamespacesOver) {
  Loaded doc(u"<r xmlns:p='u'><p:b n='1'/><x xmlns='u'><b n='2'/></x><b n='3'/></r>");
  EXPECT_EQ(U8(doc.Find(u"//b").GetAttr(u"n")), "3");
  EXPECT_FALSE(doc.Find(u"//x"));
  EXPECT_FALSE(doc.Find(u"//p:b"));
}

TEST(MxXmlDoc, FindGivesTheNullNodeForPathsWithoutNodes) {
  Loaded doc(u"<a/>");
  for (const std::u16string_view path : {u"", u"/", u"//", u"//b", u"//a/a", u"a/a", u"//客户"}) {
    EXPECT_FALSE(doc.Find(path)) << U8(path);
  }
}

// --- the host's settings of libxml2 --------------------------------------------------------------

namespace {

int hostErrors = 0;
void HostStructured(void* /*data*/, xmlErrorPtr /*error*/) {
  ++hostErrors;
}
void HostGeneric(void* /*context*/, const char* /*text*/, ...) {
  ++hostErrors;
}

/// What a host program may have set in libxml2, for the length of a test.
class HostSettings {
 public:
  HostSettings() : keepBlanks_(xmlKeepBlanksDefault(0)), indent_(xmlIndentTreeOutput) {
    hostErrors = 0;
    xmlIndentTreeOutput = 0;
    xmlSetGenericErrorFunc(this, HostGeneric);
    xmlSetStructuredErrorFunc(this, HostStructured);
  }
  ~HostSettings() {
    xmlKeepBlanksDefault(keepBlanks_);
    xmlIndentTreeOutput = indent_;
    xmlSetGenericErrorFunc(nullptr, nullptr);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
  }
  void ExpectUntouched() const {
    EXPECT_EQ(xmlIndentTreeOutput, 0);
    EXPECT_EQ(xmlKeepBlanksDefaultValue, 0);
    EXPECT_EQ(xmlGenericError, HostGeneric);
    EXPECT_EQ(xmlGenericErrorContext, this);
    EXPECT_EQ(xmlStructuredError, HostStructured);
    EXPECT_EQ(xmlStructuredErrorContext, this);
    EXPECT_EQ(hostErrors, 0);
  }

 private:
  int keepBlanks_;
  int indent_;
};

}  // namespace

TEST(MxXmlDoc, NeitherChangesNorHeedsWhatTheHostHasSet) {
  const HostSettings host;
  MxXmlDoc doc;
  EXPECT_EQ(doc.Load(u"<a><b></a>"), 1);
  EXPECT_EQ(doc.Load(u"<a x='&no;'/>"), 1);
  EXPECT_EQ(doc.Load(u"<?xml version='1.0' encoding='GBK'?><a x='\u7EBF'/>"), 1);
  ASSERT_EQ(doc.Load(u"<a>  <b/>  </a>"), 0);
  ASSERT_EQ(doc.Load(u"<a><b/></a>"), 0);
  EXPECT_EQ(U8(doc.Root().ToText()), "<a>\n  <b/>\n</a>");
  host.ExpectUntouched();
}

TEST(MxXmlDoc, LeavesTheHostsLastErrorAlone) {
  xmlResetLastError();
  MxXmlDoc doc;
  EXPECT_EQ(doc.Load(u"<a><b></a>"), 1);
  EXPECT_EQ(doc.Load(u"<a/>"), 0);
  EXPECT_EQ(xmlGetLastError(), nullptr);

  xmlFreeDoc(xmlReadDoc(reinterpret_cast<const xmlChar*>("<host x='1' x='2'/>"), nullptr, nullptr,
                        XML_PARSE_NOERROR));
  ASSERT_NE(xmlGetLastError(), nullptr);
  const int code = xmlGetLastError()->code;
  const std::string text = xmlGetLastError()->message;
  EXPECT_EQ(doc.Load(u"<a><b></a>"), 1);
  ASSERT_NE(xmlGetLastError(), nullptr);
  EXPECT_EQ(xmlGetLastError()->code, code);
  EXPECT_EQ(xmlGetLastError()->message, text);
  xmlResetLastError();
}

TEST(MxXmlDoc, PrintsNothing) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  MxXmlDoc doc;
  EXPECT_EQ(doc.Load(u"<a><b></a>"), 1);
  EXPECT_EQ(doc.Load(u"<a x='&no;'>&no;</a>"), 1);
  EXPECT_EQ(doc.Load(u"<?xml version='1.0' encoding='nosuch'?><a p:x='1'>"), 1);
  for (const char16_t* encoding : {u"GBK", u"gb2312", u"Big5", u"EUC-JP", u"Shift_JIS", u"UTF-16",
                                   u"UTF-7", u"us-ascii", u"EBCDIC", u"ISO-2022-JP"}) {
    doc.Load(u"<?xml version='1.0' encoding='" + std::u16string(encoding) +
             u"'?><a x='\u7EBF\u00E9' y='\u7EBF'>\u5BA2</a>");
  }
  doc.Load(u"<!DOCTYPE a SYSTEM 'file:///nosuch'><a/>");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
