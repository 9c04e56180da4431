// The tree of an expression document in memory: what translators rebuild and composing walks.
//
// Nodes, attributes and texts lie in one arena, so that making, moving and dropping them costs next
// to nothing, and no operation recurses over the depth of the tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "document/AttrNames.h"
#include "foundation/Arena.h"
#include "foundation/TextWriter.h"

namespace ORKBASE {

class TagTree;

/// One attribute. One inside a namespace is read by its local name, too, but writing goes past it
/// to the plain attribute.
struct TagAttr {
  TagAttr* next = nullptr;
  std::u16string_view value;
  Attr id = Attr::kOther;
  bool plain = true;

  /// As written.
  std::u16string_view Name() const noexcept;
};

/// An attribute that is not called by a name of `kAttrNames` alone.
struct ForeignAttr : TagAttr {
  std::u16string_view name;
};

/// An element, or a run of text (white space between elements, a comment) that is only kept.
struct TagNode {
  std::u16string_view text;  ///< name of the element, or what is written, markup and all
  bool isElement = true;
  std::uint8_t marks = 0;  ///< of the tree's user; copies have them, too
  TagNode* parent = nullptr;
  TagNode* previous = nullptr;
  TagNode* next = nullptr;
  TagNode* first = nullptr;
  TagNode* last = nullptr;
  TagAttr* attrs = nullptr;
  TagAttr* lastAttr = nullptr;
};

/// A place in a tree: a value of two pointers, or the null tag. Reading the null tag gives empty
/// texts and null tags, writing to it does nothing. Valid until the tree is cleared.
class Tag {
 public:
  Tag() = default;
  Tag(TagTree* tree, TagNode* node) : tree_(tree), node_(node) {}

  explicit operator bool() const noexcept { return node_ != nullptr; }
  friend bool operator==(const Tag& a, const Tag& b) noexcept { return a.node_ == b.node_; }

  bool Has(Attr attr) const noexcept { return Find(attr) != nullptr; }
  /// Empty for an absent attribute as for an empty one.
  std::u16string_view Get(Attr attr) const noexcept;
  std::int32_t GetInt(Attr attr) const noexcept;
  /// Of the plain attribute alone, as an XPath query finds it.
  std::u16string_view GetPlain(Attr attr) const noexcept;
  /// Replaces the value, or appends the attribute. The text ends at its first zero, lone surrogates
  /// become U+FFFD.
  void Set(Attr attr, std::u16string_view value);
  void Set(Attr attr, std::int32_t value);

  Tag Parent() const noexcept;
  /// Elements only: runs of text between them are passed over.
  Tag FirstChild() const noexcept;
  Tag LastChild() const noexcept;
  Tag Next() const noexcept;
  Tag Previous() const noexcept;
  Tag ChildAt(std::int32_t index) const noexcept;
  std::int32_t ChildCount() const noexcept;
  bool HasOneChild() const noexcept { return FirstChild() && !FirstChild().Next(); }

  /// Takes `child` out of its place and appends it here; null does nothing.
  void AddChild(Tag child);
  /// Takes the node out of its tree; the white space around it stays.
  void Unlink();
  /// Puts `other` in this node's place, also at the root, and takes this node out.
  void ReplaceBy(Tag other);
  /// A copy of the whole subtree that stands alone.
  Tag DeepCopy() const;
  /// The next element in document order below `top`, or null behind the last.
  Tag NextInDocument(Tag top) const noexcept;
  /// The same, without going below this node.
  Tag NextBehind(Tag top) const noexcept;

  TagTree* tree() const noexcept { return tree_; }
  TagNode* node() const noexcept { return node_; }

 private:
  const TagAttr* Find(Attr attr) const noexcept;
  TagAttr* FindPlain(Attr attr) const noexcept;

  TagTree* tree_ = nullptr;
  TagNode* node_ = nullptr;
};

/// Owns the nodes of one document. Used by one thread at a time; neither copied nor moved, since
/// tags point at it.
class TagTree {
 public:
  TagTree() = default;
  TagTree(const TagTree&) = delete;
  TagTree& operator=(const TagTree&) = delete;

  Tag Root() noexcept { return {this, root_}; }
  void SetRoot(Tag tag) noexcept { root_ = tag.node(); }
  void Clear();

  /// A new element without attributes that stands alone.
  Tag NewTag(std::u16string_view name = u"tag");
  /// A new run of text, behind the children that `parent` has.
  void AppendRaw(Tag parent, std::u16string_view raw);
  /// The same for text that outlives the tree.
  void AppendKeptRaw(Tag parent, std::u16string_view raw);
  /// Appends an attribute of `kAttrNames`. The value outlives the tree or lies in its arena.
  void AppendAttr(Tag tag, Attr id, std::u16string_view value);
  /// Appends any attribute, by the name that is written; `id` is that of the local name.
  void AppendForeignAttr(Tag tag, Attr id, std::u16string_view name, bool plain,
                         std::u16string_view value);

  /// A copy of the text in the arena, fit for a document: see `Tag::Set`.
  std::u16string_view Store(std::u16string_view text);
  /// Room for `length` units in the arena, for a reader that fills it with text known to be fit.
  char16_t* Allocate(std::size_t length);

  /// Whether the document, once written, could be read again: false when a value holds a character
  /// that no XML document may hold.
  bool ReadsBack() noexcept;
  /// How many elements were ever made in this tree.
  std::size_t MadeElements() const noexcept { return made_; }
  /// How many elements hang at the root now.
  std::size_t CountElements() noexcept;

  /// What is written in front of and behind the root; set by the reader of unusual documents.
  std::u16string prolog;
  std::u16string epilog;

  /// The document as text: XML declaration, root, line feed. Empty without a root. Valid until the
  /// next call.
  std::u16string_view ToText();

 private:
  friend class Tag;

  Arena arena_;
  TextWriter text_;
  TagNode* root_ = nullptr;
  std::size_t made_ = 0;
  bool unreadable_ = false;
};

}  // namespace ORKBASE
