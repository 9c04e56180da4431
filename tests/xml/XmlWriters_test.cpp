// Our own XML writers against libxml2's dump, byte for byte, on generated documents.
#include "document/TagTree.h"
#include "parser/ShapeTree.h"
#include "xml/XmlDoc.h"

#include "Utf8.h"

#include <gtest/gtest.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <deque>
#include <random>
#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

const xmlChar* Xml(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

void IgnoreError(void* /*data*/, xmlErrorPtr /*error*/) {}

/// As 16-bit text and back: libxml2 leaves half a character where a value ends in U+FFFE.
std::string Repaired(const xmlChar* text) {
  return U8(Utf8ToWide(reinterpret_cast<const char*>(text)));
}

std::string DumpOfNode(xmlNodePtr node) {
  xmlSetStructuredErrorFunc(nullptr, IgnoreError);  // it has its doubts about U+FFFE
  xmlBufferPtr buffer = xmlBufferCreate();
  xmlNodeDump(buffer, node->doc, node, 0, 1);
  xmlSetStructuredErrorFunc(nullptr, nullptr);
  std::string out = Repaired(xmlBufferContent(buffer));
  xmlBufferFree(buffer);
  return out;
}

std::string DumpOfDoc(xmlDocPtr doc) {
  xmlChar* text = nullptr;
  int size = 0;
  xmlDocDumpMemoryEnc(doc, &text, &size, "UTF-8");
  std::string out(reinterpret_cast<const char*>(text));
  xmlFree(text);
  return out;
}

/// A document made through libxml2 alone.
class Host {
 public:
  Host() : doc_(xmlNewDoc(Xml("1.0"))) {}
  ~Host() { xmlFreeDoc(doc_); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  xmlNodePtr New(xmlNodePtr parent, const std::string& name = "tag") {
    xmlNodePtr node = xmlNewDocNode(doc_, nullptr, Xml(name), nullptr);
    if (parent) {
      xmlAddChild(parent, node);
    } else {
      xmlDocSetRootElement(doc_, node);
    }
    return node;
  }
  xmlDocPtr get() const { return doc_; }

 private:
  xmlDocPtr doc_;
};

/// Texts that hold every 16-bit unit once, each text short.
std::vector<std::u16string> AllUnits() {
  std::vector<std::u16string> texts;
  for (std::uint32_t unit = 1; unit <= 0xFFFF; ++unit) {
    if (unit % 128 == 1) texts.emplace_back();
    texts.back() += static_cast<char16_t>(unit);
    if (unit >= 0xD800 && unit <= 0xDFFF) texts.back() += u'.';  // each by itself, never a pair
  }
  for (std::uint32_t point = 0x10000; point <= 0x10FFFF; point += 0x2F1) {
    const std::uint32_t bits = point - 0x10000;
    texts.push_back({static_cast<char16_t>(0xD800 + (bits >> 10)),
                     static_cast<char16_t>(0xDC00 + (bits & 0x3FF)), u'x'});
  }
  texts.push_back({0xDBFF, 0xDFFE});  // U+10FFFE
  texts.push_back({0xDBFF, 0xDFFF});
  texts.push_back({0xD83F, 0xDFFF});  // U+1FFFF
  return texts;
}

/// A text out of letters, marks of XML and characters of every length in UTF-8.
std::u16string SomeText(std::mt19937& random) {
  static const std::u16string_view pieces[] = {
      u"a",     u"T.a", u"<", u">",    u"&",   u"\"",  u"'",  u"\t",           u"\n",
      u"\r",    u" ",   u"é", u"客户", u"\x1", u"]]>", u"--", u"\xD83D\xDE00", u"\xFFFE",
      u"&amp;", u"?"};
  std::u16string text;
  for (std::size_t i = random() % 6; i > 0; --i) text += pieces[random() % std::size(pieces)];
  return text;
}

}  // namespace

TEST(XmlWriters, DocumentWritesEveryCharacterAsLibxml2Does) {
  for (const std::u16string& text : AllUnits()) {
    TagTree tree;
    tree.SetRoot(tree.NewTag());
    tree.Root().Set(Attr::kText, text);
    Host host;
    xmlSetProp(host.New(nullptr), Xml("text"), Xml(WideToUtf8(text)));
    ASSERT_EQ(U8(tree.ToText()), DumpOfDoc(host.get()));
  }
}

TEST(XmlWriters, NodeWritesEveryCharacterAsLibxml2Does) {
  for (const std::u16string& text : AllUnits()) {
    MxXmlDoc doc;
    doc.NewNode(u"tag").SetAttr(u"text", text);
    Host host;
    xmlNodePtr node = host.New(nullptr);
    xmlSetProp(node, Xml("text"), Xml(WideToUtf8(text)));
    ASSERT_EQ(U8(doc.Root().ToText()), DumpOfNode(node));
  }
}

TEST(XmlWriters, ShapeWritesEveryCharacterAsLibxml2Does) {
  for (const std::u16string& text : AllUnits()) {
    WordView word;
    word.primary = word.outDesc = word.content = text;
    ShapeTree shapes;
    shapes.Reset({&word, 1});
    Host host;
    xmlNodePtr node = host.New(nullptr);
    xmlSetProp(node, Xml("primary"), Xml(WideToUtf8(text)));
    xmlSetProp(node, Xml("outDesc"), Xml(WideToUtf8(text)));
    xmlSetProp(node, Xml("symbol"), Xml("-1"));
    xmlSetProp(node, Xml("dataType"), Xml("5"));
    xmlSetProp(node, Xml("content"), Xml(WideToUtf8(text)));
    ASSERT_EQ(U8(shapes.ToText(shapes.MxWordToXml(0))), DumpOfNode(node));
  }
}

TEST(XmlWriters, TreesOfAnyFormAreWrittenAsLibxml2Does) {
  std::mt19937 random(20240601);
  for (int round = 0; round < 500; ++round) {
    TagTree tree;
    MxXmlDoc doc;
    Host host;
    std::vector<Tag> tags{tree.NewTag()};
    tree.SetRoot(tags[0]);
    std::vector<MxXmlNode> nodes{doc.NewNode(u"tag")};
    std::vector<xmlNodePtr> hosts{host.New(nullptr)};
    for (std::size_t size = random() % 40; size > 0; --size) {
      const std::size_t parent = random() % (round % 2 != 0 ? tags.size() : 1) +
                                 (round % 2 != 0 ? 0 : tags.size() - 1);  // bushes and chains
      const bool tag = random() % 8 != 0;
      tags.push_back(tree.NewTag(tag ? u"tag" : u"客"));
      tags[parent].AddChild(tags.back());
      nodes.push_back(doc.NewNode(tag ? u"tag" : u"客"));
      nodes[parent].AddChild(nodes.back());
      hosts.push_back(host.New(hosts[parent], tag ? "tag" : "客"));
    }
    for (std::size_t count = random() % 200; count > 0; --count) {
      const std::size_t at = random() % tags.size();
      const std::size_t attr = random() % std::size(kAttrNames);
      const std::u16string value = SomeText(random);
      tags[at].Set(static_cast<Attr>(attr), value);
      nodes[at].SetAttr(kAttrNames[attr], value);
      xmlSetProp(hosts[at], Xml(WideToUtf8(kAttrNames[attr])), Xml(WideToUtf8(value)));
    }
    ASSERT_EQ(U8(tree.ToText()), DumpOfDoc(host.get()));
    ASSERT_EQ(U8(doc.Root().ToText()), DumpOfNode(hosts[0]));
    const std::size_t below = random() % nodes.size();
    ASSERT_EQ(U8(nodes[below].ToText()), DumpOfNode(hosts[below]));
  }
}

namespace {

/// Random trees, made as shapes and through libxml2 side by side.
class ShapePair {
 public:
  explicit ShapePair(std::mt19937& random) : random_(random) {
    // All words first: the tree refers to them.
    for (int i = 0; i < 200; ++i) {
      WordView word;
      word.primary = Keep(i % 7 == 0 ? u"(" : SomeText(random_) + u"p");
      word.outDesc = Keep(SomeText(random_));
      word.content = Keep(SomeText(random_));
      word.symbol = static_cast<std::int32_t>(random_() % 20);
      word.dataType = static_cast<std::int32_t>(random_() % 9);
      if (i % 7 == 0) word.symbol = kDelimiterSymbol;
      words_.push_back(word);
    }
    shapes_.Reset(words_);
  }

  void Check() {
    const Both made = Make(0);
    xmlDocSetRootElement(host_.get(), made.node);
    ASSERT_EQ(U8(shapes_.ToText(made.shape)), DumpOfNode(made.node));
  }

 private:
  struct Both {
    ShapeIndex shape;
    xmlNodePtr node;
  };

  std::u16string_view Keep(std::u16string text) { return texts_.emplace_back(std::move(text)); }

  std::int32_t AnyWord() {
    std::int32_t index;
    do {
      index = static_cast<std::int32_t>(random_() % words_.size());
    } while (words_[static_cast<std::size_t>(index)].symbol == kDelimiterSymbol);
    return index;
  }

  Both Leaf() {
    const std::int32_t index = AnyWord();
    const WordView& word = words_[static_cast<std::size_t>(index)];
    xmlNodePtr node = xmlNewDocNode(host_.get(), nullptr, Xml("tag"), nullptr);
    xmlSetProp(node, Xml("primary"), Xml(WideToUtf8(word.primary)));
    xmlSetProp(node, Xml("outDesc"), Xml(WideToUtf8(word.outDesc)));
    xmlSetProp(node, Xml("symbol"), Xml(std::to_string(word.symbol)));
    xmlSetProp(node, Xml("dataType"), Xml(std::to_string(word.dataType)));
    xmlSetProp(node, Xml("content"), Xml(WideToUtf8(word.content)));
    return {shapes_.MxWordToXml(index), node};
  }

  /// `left op right`, at times in brackets; depth is held so that libxml2's indentation is passed.
  Both Make(int depth) {
    if (depth > 45 || (depth > 2 && random_() % 5 == 0)) return Leaf();
    const Both left = Make(depth + 1);
    const Both op = Leaf();
    const Both right = Leaf();
    xmlAddChild(op.node, left.node);
    xmlAddChild(op.node, right.node);
    xmlSetProp(op.node, Xml("semanticType"), Xml("0"));
    const bool brackets = random_() % 3 == 0;
    std::vector<ShapeIndex> parts{left.shape, op.shape, right.shape};
    ShapeIndex shape = shapes_.ComposeToTree(parts, kInfixSemantic);
    if (brackets) {
      const std::vector<ShapeIndex> bracketed{shapes_.MxWordToXml(0), shape,
                                              shapes_.MxWordToXml(0)};
      shape = shapes_.ComposeToTree(bracketed, kInfixSemantic);
      xmlSetProp(op.node, Xml("inBrackets"), Xml("1"));
    }
    return {shape, op.node};
  }

  std::mt19937& random_;
  std::deque<std::u16string> texts_;
  std::vector<WordView> words_;
  ShapeTree shapes_;
  Host host_;
};

}  // namespace

TEST(XmlWriters, ShapesOfAnyFormAreWrittenAsLibxml2Does) {
  std::mt19937 random(77);
  for (int round = 0; round < 300; ++round) {
    ShapePair pair(random);
    pair.Check();
  }
}
