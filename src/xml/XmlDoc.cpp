// Trees of small documents. No operation recurses over their depth.
#include "xml/XmlDoc.h"

#include "foundation/Text.h"
#include "foundation/TextWriter.h"
#include "xml/XmlReader.h"
#include "xml/XmlText.h"

#include <utility>
#include <vector>

namespace ORKBASE {

namespace {

/// As a document could hold it.
std::u16string Fit(std::u16string_view text) {
  return Utf8ToWide(WideToUtf8(text));
}

void Unlink(XmlNode& node) noexcept {
  if (!node.parent) return;
  (node.previous ? node.previous->next : node.parent->first) = node.next;
  (node.next ? node.next->previous : node.parent->last) = node.previous;
  node.parent = node.previous = node.next = nullptr;
}

void Append(XmlNode& parent, XmlNode& child) noexcept {
  child.parent = &parent;
  child.previous = parent.last;
  (parent.last ? parent.last->next : parent.first) = &child;
  parent.last = &child;
}

/// The next in document order below `top`, null behind the last.
XmlNode* NextInTree(XmlNode* node, const XmlNode* top) noexcept {
  if (node->first) return node->first;
  while (node != top && !node->next) node = node->parent;
  return node == top ? nullptr : node->next;
}

void AppendOpening(TextWriter& out, const XmlNode& node, std::size_t depth) {
  AppendIndent(out, depth);
  out += u'<';
  out += node.name;
  for (const auto& [name, value] : node.attributes) {
    AppendAttribute(out, name, value, XmlCharacters::kAsReferences);
  }
  out += node.first ? u">\n" : u"/>";
}

void AppendClosing(TextWriter& out, const XmlNode& node, std::size_t depth) {
  out += u'\n';
  AppendIndent(out, depth);
  out += u"</";
  out += node.name;
  out += u'>';
}

/// Whether the names lead to the node from `top` (null: the document), or from anywhere.
bool IsAt(const XmlNode* node, const std::vector<std::u16string_view>& names, const XmlNode* top,
          bool anywhere) noexcept {
  if (names.empty()) return false;
  for (auto name = names.rbegin(); name != names.rend(); ++name, node = node->parent) {
    if (!node || node == top || node->inNamespace || node->name != *name) return false;
  }
  return anywhere || node == top;
}

}  // namespace

// --- MxXmlNode -----------------------------------------------------------------------------------

std::u16string* MxXmlNode::Find(std::u16string_view name) const noexcept {
  if (!node_) return nullptr;
  for (auto& [itsName, value] : node_->attributes) {
    if (itsName == name) return &value;
  }
  return nullptr;
}

std::u16string MxXmlNode::GetAttr(std::u16string_view name) const {
  const std::u16string* const value = Find(name);
  return value ? *value : std::u16string{};
}

void MxXmlNode::SetAttr(std::u16string_view name, std::u16string_view value) {
  if (!node_) return;
  if (std::u16string* const former = Find(name)) {
    *former = Fit(value);
  } else {
    node_->attributes.emplace_back(name, Fit(value));
  }
}

void MxXmlNode::SetAttr(std::u16string_view name, std::int32_t value) {
  SetAttr(name, Decimal(value));
}

void MxXmlNode::AddChild(MxXmlNode child) {
  if (!node_ || !child) return;
  Unlink(*child.node_);
  Append(*node_, *child.node_);
}

MxXmlNode MxXmlNode::FirstChild() const {
  return MxXmlNode(node_ ? node_->first : nullptr);
}

MxXmlNode MxXmlNode::NextSibling() const {
  return MxXmlNode(node_ ? node_->next : nullptr);
}

std::u16string MxXmlNode::ToText() const {
  if (!node_) return {};
  TextWriter out;
  std::size_t depth = 0;
  const XmlNode* node = node_;
  for (;;) {
    AppendOpening(out, *node, depth);
    if (node->first) {
      node = node->first;
      ++depth;
      continue;
    }
    while (node != node_ && !node->next) {
      node = node->parent;
      AppendClosing(out, *node, --depth);
    }
    if (node == node_) return std::u16string(out.text());
    out += u'\n';
    node = node->next;
  }
}

// --- MxXmlDoc ------------------------------------------------------------------------------------

/// Makes the nodes of a document that is read.
class MxXmlDoc::Maker : public XmlVisitor {
 public:
  explicit Maker(MxXmlDoc& doc) : doc_(doc) {}

  void Open(const XmlElement& element) override {
    const MxXmlNode made = doc_.NewNode(Utf8ToWide(element.name.local));
    made.get()->inNamespace = element.name.inNamespace;
    for (const XmlAttribute& attribute : element.attributes) {
      made.get()->attributes.emplace_back(Utf8ToWide(attribute.name.local),
                                          Utf8ToWide(attribute.value));
    }
    open_.AddChild(made);
    open_ = made;
  }
  void Close() override { open_ = MxXmlNode(open_.get()->parent); }

 private:
  MxXmlDoc& doc_;
  MxXmlNode open_;
};

std::int32_t MxXmlDoc::Load(std::u16string_view text) {
  Free();
  MxXmlDoc read;
  Maker maker(read);
  if (!XmlReader({}).Read(WideToUtf8(text), maker)) {
    errNumber = 1;
    errDescription = kXmlLoadFailure;
    return 1;
  }
  nodes_ = std::move(read.nodes_);
  root_ = read.root_;
  return 0;
}

void MxXmlDoc::Free() {
  nodes_.clear();
  root_ = nullptr;
}

MxXmlNode MxXmlDoc::Root() const {
  return MxXmlNode(root_);
}

MxXmlNode MxXmlDoc::NewNode(std::u16string_view name) {
  XmlNode& made = nodes_.emplace_back();
  made.name = name;
  if (!root_) root_ = &made;
  return MxXmlNode(&made);
}

MxXmlNode MxXmlDoc::Find(std::u16string_view path, const MxXmlNode* context) const {
  const bool anywhere = path.starts_with(u"//");
  const auto names = SplitText(anywhere ? path.substr(2) : path, u"/");
  const XmlNode* const top = context && !anywhere ? context->get() : nullptr;
  for (XmlNode* node = top ? top->first : root_; node; node = NextInTree(node, top)) {
    if (IsAt(node, names, top, anywhere)) return MxXmlNode(node);
  }
  return {};
}

}  // namespace ORKBASE
