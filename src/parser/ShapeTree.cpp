// Folding matched words into a tree, and writing it.
//
// `a + b - c` folds to "-" over ("+" over a, b) and c: in a chain the operator takes what stands
// before it as its first child, and so becomes the root so far.
#include "parser/ShapeTree.h"

#include "foundation/Text.h"
#include "xml/XmlText.h"

namespace ORKBASE {

void ShapeTree::Reset(std::span<const WordView> words) {
  words_ = words;
  shapes_.resize(words.size());
  std::int32_t word = 0;
  for (Shape& shape : shapes_) {
    shape = Shape{};
    shape.word = word++;
  }
  children_.clear();
}

bool ShapeTree::IsDelimiter(ShapeIndex shape) const noexcept {
  if (shape == kNoShape) return false;
  return words_[static_cast<std::size_t>(shapes_[static_cast<std::size_t>(shape)].word)].symbol ==
         kDelimiterSymbol;
}

bool ShapeTree::IsOpenBracket(ShapeIndex shape) const noexcept {
  if (shape == kNoShape) return false;
  const std::int32_t word = shapes_[static_cast<std::size_t>(shape)].word;
  const std::u16string_view primary = words_[static_cast<std::size_t>(word)].primary;
  return primary.starts_with(u'(') && UpToZero(primary).size() == 1;
}

ShapeIndex ShapeTree::ComposeToTree(std::span<const ShapeIndex> nodes, std::int32_t semanticType) {
  const std::size_t count = nodes.size();
  if (count == 1) return nodes[0];
  ShapeIndex result = kNoShape;
  if (!IsOpenBracket(nodes[0])) {
    result = Fold(nodes, semanticType);
  } else if (count <= 3) {
    return WithBrackets(nodes[1]);
  } else {
    result = WithBrackets(Fold(nodes.subspan(1, count - 2), semanticType));
  }
  return WithSemanticType(result, semanticType);
}

ShapeIndex ShapeTree::Fold(std::span<const ShapeIndex> nodes, std::int32_t semanticType) {
  kept_.clear();
  for (const ShapeIndex node : nodes) {
    if (!IsDelimiter(node)) kept_.push_back(node);
  }
  if (kept_.empty()) return kNoShape;
  switch (semanticType) {
    case kInfixSemantic:
      return FoldChain(kept_);
    case kFunctionSemantic:
    case kPrefixSemantic:
      return FoldUnderFirst(kept_);
    case kPostfixSemantic:
      return FoldUnderLast(kept_);
  }
  return kNoShape;
}

ShapeIndex ShapeTree::FoldChain(std::span<const ShapeIndex> nodes) {
  ShapeIndex result = nodes[0];
  for (std::size_t i = 1; i < nodes.size(); i += 2) {
    const ShapeIndex operands[] = {result, i + 1 < nodes.size() ? nodes[i + 1] : kNoShape};
    result = WithSemanticType(WithChildren(nodes[i], operands), kInfixSemantic);
  }
  return result;
}

ShapeIndex ShapeTree::FoldUnderFirst(std::span<const ShapeIndex> nodes) {
  // The first that is there: a call whose every word is a delimiter has left nothing.
  while (nodes.size() > 1 && nodes[0] == kNoShape) nodes = nodes.subspan(1);
  return WithChildren(nodes[0], nodes.subspan(1));
}

ShapeIndex ShapeTree::FoldUnderLast(std::span<const ShapeIndex> nodes) {
  ShapeIndex result = nodes[0];
  for (const ShapeIndex node : nodes.subspan(1)) result = WithChildren(node, {&result, 1});
  return result;
}

ShapeIndex ShapeTree::Copy(ShapeIndex shape) {
  if (shape == kNoShape) return kNoShape;
  const Shape copy = shapes_[static_cast<std::size_t>(shape)];
  shapes_.push_back(copy);
  return static_cast<ShapeIndex>(shapes_.size() - 1);
}

ShapeIndex ShapeTree::WithChildren(ShapeIndex parent, std::span<const ShapeIndex> children) {
  const ShapeIndex copy = Copy(parent);
  if (copy == kNoShape) return kNoShape;
  Shape& shape = shapes_[static_cast<std::size_t>(copy)];
  const auto first = static_cast<std::int32_t>(children_.size());
  for (std::int32_t i = 0; i < shape.childCount; ++i) {
    children_.push_back(ChildOf(shape, i));
  }
  for (const ShapeIndex child : children) {
    if (child != kNoShape) children_.push_back(child);
  }
  shape.firstChild = first;
  shape.childCount = static_cast<std::int32_t>(children_.size()) - first;
  return copy;
}

ShapeIndex ShapeTree::WithSemanticType(ShapeIndex shape, std::int32_t semanticType) {
  if (shape == kNoShape) return kNoShape;
  const auto type = static_cast<std::int8_t>(semanticType);
  if (shapes_[static_cast<std::size_t>(shape)].semanticType == type) return shape;
  const ShapeIndex copy = Copy(shape);
  Shape& changed = shapes_[static_cast<std::size_t>(copy)];
  if (changed.semanticType < 0) changed.bracketsFirst = changed.inBrackets;
  changed.semanticType = type;
  return copy;
}

ShapeIndex ShapeTree::WithBrackets(ShapeIndex shape) {
  if (shape == kNoShape || shapes_[static_cast<std::size_t>(shape)].inBrackets) return shape;
  const ShapeIndex copy = Copy(shape);
  shapes_[static_cast<std::size_t>(copy)].inBrackets = true;
  return copy;
}

template <Attr kAttr>
void ShapeTree::AppendText(std::u16string_view value) {
  constexpr std::u16string_view kOpening = OpeningOf(kAttr);
  text_ += kOpening;
  AppendAttributeValue(text_, value, XmlCharacters::kAsReferences);
  text_ += u'"';
}

template <Attr kAttr>
void ShapeTree::AppendNumber(std::int32_t value) {
  constexpr std::u16string_view kOpening = OpeningOf(kAttr);
  text_ += kOpening;
  AppendDecimal(text_, value);
  text_ += u'"';
}

void ShapeTree::AppendElement(const Shape& shape) {
  const WordView& word = words_[static_cast<std::size_t>(shape.word)];
  text_ += u"<tag";
  AppendText<Attr::kPrimary>(word.primary);
  AppendText<Attr::kOutDesc>(word.outDesc);
  AppendNumber<Attr::kSymbol>(word.symbol);
  AppendNumber<Attr::kDataType>(word.dataType);
  AppendText<Attr::kContent>(word.content);
  if (shape.bracketsFirst) AppendNumber<Attr::kInBrackets>(1);
  if (shape.semanticType >= 0) AppendNumber<Attr::kSemanticType>(shape.semanticType);
  if (shape.inBrackets && !shape.bracketsFirst) AppendNumber<Attr::kInBrackets>(1);
  text_ += shape.childCount > 0 ? std::u16string_view(u">\n") : std::u16string_view(u"/>");
}

std::u16string_view ShapeTree::ToText(ShapeIndex root) {
  text_.Clear();
  open_.clear();
  if (root == kNoShape) return text_.text();
  const auto enter = [&](ShapeIndex index) {
    const Shape& shape = shapes_[static_cast<std::size_t>(index)];
    AppendIndent(text_, open_.size());
    AppendElement(shape);
    if (shape.childCount > 0) open_.push_back({&shape, 0});
  };
  enter(root);
  while (!open_.empty()) {
    Open& top = open_.back();
    if (top.next > 0) text_ += u'\n';
    if (top.next < top.shape->childCount) {
      enter(ChildOf(*top.shape, top.next++));
    } else {
      open_.pop_back();
      AppendIndent(text_, open_.size());
      text_ += u"</tag>";
    }
  }
  return text_.text();
}

}  // namespace ORKBASE
