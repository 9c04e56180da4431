// How the engine calls libxml2: silent, without entities, files or network, and without touching
// what the host program has set in it.
#pragma once

#include <memory>
#include <string>

// NOLINTBEGIN(bugprone-reserved-identifier): libxml2's own names
struct _xmlError;
struct _xmlNode;
struct _xmlParserCtxt;
// NOLINTEND(bugprone-reserved-identifier)

namespace ORKBASE {

struct XmlContextDeleter {
  void operator()(_xmlParserCtxt* context) const noexcept;
};
using XmlContextPtr = std::unique_ptr<_xmlParserCtxt, XmlContextDeleter>;

/// Goes around every use of libxml2: initialises it before the first one of the process, lets no
/// error reach the thread's error function, and leaves that function and the thread's last error as
/// the host had them.
class QuietXml {
 public:
  QuietXml();
  QuietXml(const QuietXml&) = delete;
  QuietXml& operator=(const QuietXml&) = delete;
  ~QuietXml();

 private:
  struct LastError;

  std::unique_ptr<LastError> last_;
  void (*function_)(void*, _xmlError*);
  void* data_;
};

/// A parser context that says nothing. Entity declarations are not taken in, so that a reference to
/// an entity makes a document fail. Throws `std::bad_alloc`.
XmlContextPtr NewXmlContext();
/// One for a single text that is read by the encoding that its XML declaration names, whatever the
/// bytes are: a text that says UTF-16 fails, one that says ISO-8859-1 gives two characters for an
/// umlaut. The text is not empty and outlives the context.
XmlContextPtr NewXmlContextOf(const std::string& text);

/// Parses a whole text of any depth: with `utf8` that text, which names no other encoding, else the
/// one that the context was made for. True when it is well-formed; throws `std::bad_alloc`.
bool RunXmlParser(_xmlParserCtxt& context, const std::string* utf8);

/// To be called from an event: the document does not parse.
void RefuseXml(_xmlParserCtxt& context) noexcept;

/// UTF-8 that the parser would read, of a text in the encoding of this name; ends where the text
/// breaks its encoding.
std::string DecodedXml(const std::string& text, const char* encoding);

/// A node as libxml2 writes it into a document in UTF-8.
std::string WrittenXml(_xmlNode& node);

}  // namespace ORKBASE
