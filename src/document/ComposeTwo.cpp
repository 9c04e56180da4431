// The two-text form. A comparison with a grouped operand goes to side B as a whole; what its other
// operands had given to side A moves with it. A connective sends each operand to its own side.
// kept: a prefix or postfix operator never reports that it went to B, and a connective brackets one
// side only.
#include "document/Composer.h"

#include <utility>

#include "document/TextRope.h"

namespace ORKBASE {
namespace {

class TwoTexts {
 public:
  TwoTexts(std::u16string& a, std::u16string& b) : oneSide_(&a == &b), a_(a), b_(b) {}

  void Compose(Tag root) {
    const std::u16string firstA = std::move(a_);
    const std::u16string firstB = oneSide_ ? std::u16string{} : std::move(b_);
    const RopeText a = rope_.Make(firstA);
    Open(root, false, {a, oneSide_ ? a : rope_.Make(firstB)});
    while (!open_.empty()) Step();
    a_ = rope_.Write(result_.a);
    if (!oneSide_) b_ = rope_.Write(result_.b);
  }

 private:
  /// What a node hands back: both sides, and whether a grouped function decided for B.
  struct Sides {
    RopeText a = 0;
    RopeText b = 0;
    bool found = false;
  };

  struct Node {
    Tag tag;
    Tag next;  // child to visit next
    std::int32_t type;
    bool isConnective;
    bool toB;  // where the words go from here on
    Sides out;
    Sides child;  // the sides that the children are given
    RopeText local = 0;
    RopeText word;
    RopeText separator;
  };

  void Open(Tag tag, bool toB, Sides given) {
    Node node{tag, tag.FirstChild(), SemanticTypeOf(tag), false, toB, given, {}, 0, 0, 0};
    node.out.found = false;
    node.word = rope_.Make(tag.Get(Attr::kText));
    switch (node.type) {
      case kInfixSemantic:
        node.isConnective = tag.GetInt(Attr::kSymbol) == kOpCondSymbol;
        node.separator = rope_.Join({rope_.Make(u" "), node.word, rope_.Make(u" ")});
        break;
      case kFunctionSemantic:
        if (tag.GetInt(Attr::kSymbol) == kFunctionSymbol && tag.Get(Attr::kIfGrpBy) == u"1") {
          node.toB = node.out.found = true;
        }
        node.separator = rope_.Make(u",");
        break;
      case kPrefixSemantic:
        SetA(node, node.word);
        if (node.toB) SetB(node, node.word);
        break;
      case kPostfixSemantic:
        break;
      default:
        node.next = {};
    }
    open_.push_back(node);
  }

  void Step() {
    Node& node = open_.back();
    if (!node.next) {
      Close();
      return;
    }
    const Tag child = node.next;
    node.next = node.type == kPostfixSemantic ? Tag{} : child.Next();
    // Only an operator before its operands lets one child see what the one before it left.
    if (node.type != kPrefixSemantic) node.child = {};
    Open(child, node.toB, node.child);
  }

  void Close() {
    Node node = open_.back();
    open_.pop_back();
    switch (node.type) {
      case kInfixSemantic:
        if (!node.isConnective) SetSide(node, node.local);
        break;
      case kFunctionSemantic:
        SetSide(node, rope_.Join({node.word, rope_.Make(u"("), node.local, rope_.Make(u")")}));
        break;
      case kPrefixSemantic:
        break;
      case kPostfixSemantic:
        if (!node.tag.FirstChild()) Took(node, {});
        SetSide(node, node.local);
        break;
      default:
        SetSide(node, node.word);
    }
    if (IsInBrackets(node.tag)) {
      SetSide(node,
              rope_.Join({rope_.Make(u"("), node.toB ? node.out.b : node.out.a, rope_.Make(u")")}));
    }
    if (open_.empty()) {
      result_ = node.out;
    } else {
      Took(open_.back(), node.out);
    }
  }

  /// Takes up what a child gave.
  void Took(Node& node, const Sides& child) {
    node.child.a = child.a;
    node.child.b = child.b;
    switch (node.type) {
      case kInfixSemantic:
        if (node.isConnective) {
          JoinABWithOp(node, child);
          return;
        }
        TookOperand(node, child);
        return;
      case kFunctionSemantic:
        TookOperand(node, child);
        return;
      case kPrefixSemantic:
        TookPrefixed(node, child);
        return;
      case kPostfixSemantic:
        node.toB |= child.found;
        node.local = rope_.Join({node.toB ? child.b : child.a, rope_.Make(u" "), node.word});
        return;
    }
  }

  /// An operand of a comparison, or an argument: the first grouped one turns the whole to B.
  void TookOperand(Node& node, const Sides& child) {
    if (node.toB || child.found) node.toB = node.out.found = true;
    node.local = Separated(node.local, node.toB ? child.b : child.a, node.separator);
  }

  void TookPrefixed(Node& node, const Sides& child) {
    node.toB |= child.found;
    const RopeText blank = rope_.Make(u" ");
    if (child.a != 0) SetA(node, rope_.Join({node.out.a, blank, child.a}));
    if (child.b != 0) {
      if (node.out.b == 0) SetB(node, node.word);
      SetB(node, rope_.Join({node.out.b, blank, child.b}));
    }
  }

  void JoinABWithOp(Node& node, const Sides& child) {
    if (child.b != 0) SetB(node, Separated(node.out.b, child.b, node.separator));
    if (child.a != 0) SetA(node, Separated(node.out.a, child.a, node.separator));
  }

  RopeText Separated(RopeText left, RopeText right, RopeText separator) {
    return left == 0 || right == 0 ? left + right : rope_.Join({left, separator, right});
  }

  // At the root the caller's two texts may be one; the stack tells whether this is the root.
  void SetA(Node& node, RopeText text) {
    node.out.a = text;
    if (IsOneSide(node)) node.out.b = text;
  }
  void SetB(Node& node, RopeText text) {
    node.out.b = text;
    if (IsOneSide(node)) node.out.a = text;
  }
  void SetSide(Node& node, RopeText text) { node.toB ? SetB(node, text) : SetA(node, text); }
  bool IsOneSide(const Node& node) const { return oneSide_ && !node.tag.Parent(); }

  bool oneSide_;
  std::u16string& a_;
  std::u16string& b_;
  TextRope rope_;
  std::vector<Node> open_;
  Sides result_;
};

}  // namespace

void ExpSpec2(Tag root, std::u16string& a, std::u16string& b) {
  TwoTexts(a, b).Compose(root);
}

}  // namespace ORKBASE
