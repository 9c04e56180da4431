// Reading a document through libxml2 and writing it as one line.
#include "CompactTree.h"

#include "foundation/Text.h"
#include "xml/XmlDoc.h"

using namespace ORKBASE;

namespace {

void Append(std::string& out, const MxXmlNode& node, CompactDetail detail) {
  out += WideToUtf8(node.GetAttr(u"primary"));
  if (detail == CompactDetail::kTypes && node.HasAttr(u"semanticType") != 0) {
    out += ":" + WideToUtf8(node.GetAttr(u"semanticType"));
  }
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
