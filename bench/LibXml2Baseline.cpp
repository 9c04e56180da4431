// libxml2 as a straightforward program uses it.
#include "LibXml2Baseline.h"

#include "SampleRules.h"
#include "foundation/Text.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <map>

namespace bench {
namespace {

const xmlChar* Xml(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

std::string Plain(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

/// The next element in document order, or null.
xmlNodePtr NextElement(xmlNodePtr node) {
  if (xmlNodePtr child = xmlFirstElementChild(node)) return child;
  while (node && node->type == XML_ELEMENT_NODE) {
    if (xmlNodePtr next = xmlNextElementSibling(node)) return next;
    node = node->parent;
  }
  return nullptr;
}

}  // namespace

TreeToBuild::TreeToBuild(const std::u16string& document) {
  const std::string utf8 = ORKBASE::WideToUtf8(document);
  xmlDocPtr doc = xmlReadDoc(Xml(utf8), nullptr, nullptr, XML_PARSE_HUGE);
  std::map<xmlNodePtr, std::size_t> indices;
  for (xmlNodePtr node = xmlDocGetRootElement(doc); node; node = NextElement(node)) {
    const auto parent = indices.find(node->parent);
    Element element{parent == indices.end() ? elements_.size() : parent->second, {}};
    for (xmlAttrPtr attr = node->properties; attr; attr = attr->next) {
      xmlChar* value = xmlNodeListGetString(doc, attr->children, 1);
      element.attributes.emplace_back(Plain(attr->name), value ? Plain(value) : "");
      xmlFree(value);
    }
    indices.emplace(node, elements_.size());
    elements_.push_back(std::move(element));
  }
  xmlFreeDoc(doc);
  if (BuildAndDump() != document) GiveUp("libxml2 builds another document than " + utf8);
}

std::u16string TreeToBuild::BuildAndDump() const {
  xmlDocPtr doc = xmlNewDoc(nullptr);
  std::vector<xmlNodePtr> nodes;
  nodes.reserve(elements_.size());
  for (const Element& element : elements_) {
    xmlNodePtr node = xmlNewNode(nullptr, reinterpret_cast<const xmlChar*>("tag"));
    for (const auto& [name, value] : element.attributes) xmlSetProp(node, Xml(name), Xml(value));
    if (nodes.empty()) {
      xmlDocSetRootElement(doc, node);
    } else {
      xmlAddChild(nodes[element.parent], node);
    }
    nodes.push_back(node);
  }
  xmlBufferPtr buffer = xmlBufferCreate();
  xmlNodeDump(buffer, doc, nodes.front(), 0, 1);
  std::u16string out = ORKBASE::Utf8ToWide({reinterpret_cast<const char*>(xmlBufferContent(buffer)),
                                            static_cast<std::size_t>(xmlBufferLength(buffer))});
  xmlBufferFree(buffer);
  xmlFreeDoc(doc);
  return out;
}

std::u16string ParseSetAndDump(std::u16string_view document) {
  const std::string utf8 = ORKBASE::WideToUtf8(document);
  xmlDocPtr doc = xmlParseDoc(Xml(utf8));
  if (!doc) GiveUp("libxml2 does not parse " + utf8);
  for (xmlNodePtr node = xmlDocGetRootElement(doc); node; node = NextElement(node)) {
    xmlSetProp(node, reinterpret_cast<const xmlChar*>("text"),
               reinterpret_cast<const xmlChar*>("Orders.Amount"));
  }
  xmlChar* text = nullptr;
  int size = 0;
  xmlDocDumpMemoryEnc(doc, &text, &size, "UTF-8");
  std::u16string out =
      ORKBASE::Utf8ToWide({reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)});
  xmlFree(text);
  xmlFreeDoc(doc);
  return out;
}

}  // namespace bench
