// Small documents as trees of elements and attributes: the dictionary documents, which are made,
// and CAX documents, which are read. Expression documents live in a `TagTree`.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ORKBASE {

/// One element.
struct XmlNode {
  std::u16string name;  ///< without prefix
  bool inNamespace = false;
  std::vector<std::pair<std::u16string, std::u16string>> attributes;  ///< local name and value
  XmlNode* parent = nullptr;
  XmlNode* previous = nullptr;
  XmlNode* next = nullptr;
  XmlNode* first = nullptr;
  XmlNode* last = nullptr;
};

/// A place in a document: a value of one pointer that owns nothing, or the null node. Reading the
/// null node gives empty texts and null nodes; writing to it does nothing.
class MxXmlNode {
 public:
  MxXmlNode() = default;
  explicit MxXmlNode(XmlNode* node) : node_(node) {}

  explicit operator bool() const noexcept { return node_ != nullptr; }
  friend bool operator==(const MxXmlNode& a, const MxXmlNode& b) noexcept {
    return a.node_ == b.node_;
  }

  /// By its local name, empty for an absent attribute as for an empty one.
  std::u16string GetAttr(std::u16string_view name) const;
  /// Replaces the value, or appends the attribute. The text ends at its first zero, lone surrogates
  /// become U+FFFD.
  void SetAttr(std::u16string_view name, std::u16string_view value);
  void SetAttr(std::u16string_view name, std::int32_t value);

  /// Takes `child`, a node of the same document, out of its place and appends it here.
  void AddChild(MxXmlNode child);
  MxXmlNode FirstChild() const;
  MxXmlNode NextSibling() const;

  /// The element and what is in it, indented, without an XML declaration; characters beyond ASCII
  /// stand as references.
  std::u16string ToText() const;

  XmlNode* get() const noexcept { return node_; }

 private:
  std::u16string* Find(std::u16string_view name) const noexcept;

  XmlNode* node_ = nullptr;
};

/// Owns one tree at most, and the nodes made for it that were not yet added.
class MxXmlDoc {
 public:
  MxXmlDoc() = default;
  MxXmlDoc(const MxXmlDoc&) = delete;
  MxXmlDoc& operator=(const MxXmlDoc&) = delete;

  /// 0, or 1 with the error pair set when the text (up to its first zero) does not parse; the
  /// former tree is gone in either case. A success leaves an earlier error. Elements and attributes
  /// are all that is taken in.
  std::int32_t Load(std::u16string_view text);
  void Free();

  MxXmlNode Root() const;
  /// A new element; the first of an empty document becomes its root, every other stands alone.
  MxXmlNode NewNode(std::u16string_view name);
  /// The first element, in document order, at a path of names: `//a/b` is a `b` in an `a` anywhere,
  /// `a/b` begins among the children of `context` (without one: at the root). No name finds an
  /// element in a namespace.
  MxXmlNode Find(std::u16string_view path, const MxXmlNode* context = nullptr) const;

  std::int32_t errNumber = 0;
  std::u16string errDescription;

 private:
  class Maker;

  std::deque<XmlNode> nodes_;
  XmlNode* root_ = nullptr;
};

/// What `MxXmlDoc::Load` reports.
/// kept: the same in every language, blank and line feed included, since callers compare it.
inline constexpr std::u16string_view kXmlLoadFailure = u"Document not parsed successfully. \n";

}  // namespace ORKBASE
