// How the engine calls libxml2's parser: silent, without entities, files or network, and without
// touching what the host program has set in libxml2.
#pragma once

#include <memory>
#include <string>

// NOLINTBEGIN(bugprone-reserved-identifier): libxml2's own names
struct _xmlDoc;
struct _xmlParserCtxt;
struct _xmlSAXHandler;
// NOLINTEND(bugprone-reserved-identifier)

namespace ORKBASE {

struct XmlDocDeleter {
  void operator()(_xmlDoc* doc) const noexcept;
};
using XmlDocPtr = std::unique_ptr<_xmlDoc, XmlDocDeleter>;

struct XmlContextDeleter {
  void operator()(_xmlParserCtxt* context) const noexcept;
};
using XmlContextPtr = std::unique_ptr<_xmlParserCtxt, XmlContextDeleter>;

/// A parser context that says nothing. Entity declarations are not taken in, so that a reference to
/// an entity makes a document fail. Null when memory is out.
XmlContextPtr NewXmlContext();

/// Runs the context over a whole UTF-8 text of any depth that names no other encoding. True when it
/// is well-formed.
bool RunXmlParser(_xmlParserCtxt& context, const std::string& utf8);

/// The tree of a UTF-8 text, null when it does not parse. The text is read by the encoding that its
/// XML declaration names, if any: one that says UTF-16 fails, one that says ISO-8859-1 gives two
/// characters for an umlaut.
XmlDocPtr ParseXml(const std::string& utf8);

/// Puts libxml2's last error of this thread back as the host left it.
class KeepLastXmlError {
 public:
  KeepLastXmlError();
  KeepLastXmlError(const KeepLastXmlError&) = delete;
  KeepLastXmlError& operator=(const KeepLastXmlError&) = delete;
  ~KeepLastXmlError();

 private:
  struct Saved;
  std::unique_ptr<Saved> saved_;
};

}  // namespace ORKBASE
