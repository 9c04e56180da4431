// The one-text form. All pieces are appended to one text, from left to right, on a stack of its
// own: an operand that prints nothing vanishes with its operator as long as nothing stands before
// it.
#include "document/Composer.h"

#include <vector>

namespace ORKBASE {
namespace {

class OneText {
 public:
  explicit OneText(Attr words) : words_(words) {}

  std::u16string Compose(Tag root) {
    Open(root);
    while (!open_.empty()) Step();
    return std::move(out_);
  }

 private:
  struct Node {
    Tag tag;
    Tag next;  // child to print next
    std::int32_t type;
    std::size_t start;  // where the children's text begins
    bool inBrackets;
  };

  void Open(Tag tag) {
    Node node{tag, tag.FirstChild(), SemanticTypeOf(tag), 0, IsInBrackets(tag)};
    if (node.inBrackets) out_ += u'(';
    switch (node.type) {
      case kInfixSemantic:
      case kPostfixSemantic:
        break;
      case kPrefixSemantic:
        out_ += tag.Get(words_);
        break;
      case kFunctionSemantic:
        (out_ += tag.Get(words_)) += u'(';
        break;
      default:
        out_ += tag.Get(words_);
        node.next = {};
    }
    node.start = out_.size();
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
    Separate(node);
    Open(child);
  }

  // kept: an operand that prints nothing takes its operator along only where it comes first.
  void Separate(const Node& node) {
    const bool first = out_.size() == node.start;
    switch (node.type) {
      case kInfixSemantic:
        if (!first) ((out_ += u' ') += node.tag.Get(words_)) += u' ';
        break;
      case kFunctionSemantic:
        if (!first) out_ += u',';
        break;
      case kPrefixSemantic:
        out_ += u' ';
        break;
      default:
        break;
    }
  }

  void Close() {
    const Node node = open_.back();
    open_.pop_back();
    if (node.type == kPostfixSemantic) (out_ += u' ') += node.tag.Get(words_);
    if (node.type == kFunctionSemantic) out_ += u')';
    if (node.inBrackets) out_ += u')';
  }

  Attr words_;
  std::u16string out_;
  std::vector<Node> open_;
};

}  // namespace

std::u16string ExpSpec1(Tag root, WordsOf words) {
  return OneText(words == WordsOf::kSql ? Attr::kText : Attr::kContent).Compose(root);
}

}  // namespace ORKBASE
