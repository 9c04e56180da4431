// Reading expression documents: the usual form, every unusual one, and what is refused.
#include "document/TagReader.h"

#include "document/TagTree.h"
#include "xml/XmlDoc.h"

#include "CpuSeconds.h"
#include "Utf8.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <string>

using namespace ORKBASE;

namespace {

/// What libxml2 itself makes of a document, "" where it does not parse.
std::string Libxml2(std::u16string_view text) {
  const std::string utf8 = WideToUtf8(text);
  xmlDocPtr doc = xmlReadDoc(reinterpret_cast<const xmlChar*>(utf8.c_str()), nullptr, nullptr,
                             XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NOENT);
  if (!doc) return "";
  xmlChar* out = nullptr;
  int size = 0;
  xmlDocDumpMemoryEnc(doc, &out, &size, "UTF-8");
  std::string dump(reinterpret_cast<const char*>(out));
  xmlFree(out);
  xmlFreeDoc(doc);
  return dump;
}

std::string ReadAndWritten(std::u16string_view text) {
  TagTree tree;
  if (!ReadTagTree(text, tree)) return "";
  return U8(tree.ToText());
}

bool Reads(std::u16string_view text) {
  TagTree tree;
  const bool reads = ReadTagTree(text, tree);
  EXPECT_EQ(static_cast<bool>(tree.Root()), reads);
  MxXmlDoc doc;
  EXPECT_EQ(doc.Load(text) == 0, reads) << U8(text.substr(0, 200));
  return reads;
}

constexpr std::u16string_view kUsual =
    u"<tag primary=\"&gt;\" outDesc=\"&gt;\" symbol=\"19\" dataType=\"5\" content=\"&gt;\" "
    u"semanticType=\"0\">\n"
    u"  <tag primary=\"T.a\" outDesc=\"T.a\" symbol=\"4\" dataType=\"1\" content=\"T.a\"/>\n"
    u"  <tag primary=\"'&#x5BA2;&amp;&quot;&#10;'\" symbol=\"0\" other=\"x\"/>\n"
    u"</tag>";

}  // namespace

TEST(TagReader, ReadsTheUsualDocument) {
  TagTree tree;
  ASSERT_TRUE(ReadTagTree(kUsual, tree));
  const Tag root = tree.Root();
  EXPECT_EQ(U8(root.Get(Attr::kPrimary)), ">");
  EXPECT_EQ(root.GetInt(Attr::kSymbol), 19);
  EXPECT_EQ(root.ChildCount(), 2);
  EXPECT_EQ(U8(root.LastChild().Get(Attr::kPrimary)), "'客&\"\n'");
  EXPECT_EQ(ReadAndWritten(kUsual), Libxml2(kUsual));
}

TEST(TagReader, WritesDocumentsOfAnyFormAsLibxml2Does) {
  const std::u16string_view documents[] = {
      u"<tag/>",
      u"<tag></tag>",
      u"<tag> </tag>",
      u"<tag>\r\n\t<tag/>\r</tag>",
      u"<other a='1'><b/></other>",
      u"<tag a='x'>text</tag>",
      u"<tag>&amp;&lt;&#65;</tag>",
      u"<tag>&#13;</tag>",
      u"<tag><!-- c --><tag/><!-- d --></tag>",
      u"<!-- before --><tag/><!-- behind -->",
      u"<tag><![CDATA[a < b]]></tag>",
      u"<tag><![CDATA[]]></tag>",
      u"<tag><![CDATA[a]]><![CDATA[b]]>c<![CDATA[d]]></tag>",
      u"<tag><![CDATA[a]]]]><![CDATA[>b]]></tag>",
      u"<tag><![CDATA[a]]><!-- c --><![CDATA[b\r\u00E9]]></tag>",
      u"<tag><?target data?><tag/></tag>",
      u"<tag><?target ?><?target?><?target \u5BA2 &amp; <x>?></tag>",
      u"<?target data?>\n<tag/>\n<?target?>",
      u"<tag xmlns='urn:a'><tag/></tag>",
      u"<p:tag xmlns:p='urn:a' p:text='1' text='2'><p:tag/></p:tag>",
      u"<tag xmlns:p='urn:a'><p:tag p:text='1'/></tag>",
      u"<tag xmlns='urn:a' xmlns:p='urn:b'><p:tag/><tag xmlns='' xmlns:p='urn:c'/></tag>",
      u"<p:tag p:text='1' text='2'/>",
      u"<tag xml:lang='en'/>",
      u"<tag xml:space='preserve'> <tag/></tag>",
      u"<!DOCTYPE tag><tag/>",
      u"<!DOCTYPE tag SYSTEM 'nosuch.dtd'><tag/>",
      u"<!DOCTYPE tag [<!ELEMENT tag ANY><!ATTLIST tag text CDATA 'x'>]><tag><tag text='y'/></tag>",
      u"<!-- a --><!DOCTYPE tag [<!-- b --><?c d?><!NOTATION n SYSTEM 'o'>"
      u"<!ATTLIST tag text (x|y) #IMPLIED xmlns:p CDATA 'urn:a'>]><?g?><tag/><!-- h -->",
      u"<!DOCTYPE tag [<!ATTLIST tag text NMTOKENS #IMPLIED>]><tag text='  a   b '/>",
      u"<?xml version='1.0'?><tag/>",
      u"<?xml version='1.1'?><tag/>",
      u"<?xml version='1.0' standalone='yes'?><tag/>",
      u"<?xml version='1.0' encoding='UTF-8' standalone='no'?><tag><tag/></tag>",
      u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><tag/>",
      u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tag text=\"客户\"/>\n",
      u"<?xml version='1.0' encoding='utf-8'?><tag text='客户'/>",
      u"<?xml version='1.0' encoding='ISO-8859-1'?><tag text='plain'/>",
      u"<?xml version='1.0' encoding='us-ascii'?><tag text='&#x5BA2;'/>",
      u"<?xml version='1.0' encoding='ISO-8859-1'?><tag text='\u00E9'/>",
      u"<?xml version='1.0' encoding='gb2312'?><tag text='plain'/>",
      u"<?xml version='1.0' encoding='gb2312'?><tag text='\u7EBF\u7EBF'/>",
      u"\xFEFF<?xml version='1.0' encoding='ISO-8859-1'?><tag text='\u00E9'/>",
      u"<\x5BA2 \x6237='1'/>",
      u"<tag a='1' text='&#9;&#10;&#13; \t\n'/>",
      u"<tag text='&#x1F600;\xD83D\xDE00'/>",
      u"\n<tag/>",
      u"\xFEFF<tag/>",
      u"<tag text='&#38;#38; &#60;'/>",
      u"<tag text=\"it's\" content='\"'/>",
  };
  for (const std::u16string_view text : documents) {
    ASSERT_NE(Libxml2(text), "") << U8(text);
    EXPECT_EQ(ReadAndWritten(text), Libxml2(text)) << U8(text);
    EXPECT_TRUE(Reads(text)) << U8(text);
  }
}

TEST(TagReader, ReadsUnusualDocumentsByLocalNames) {
  TagTree tree;
  ASSERT_TRUE(ReadTagTree(
      u"<p:tag xmlns:p='u' p:text='in' symbol='27'><!-- c --><p:tag text='x'/>t</p:tag>", tree));
  EXPECT_EQ(U8(tree.Root().Get(Attr::kText)), "in");
  EXPECT_EQ(tree.Root().ChildCount(), 1);
  EXPECT_EQ(U8(tree.Root().FirstChild().Get(Attr::kText)), "x");
  tree.Root().Set(Attr::kText, u"new");  // the plain attribute, as libxml2 sets it
  EXPECT_NE(U8(tree.ToText()).find("p:text=\"in\" symbol=\"27\" text=\"new\""), std::string::npos);
}

TEST(TagReader, RefusesBrokenDocuments) {
  const std::u16string_view texts[] = {
      u"",
      u" ",
      u"x",
      u"<",
      u"<tag",
      u"<tag>",
      u"</tag>",
      u"<tag></tga>",
      u"<tag/><b/>",
      u"<tag/>x",
      u"<tag a/>",
      u"<tag a=1/>",
      u"<tag a='1' a='2'/>",
      u"<tag a='<'/>",
      u"<tag a='\x1'/>",
      u"<tag>\x1</tag>",
      u"<tag a='&#1;'/>",
      u"<tag a='&#xFFFE;'/>",
      u"<tag a='\xFFFE'/>",
      u"<tag a='&#xD800;'/>",
      u"<!-- c -->",
      u"<?xml version='1.0'?>",
      u" <?xml version='1.0'?><tag/>",
      u"<tag><!-- -- --></tag>",
      u"<tag>]]></tag>",
      u"<tag>&amp</tag>",
      u"<1/>",
  };
  for (const std::u16string_view text : texts) EXPECT_FALSE(Reads(text)) << U8(text);
}

TEST(TagReader, RefusesADocumentThatIsCutAnywhere) {
  const std::u16string unusual = std::u16string(u"<!-- c --><tag a='&#38;'><![CDATA[x]]>") +
                                 std::u16string(kUsual) + u"</tag>";
  for (const std::u16string_view whole : {kUsual, std::u16string_view(unusual)}) {
    EXPECT_TRUE(Reads(whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
      ASSERT_FALSE(Reads(whole.substr(0, size))) << size;
    }
  }
}

TEST(TagReader, ReadsTheTextUpToItsFirstZero) {
  EXPECT_TRUE(Reads(std::u16string_view(u"<tag/>\0<tag>", 12)));
  EXPECT_FALSE(Reads(std::u16string_view(u"<tag\0/>", 7)));
  EXPECT_FALSE(Reads(std::u16string_view(u"\0<tag/>", 7)));
}

TEST(TagReader, PutsTheReplacementCharacterForLoneSurrogates) {
  const std::u16string text = std::u16string(u"<tag text='") + char16_t{0xD800} + u"x'/>";
  TagTree tree;
  ASSERT_TRUE(ReadTagTree(text, tree));
  EXPECT_TRUE(tree.Root().Get(Attr::kText) == u"\xFFFDx");
}

TEST(TagReader, RefusesReferencesToEntities) {
  const std::u16string_view texts[] = {
      u"<tag text='&e;'/>",
      u"<tag>&e;</tag>",
      u"<!DOCTYPE tag [<!ENTITY e 'x'>]><tag text='&e;'/>",
      u"<!DOCTYPE tag [<!ENTITY e 'x'>]><tag>&e;</tag>",
      u"<!DOCTYPE tag [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><tag>&e;</tag>",
      u"<!DOCTYPE tag [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><tag text='&e;'/>",
      u"<!DOCTYPE tag [<!ENTITY e SYSTEM 'http://127.0.0.1:1/x'>]><tag>&e;</tag>",
      u"<!DOCTYPE tag SYSTEM 'nosuch.dtd' [<!ENTITY e 'x'>]><tag>&e;</tag>",
      u"<!DOCTYPE tag SYSTEM 'nosuch.dtd'><tag>&e;</tag>",
      u"<!DOCTYPE tag SYSTEM 'nosuch.dtd'><tag text='&e;'/>",
  };
  for (const std::u16string_view text : texts) EXPECT_FALSE(Reads(text)) << U8(text);
}

TEST(TagReader, BelievesTheDeclaredEncoding) {
  const std::u16string_view texts[] = {
      u"<?xml version='1.0' encoding='utf-16'?><tag/>",
      u"<?xml version='1.0' encoding='UTF-16LE'?><tag/>",
      u"<?xml version='1.0' encoding='us-ascii'?><tag text='\u00E9'/>",
      u"<?xml version='1.0' encoding='gb2312'?><tag text='\u7EBF'/>",
      u"<?xml version='1.0' encoding='no such encoding'?><tag/>",
  };
  for (const std::u16string_view text : texts) {
    EXPECT_EQ(Libxml2(text), "") << U8(text);
    EXPECT_FALSE(Reads(text)) << U8(text);
  }
  TagTree tree;
  ASSERT_TRUE(
      ReadTagTree(u"<?xml version='1.0' encoding='ISO-8859-1'?><tag text='\u00E9'/>", tree));
  EXPECT_EQ(U8(tree.Root().Get(Attr::kText)), "Ã©");
}

TEST(TagReader, RefusesEntityBombsAtOnce) {
  std::u16string bomb = u"<!DOCTYPE tag [<!ENTITY a0 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'>";
  for (int i = 1; i < 30; ++i) {
    const std::u16string before = u"&a" + Decimal(i - 1) + u";";
    bomb += u"<!ENTITY a" + Decimal(i) + u" '";
    for (int n = 0; n < 10; ++n) bomb += before;
    bomb += u"'>";
  }
  bomb += u"]>";
  const CpuSeconds time;
  EXPECT_FALSE(Reads(bomb + u"<tag>&a29;</tag>"));
  EXPECT_FALSE(Reads(bomb + u"<tag text='&a29;'/>"));
  EXPECT_FALSE(Reads(u"<!DOCTYPE tag [<!ENTITY a '&a;'>]><tag>&a;</tag>"));
  EXPECT_LT(time.Used(), 2);
}

TEST(TagReader, TakesInNoEntityDeclarationButReadsTheRest) {
  TagTree tree;
  ASSERT_TRUE(ReadTagTree(
      u"<!DOCTYPE tag [<!ENTITY e 'x'><!ENTITY % p 'y'><!ENTITY f SYSTEM 'file:///etc/passwd'>]>"
      u"<tag text='&lt;&gt;&amp;&quot;&apos;'/>",
      tree));
  EXPECT_EQ(U8(tree.Root().Get(Attr::kText)), "<>&\"'");
}

namespace {

int fetched = 0;
xmlParserInputPtr CountFetches(const char* /*url*/, const char* /*id*/,
                               xmlParserCtxtPtr /*context*/) {
  ++fetched;
  return nullptr;
}

int hostErrors = 0;
void HostError(void* /*data*/, xmlErrorPtr /*error*/) {
  ++hostErrors;
}

}  // namespace

TEST(TagReader, ReadsNoFileAndNoNetwork) {
  const xmlExternalEntityLoader host = xmlGetExternalEntityLoader();
  xmlSetExternalEntityLoader(CountFetches);
  fetched = 0;
  const std::u16string_view texts[] = {
      u"<!DOCTYPE tag SYSTEM 'file:///etc/passwd'><tag/>",
      u"<!DOCTYPE tag PUBLIC '-//X' 'http://127.0.0.1:1/x.dtd'><tag/>",
      u"<!DOCTYPE tag [<!ENTITY % p SYSTEM 'file:///etc/passwd'>%p;]><tag/>",
      u"<!DOCTYPE tag [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><tag>&e;</tag>",
      u"<tag xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='/etc/passwd'/></tag>",
  };
  for (const std::u16string_view text : texts) {
    TagTree tree;
    ReadTagTree(text, tree);
    MxXmlDoc doc;
    doc.Load(text);
  }
  EXPECT_EQ(fetched, 0);
  xmlSetExternalEntityLoader(host);
}

TEST(TagReader, NeitherChangesNorHeedsWhatTheHostHasSet) {
  const int keepBlanks = xmlKeepBlanksDefault(0);
  const int indent = xmlIndentTreeOutput;
  xmlIndentTreeOutput = 0;
  xmlSetStructuredErrorFunc(nullptr, HostError);
  xmlResetLastError();
  hostErrors = 0;
  // One thread of its own: a kept parser is made there, under these settings.
  const std::u16string text = u"<tag>\n  <tag/>\n</tag>";
  const std::string usual = ReadAndWritten(text);
  const std::string unusual = ReadAndWritten(u"<!-- c -->" + text);
  EXPECT_FALSE(Reads(u"<tag>"));
  EXPECT_FALSE(Reads(u"<tag><!-- c --></tga>"));
  EXPECT_EQ(xmlIndentTreeOutput, 0);
  EXPECT_EQ(xmlKeepBlanksDefaultValue, 0);
  EXPECT_EQ(xmlStructuredError, HostError);
  EXPECT_EQ(hostErrors, 0);
  EXPECT_EQ(xmlGetLastError(), nullptr);
  xmlSetStructuredErrorFunc(nullptr, nullptr);
  xmlIndentTreeOutput = indent;
  xmlKeepBlanksDefault(keepBlanks);
  EXPECT_EQ(usual, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tag>\n  <tag/>\n</tag>\n");
  EXPECT_EQ(unusual,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- c -->\n<tag>\n  <tag/>\n</tag>\n");
}

namespace {

std::u16string Repeated(std::u16string_view text, std::size_t times) {
  std::u16string out;
  while (times-- > 0) out += text;
  return out;
}

}  // namespace

// Most of these once cost time that grew with the square of the length, up to a minute each.
TEST(TagReader, ReadsOddDocumentsInLinearTime) {
  constexpr std::size_t kTimes = 50000;
  const std::u16string documents[] = {
      Repeated(u"<!-- c -->", kTimes) + u"<tag/>",
      u"<tag/>" + Repeated(u"<?p?>", kTimes),
      u"<tag xmlns:p='u'>" + Repeated(u"<tag p:a='1'>", kTimes) + Repeated(u"</tag>", kTimes) +
          u"</tag>",
      u"<tag>" + Repeated(u"<![CDATA[x]]>", kTimes) + u"</tag>",
      u"<tag>" + Repeated(u"<!-- c -->&lt;", kTimes) + u"<tag/></tag>",
      u"<tag text='" + Repeated(u"&#65;", kTimes) + u"'/>",
  };
  for (const std::u16string& text : documents) {
    const CpuSeconds time;
    TagTree tree;
    EXPECT_TRUE(ReadTagTree(text, tree)) << U8(text.substr(0, 40));
    EXPECT_FALSE(tree.ToText().empty());
    MxXmlDoc doc;
    EXPECT_EQ(doc.Load(text), 0) << U8(text.substr(0, 40));
    EXPECT_LT(time.Used(), 3) << U8(text.substr(0, 40));
  }
}

TEST(TagReader, ReadsDocumentsOfAnyDepth) {
  constexpr int kDepth = 100000;
  std::u16string text;
  for (int i = 0; i < kDepth; ++i) text += u"<tag text='x'>";
  std::u16string closing;
  for (int i = 0; i < kDepth; ++i) closing += u"</tag>";
  for (const std::u16string_view inside : {u"", u"<!-- unusual -->"}) {
    TagTree tree;
    ASSERT_TRUE(ReadTagTree(text + std::u16string(inside) + closing, tree));
    EXPECT_EQ(tree.CountElements(), std::size_t{kDepth});
    EXPECT_GT(tree.ToText().size(), text.size());
  }
  MxXmlDoc doc;
  EXPECT_EQ(doc.Load(text + closing), 0);
  EXPECT_GT(doc.Root().ToText().size(), text.size());
  EXPECT_FALSE(Reads(text));
}

TEST(TagReader, ReadsOnAfterFailuresAndThousandsOfNames) {
  TagTree tree;
  for (int i = 0; i < 9000; ++i) {
    const std::u16string name = u"n" + Decimal(i);
    ASSERT_TRUE(ReadTagTree(u"<tag " + name + u"='1' text='" + name + u"'/>", tree));
    ASSERT_TRUE(tree.Root().Get(Attr::kText) == name);
    if (i % 1000 == 0) {
      ASSERT_FALSE(ReadTagTree(u"<tag>", tree));
      ASSERT_FALSE(tree.Root());
    }
  }
}
