// Reading XML documents of any form as a row of events.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace ORKBASE {

// What the events hand out is UTF-8 and valid during the call.

/// The name of an element or attribute. A prefix that nothing declares is a part of the local name.
struct XmlName {
  std::string_view prefix;
  std::string_view local;
  bool inNamespace = false;

  std::string Written() const;
};

struct XmlAttribute {
  static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);

  XmlName name;
  std::string_view value;
  std::size_t known = kUnknown;  ///< where the local name stands among the names of the reader
};

/// A declaration of a namespace: `xmlns:prefix="uri"`, or `xmlns="uri"` without a prefix.
struct XmlDeclaration {
  std::string_view prefix;
  std::string_view uri;

  std::string WrittenName() const;
};

/// Attributes as they are written, those of a document type's defaults left out.
struct XmlElement {
  XmlName name;
  std::span<const XmlDeclaration> declarations;
  std::span<const XmlAttribute> attributes;
};

/// What a document is made of, in its order. A call that throws ends the reading by its exception.
class XmlVisitor {
 public:
  virtual ~XmlVisitor() = default;

  virtual void Open(const XmlElement& element) = 0;
  virtual void Close() = 0;
  /// All that stands between two of the above: text, comments, instructions, character sections, as
  /// libxml2 would write it.
  virtual void Other(std::string_view /*written*/) {}
  /// What a document in UTF-8 has in front of its root, XML declaration first; not called when that
  /// is the declaration of version 1.0 alone.
  virtual void Prolog(std::string_view /*written*/) {}
  /// What stands behind the root, if anything does.
  virtual void Epilog(std::string_view /*written*/) {}
};

/// Keeps what a thread needs to read one document after another quickly. Used by one thread at a
/// time.
class XmlReader {
 public:
  /// `names` are local names of attributes that the visitor wants to be told by number. They
  /// outlive the reader.
  explicit XmlReader(std::span<const std::u16string_view> names);
  ~XmlReader();

  /// False when the text does not parse, or is beyond `XmlLimits`; the visitor then has seen a part
  /// of it. Throws what the visitor throws, and `std::bad_alloc`.
  bool Read(const std::string& utf8, XmlVisitor& visitor);

 private:
  struct Kept;

  std::span<const std::u16string_view> names_;
  std::unique_ptr<Kept> kept_;
};

}  // namespace ORKBASE
