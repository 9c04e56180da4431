#include "document/TagComparison.h"

#include <cstddef>

namespace ORKBASE {
namespace {

bool TellsSpelling(const TagAttr& attr) noexcept {
  return attr.plain && (attr.id == Attr::kOutDesc || attr.id == Attr::kContent);
}

std::size_t CountAttributes(const TagNode& node) noexcept {
  std::size_t count = 0;
  for (const TagAttr* attr = node.attrs; attr; attr = attr->next) {
    count += TellsSpelling(*attr) ? 0 : 1;
  }
  return count;
}

bool HasAttribute(const TagNode& node, const TagAttr& asked) noexcept {
  for (const TagAttr* attr = node.attrs; attr; attr = attr->next) {
    if (attr->Name() == asked.Name()) return attr->value == asked.value;
  }
  return false;
}

/// An element has each attribute once, so equal counts make one direction enough.
bool AreSameElements(const TagNode& a, const TagNode& b) noexcept {
  if (a.text != b.text || CountAttributes(a) != CountAttributes(b)) return false;
  for (const TagAttr* attr = b.attrs; attr; attr = attr->next) {
    if (!TellsSpelling(*attr) && !HasAttribute(a, *attr)) return false;
  }
  return true;
}

}  // namespace

bool AreOfOneRule(Tag a, Tag b) {
  if (!a || !b) return !a && !b;
  for (const Tag top = a;;) {
    if (!AreSameElements(*a.node(), *b.node())) return false;
    Tag nextOfA = a.FirstChild();
    Tag nextOfB = b.FirstChild();
    while (!nextOfA && !nextOfB) {
      if (a == top) return true;
      nextOfA = a.Next();
      nextOfB = b.Next();
      a = a.Parent();
      b = b.Parent();
    }
    if (!nextOfA || !nextOfB) return false;
    a = nextOfA;
    b = nextOfB;
  }
}

}  // namespace ORKBASE
