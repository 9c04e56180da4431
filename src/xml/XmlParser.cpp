// The one way into libxml2's parser.
#include "xml/XmlParser.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <limits>
#include <utility>

namespace ORKBASE {
namespace {

// XML_PARSE_HUGE lifts the limit of depth; NOENT gives "&amp;" in attributes as one character.
constexpr int kOptions = XML_PARSE_HUGE | XML_PARSE_NOENT | XML_PARSE_NONET;

void IgnoreStructured(void* /*data*/, xmlErrorPtr /*error*/) {}
void IgnoreMessage(void* /*context*/, const char* /*message*/, ...) {}

void IgnoreEntity(void* /*context*/, const xmlChar* /*name*/, int /*type*/,
                  const xmlChar* /*publicId*/, const xmlChar* /*systemId*/, xmlChar* /*content*/) {}
void IgnoreUnparsedEntity(void* /*context*/, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                          const xmlChar* /*systemId*/, const xmlChar* /*notation*/) {}
void IgnoreExternalSubset(void* /*context*/, const xmlChar* /*name*/, const xmlChar* /*externalId*/,
                          const xmlChar* /*systemId*/) {}

/// Where a document type lets libxml2 tolerate an unknown entity, this engine does not.
void RefuseReference(void* context, const xmlChar* /*name*/) {
  auto* parser = static_cast<xmlParserCtxtPtr>(context);
  parser->wellFormed = 0;
  xmlStopParser(parser);
}

void Silence(xmlSAXHandler& sax) {
  sax.initialized = XML_SAX2_MAGIC;  // only then is `serror` asked before the host's function
  sax.serror = IgnoreStructured;
  sax.error = IgnoreMessage;
  sax.fatalError = IgnoreMessage;
  sax.warning = IgnoreMessage;
  sax.entityDecl = IgnoreEntity;
  sax.unparsedEntityDecl = IgnoreUnparsedEntity;
  sax.externalSubset = IgnoreExternalSubset;
  sax.reference = RefuseReference;
  sax.ignorableWhitespace = sax.characters;  // kept, whatever the host wants of its own documents
}

/// Errors of an encoder go past the parser, to the error function of the thread. This puts a silent
/// one in the place of the host's and gives it back.
class SilentThread {
 public:
  SilentThread() : function_(xmlStructuredError), context_(xmlStructuredErrorContext) {
    xmlSetStructuredErrorFunc(nullptr, IgnoreStructured);
  }
  SilentThread(const SilentThread&) = delete;
  SilentThread& operator=(const SilentThread&) = delete;
  ~SilentThread() { xmlSetStructuredErrorFunc(context_, function_); }

 private:
  xmlStructuredErrorFunc function_;
  void* context_;
};

}  // namespace

void XmlDocDeleter::operator()(_xmlDoc* doc) const noexcept {
  xmlFreeDoc(doc);
}

void XmlContextDeleter::operator()(_xmlParserCtxt* context) const noexcept {
  xmlFreeDoc(context->myDoc);
  xmlFreeParserCtxt(context);
}

struct KeepLastXmlError::Saved {
  xmlError error{};
};

KeepLastXmlError::KeepLastXmlError() {
  if (xmlErrorPtr last = xmlGetLastError()) {
    saved_ = std::make_unique<Saved>();
    xmlCopyError(last, &saved_->error);
  }
}

KeepLastXmlError::~KeepLastXmlError() {
  if (saved_) {
    xmlCopyError(&saved_->error, xmlGetLastError() ? xmlGetLastError() : &xmlLastError);
    xmlResetError(&saved_->error);
  } else if (xmlGetLastError()) {
    xmlResetLastError();
  }
}

XmlContextPtr NewXmlContext() {
  XmlContextPtr context(xmlNewParserCtxt());
  if (context) Silence(*context->sax);
  return context;
}

bool RunXmlParser(_xmlParserCtxt& context, const std::string& utf8) {
  xmlCtxtReset(&context);
  xmlCtxtUseOptions(&context, kOptions);
  // No input buffer: the parser reads the text where it lies.
  xmlParserInputPtr input =
      xmlNewStringInputStream(&context, reinterpret_cast<const xmlChar*>(utf8.c_str()));
  if (!input) return false;
  inputPush(&context, input);
  xmlParseDocument(&context);
  return context.wellFormed == 1;
}

XmlDocPtr ParseXml(const std::string& utf8) {
  const KeepLastXmlError keep;
  const SilentThread silent;
  if (utf8.size() > std::numeric_limits<int>::max()) return nullptr;
  // With an input buffer: a declaration of another encoding is believed, whatever the bytes are.
  const XmlContextPtr context(
      xmlCreateMemoryParserCtxt(utf8.data(), static_cast<int>(utf8.size())));
  if (!context) return nullptr;
  Silence(*context->sax);
  xmlCtxtUseOptions(context.get(), kOptions);
  xmlParseDocument(context.get());
  XmlDocPtr doc(context->myDoc);
  context->myDoc = nullptr;
  return context->wellFormed == 1 ? std::move(doc) : nullptr;
}

}  // namespace ORKBASE
