// The three passes, the kinds of rows and the building of nodes.
#include "translator/TranslatorFrame.h"

#include "Mx_Exception.h"
#include "dictionary/MxDictionarys.h"
#include "document/TagReader.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/ErrorTexts.h"
#include "platform/MessageTexts.h"
#include "translator/NumberTest.h"

#include <algorithm>

namespace ORKBASE {
namespace {

constexpr std::u16string_view kAggregateNames =
    u"|sum|average|count|max|min|count1|lastDate|firstDate|STRING_AGG|";

constexpr std::u16string_view kHandlerMark = u"2";

std::int32_t SemanticTypeOf(std::int32_t symbol) noexcept {
  switch (symbol) {
    case kOpSumSymbol:
    case kOpComposeSymbol:
      return kInfixSemantic;
    case kOpNotSymbol:
    case kSubQuerySymbol:
      return kPrefixSemantic;
    case kFunctionSymbol:
      return kFunctionSemantic;
  }
  return kLeafSemantic;
}

}  // namespace

TranslatorFrame::TranslatorFrame(const DialectFields& fields, const ReplacementMap& map,
                                 TagTree& doc)
    : fields_(fields), map_(map), doc_(doc) {}

std::int32_t TranslatorFrame::InitCaxEnums() {
  caxEnums_.clear();
  if (!dictionaries) return 0;
  for (const auto& entry : dictionaries->dictionaries()) {
    if (entry.second->isCax()) caxEnums_.push_back(&entry.second->caxEnumValues);
  }
  return 0;
}

std::int32_t TranslatorFrame::Translate(std::u16string_view parsed, std::u16string& out) {
  if (!ReadDocument(parsed)) {
    error = MakeError(kDocumentCause, kMsgDocumentNotParsed);
    error.text = u"exprParsedXml";
    return error.number;
  }
  TransNodes();
  if (!RunHandlers() || IsTooLarge()) {
    error = MakeError(kDocumentCause, kMsgResultTooLarge);
    return error.number;
  }
  MarkGroupBy();
  out = doc_.ToText();
  return 0;
}

bool TranslatorFrame::ReadDocument(std::u16string_view parsed) {
  nextCount_ = kMostNodes;
  return ReadTagTree(parsed, doc_);
}

void TranslatorFrame::TransNodes() {
  for (Tag node = doc_.Root(); node; node = node.NextInDocument(doc_.Root())) TransNode(node);
}

Tag TranslatorFrame::TranslatedRoot() {
  return doc_.ReadsBack() ? doc_.Root() : Tag{};
}

/// False when the document grew beyond the limit. A node whose row makes nothing of it, and one
/// that was marked without having a row, keeps its text and is passed over.
bool TranslatorFrame::RunHandlers() {
  for (Tag node = doc_.Root(); node;) {
    const bool marked = node.GetPlain(Attr::kTransType) == kHandlerMark;
    const Tag made = marked ? RebuildAs(node.Get(Attr::kPrimary), node) : Tag{};
    if (!made || made == node) {
      node = node.NextInDocument(doc_.Root());
      continue;
    }
    node.ReplaceBy(made);
    if (IsTooLarge()) return false;
    // A rebuilt document is one that could be written and read again, or it is lost.
    if (!doc_.ReadsBack()) doc_.SetRoot({});
    node = doc_.Root() ? made : Tag{};
  }
  return true;
}

/// Counts only when enough elements were made since the last count to make a difference.
bool TranslatorFrame::IsTooLarge() {
  if (doc_.MadeElements() <= nextCount_) return false;
  const std::size_t count = doc_.CountElements();
  nextCount_ = doc_.MadeElements() + (kMostNodes - std::min(count, kMostNodes));
  return count > kMostNodes;
}

// kept: heeds its case.
bool IsAggregate(std::u16string_view primary) {
  if (primary.empty()) return false;
  std::size_t at = kAggregateNames.find(primary);
  for (; at != kAggregateNames.npos; at = kAggregateNames.find(primary, at + 1)) {
    const std::size_t behind = at + primary.size();
    const bool isWhole = at > 0 && behind < kAggregateNames.size() &&
                         kAggregateNames[at - 1] == u'|' && kAggregateNames[behind] == u'|';
    if (isWhole) return true;
  }
  return false;
}

/// Goes by the rule's own word, whatever that prints as.
void TranslatorFrame::MarkGroupBy() {
  for (Tag node = doc_.Root(); node; node = node.NextInDocument(doc_.Root())) {
    if (!EqualsNumber(node.GetPlain(Attr::kSymbol), kFunctionSymbol)) continue;
    if (IsAggregate(node.GetPlain(Attr::kPrimary))) node.Set(Attr::kIfGrpBy, u"1");
  }
}

// --- rows ----------------------------------------------------------------------------------------

Tag TranslatorFrame::Rebuild(const Replacement& what, Tag node) {
  if (const Refusal* refusal = std::get_if<Refusal>(&what)) Refuse(*refusal);
  if (!node.FirstChild()) return {};
  return std::visit([&](const auto& row) { return RebuildBy(row, node); }, what);
}

/// By the row of a word, that of the node or another.
Tag TranslatorFrame::RebuildAs(std::u16string_view word, Tag node) {
  const TransEntry* entry = map_.Find(LookupKey(word));
  return entry ? Rebuild(entry->what, node) : Tag{};
}

// clang-format off
Tag TranslatorFrame::RebuildBy(std::u16string_view /*text*/, Tag /*node*/) { return {}; }
Tag TranslatorFrame::RebuildBy(OwnWord /*row*/, Tag /*node*/)              { return {}; }
Tag TranslatorFrame::RebuildBy(Handler handler, Tag node)                  { return handler(*this, node); }
Tag TranslatorFrame::RebuildBy(const DatePart& row, Tag node)              { return TransDatePart(node, row.part); }
Tag TranslatorFrame::RebuildBy(const FisDatePart& row, Tag node)           { return TransFisDatePart(node, row.part); }
Tag TranslatorFrame::RebuildBy(const PeriodBound& row, Tag node)           { return TransPeriodBound(node, row.start, row.part, row.fiscal); }
Tag TranslatorFrame::RebuildBy(const Refusal& row, Tag /*node*/)           { Refuse(row); }
// clang-format on

void TranslatorFrame::Refuse(const Refusal& refusal) {
  throw Mx_Exception(LoadMessage(refusal.message), std::u16string(refusal.module),
                     std::u16string(refusal.function), refusal.location);
}

// --- building nodes ------------------------------------------------------------------------------
// kept: texts such as " as " and " union " hold blanks of their own, and composing adds one more at
// each side.

void TranslatorFrame::SetSymbol(Tag node, std::int32_t symbol) {
  node.Set(Attr::kSymbol, symbol);
  node.Set(Attr::kSemanticType, SemanticTypeOf(symbol));
}

Tag TranslatorFrame::MakeNode(std::int32_t symbol, std::int32_t dataType,
                              std::u16string_view text) {
  Tag node = doc_.NewTag();
  SetSymbol(node, symbol);
  node.Set(Attr::kDataType, dataType);
  node.Set(Attr::kText, text);
  return node;
}

Tag TranslatorFrame::MakeInfix(std::u16string_view text, bool inBrackets) {
  Tag node = doc_.NewTag();
  SetSymbol(node, kOpComposeSymbol);
  node.Set(Attr::kInBrackets, inBrackets ? 1 : 0);
  node.Set(Attr::kText, text);
  return node;
}

Tag TranslatorFrame::MakeWithHead(Tag node) {
  Tag made = doc_.NewTag();
  for (const Attr attr : {Attr::kSymbol, Attr::kSemanticType, Attr::kDataType, Attr::kInBrackets}) {
    if (node.Has(attr)) made.Set(attr, node.Get(attr));
  }
  return made;
}

Tag TranslatorFrame::MakeWithHead(Tag node, std::u16string_view text) {
  Tag made = MakeWithHead(node);
  made.Set(Attr::kText, text);
  return made;
}

Tag TranslatorFrame::MakeCall(std::int32_t dataType, std::u16string_view name,
                              std::initializer_list<Tag> children) {
  Tag node = MakeNode(kFunctionSymbol, dataType, name);
  for (const Tag child : children) node.AddChild(child);
  return node;
}

Tag TranslatorFrame::MakeOperator(std::u16string_view word, std::int32_t symbol) {
  Tag node = doc_.NewTag();
  node.Set(Attr::kPrimary, word);
  node.Set(Attr::kContent, word);
  node.Set(Attr::kText, word);
  node.Set(Attr::kSymbol, symbol);
  node.Set(Attr::kDataType, kNumDataType);
  node.Set(Attr::kSemanticType, kInfixSemantic);
  return node;
}

Tag TranslatorFrame::TimesNode(Tag a, Tag b) {
  Tag node = MakeOperator(u"*", kOpMultiSymbol);
  node.AddChild(a);
  node.AddChild(b);
  return node;
}

}  // namespace ORKBASE
