// What libxml2 alone takes for the tree work inside `Verify` and `GetSpec`.
//
// It gets every advantage: names and values lie ready as UTF-8 and nothing is decided on the way.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// A document taken apart, ready to be built again.
class TreeToBuild {
 public:
  /// Takes the document of a `Verify`. Ends the program when building it again gives another text.
  explicit TreeToBuild(const std::u16string& document);

  /// Makes the tree with `xmlNewNode` and `xmlSetProp`, dumps it and gives the 16-bit text.
  std::u16string BuildAndDump() const;

 private:
  struct Element {
    std::size_t parent;  // index of an earlier element; the root's own for the root
    std::vector<std::pair<std::string, std::string>> attributes;
  };
  std::vector<Element> elements_;
};

/// Parses a document, sets one attribute on each node, and dumps it: 16-bit text in and out.
std::u16string ParseSetAndDump(std::u16string_view document);

}  // namespace bench
