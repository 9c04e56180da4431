// The plain composers.
#include "PlainComposer.h"

using namespace ORKBASE;

namespace {

/// What a node says of itself; an absent semantic type is a word, an empty one is 0.
struct Shape {
  explicit Shape(Tag node)
      : symbol(node.GetInt(Attr::kSymbol)),
        semanticType(node.Has(Attr::kSemanticType) ? node.GetInt(Attr::kSemanticType) : 4),
        inBrackets(node.GetInt(Attr::kInBrackets) == 1) {}
  std::int32_t symbol;
  std::int32_t semanticType;
  bool inBrackets;
};

std::u16string Bracketed(const std::u16string& text) {
  return u"(" + text + u")";
}

void JoinABWithOp(std::u16string& a, const std::u16string& b, const std::u16string& op) {
  if (b.empty()) return;
  if (a.empty()) {
    a = b;
  } else {
    a = a + op + b;
  }
}

bool Postfix(Tag node, const std::u16string& word, std::u16string& a, std::u16string& b, bool& f) {
  std::u16string childA;
  std::u16string childB;
  if (PlainExpSpec2(node.FirstChild(), childA, childB, f)) f = true;
  const std::u16string local = (f ? childB : childA) + u" " + word;
  (f ? b : a) = local;
  return false;
}

bool Prefix(Tag node, const std::u16string& word, std::u16string& a, std::u16string& b, bool& f) {
  a = word;
  if (f) b = word;
  std::u16string childA;
  std::u16string childB;
  for (Tag child = node.FirstChild(); child; child = child.Next()) {
    if (PlainExpSpec2(child, childA, childB, f)) f = true;
    if (!childA.empty()) a = a + u" " + childA;
    if (!childB.empty()) {
      if (b.empty()) b = word;
      b = b + u" " + childB;
    }
  }
  return false;
}

bool Infix(Tag node, std::int32_t symbol, const std::u16string& word, std::u16string& a,
           std::u16string& b, bool& f) {
  const std::u16string op = u" " + word + u" ";
  std::u16string local;
  bool found = false;
  for (Tag child = node.FirstChild(); child; child = child.Next()) {
    std::u16string childA;
    std::u16string childB;
    const bool r = PlainExpSpec2(child, childA, childB, f);
    if (symbol == 20) {
      JoinABWithOp(b, childB, op);
      JoinABWithOp(a, childA, op);
    } else if (!f && !r) {
      JoinABWithOp(local, childA, op);
    } else {
      f = true;
      found = true;
      JoinABWithOp(local, childB, op);
    }
  }
  if (symbol != 20) (f ? b : a) = local;
  return found;
}

bool Call(Tag node, std::int32_t symbol, const std::u16string& word, std::u16string& a,
          std::u16string& b, bool& f) {
  const bool grouped = symbol == 27 && node.Get(Attr::kIfGrpBy) == u"1";
  bool found = grouped;
  bool g = grouped || f;
  std::u16string local;
  for (Tag child = node.FirstChild(); child; child = child.Next()) {
    std::u16string childA;
    std::u16string childB;
    const bool r = PlainExpSpec2(child, childA, childB, g);
    if (!g && !r) {
      JoinABWithOp(local, childA, u",");
    } else {
      g = true;
      found = true;
      JoinABWithOp(local, childB, u",");
    }
  }
  (g ? b : a) = word + Bracketed(local);
  f = g;
  return found;
}

}  // namespace

std::u16string PlainExpSpec1(Tag node, bool useContent) {
  const Shape shape(node);
  const std::u16string word(node.Get(useContent ? Attr::kContent : Attr::kText));
  std::u16string result;
  switch (shape.semanticType) {
    case 3:
      result = PlainExpSpec1(node.FirstChild(), useContent) + u" " + word;
      break;
    case 2:
      result = word;
      for (Tag child = node.FirstChild(); child; child = child.Next()) {
        result += u" " + PlainExpSpec1(child, useContent);
      }
      break;
    case 0:
    case 1:
      for (Tag child = node.FirstChild(); child; child = child.Next()) {
        const std::u16string between = shape.semanticType == 0 ? u" " + word + u" " : u",";
        const std::u16string text = PlainExpSpec1(child, useContent);
        result = result.empty() ? text : result + between + text;
      }
      if (shape.semanticType == 1) result = word + Bracketed(result);
      break;
    default:
      result = word;
  }
  return shape.inBrackets ? Bracketed(result) : result;
}

bool PlainExpSpec2(Tag node, std::u16string& a, std::u16string& b, bool goesToB) {
  const Shape shape(node);
  const std::u16string word(node.Get(Attr::kText));
  bool f = goesToB;
  bool found = false;
  switch (shape.semanticType) {
    case 3:
      found = Postfix(node, word, a, b, f);
      break;
    case 2:
      found = Prefix(node, word, a, b, f);
      break;
    case 0:
      found = Infix(node, shape.symbol, word, a, b, f);
      break;
    case 1:
      found = Call(node, shape.symbol, word, a, b, f);
      break;
    default:
      (f ? b : a) = word;
  }
  if (shape.inBrackets) (f ? b : a) = Bracketed(f ? b : a);
  return found;
}

void PlainCompose(Tag root, std::u16string& a, std::u16string& b) {
  PlainExpSpec2(root, a, b, false);
  if (!a.empty()) a = Bracketed(a);
  if (!b.empty()) b = Bracketed(b);
}
