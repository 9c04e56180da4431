// Documents through libxml2: the dictionary documents, CAX documents, and expression documents of
// an unusual form. Expression documents of the usual form live in a `TagTree`.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// NOLINTBEGIN(bugprone-reserved-identifier): libxml2's own names
struct _xmlDoc;
struct _xmlNode;
struct _xmlXPathObject;
// NOLINTEND(bugprone-reserved-identifier)

namespace ORKBASE {

class MxXmlDoc;

/// A place in a document: a value of two pointers that owns nothing, or the null node. Reading the
/// null node gives empty texts, null nodes and 0; writing to it does nothing.
class MxXmlNode {
 public:
  MxXmlNode() = default;
  MxXmlNode(MxXmlDoc* owner, _xmlNode* node) : owner_(owner), node_(node) {}

  explicit operator bool() const noexcept { return node_ != nullptr; }

  /// 1 or 0: what tells an empty attribute from an absent one.
  std::int32_t HasAttr(std::u16string_view name) const;
  std::u16string GetAttr(std::u16string_view name) const;
  void SetAttr(std::u16string_view name, std::u16string_view value);
  void SetAttr(std::u16string_view name, std::int32_t value);
  void SetAttr(std::string_view name, std::int32_t value);

  void AddChild(MxXmlNode child);
  /// Element children only; a bad index gives the null node.
  MxXmlNode ChildAt(std::int32_t index) const;
  MxXmlNode FirstChild() const;
  MxXmlNode NextSibling() const;
  /// The null node above the root.
  MxXmlNode Parent() const;

  /// The element alone, indented, without an XML declaration; characters beyond ASCII stand as
  /// references. What the host has set in libxml2 changes nothing.
  std::u16string ToText() const;

  _xmlNode* get() const noexcept { return node_; }

 private:
  MxXmlDoc* owner_ = nullptr;
  _xmlNode* node_ = nullptr;
};

/// The nodes that a query found. Must not outlive the tree.
class MxXPathResult {
 public:
  MxXPathResult() = default;
  MxXPathResult(MxXmlDoc* owner, _xmlXPathObject* object);

  std::int32_t Count() const noexcept;
  MxXmlNode Item(std::int32_t index) const;

 private:
  std::shared_ptr<_xmlXPathObject> object_;
  MxXmlDoc* owner_ = nullptr;
};

/// Owns one tree at most, and the nodes made for it that were not yet added.
class MxXmlDoc {
 public:
  MxXmlDoc() = default;
  MxXmlDoc(const MxXmlDoc&) = delete;
  MxXmlDoc& operator=(const MxXmlDoc&) = delete;
  ~MxXmlDoc();

  /// 0, or 1 with the error pair set when the text (up to its first zero) does not parse; the
  /// former tree is gone in either case. A success leaves an earlier error.
  std::int32_t Load(std::u16string_view text);
  void Free();

  MxXmlNode Root();
  /// A new element; the first of an empty document becomes its root, every other stands alone.
  MxXmlNode NewNode(std::u16string_view name);
  /// The first node of an XPath query, from `context` or from the document.
  MxXmlNode Find(std::u16string_view path, const MxXmlNode* context = nullptr);
  MxXPathResult FindAll(std::u16string_view path, const MxXmlNode* context = nullptr);

  /// With an XML declaration, not indented. Empty without a tree.
  std::u16string ToText() const;

  _xmlDoc* get() const noexcept { return doc_; }

  std::int32_t errNumber = 0;
  std::u16string errDescription;

 private:
  _xmlDoc* doc_ = nullptr;
  std::vector<_xmlNode*> made_;  // to be freed where they still stand alone
};

/// kept: what `MxXmlDoc::Load` reports, in English, blank and line feed included.
inline constexpr std::u16string_view kXmlLoadFailure = u"Document not parsed successfully. \n";

}  // namespace ORKBASE
