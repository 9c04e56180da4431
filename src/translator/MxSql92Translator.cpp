// The frame of a translation: the three passes and the building of nodes.
#include "translator/MxSql92Translator.h"

#include "dictionary/MxDictionarys.h"
#include "document/TagReader.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"
#include "translator/NumberTest.h"

#include <algorithm>

namespace ORKBASE {
namespace {

constexpr DialectFields kFields = {kSqlServerDs, u"N", u"isnull", u"+",
                                   u"112|120|110|105|111|101|103|12|20|10|5|11|1|3|108|114"};

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

MxSql92Translator::MxSql92Translator() : MxSql92Translator(kFields, Map()) {}

MxSql92Translator::MxSql92Translator(const DialectFields& fields, const ReplacementMap& map)
    : fields_(fields), map_(map) {}

const ReplacementMap& MxSql92Translator::Map() {
  static const ReplacementMap map = MakeMap({}, kFields, InitFunctions);
  return map;
}

ReplacementMap MxSql92Translator::MakeMap(ReplacementMap begin, const DialectFields& fields,
                                          void (*initFunctions)(ReplacementMap&)) {
  InitOperators(begin, fields);
  initFunctions(begin);
  return begin;
}

std::int32_t MxSql92Translator::InitCaxEnums() {
  caxEnums_.clear();
  if (!dictionaries) return 0;
  for (const auto& entry : dictionaries->dictionaries()) {
    if (entry.second->isCax()) caxEnums_.push_back(&entry.second->caxEnumValues);
  }
  return 0;
}

std::int32_t MxSql92Translator::Translate(std::u16string_view parsed, std::u16string& out) {
  nextCount_ = kMostNodes;
  if (!ReadTagTree(parsed, doc_)) {
    errorNo = -1;
    errorDesc = u"exprParsedXml" + LoadMessage(kMsgDocumentNotParsed);
    return errorNo;
  }
  for (Tag node = doc_.Root(); node; node = node.NextInDocument(doc_.Root())) TransNode(node);
  if (!RunHandlers() || IsTooLarge()) {
    errorNo = -1;
    errorDesc = LoadMessage(kMsgResultTooLarge);
    return errorNo;
  }
  MarkGroupBy();
  out = doc_.ToText();
  return 0;
}

Tag MxSql92Translator::TranslatedRoot() {
  return doc_.ReadsBack() ? doc_.Root() : Tag{};
}

/// False when the document grew beyond the limit. A node whose handler returns nothing, and one
/// that was marked without having a handler, keeps its text and is passed over.
bool MxSql92Translator::RunHandlers() {
  for (Tag node = doc_.Root(); node;) {
    const Handler handler =
        node.GetPlain(Attr::kTransType) == kHandlerMark ? HandlerOf(node) : nullptr;
    const Tag made = handler ? (this->*handler)(node) : Tag{};
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

Handler MxSql92Translator::HandlerOf(Tag node) const {
  const TransEntry* entry = map_.Find(LookupKey(node.Get(Attr::kPrimary)));
  return entry ? entry->handler : nullptr;
}

/// Counts only when enough elements were made since the last count to make a difference.
bool MxSql92Translator::IsTooLarge() {
  if (doc_.MadeElements() <= nextCount_) return false;
  const std::size_t count = doc_.CountElements();
  nextCount_ = doc_.MadeElements() + (kMostNodes - std::min(count, kMostNodes));
  return count > kMostNodes;
}

/// Goes by the rule's own word and heeds its case, whatever the word prints as.
void MxSql92Translator::MarkGroupBy() {
  std::u16string name;
  for (Tag node = doc_.Root(); node; node = node.NextInDocument(doc_.Root())) {
    if (!EqualsNumber(node.GetPlain(Attr::kSymbol), kFunctionSymbol)) continue;
    name.assign(u"|").append(node.GetPlain(Attr::kPrimary)).append(u"|");
    if (kAggregateNames.find(name) != kAggregateNames.npos) node.Set(Attr::kIfGrpBy, u"1");
  }
}

// --- building nodes ------------------------------------------------------------------------------

void MxSql92Translator::SetSymbol(Tag node, std::int32_t symbol) {
  node.Set(Attr::kSymbol, symbol);
  node.Set(Attr::kSemanticType, SemanticTypeOf(symbol));
}

Tag MxSql92Translator::MakeNode(std::int32_t symbol, std::int32_t dataType,
                                std::u16string_view text) {
  Tag node = doc_.NewTag();
  SetSymbol(node, symbol);
  node.Set(Attr::kDataType, dataType);
  node.Set(Attr::kText, text);
  return node;
}

Tag MxSql92Translator::MakeInfix(std::u16string_view text, bool inBrackets) {
  Tag node = doc_.NewTag();
  SetSymbol(node, kOpComposeSymbol);
  node.Set(Attr::kInBrackets, inBrackets ? 1 : 0);
  node.Set(Attr::kText, text);
  return node;
}

Tag MxSql92Translator::MakeWithHead(Tag node) {
  Tag made = doc_.NewTag();
  for (const Attr attr : {Attr::kSymbol, Attr::kSemanticType, Attr::kDataType, Attr::kInBrackets}) {
    if (node.Has(attr)) made.Set(attr, node.Get(attr));
  }
  return made;
}

Tag MxSql92Translator::MakeWithHead(Tag node, std::u16string_view text) {
  Tag made = MakeWithHead(node);
  made.Set(Attr::kText, text);
  return made;
}

Tag MxSql92Translator::MakeCall(std::int32_t dataType, std::u16string_view name,
                                std::initializer_list<Tag> children) {
  Tag node = MakeNode(kFunctionSymbol, dataType, name);
  for (const Tag child : children) node.AddChild(child);
  return node;
}

Tag MxSql92Translator::MakeOperator(std::u16string_view word, std::int32_t symbol) {
  Tag node = doc_.NewTag();
  node.Set(Attr::kPrimary, word);
  node.Set(Attr::kContent, word);
  node.Set(Attr::kText, word);
  node.Set(Attr::kSymbol, symbol);
  node.Set(Attr::kDataType, kNumDataType);
  node.Set(Attr::kSemanticType, kInfixSemantic);
  return node;
}

Tag MxSql92Translator::TimesNode(Tag a, Tag b) {
  Tag node = MakeOperator(u"*", kOpMultiSymbol);
  node.AddChild(a);
  node.AddChild(b);
  return node;
}

}  // namespace ORKBASE
