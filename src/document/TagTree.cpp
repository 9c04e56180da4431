// The arena tree of expression documents.
#include "document/TagTree.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <utility>

#include "foundation/Text.h"
#include "xml/XmlText.h"

namespace ORKBASE {
namespace {

constexpr std::u16string_view kDeclaration = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// Whether the attribute is called by its name of `kAttrNames` and nothing else.
bool HasOwnName(const TagAttr& attr) noexcept {
  return attr.plain && attr.id != Attr::kOther;
}

void Append(TagNode& node, TagAttr& attr) noexcept {
  (node.lastAttr ? node.lastAttr->next : node.attrs) = &attr;
  node.lastAttr = &attr;
}

TagNode* SkipRaw(TagNode* node, TagNode* TagNode::*step) noexcept {
  while (node && !node->isElement) node = node->*step;
  return node;
}

void Append(TagNode& parent, TagNode& child) noexcept {
  child.parent = &parent;
  child.previous = parent.last;
  child.next = nullptr;
  (parent.last ? parent.last->next : parent.first) = &child;
  parent.last = &child;
}

void OpenElement(TextWriter& out, const TagNode& node) {
  out += u'<';
  out += node.text;
  for (const TagAttr* attr = node.attrs; attr; attr = attr->next) {
    if (HasOwnName(*attr)) {
      out += OpeningOf(attr->id);
      AppendAttributeValue(out, attr->value, XmlCharacters::kAsTheyAre);
      out += u'"';
    } else {
      AppendAttribute(out, attr->Name(), attr->value, XmlCharacters::kAsTheyAre);
    }
  }
  out += node.first ? std::u16string_view(u">") : std::u16string_view(u"/>");
}

void CloseElement(TextWriter& out, const TagNode& node) {
  out += u"</";
  out += node.text;
  out += u'>';
}

}  // namespace

std::u16string_view TagAttr::Name() const noexcept {
  return HasOwnName(*this) ? kAttrNames[static_cast<std::size_t>(id)]
                           : static_cast<const ForeignAttr*>(this)->name;
}

// --- Tag -----------------------------------------------------------------------------------------

const TagAttr* Tag::Find(Attr attr) const noexcept {
  if (!node_) return nullptr;
  const TagAttr* found = node_->attrs;
  while (found && found->id != attr) found = found->next;
  return found;
}

TagAttr* Tag::FindPlain(Attr attr) const noexcept {
  if (!node_) return nullptr;
  TagAttr* found = node_->attrs;
  while (found && !(found->id == attr && found->plain)) found = found->next;
  return found;
}

std::u16string_view Tag::Get(Attr attr) const noexcept {
  const TagAttr* found = Find(attr);
  return found ? found->value : std::u16string_view{};
}

std::int32_t Tag::GetInt(Attr attr) const noexcept {
  return ReadInt(Get(attr));
}

std::u16string_view Tag::GetPlain(Attr attr) const noexcept {
  const TagAttr* found = FindPlain(attr);
  return found ? found->value : std::u16string_view{};
}

void Tag::Set(Attr attr, std::u16string_view value) {
  if (!node_) return;
  const std::u16string_view stored = tree_->Store(value);
  if (TagAttr* found = FindPlain(attr)) {
    found->value = stored;
  } else {
    tree_->AppendAttr(*this, attr, stored);
  }
}

void Tag::Set(Attr attr, std::int32_t value) {
  Set(attr, Decimal(value));
}

Tag Tag::Parent() const noexcept {
  return {tree_, node_ ? node_->parent : nullptr};
}

Tag Tag::FirstChild() const noexcept {
  return {tree_, node_ ? SkipRaw(node_->first, &TagNode::next) : nullptr};
}

Tag Tag::LastChild() const noexcept {
  return {tree_, node_ ? SkipRaw(node_->last, &TagNode::previous) : nullptr};
}

Tag Tag::Next() const noexcept {
  return {tree_, node_ ? SkipRaw(node_->next, &TagNode::next) : nullptr};
}

Tag Tag::Previous() const noexcept {
  return {tree_, node_ ? SkipRaw(node_->previous, &TagNode::previous) : nullptr};
}

Tag Tag::ChildAt(std::int32_t index) const noexcept {
  if (index < 0) return {};
  Tag child = FirstChild();
  while (child && index-- > 0) child = child.Next();
  return child;
}

std::int32_t Tag::ChildCount() const noexcept {
  std::int32_t count = 0;
  for (Tag child = FirstChild(); child; child = child.Next()) ++count;
  return count;
}

void Tag::AddChild(Tag child) {
  if (!node_ || !child) return;
  child.Unlink();
  Append(*node_, *child.node_);
}

void Tag::Unlink() {
  if (!node_) return;
  TagNode& node = *node_;
  if (node.parent) {
    (node.previous ? node.previous->next : node.parent->first) = node.next;
    (node.next ? node.next->previous : node.parent->last) = node.previous;
  } else if (tree_->root_ == node_) {
    tree_->root_ = nullptr;
  }
  node.parent = node.previous = node.next = nullptr;
}

void Tag::ReplaceBy(Tag other) {
  if (!node_ || !other || other == *this) return;
  other.Unlink();
  TagNode& mine = *node_;
  TagNode& its = *other.node_;
  its.parent = mine.parent;
  its.previous = mine.previous;
  its.next = mine.next;
  if (mine.parent) {
    (mine.previous ? mine.previous->next : mine.parent->first) = &its;
    (mine.next ? mine.next->previous : mine.parent->last) = &its;
  } else if (tree_->root_ == node_) {
    tree_->root_ = &its;
  }
  mine.parent = mine.previous = mine.next = nullptr;
}

Tag Tag::DeepCopy() const {
  if (!node_) return {};
  const auto copyOne = [this](const TagNode& from) {
    auto* to = tree_->arena_.Make<TagNode>(from.text, from.isElement, from.marks);
    tree_->made_ += from.isElement;
    for (const TagAttr* attr = from.attrs; attr; attr = attr->next) {
      HasOwnName(*attr)
          ? tree_->AppendAttr({tree_, to}, attr->id, attr->value)
          : tree_->AppendForeignAttr({tree_, to}, attr->id, attr->Name(), attr->plain, attr->value);
    }
    return to;
  };
  TagNode* const copy = copyOne(*node_);
  const TagNode* from = node_;
  TagNode* to = copy;
  for (;;) {
    if (from->first) {
      from = from->first;
    } else {
      while (from != node_ && !from->next) {
        from = from->parent;
        to = to->parent;
      }
      if (from == node_) return {tree_, copy};
      from = from->next;
      to = to->parent;
    }
    TagNode* const child = copyOne(*from);
    Append(*to, *child);
    to = child;
  }
}

Tag Tag::NextInDocument(Tag top) const noexcept {
  const Tag child = FirstChild();
  return child ? child : NextBehind(top);
}

Tag Tag::NextBehind(Tag top) const noexcept {
  for (Tag at = *this; at && at != top; at = at.Parent()) {
    if (const Tag next = at.Next()) return next;
  }
  return {};
}

// --- TagTree -------------------------------------------------------------------------------------

void TagTree::Clear() {
  arena_.Clear();
  root_ = nullptr;
  made_ = 0;
  unreadable_ = false;
  prolog.clear();
  epilog.clear();
}

Tag TagTree::NewTag(std::u16string_view name) {
  ++made_;
  return {this, arena_.Make<TagNode>(name == u"tag" ? u"tag" : Store(name))};
}

void TagTree::AppendRaw(Tag parent, std::u16string_view raw) {
  AppendKeptRaw(parent, Store(raw));
}

void TagTree::AppendKeptRaw(Tag parent, std::u16string_view raw) {
  Append(*parent.node(), *arena_.Make<TagNode>(raw, false));
}

void TagTree::AppendAttr(Tag tag, Attr id, std::u16string_view value) {
  Append(*tag.node(), *arena_.Make<TagAttr>(nullptr, value, id));
}

void TagTree::AppendForeignAttr(Tag tag, Attr id, std::u16string_view name, bool plain,
                                std::u16string_view value) {
  Append(*tag.node(), *arena_.Make<ForeignAttr>(TagAttr{nullptr, value, id, plain}, name));
}

char16_t* TagTree::Allocate(std::size_t length) {
  return static_cast<char16_t*>(arena_.Allocate(length * sizeof(char16_t), alignof(char16_t)));
}

std::u16string_view TagTree::Store(std::u16string_view text) {
  text = UpToZero(text);
  if (text.empty()) return {};
  char16_t* const out = Allocate(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    out[i] = unit;
    if (U16_IS_SURROGATE(unit)) {
      const bool pair = U16_IS_LEAD(unit) && i + 1 < text.size() && U16_IS_TRAIL(text[i + 1]);
      if (pair) {
        out[i + 1] = text[i + 1];
        ++i;
      } else {
        out[i] = 0xFFFD;
      }
    } else if (!IsXmlUnit(unit)) {
      unreadable_ = true;
    }
  }
  return {out, text.size()};
}

bool TagTree::ReadsBack() noexcept {
  if (!unreadable_) return true;
  for (Tag tag = Root(); tag; tag = tag.NextInDocument(Root())) {
    for (const TagAttr* attr = tag.node()->attrs; attr; attr = attr->next) {
      if (!std::all_of(attr->value.begin(), attr->value.end(), IsXmlUnit)) return false;
    }
  }
  return true;
}

std::size_t TagTree::CountElements() noexcept {
  std::size_t count = 0;
  for (Tag tag = Root(); tag; tag = tag.NextInDocument(Root())) ++count;
  return count;
}

std::u16string_view TagTree::ToText() {
  TextWriter& out = text_;
  out.Clear();
  if (!root_) return out.text();
  out += prolog.empty() ? kDeclaration : std::u16string_view(prolog);
  const TagNode* node = root_;
  for (;;) {
    if (node->isElement) {
      OpenElement(out, *node);
    } else {
      out += node->text;
    }
    if (node->first) {
      node = node->first;
      continue;
    }
    while (node != root_ && !node->next) {
      node = node->parent;
      CloseElement(out, *node);
    }
    if (node == root_) break;
    node = node->next;
  }
  out += u'\n';
  out += epilog;
  return out.text();
}

}  // namespace ORKBASE
