// Reading a document and writing it as one line.
#include "CompactTree.h"

#include "foundation/Text.h"
#include "xml/XmlDoc.h"

using namespace ORKBASE;

namespace {

void Append(std::string& out, const MxXmlNode& node, CompactDetail detail) {
  out += WideToUtf8(node.GetAttr(u"primary"));
  const std::u16string type = node.GetAttr(u"semanticType");
  if (detail == CompactDetail::kTypes && !type.empty()) out += ":" + WideToUtf8(type);
  if (node.GetAttr(u"inBrackets") == u"1") out += "()";
  const char* before = "{";
  for (MxXmlNode child = node.FirstChild(); child; child = child.NextSibling()) {
    out += before;
    Append(out, child, detail);
    before = " ";
  }
  if (node.FirstChild()) out += "}";
}

}  // namespace

std::string CompactTree(std::u16string_view document, CompactDetail detail) {
  MxXmlDoc doc;
  if (doc.Load(document) != 0) return "not XML";
  std::string out;
  Append(out, doc.Root(), detail);
  return out;
}
