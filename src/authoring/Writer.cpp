// The tree is walked from left to right as it stands, brackets where it has them: what the parser
// made of a rule comes out in the order in which the parser met it. Whether it was a rule at all is
// then asked of the parser itself: the document of what is written must be the document given.
#include "authoring/Writer.h"

#include "authoring/AuthoringCall.h"
#include "authoring/Spacing.h"
#include "authoring/UnwritableText.h"
#include "authoring/WordSpelling.h"
#include "document/Composer.h"
#include "document/TagComparison.h"
#include "document/TagReader.h"
#include "platform/ErrorTexts.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ORKBASE {
namespace {

/// Whether a node has as many operands as it prints.
bool HasItsOperands(Tag tag) {
  const Tag first = tag.FirstChild();
  switch (SemanticTypeOf(tag)) {
    case kInfixSemantic:
      return first && first.Next() && !first.Next().Next();
    case kPrefixSemantic:
    case kPostfixSemantic:
      return tag.HasOneChild();
    case kFunctionSemantic:
      return true;
    default:
      return !first;
  }
}

class RuleText {
 public:
  explicit RuleText(AuthoringCall& call) : spelling_(call) {}

  /// False, with the error, where a node cannot be written.
  bool Write(Tag root) {
    if (!Open(root)) return false;
    while (!open_.empty()) {
      if (!Step()) return false;
    }
    return true;
  }

  const std::set<std::u16string>& TablesAtFirstSight() const noexcept {
    return spelling_.TablesAtFirstSight();
  }

  std::u16string text;
  MxErrorRecord error;

 private:
  struct Node {
    Tag tag;
    Tag next;  // child to write next
    std::int32_t type;
  };

  bool Open(Tag tag) {
    if (!HasItsOperands(tag)) {
      error = MakeError(kDocumentCause, kMsgNoRuleGivesThis);
      return false;
    }
    const std::int32_t type = SemanticTypeOf(tag);
    if (IsInBrackets(tag)) AddDelimiter(u"(");
    if (type != kInfixSemantic && type != kPostfixSemantic && !AddWordOf(tag)) return false;
    if (type == kFunctionSemantic) AddDelimiter(u"(");
    open_.push_back({tag, tag.FirstChild(), type});
    return true;
  }

  bool Step() {
    Node& node = open_.back();
    if (!node.next) return Close();
    const Tag child = std::exchange(node.next, node.next.Next());
    if (child.Previous()) {
      if (node.type == kFunctionSemantic) AddDelimiter(u",");
      if (node.type == kInfixSemantic && !AddWordOf(node.tag)) return false;
    }
    return Open(child);
  }

  bool Close() {
    const Node node = open_.back();
    open_.pop_back();
    if (node.type == kPostfixSemantic && !AddWordOf(node.tag)) return false;
    if (node.type == kFunctionSemantic) AddDelimiter(u")");
    if (IsInBrackets(node.tag)) AddDelimiter(u")");
    return true;
  }

  bool AddWordOf(Tag tag) {
    if (!spelling_.Spell(tag, word_, error)) return false;
    Add(word_, tag.GetInt(Attr::kSymbol), tag.Get(Attr::kPrimary));
    return true;
  }
  void AddDelimiter(std::u16string_view delimiter) { Add(delimiter, kDelimiterSymbol, delimiter); }
  void Add(std::u16string_view word, std::int32_t symbol, std::u16string_view primary) {
    if (spacing_.BlankBefore(symbol, primary)) text += u' ';
    text += word;
  }

  WordSpelling spelling_;
  Spacing spacing_;
  std::u16string word_;
  std::vector<Node> open_;
};

/// The type under which a rule with this root verifies. What is no condition is a value of any
/// type: the rows of a value of one type are among those of a value of any.
MXRULE_DATATYPE TypeOf(Tag root) {
  switch (root.GetInt(Attr::kSymbol)) {
    case kOpRelaSymbol:
    case kOpCondSymbol:
    case kOpNotSymbol:
    case kOpJoinSymbol:
    case kOpInSymbol:
    case kOpIsNullSymbol:
      return kLogicDataType;
    default:
      return kVarDataType;
  }
}

/// As `AuthoringCall::Verify`, for an engine that has not loaded some tables yet.
bool VerifyAtFirstSight(AuthoringCall& call, const std::set<std::u16string>& tables,
                        MXRULE_DATATYPE type, std::u16string_view rule, std::u16string& document,
                        MxErrorRecord& refusal) {
  if (tables.empty()) return call.Verify(type, rule, document, refusal);
  EngineState engine(call.Engine());
  for (const std::u16string& table : tables) {
    engine.dictionaries.Remove(std::u16string(kDataTableMark).append(table));
  }
  return engine.Verify(type, rule, call.TextLanguage(), document, refusal);
}

/// Whether the rule gives the document; else the error tells.
bool Gives(AuthoringCall& call, const RuleText& rule, Tag root, MxErrorRecord& error) {
  std::u16string document;
  MxErrorRecord refusal;
  TagTree tree;
  const bool isRule = VerifyAtFirstSight(call, rule.TablesAtFirstSight(), TypeOf(root), rule.text,
                                         document, refusal);
  if (isRule && ReadTagTree(document, tree) && AreOfOneRule(root, tree.Root())) return true;
  if (refusal.cause == kDatabaseCause) {
    error = std::move(refusal);
    return false;
  }
  error = MakeError(kDocumentCause, kMsgNoRuleGivesThis);
  if (!isRule) error.behind.push_back(std::move(refusal));
  return false;
}

bool Write(AuthoringCall& call, std::u16string_view document, std::u16string& rule,
           MxErrorRecord& error) {
  if (HoldsUnwritable(document, error)) return false;
  TagTree tree;
  if (!ReadTagTree(document, tree)) {
    error = MakeError(kDocumentCause, kMsgNoRuleGivesThis);
    return false;
  }
  RuleText written(call);
  if (!written.Write(tree.Root())) {
    error = std::move(written.error);
    return false;
  }
  if (!Gives(call, written, tree.Root(), error)) return false;
  rule = std::move(written.text);
  return true;
}

}  // namespace

bool WriteRule(AuthoringCall& call, std::u16string_view document, std::u16string& rule,
               MxErrorRecord& error) {
  if (Write(call, document, rule, error)) return true;
  // An outage has a place in a text that nobody sees.
  error.token = error.offset = -1;
  error.length = 0;
  return false;
}

}  // namespace ORKBASE
