// Documents through libxml2's event interface. What is neither element nor attribute is written as
// libxml2's own dump of a tree would have it, though no tree is made: only a document type, which
// has too many forms, is collected by libxml2 and dumped when it is complete.
#include "xml/XmlReader.h"

#include "foundation/Text.h"
#include "xml/XmlLimits.h"
#include "xml/XmlParser.h"

#include <libxml/SAX2.h>
#include <libxml/dict.h>
#include <libxml/parser.h>

#include <algorithm>
#include <exception>
#include <initializer_list>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace ORKBASE {
namespace {

constexpr std::string_view kUsualDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kUsualVersion = "1.0";
/// The dictionary of names of a kept parser only grows; beyond this a new parser is made.
constexpr std::size_t kMostNameBytes = 1 << 16;
/// The shortest declaration of a namespace: ` xmlns:="" `.
constexpr std::size_t kDeclarationMarks = 9;

std::string_view View(const xmlChar* text) noexcept {
  return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view{};
}

std::string_view View(const xmlChar* begin, const xmlChar* end) noexcept {
  return {reinterpret_cast<const char*>(begin), static_cast<std::size_t>(end - begin)};
}

std::string_view View(const xmlChar* text, int length) noexcept {
  return View(text, text + length);
}

std::string Qualified(std::string_view prefix, std::string_view local) {
  std::string out(prefix);
  if (!prefix.empty() && !local.empty()) out += ':';
  return out += local;
}

std::string_view EscapeOf(char unit) noexcept {
  switch (unit) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    case '\r':
      return "&#13;";
  }
  return {};
}

void AppendEscaped(std::string& out, std::string_view text) {
  for (;;) {
    const auto* const odd =
        std::find_if(text.begin(), text.end(), [](char unit) { return !EscapeOf(unit).empty(); });
    out.append(text.begin(), odd);
    if (odd == text.end()) return;
    out += EscapeOf(*odd);
    text.remove_prefix(static_cast<std::size_t>(odd + 1 - text.begin()));
  }
}

/// As sections, none of which holds the mark that ends one.
void AppendSections(std::string& out, std::string_view characters) {
  do {
    const std::size_t mark = characters.find("]]>");
    const std::size_t size = mark == characters.npos ? characters.size() : mark + 2;
    out.append("<![CDATA[").append(characters.substr(0, size)).append("]]>");
    characters.remove_prefix(size);
  } while (!characters.empty());
}

std::string Declaration(const xmlParserCtxt& parser) {
  std::string out = "<?xml version=\"";
  out.append(View(parser.version)).append("\" encoding=\"UTF-8\"");
  if (parser.standalone == 0) out += " standalone=\"no\"";
  if (parser.standalone == 1) out += " standalone=\"yes\"";
  return out + "?>\n";
}

/// What the events of one document come to; its memory serves the next one, too.
struct Reading {
  void Begin(const std::string& text, XmlVisitor& to) {
    utf8 = &text;
    visitor = &to;
    depth = defaults = declared = mostNames = 0;
    mostDeclared = text.size() + XmlLimits::kDefaultedBytes;
    other.clear();
    section.clear();
    inSection = false;
    failure = nullptr;
  }

  const std::string* utf8;
  XmlVisitor* visitor;
  std::size_t depth;
  std::size_t defaults;      ///< that the document type has declared so far
  std::size_t declared;      ///< bytes of all declarations of namespaces
  std::size_t mostDeclared;  ///< more can only come from defaults
  std::size_t mostNames;     ///< with those that the parser has from other documents
  std::string other;         ///< written since the last element was opened or closed
  std::string section;       ///< characters of sections that follow each other: they become one
  bool inSection;
  std::vector<std::string_view> names;  ///< those of the reader, in the parser's dictionary
  std::vector<XmlDeclaration> declarations;
  std::vector<XmlAttribute> attributes;
  std::exception_ptr failure;
};

xmlParserCtxt& ParserOf(void* parser) noexcept {
  return *static_cast<xmlParserCtxtPtr>(parser);
}

/// Runs `event`; an exception must not pass through libxml2 and waits until the parser is done.
template <class Event>
void Guarded(void* context, Event event) noexcept {
  xmlParserCtxt& parser = ParserOf(context);
  Reading& reading = *static_cast<Reading*>(parser._private);
  if (reading.failure) return;
  try {
    event(reading, parser);
  } catch (...) {
    reading.failure = std::current_exception();
    RefuseXml(parser);
  }
}

// --- what is neither element nor attribute -------------------------------------------------------

void EndSection(Reading& reading) {
  if (!reading.inSection) return;
  AppendSections(reading.other, reading.section);
  reading.section.clear();
  reading.inSection = false;
}

/// A comment or instruction; outside of the root, each has a line.
void AppendRemark(Reading& reading, std::initializer_list<std::string_view> parts) {
  EndSection(reading);
  for (const std::string_view part : parts) reading.other += part;
  if (reading.depth == 0) reading.other += '\n';
}

/// What was written so far, once.
void HandOver(Reading& reading, void (XmlVisitor::*take)(std::string_view)) {
  EndSection(reading);
  if (reading.other.empty()) return;
  (reading.visitor->*take)(reading.other);
  reading.other.clear();
}

void Characters(void* context, const xmlChar* text, int length) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& /*parser*/) {
    EndSection(reading);
    AppendEscaped(reading.other, View(text, length));
  });
}

void Section(void* context, const xmlChar* text, int length) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& /*parser*/) {
    reading.section += View(text, length);
    reading.inSection = true;
  });
}

void Comment(void* context, const xmlChar* text) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& parser) {
    if (parser.inSubset != 0) {
      xmlSAX2Comment(&parser, text);
    } else {
      AppendRemark(reading, {"<!--", View(text), "-->"});
    }
  });
}

void Instruction(void* context, const xmlChar* target, const xmlChar* data) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& parser) {
    if (parser.inSubset != 0) {
      xmlSAX2ProcessingInstruction(&parser, target, data);
    } else {
      AppendRemark(reading, {"<?", View(target), data ? " " : "", View(data), "?>"});
    }
  });
}

// --- the document type ---------------------------------------------------------------------------

void OpenDocumentType(void* context, const xmlChar* name, const xmlChar* publicId,
                      const xmlChar* systemId) {
  Guarded(context, [&](Reading& /*reading*/, xmlParserCtxt& parser) {
    xmlSAX2StartDocument(&parser);
    xmlSAX2InternalSubset(&parser, name, publicId, systemId);
  });
}

void DeclareAttribute(void* context, const xmlChar* element, const xmlChar* name, int type, int use,
                      const xmlChar* value, xmlEnumerationPtr values) {
  xmlSAX2AttributeDecl(context, element, name, type, use, value, values);
  Guarded(context, [&](Reading& reading, xmlParserCtxt& parser) {
    if (value && ++reading.defaults > XmlLimits::kDefaultedAttributes) RefuseXml(parser);
  });
}

/// Called where the external part would begin, which is never read.
void CloseDocumentType(void* context, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                       const xmlChar* /*systemId*/) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& parser) {
    auto* const type = parser.myDoc ? xmlGetIntSubset(parser.myDoc) : nullptr;
    if (!type) throw std::bad_alloc();
    AppendRemark(reading, {WrittenXml(*reinterpret_cast<xmlNode*>(type))});
  });
}

// --- elements ------------------------------------------------------------------------------------

/// Where the name stands among those of the reader; `guess` is tried first.
std::size_t Known(const std::vector<std::string_view>& names, const xmlChar* name,
                  std::size_t guess) {
  const char* const address = reinterpret_cast<const char*>(name);
  const std::size_t count = names.size();
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = guess + i < count ? guess + i : guess + i - count;
    if (names[at].data() == address) return at;
  }
  return XmlAttribute::kUnknown;
}

XmlName NameOf(xmlParserCtxt& parser, const xmlChar* local, const xmlChar* prefix,
               const xmlChar* uri) {
  if (!prefix || uri) return {View(prefix), View(local), uri != nullptr};
  const xmlChar* const whole = xmlDictQLookup(parser.dict, prefix, local);
  if (!whole) throw std::bad_alloc();
  return {{}, View(whole), false};
}

/// libxml2 gives two texts for each.
void TakeDeclarations(Reading& reading, int count, const xmlChar** texts) {
  reading.declarations.clear();
  for (; count > 0; --count, texts += 2) {
    const XmlDeclaration& made =
        reading.declarations.emplace_back(XmlDeclaration{View(texts[0]), View(texts[1])});
    reading.declared += kDeclarationMarks + made.prefix.size() + made.uri.size();
  }
}

/// libxml2 gives five texts for each: local name, prefix, namespace, begin and end of the value.
void TakeAttributes(Reading& reading, xmlParserCtxt& parser, std::size_t count,
                    const xmlChar** texts) {
  reading.attributes.resize(count);
  std::size_t guess = 0;
  for (XmlAttribute& made : reading.attributes) {
    made.value = View(texts[3], texts[4]);
    made.known = Known(reading.names, texts[0], guess);
    if (made.known != XmlAttribute::kUnknown && !texts[1]) {
      made.name = {{}, reading.names[made.known], false};
      guess = made.known + 1;
    } else {
      made.name = NameOf(parser, texts[0], texts[1], texts[2]);
      if (texts[1] && !texts[2]) made.known = XmlAttribute::kUnknown;
    }
    texts += 5;
  }
}

std::size_t NamesOf(const xmlParserCtxt& parser) noexcept {
  return static_cast<std::size_t>(xmlDictSize(parser.dict));
}

bool IsWithinLimits(const Reading& reading, const xmlParserCtxt& parser) noexcept {
  // The parser keeps two texts for each namespace.
  return static_cast<std::size_t>(parser.nsNr) <= 2 * XmlLimits::kNamespacesInForce &&
         reading.declared <= reading.mostDeclared && NamesOf(parser) <= reading.mostNames;
}

void HandOverProlog(Reading& reading, const xmlParserCtxt& parser) {
  const bool usual = View(parser.version) == kUsualVersion && parser.standalone < 0;
  if (usual && reading.other.empty()) return;
  reading.other.insert(0, Declaration(parser));
  HandOver(reading, &XmlVisitor::Prolog);
}

void OpenElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                 int declarations, const xmlChar** declarationTexts, int attributes, int defaulted,
                 const xmlChar** attributeTexts) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& parser) {
    TakeDeclarations(reading, declarations, declarationTexts);
    if (!IsWithinLimits(reading, parser)) {
      RefuseXml(parser);
      return;
    }
    // Those of the document type come last.
    TakeAttributes(reading, parser, static_cast<std::size_t>(attributes - defaulted),
                   attributeTexts);
    reading.depth == 0 ? HandOverProlog(reading, parser) : HandOver(reading, &XmlVisitor::Other);
    ++reading.depth;
    reading.visitor->Open(
        {NameOf(parser, name, prefix, uri), reading.declarations, reading.attributes});
  });
}

void CloseElement(void* context, const xmlChar* /*name*/, const xmlChar* /*prefix*/,
                  const xmlChar* /*uri*/) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& /*parser*/) {
    HandOver(reading, &XmlVisitor::Other);
    --reading.depth;
    reading.visitor->Close();
  });
}

// --- the document --------------------------------------------------------------------------------

/// The encoding is known here, and no element was looked at.
void BeginDocument(void* context) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& parser) {
    reading.mostNames = NamesOf(parser) + XmlLimits::kNames;
    const xmlParserInputBuffer* const input = parser.input->buf;
    if (!input || !input->encoder) {
      if (!IsWithinXmlLimits(*reading.utf8)) RefuseXml(parser);
      return;
    }
    const std::size_t behind = std::min(reading.utf8->find("?>"), reading.utf8->size());
    const std::string decoded = DecodedXml(reading.utf8->substr(behind), input->encoder->name);
    reading.mostDeclared += decoded.size();
    if (!IsWithinXmlLimits(decoded)) RefuseXml(parser);
  });
}

void EndDocument(void* context) {
  Guarded(context, [&](Reading& reading, xmlParserCtxt& /*parser*/) {
    HandOver(reading, &XmlVisitor::Epilog);
  });
}

void ListenTo(xmlParserCtxt& parser, Reading& reading) {
  xmlSAXHandler& sax = *parser.sax;
  sax.startDocument = BeginDocument;
  sax.endDocument = EndDocument;
  sax.startElementNs = OpenElement;
  sax.endElementNs = CloseElement;
  sax.characters = Characters;
  sax.ignorableWhitespace = Characters;  // kept, whatever the host wants of its own documents
  sax.cdataBlock = Section;
  sax.comment = Comment;
  sax.processingInstruction = Instruction;
  sax.internalSubset = OpenDocumentType;
  sax.attributeDecl = DeclareAttribute;
  sax.externalSubset = CloseDocumentType;
  parser._private = &reading;
}

/// Whether the bytes are what the document is, whatever it says of itself.
bool IsPlainUtf8(std::string_view text) noexcept {
  if (text.starts_with(kByteOrderMark)) return false;
  return !text.starts_with("<?xml") || text.starts_with(kUsualDeclaration);
}

/// The parser, with the names in its dictionary, so that each is recognised by its address.
XmlContextPtr Prepared(XmlContextPtr parser, Reading& reading,
                       std::span<const std::u16string_view> names) {
  ListenTo(*parser, reading);
  reading.names.clear();
  for (const std::u16string_view wide : names) {
    const std::string name = WideToUtf8(wide);
    const auto* const text = reinterpret_cast<const xmlChar*>(name.c_str());
    reading.names.push_back(View(xmlDictLookup(parser->dict, text, -1)));
    if (reading.names.back().empty()) throw std::bad_alloc();
  }
  return parser;
}

bool Run(xmlParserCtxt& parser, const Reading& reading, const std::string* utf8) {
  const bool wellFormed = RunXmlParser(parser, utf8);
  if (reading.failure) std::rethrow_exception(reading.failure);
  return wellFormed;
}

}  // namespace

std::string XmlName::Written() const {
  return Qualified(prefix, local);
}

std::string XmlDeclaration::WrittenName() const {
  return Qualified("xmlns", prefix);
}

struct XmlReader::Kept {
  XmlContextPtr parser;
  Reading reading;
};

XmlReader::XmlReader(std::span<const std::u16string_view> names)
    : names_(names), kept_(std::make_unique<Kept>()) {}

XmlReader::~XmlReader() = default;

bool XmlReader::Read(const std::string& utf8, XmlVisitor& visitor) {
  if (utf8.size() > std::numeric_limits<int>::max()) return false;
  const QuietXml quiet;
  kept_->reading.Begin(utf8, visitor);
  // Out of its place: after a failure, and after a document type, a new one is made.
  XmlContextPtr parser = std::move(kept_->parser);
  if (!IsPlainUtf8(utf8)) {
    parser = Prepared(NewXmlContextOf(utf8), kept_->reading, names_);
    return Run(*parser, kept_->reading, nullptr);
  }
  if (!parser || xmlDictGetUsage(parser->dict) > kMostNameBytes) {
    parser = Prepared(NewXmlContext(), kept_->reading, names_);
  }
  if (!Run(*parser, kept_->reading, &utf8)) return false;
  if (!parser->myDoc) kept_->parser = std::move(parser);
  return true;
}

}  // namespace ORKBASE
