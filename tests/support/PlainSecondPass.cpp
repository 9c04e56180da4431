// The plain second pass. The first pass, the maps and what each row makes of a node are the
// engine's.
#include "PlainSecondPass.h"

#include "Utf8.h"
#include "dialects/Dialects.h"
#include "document/TagReader.h"
#include "translator/TranslatorFrame.h"

#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

using namespace ORKBASE;

namespace {

std::unique_ptr<IMxTranslator> NewTranslator(ORKDB_DSType_ENUM dsType, const TranslatorModes& modes,
                                             TagTree& tree) {
  std::unique_ptr<IMxTranslator> translator = DialectOf(dsType).newTranslator(tree);
  translator->dictionaries = modes.dictionaries;
  translator->rtId = modes.rtId;
  translator->formDataIn = modes.formDataIn;
  translator->useIsNull = modes.useIsNull;
  translator->InitCaxEnums();
  return translator;
}

Tag FirstHandled(TagTree& tree) {
  for (Tag tag = tree.Root(); tag; tag = tag.NextInDocument(tree.Root())) {
    if (tag.Get(Attr::kTransType) == u"2") return tag;
  }
  return {};
}

void Read(const std::u16string& text, TagTree& tree) {
  if (!ReadTagTree(text, tree)) throw std::logic_error("a document that does not parse");
}

std::u16string RebuildAll(TranslatorFrame& translator, const ReplacementMap& map,
                          std::u16string text) {
  for (;;) {
    TagTree tree;
    Read(text, tree);
    Tag found = FirstHandled(tree);
    if (!found) return text;
    const TransEntry* entry = map.Find(LookupKey(found.Get(Attr::kPrimary)));
    if (!entry) throw std::logic_error("a handled function without an entry");
    const Tag made = translator.Rebuild(entry->what, found.DeepCopy());
    if (!made) throw std::logic_error("a handler that returns nothing");
    found.ReplaceBy(made);
    text = tree.ToText();
  }
}

std::u16string MarkAggregates(const std::u16string& text) {
  constexpr std::u16string_view kNames =
      u"|sum|average|count|max|min|count1|lastDate|firstDate|STRING_AGG|";
  TagTree tree;
  Read(text, tree);
  for (Tag tag = tree.Root(); tag; tag = tag.NextInDocument(tree.Root())) {
    const std::u16string name = u"|" + std::u16string(tag.Get(Attr::kPrimary)) + u"|";
    if (tag.GetInt(Attr::kSymbol) == kFunctionSymbol && kNames.find(name) != kNames.npos) {
      tag.Set(Attr::kIfGrpBy, u"1");
    }
  }
  return std::u16string(tree.ToText());
}

}  // namespace

std::u16string TranslatePlainly(ORKDB_DSType_ENUM dsType, const TranslatorModes& modes,
                                const std::u16string& parsed) {
  TagTree tree;  // the nodes that rows make live here, too
  const auto translator = NewTranslator(dsType, modes, tree);
  auto& frame = dynamic_cast<TranslatorFrame&>(*translator);
  if (!frame.ReadDocument(parsed)) throw std::logic_error("a document that does not parse");
  frame.TransNodes();
  const std::u16string first(tree.ToText());
  return MarkAggregates(RebuildAll(frame, DialectOf(dsType).map(), first));
}

std::u16string TranslateByEngine(ORKDB_DSType_ENUM dsType, const TranslatorModes& modes,
                                 const std::u16string& parsed) {
  TagTree tree;
  const auto translator = NewTranslator(dsType, modes, tree);
  std::u16string out;
  if (translator->Translate(parsed, out) != 0)
    throw std::runtime_error(U8(ErrorText(translator->error)));
  return out;
}

std::string WithoutWhiteSpace(const std::u16string& document) {
  TagTree tree;
  Read(document, tree);
  std::u16string out;
  for (Tag tag = tree.Root(); tag; tag = tag.NextInDocument(tree.Root())) {
    for (Tag up = tag.Parent(); up; up = up.Parent()) out += u' ';
    out += tag.node()->text;
    std::u16string last;
    for (const TagAttr* attr = tag.node()->attrs; attr; attr = attr->next) {
      std::u16string& where = attr->id == Attr::kIfGrpBy ? last : out;
      where.append(u" ").append(attr->Name()).append(u"=[").append(attr->value).append(u"]");
    }
    out.append(last).append(u"\n");
  }
  return U8(out);
}
