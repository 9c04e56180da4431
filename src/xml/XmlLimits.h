// How odd a document may be. libxml2 compares each attribute with all others of its element, looks
// for a namespace among all that hold, puts the defaults of a document type into each element, and
// has a table of names that stops growing: a small document could keep it busy for minutes.
#pragma once

#include <cstddef>
#include <string_view>

namespace ORKBASE {

/// What a document may hold; one that holds more does not parse.
struct XmlLimits {
  static constexpr std::size_t kAttributesOfElement = 2000;  ///< with namespace declarations
  static constexpr std::size_t kNamespacesInForce = 2000;    ///< declarations, at one place
  static constexpr std::size_t kDocumentTypeBytes = 10000;   ///< as UTF-8
  static constexpr std::size_t kDefaultedAttributes = 20;    ///< of a document type
  static constexpr std::size_t kDefaultedBytes = 1000000;    ///< added by them to all elements
  static constexpr std::size_t kNames = 100000;  ///< of elements, attributes and namespaces
};

/// False when the element with the most attributes or the document type is beyond its limit, which
/// libxml2 itself tells too late. Takes UTF-8 text; of one that is not well-formed the answer says
/// nothing. Linear, and next to nothing for a document without a long element.
bool IsWithinXmlLimits(std::string_view utf8) noexcept;

}  // namespace ORKBASE
