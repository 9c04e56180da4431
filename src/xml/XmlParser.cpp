// The one way into libxml2.
#include "xml/XmlParser.h"

#include <libxml/encoding.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <new>
#include <utility>

namespace ORKBASE {
namespace {

// XML_PARSE_HUGE lifts the limit of depth; NOENT gives "&amp;" in attributes as one character.
constexpr int kOptions = XML_PARSE_HUGE | XML_PARSE_NOENT | XML_PARSE_NONET;

struct BufferDeleter {
  void operator()(xmlBufferPtr buffer) const noexcept { xmlBufferFree(buffer); }
};
using BufferPtr = std::unique_ptr<xmlBuffer, BufferDeleter>;

struct EncodingDeleter {
  void operator()(xmlCharEncodingHandlerPtr handler) const noexcept {
    xmlCharEncCloseFunc(handler);
  }
};
using EncodingPtr = std::unique_ptr<xmlCharEncodingHandler, EncodingDeleter>;

/// What libxml2 gave, which is null when memory was out.
template <class Pointer>
Pointer Made(Pointer pointer) {
  if (!pointer) throw std::bad_alloc();
  return pointer;
}

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
  RefuseXml(*static_cast<xmlParserCtxtPtr>(context));
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
}

std::string TextOf(const xmlBuffer& buffer) {
  const xmlChar* const text = xmlBufferContent(&buffer);
  if (!text) return {};
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(xmlBufferLength(&buffer))};
}

/// No input buffer: the parser reads the text where it lies.
void PushText(xmlParserCtxt& context, const std::string& utf8) {
  const auto* const text = reinterpret_cast<const xmlChar*>(utf8.c_str());
  if (inputPush(&context, Made(xmlNewStringInputStream(&context, text))) < 0) {
    throw std::bad_alloc();
  }
}

}  // namespace

void XmlContextDeleter::operator()(_xmlParserCtxt* context) const noexcept {
  xmlFreeDoc(context->myDoc);
  xmlFreeParserCtxt(context);
}

struct QuietXml::LastError {
  LastError() = default;
  LastError(const LastError&) = delete;
  LastError& operator=(const LastError&) = delete;
  ~LastError() { xmlResetError(&error); }

  xmlError error{};
};

QuietXml::QuietXml() {
  [[maybe_unused]] static const bool initialised = (xmlInitParser(), true);
  if (xmlErrorPtr last = xmlGetLastError()) {
    last_ = std::make_unique<LastError>();
    xmlCopyError(last, &last_->error);
  }
  function_ = xmlStructuredError;
  data_ = xmlStructuredErrorContext;
  xmlSetStructuredErrorFunc(nullptr, IgnoreStructured);
}

QuietXml::~QuietXml() {
  xmlSetStructuredErrorFunc(data_, function_);
  if (last_) {
    xmlCopyError(&last_->error, xmlGetLastError() ? xmlGetLastError() : &xmlLastError);
  } else if (xmlGetLastError()) {
    xmlResetLastError();
  }
}

XmlContextPtr NewXmlContext() {
  XmlContextPtr context(Made(xmlNewParserCtxt()));
  Silence(*context->sax);
  return context;
}

XmlContextPtr NewXmlContextOf(const std::string& text) {
  XmlContextPtr context(
      Made(xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size()))));
  Silence(*context->sax);
  return context;
}

bool RunXmlParser(_xmlParserCtxt& context, const std::string* utf8) {
  if (utf8) xmlCtxtReset(&context);
  xmlCtxtUseOptions(&context, kOptions);
  if (utf8) PushText(context, *utf8);
  xmlParseDocument(&context);
  // Memory that is out stops the events and need not make the document a bad one.
  if (context.errNo == XML_ERR_NO_MEMORY || (context.wellFormed && context.disableSAX)) {
    throw std::bad_alloc();
  }
  return context.wellFormed == 1;
}

void RefuseXml(_xmlParserCtxt& context) noexcept {
  context.wellFormed = 0;
  xmlStopParser(&context);
}

std::string DecodedXml(const std::string& text, const char* encoding) {
  const EncodingPtr handler(Made(xmlFindCharEncodingHandler(encoding)));
  const BufferPtr in(Made(xmlBufferCreateStatic(const_cast<char*>(text.data()), text.size())));
  const BufferPtr out(Made(xmlBufferCreate()));
  for (int before = 0; before != xmlBufferLength(in.get());) {
    before = xmlBufferLength(in.get());
    xmlCharEncInFunc(handler.get(), out.get(), in.get());
  }
  return TextOf(*out);
}

std::string WrittenXml(_xmlNode& node) {
  const BufferPtr buffer(Made(xmlBufferCreate()));
  const xmlChar* const encoding = node.doc->encoding;
  node.doc->encoding = reinterpret_cast<const xmlChar*>("UTF-8");
  const int size = xmlNodeDump(buffer.get(), node.doc, &node, 0, 0);
  node.doc->encoding = encoding;
  if (size < 0) throw std::bad_alloc();
  return TextOf(*buffer);
}

}  // namespace ORKBASE
