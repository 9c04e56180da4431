// What goes wrong where a rule becomes two texts, one for single rows (A) and one for groups (B).
// A comparison goes to B as a whole when one of its operands does, "and" and "or" send each operand
// to its own side. An operator in front of its operand always writes to A as well, and a bracket
// around "and" or "or" goes to A only: both may stand there alone. The walk below does to what the
// sides hold what composing does to their texts.
#include "authoring/WarningList.h"

#include "translator/TranslatorFrame.h"

#include <algorithm>

namespace ORKBASE {
namespace {

enum class Content : std::uint8_t { kNothing, kAlone, kReal };

class TwoTextWalk {
 public:
  explicit TwoTextWalk(WarningList& list) : list_(list) {
    onDescendant_ = list.Asks(kKingbaseDs) || list.Asks(kOpenGaussDs);
  }

  void Walk() {
    if (list_.nodes().empty()) return;
    Open(0, false);
    while (!open_.empty()) {
      Visit& top = open_.back();
      const std::int32_t child = top.next;
      if (child < 0) {
        Close();
      } else {
        top.next = list_.places().At(child).next;
        Open(child, top.toB);
      }
    }
  }

 private:
  struct Sides {
    Content a = Content::kNothing;
    Content b = Content::kNothing;
    bool found = false;   // a grouped function decided for B
    bool isTorn = false;  // told already
  };

  struct Visit {
    const PlacedNode* node;
    std::int32_t next;  // child
    bool toB;
    Sides out;
  };

  bool IsConnective(const PlacedNode& node) const {
    return node.symbol == kOpCondSymbol && node.IsInfix();
  }

  /// What the SQL has as an operator in front.
  bool IsInFront(const PlacedNode& node) const {
    return (node.semanticType == kPrefixSemantic && node.first >= 0) || node.Is(u"switch") ||
           node.Is(u"thisSet");
  }

  void Open(std::int32_t index, bool toB) {
    const PlacedNode& node = list_.places().At(index);
    Visit visit{&node, node.first, toB, {}};
    if (node.symbol == kFunctionSymbol && IsAggregate(node.primary)) {
      visit.toB = visit.out.found = true;
    }
    open_.push_back(visit);
  }

  void Close() {
    const Visit visit = open_.back();
    open_.pop_back();
    Sides out = visit.out;
    const PlacedNode& node = *visit.node;
    if (IsConnective(node)) {
      CloseConnective(node, out);
    } else if (IsInFront(node)) {
      CloseInFront(visit, out);
    } else {
      (visit.toB ? out.b : out.a) = Content::kReal;
    }
    if (!open_.empty()) Took(open_.back(), out);
  }

  void Took(Visit& visit, const Sides& child) {
    visit.out.isTorn |= child.isTorn;
    if (IsConnective(*visit.node) || IsInFront(*visit.node)) {
      visit.out.a = std::max(visit.out.a, child.a);
      visit.out.b = std::max(visit.out.b, child.b);
      return;
    }
    if (child.found && onDescendant_ && !visit.toB && visit.node->Is(u"weekDay")) {
      list_.AtWord(*visit.node, kMsgLeftAlone, {list_.Written(*visit.node)});
    }
    if (visit.toB || child.found) visit.toB = visit.out.found = true;
  }

  void CloseConnective(const PlacedNode& node, Sides& out) {
    if (node.Is(u"or")) TellTorn(node, out);
    if (!node.inBrackets || out.a != Content::kNothing) return;
    out.a = Content::kAlone;
    list_.At(node.outerFirst, node.outerFirst, kMsgLeftAlone, {u"("}, kWarningSeverity);
  }

  void CloseInFront(const Visit& visit, Sides& out) {
    const PlacedNode& node = *visit.node;
    out.found = false;
    if (visit.toB) {
      out.b = Content::kReal;
      return;
    }
    const bool isSplit = out.b != Content::kNothing;
    const bool isOperator = node.semanticType == kPrefixSemantic;
    if (isSplit && isOperator && out.a == Content::kReal) {
      TellTorn(node, out);
    } else if (isSplit) {
      list_.AtWord(node, kMsgLeftAlone, {list_.Written(node)});
    }
    out.a = std::max(out.a, isSplit ? Content::kAlone : Content::kReal);
  }

  void TellTorn(const PlacedNode& node, Sides& out) {
    if (out.isTorn || out.a != Content::kReal || out.b == Content::kNothing) return;
    out.isTorn = true;
    list_.AtWord(node, kMsgTornApart, {list_.Written(node)});
  }

  WarningList& list_;
  bool onDescendant_;
  std::vector<Visit> open_;
};

}  // namespace

void WarnOfTwoTexts(WarningList& list) {
  TwoTextWalk(list).Walk();
}

}  // namespace ORKBASE
