// The tree of a rule while it is being matched: indices into two arrays, no XML. A shape never
// changes once it is made, so a remembered one can become part of several attempts.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "document/AttrNames.h"
#include "foundation/TextWriter.h"
#include "foundation/WordView.h"

namespace ORKBASE {

/// Index of a shape; -1 is the shape of nothing.
using ShapeIndex = std::int32_t;
inline constexpr ShapeIndex kNoShape = -1;

/// One element of the document to be.
struct Shape {
  std::int32_t word = 0;
  std::int32_t firstChild = 0;  ///< in the array of children
  std::int32_t childCount = 0;
  std::int8_t semanticType = -1;  ///< -1: not set
  bool inBrackets = false;
  bool bracketsFirst = false;  ///< "inBrackets" was set before "semanticType" and stands before it
};

/// Makes shapes of words and folds the shapes of a matched rule into one.
class ShapeTree {
 public:
  /// Starts a tree with a shape for each of the words, which must outlive the use of the tree.
  void Reset(std::span<const WordView> words);

  /// The shape of a word by itself.
  ShapeIndex MxWordToXml(std::int32_t word) const noexcept { return word; }
  /// Folds the shapes of a matched rule by its semantic type: one shape stays as it is, a bracketed
  /// form marks what is inside, delimiters are dropped.
  ShapeIndex ComposeToTree(std::span<const ShapeIndex> nodes, std::int32_t semanticType);

  /// The document: indented elements, characters beyond ASCII as references, no XML declaration.
  /// Valid until the next call.
  std::u16string_view ToText(ShapeIndex root);

 private:
  /// An element that is being written.
  struct Open {
    const Shape* shape;
    std::int32_t next;  // child
  };

  ShapeIndex Fold(std::span<const ShapeIndex> nodes, std::int32_t semanticType);
  ShapeIndex FoldChain(std::span<const ShapeIndex> nodes);
  ShapeIndex FoldUnderFirst(std::span<const ShapeIndex> nodes);
  ShapeIndex FoldUnderLast(std::span<const ShapeIndex> nodes);
  ShapeIndex ChildOf(const Shape& shape, std::int32_t index) const noexcept {
    return children_[static_cast<std::size_t>(shape.firstChild) + static_cast<std::size_t>(index)];
  }
  bool IsDelimiter(ShapeIndex shape) const noexcept;
  bool IsOpenBracket(ShapeIndex shape) const noexcept;
  /// A copy of `parent` with the children behind its own.
  ShapeIndex WithChildren(ShapeIndex parent, std::span<const ShapeIndex> children);
  ShapeIndex WithSemanticType(ShapeIndex shape, std::int32_t semanticType);
  ShapeIndex WithBrackets(ShapeIndex shape);
  ShapeIndex Copy(ShapeIndex shape);
  template <Attr kAttr>
  void AppendText(std::u16string_view value);
  template <Attr kAttr>
  void AppendNumber(std::int32_t value);
  void AppendElement(const Shape& shape);

  std::span<const WordView> words_;
  std::vector<Shape> shapes_;
  std::vector<ShapeIndex> children_;
  std::vector<ShapeIndex> kept_;  // scratch of a fold
  std::vector<Open> open_;        // scratch of the writing
  TextWriter text_;
};

}  // namespace ORKBASE
