// The thin layer over libxml2's trees.
#include "xml/XmlDoc.h"

#include "foundation/Text.h"
#include "xml/XmlParser.h"
#include "xml/XmlText.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <algorithm>

namespace ORKBASE {
namespace {

const xmlChar* Xml(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

std::string_view View(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

struct XmlTextDeleter {
  void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};
using XmlTextPtr = std::unique_ptr<xmlChar, XmlTextDeleter>;

struct XPathContextDeleter {
  void operator()(xmlXPathContextPtr context) const noexcept { xmlXPathFreeContext(context); }
};

void IgnoreXPathError(void* /*data*/, xmlErrorPtr /*error*/) {}

std::u16string AttrValue(xmlNodePtr node, const xmlChar* name) {
  const XmlTextPtr value(xmlGetProp(node, name));
  return value ? Utf8ToWide(View(value.get())) : std::u16string{};
}

xmlXPathObjectPtr Evaluate(xmlDocPtr doc, std::u16string_view path, const MxXmlNode* context) {
  const KeepLastXmlError keep;
  const std::unique_ptr<xmlXPathContext, XPathContextDeleter> query(xmlXPathNewContext(doc));
  if (!query) return nullptr;
  query->error = IgnoreXPathError;
  if (context && *context) query->node = context->get();
  return xmlXPathEvalExpression(Xml(WideToUtf8(path)), query.get());
}

/// True for a tree of elements with attributes and nothing else, the only kind that we write.
bool IsPlain(xmlNodePtr node) {
  if (node->type != XML_ELEMENT_NODE || node->ns || node->nsDef) return false;
  xmlAttrPtr attr = node->properties;
  while (attr && !attr->ns) attr = attr->next;
  return !attr;
}

xmlNodePtr NextInTree(xmlNodePtr node, xmlNodePtr top) {
  if (node->children) return node->children;
  while (node != top && !node->next) node = node->parent;
  return node == top ? nullptr : node->next;
}

bool IsPlainTree(xmlNodePtr top) {
  for (xmlNodePtr node = top; node; node = NextInTree(node, top)) {
    if (!IsPlain(node)) return false;
  }
  return true;
}

void AppendOpening(TextWriter& out, xmlNodePtr node, std::size_t depth) {
  AppendIndent(out, depth);
  out += u'<';
  out += Utf8ToWide(View(node->name));
  for (xmlAttrPtr attr = node->properties; attr; attr = attr->next) {
    AppendAttribute(out, Utf8ToWide(View(attr->name)), AttrValue(node, attr->name),
                    XmlCharacters::kAsReferences);
  }
  out += node->children ? u">\n" : u"/>";
}

std::u16string PlainTreeText(xmlNodePtr top) {
  TextWriter out;
  std::size_t depth = 0;
  xmlNodePtr node = top;
  for (;;) {
    AppendOpening(out, node, depth);
    if (node->children) {
      node = node->children;
      ++depth;
      continue;
    }
    while (node != top && !node->next) {
      node = node->parent;
      out += u'\n';
      AppendIndent(out, --depth);
      out += u"</";
      out += Utf8ToWide(View(node->name));
      out += u'>';
    }
    if (node == top) return std::u16string(out.text());
    out += u'\n';
    node = node->next;
  }
}

}  // namespace

// --- MxXmlNode -----------------------------------------------------------------------------------

std::int32_t MxXmlNode::HasAttr(std::u16string_view name) const {
  return node_ && xmlHasProp(node_, Xml(WideToUtf8(name))) ? 1 : 0;
}

std::u16string MxXmlNode::GetAttr(std::u16string_view name) const {
  if (!node_) return {};
  const std::string wanted = WideToUtf8(name);
  for (xmlAttrPtr attr = node_->properties; attr; attr = attr->next) {
    if (xmlStrcmp(attr->name, Xml(wanted)) == 0) return AttrValue(node_, Xml(wanted));
  }
  return {};
}

void MxXmlNode::SetAttr(std::u16string_view name, std::u16string_view value) {
  if (node_) xmlSetProp(node_, Xml(WideToUtf8(name)), Xml(WideToUtf8(value)));
}

void MxXmlNode::SetAttr(std::u16string_view name, std::int32_t value) {
  SetAttr(name, Decimal(value));
}

void MxXmlNode::SetAttr(std::string_view name, std::int32_t value) {
  SetAttr(Utf8ToWide(name), value);
}

void MxXmlNode::AddChild(MxXmlNode child) {
  if (!node_ || !child) return;
  xmlUnlinkNode(child.node_);
  xmlAddChild(node_, child.node_);
}

MxXmlNode MxXmlNode::ChildAt(std::int32_t index) const {
  if (index < 0) return {};
  MxXmlNode child = FirstChild();
  while (child && index-- > 0) child = child.NextSibling();
  return child;
}

MxXmlNode MxXmlNode::FirstChild() const {
  return {owner_, node_ ? xmlFirstElementChild(node_) : nullptr};
}

MxXmlNode MxXmlNode::NextSibling() const {
  return {owner_, node_ ? xmlNextElementSibling(node_) : nullptr};
}

MxXmlNode MxXmlNode::Parent() const {
  if (!node_ || !node_->parent || node_->parent->type != XML_ELEMENT_NODE) return {};
  return {owner_, node_->parent};
}

std::u16string MxXmlNode::ToText() const {
  if (!node_) return {};
  if (IsPlainTree(node_)) return PlainTreeText(node_);
  xmlBufferPtr buffer = xmlBufferCreate();
  xmlNodeDump(buffer, node_->doc, node_, 0, 1);
  std::u16string out = Utf8ToWide(View(xmlBufferContent(buffer)));
  xmlBufferFree(buffer);
  return out;
}

// --- MxXPathResult -------------------------------------------------------------------------------

MxXPathResult::MxXPathResult(MxXmlDoc* owner, _xmlXPathObject* object)
    : object_(object, xmlXPathFreeObject), owner_(owner) {}

std::int32_t MxXPathResult::Count() const noexcept {
  return object_ && object_->nodesetval ? object_->nodesetval->nodeNr : 0;
}

MxXmlNode MxXPathResult::Item(std::int32_t index) const {
  if (index < 0 || index >= Count()) return {};
  return {owner_, object_->nodesetval->nodeTab[index]};
}

// --- MxXmlDoc ------------------------------------------------------------------------------------

MxXmlDoc::~MxXmlDoc() {
  Free();
}

std::int32_t MxXmlDoc::Load(std::u16string_view text) {
  Free();
  doc_ = ParseXml(WideToUtf8(text)).release();
  if (doc_) return 0;
  errNumber = 1;
  errDescription = kXmlLoadFailure;
  return 1;
}

void MxXmlDoc::Free() {
  // A node that was added goes with the tree; its top is then no longer itself.
  std::erase_if(made_, [](xmlNodePtr node) { return node->parent != nullptr; });
  for (xmlNodePtr node : made_) xmlFreeNode(node);
  made_.clear();
  xmlFreeDoc(doc_);
  doc_ = nullptr;
}

MxXmlNode MxXmlDoc::Root() {
  return {this, doc_ ? xmlDocGetRootElement(doc_) : nullptr};
}

MxXmlNode MxXmlDoc::NewNode(std::u16string_view name) {
  const bool first = !doc_;
  if (first) doc_ = xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"));
  xmlNodePtr node = xmlNewDocNode(doc_, nullptr, Xml(WideToUtf8(name)), nullptr);
  if (first) {
    xmlDocSetRootElement(doc_, node);
  } else {
    made_.push_back(node);
  }
  return {this, node};
}

MxXmlNode MxXmlDoc::Find(std::u16string_view path, const MxXmlNode* context) {
  return FindAll(path, context).Item(0);
}

MxXPathResult MxXmlDoc::FindAll(std::u16string_view path, const MxXmlNode* context) {
  if (!doc_) return {};
  MxXPathResult result(this, Evaluate(doc_, path, context));
  return result.Count() > 0 ? result : MxXPathResult{};
}

std::u16string MxXmlDoc::ToText() const {
  if (!doc_) return {};
  xmlChar* text = nullptr;
  int size = 0;
  xmlDocDumpMemoryEnc(doc_, &text, &size, "UTF-8");
  const XmlTextPtr owned(text);
  return text ? Utf8ToWide(View(text)) : std::u16string{};
}

}  // namespace ORKBASE
