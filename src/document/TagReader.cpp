// Reading expression documents.
//
// The usual document, elements and attributes with white space between, is read through libxml2's
// event interface by a parser context that each thread keeps. Anything else in it (comments, other
// text, namespaces, a document type, an XML declaration of its own) stops that, and the document is
// read again as libxml2's own tree, of which the unusual pieces are kept as they would be written.
#include "document/TagReader.h"

#include "document/TagTree.h"
#include "foundation/Text.h"
#include "xml/XmlDoc.h"
#include "xml/XmlParser.h"
#include "xml/XmlText.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <string>

namespace ORKBASE {
namespace {

constexpr std::string_view kUsualDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr int kDocumentsPerContext = 4096;
constexpr std::size_t kAttrCount = std::size(kAttrNames);

std::string_view View(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

// --- the usual road ------------------------------------------------------------------------------

/// What the events of one document build.
struct Reading {
  TagTree* tree = nullptr;
  TagNode* open = nullptr;
  bool unusual = false;
};

/// A parser context with the names of our attributes in its dictionary, so that a name is
/// recognised by its address.
struct KeptContext {
  XmlContextPtr parser;
  Reading reading;
  std::array<const xmlChar*, kAttrCount> names{};
  const xmlChar* tagName = nullptr;
  int documents = 0;
};

KeptContext& ContextOf(void* parser) {
  return *static_cast<KeptContext*>(static_cast<xmlParserCtxtPtr>(parser)->_private);
}

void StopUnusual(void* parser) {
  ContextOf(parser).reading.unusual = true;
  xmlStopParser(static_cast<xmlParserCtxtPtr>(parser));
}

/// UTF-8 that the parser has checked, as UTF-16 in the arena.
std::u16string_view StoreUtf8(TagTree& tree, const xmlChar* begin, const xmlChar* end) {
  const auto size = static_cast<std::size_t>(end - begin);
  if (size == 0) return {};
  char16_t* const out = tree.Allocate(size);
  std::size_t length = 0;
  for (std::size_t i = 0; i < size;) {
    if (begin[i] < 0x80) {
      out[length++] = begin[i++];
      continue;
    }
    UChar32 point = 0;
    U8_NEXT_UNSAFE(begin, i, point);
    U16_APPEND_UNSAFE(out, length, point);
  }
  return {out, length};
}

Attr FindAttr(const KeptContext& context, const xmlChar* name, std::size_t guess) {
  for (std::size_t i = 0; i < kAttrCount; ++i) {
    const std::size_t at = (guess + i) % kAttrCount;
    if (context.names[at] == name) return static_cast<Attr>(at);
  }
  return Attr::kOther;
}

void AppendAttributes(KeptContext& context, Tag tag, int count, const xmlChar** attributes) {
  TagTree& tree = *context.reading.tree;
  std::size_t guess = 0;
  for (int i = 0; i < count; ++i, attributes += 5) {
    const Attr id = FindAttr(context, attributes[0], guess);
    guess = static_cast<std::size_t>(id) + 1;
    const std::u16string_view value = StoreUtf8(tree, attributes[3], attributes[4]);
    if (id != Attr::kOther) {
      tree.AppendAttr(tag, id, value);
    } else {
      const xmlChar* const name = attributes[0];
      tree.AppendForeignAttr(tag, id, StoreUtf8(tree, name, name + xmlStrlen(name)), true, value);
    }
  }
}

bool HasPrefix(int count, const xmlChar** attributes) {
  for (int i = 0; i < count; ++i, attributes += 5) {
    if (attributes[1]) return true;
  }
  return false;
}

void StartElement(void* parser, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                  int namespaceCount, const xmlChar** /*namespaces*/, int attributeCount,
                  int defaulted, const xmlChar** attributes) {
  KeptContext& context = ContextOf(parser);
  Reading& reading = context.reading;
  if (reading.unusual) return;
  if (prefix || uri || namespaceCount || defaulted || HasPrefix(attributeCount, attributes)) {
    StopUnusual(parser);
    return;
  }
  Tag tag = reading.tree->NewTag(name == context.tagName ? u"tag" : Utf8ToWide(View(name)));
  AppendAttributes(context, tag, attributeCount, attributes);
  if (reading.open) {
    Tag(reading.tree, reading.open).AddChild(tag);
  } else {
    reading.tree->SetRoot(tag);
  }
  reading.open = tag.node();
}

void EndElement(void* parser, const xmlChar* /*name*/, const xmlChar* /*prefix*/,
                const xmlChar* /*uri*/) {
  Reading& reading = ContextOf(parser).reading;
  if (!reading.unusual && reading.open) reading.open = reading.open->parent;
}

/// What stands between the elements of an indented document lies here once.
constexpr std::u16string_view kIndents =
    u"\n                                                            ";

bool IsIndent(std::string_view run) noexcept {
  return run.front() == '\n' && run.size() <= kIndents.size() &&
         std::all_of(run.begin() + 1, run.end(), [](char c) { return c == ' '; });
}

void Characters(void* parser, const xmlChar* text, int length) {
  Reading& reading = ContextOf(parser).reading;
  if (reading.unusual || !reading.open) return;
  const std::string_view run(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
  const Tag open{reading.tree, reading.open};
  if (IsIndent(run)) {
    reading.tree->AppendKeptRaw(open, kIndents.substr(0, run.size()));
  } else if (run.find_first_not_of(" \t\n") == run.npos) {
    reading.tree->AppendRaw(open, std::u16string(run.begin(), run.end()));
  } else {
    StopUnusual(parser);
  }
}

void UnusualText(void* parser, const xmlChar* /*text*/) {
  StopUnusual(parser);
}
void UnusualData(void* parser, const xmlChar* /*text*/, int /*length*/) {
  StopUnusual(parser);
}
void UnusualInstruction(void* parser, const xmlChar* /*target*/, const xmlChar* /*data*/) {
  StopUnusual(parser);
}
void UnusualType(void* parser, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                 const xmlChar* /*systemId*/) {
  StopUnusual(parser);
}
void NoDocument(void* /*parser*/) {}

void ListenTo(KeptContext& context) {
  xmlSAXHandler& sax = *context.parser->sax;
  sax.startDocument = NoDocument;
  sax.endDocument = NoDocument;
  sax.startElementNs = StartElement;
  sax.endElementNs = EndElement;
  sax.characters = Characters;
  sax.ignorableWhitespace = Characters;
  sax.comment = UnusualText;
  sax.cdataBlock = UnusualData;
  sax.processingInstruction = UnusualInstruction;
  sax.internalSubset = UnusualType;
  context.parser->_private = &context;
  for (std::size_t i = 0; i < kAttrCount; ++i) {
    const std::string name = WideToUtf8(kAttrNames[i]);
    context.names[i] =
        xmlDictLookup(context.parser->dict, reinterpret_cast<const xmlChar*>(name.c_str()), -1);
  }
  context.tagName =
      xmlDictLookup(context.parser->dict, reinterpret_cast<const xmlChar*>("tag"), -1);
}

/// The thread's context, new after a failure and after some thousands of documents, since its
/// dictionary of names only grows.
KeptContext* ThreadContext() {
  thread_local KeptContext context;
  if (!context.parser || ++context.documents > kDocumentsPerContext) {
    context.parser = NewXmlContext();
    context.documents = 0;
    if (!context.parser) return nullptr;
    ListenTo(context);
  }
  return &context;
}

enum class Outcome { kRead, kBroken, kUnusual };

Outcome ReadUsual(const std::string& utf8, TagTree& tree) {
  if (utf8.starts_with(kByteOrderMark)) return Outcome::kUnusual;
  if (utf8.starts_with("<?xml") && !utf8.starts_with(kUsualDeclaration)) return Outcome::kUnusual;
  KeptContext* const context = ThreadContext();
  if (!context) return Outcome::kBroken;
  context->reading = {&tree, nullptr, false};
  const KeepLastXmlError keep;
  const bool wellFormed = RunXmlParser(*context->parser, utf8);
  const bool unusual = context->reading.unusual;
  if (!wellFormed || unusual) context->parser.reset();
  if (unusual) return Outcome::kUnusual;
  return wellFormed ? Outcome::kRead : Outcome::kBroken;
}

// --- the plain road ------------------------------------------------------------------------------

/// What libxml2 writes for a node of a UTF-8 document.
std::u16string Dumped(xmlNodePtr node) {
  xmlBufferPtr buffer = xmlBufferCreate();
  const xmlChar* const encoding = node->doc->encoding;
  node->doc->encoding = reinterpret_cast<const xmlChar*>("UTF-8");
  xmlNodeDump(buffer, node->doc, node, 0, 0);
  node->doc->encoding = encoding;
  std::u16string out = Utf8ToWide(View(xmlBufferContent(buffer)));
  xmlBufferFree(buffer);
  return out;
}

std::u16string Qualified(const xmlNs* ns, const xmlChar* name) {
  if (!ns || !ns->prefix) return Utf8ToWide(View(name));
  return Utf8ToWide(View(ns->prefix)) + u":" + Utf8ToWide(View(name));
}

void ImportAttributes(xmlNodePtr from, TagTree& tree, Tag to) {
  for (xmlNsPtr ns = from->nsDef; ns; ns = ns->next) {
    std::u16string name = u"xmlns";
    if (ns->prefix) name.append(u":").append(Utf8ToWide(View(ns->prefix)));
    tree.AppendForeignAttr(
        to, Attr::kOther, tree.Store(name), false,
        ns->href ? tree.Store(Utf8ToWide(View(ns->href))) : std::u16string_view{});
  }
  for (xmlAttrPtr attr = from->properties; attr; attr = attr->next) {
    xmlChar* const value = xmlNodeListGetString(from->doc, attr->children, 1);
    const Attr id = AttrOf(Utf8ToWide(View(attr->name)));
    const std::u16string_view stored =
        value ? tree.Store(Utf8ToWide(View(value))) : std::u16string_view{};
    if (!attr->ns && id != Attr::kOther) {
      tree.AppendAttr(to, id, stored);
    } else {
      tree.AppendForeignAttr(to, id, tree.Store(Qualified(attr->ns, attr->name)), !attr->ns,
                             stored);
    }
    xmlFree(value);
  }
}

Tag ImportElement(xmlNodePtr from, TagTree& tree) {
  Tag to = tree.NewTag(Qualified(from->ns, from->name));
  ImportAttributes(from, tree, to);
  return to;
}

/// Elements one by one, everything else as the text that libxml2 writes for it.
void ImportTree(xmlNodePtr root, TagTree& tree) {
  Tag open = ImportElement(root, tree);
  tree.SetRoot(open);
  xmlNodePtr from = root->children;
  while (from) {
    if (from->type == XML_ELEMENT_NODE) {
      const Tag made = ImportElement(from, tree);
      open.AddChild(made);
      if (from->children) {
        open = made;
        from = from->children;
        continue;
      }
    } else {
      tree.AppendRaw(open, Dumped(from));
    }
    while (!from->next && from->parent != root) {
      from = from->parent;
      open = open.Parent();
    }
    from = from->next;
  }
}

std::u16string Declaration(xmlDocPtr doc) {
  std::u16string out = u"<?xml version=\"";
  out += doc->version ? Utf8ToWide(View(doc->version)) : u"1.0";
  out += u"\" encoding=\"UTF-8\"";
  if (doc->standalone == 0) out += u" standalone=\"no\"";
  if (doc->standalone == 1) out += u" standalone=\"yes\"";
  return out + u"?>\n";
}

bool ReadUnusual(const std::string& utf8, TagTree& tree) {
  const XmlDocPtr doc = ParseXml(utf8);
  xmlNodePtr root = doc ? xmlDocGetRootElement(doc.get()) : nullptr;
  if (!root) return false;
  ImportTree(root, tree);
  tree.prolog = Declaration(doc.get());
  std::u16string* side = &tree.prolog;
  for (xmlNodePtr node = doc->children; node; node = node->next) {
    if (node == root) {
      side = &tree.epilog;
    } else {
      *side += Dumped(node) + u"\n";
    }
  }
  return true;
}

}  // namespace

bool ReadTagTree(std::u16string_view text, TagTree& tree) {
  tree.Clear();
  const std::string utf8 = WideToUtf8(text);
  const Outcome outcome = ReadUsual(utf8, tree);
  if (outcome == Outcome::kRead) return true;
  tree.Clear();
  return outcome == Outcome::kUnusual && ReadUnusual(utf8, tree);
}

}  // namespace ORKBASE
