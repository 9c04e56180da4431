// The plain second pass. The first pass is the engine's: a translator whose handlers all return
// nothing leaves the document as that pass made it.
#include "PlainSecondPass.h"

#include "Utf8.h"
#include "dialects/MxDMTranslator.h"
#include "dialects/MxKingbaseTranslator.h"
#include "dialects/MxOpenGaussTranslator.h"
#include "dialects/MxPLsqlTranslator.h"
#include "document/TagReader.h"

#include <stdexcept>
#include <string_view>
#include <vector>

using namespace ORKBASE;

namespace {

/// Leaves every handled function as it is.
template <class Translator>
class FirstPassOnly : public Translator {
 public:
#define ORK_RETURNS_NOTHING(handler) \
  Tag handler(Tag) override {        \
    return {};                       \
  }
  ORK_RETURNS_NOTHING(TransLike)
  ORK_RETURNS_NOTHING(TransQuarter)
  ORK_RETURNS_NOTHING(TransWeekDay)
  ORK_RETURNS_NOTHING(TransFisYear)
  ORK_RETURNS_NOTHING(TransFisMonth)
  ORK_RETURNS_NOTHING(TransFisQuarter)
  ORK_RETURNS_NOTHING(TransCount1)
  ORK_RETURNS_NOTHING(TransToText)
  ORK_RETURNS_NOTHING(TransFstDayOfMonth)
  ORK_RETURNS_NOTHING(TransLstDayOfMonth)
  ORK_RETURNS_NOTHING(TransFstDayOfFisMonth)
  ORK_RETURNS_NOTHING(TransEndOfFisMonth)
  ORK_RETURNS_NOTHING(TransFstDayOfYear)
  ORK_RETURNS_NOTHING(TransEndOfYear)
  ORK_RETURNS_NOTHING(TransFstDayOfFisYear)
  ORK_RETURNS_NOTHING(TransEndOfFisYear)
  ORK_RETURNS_NOTHING(TransFstDayOfQuarter)
  ORK_RETURNS_NOTHING(TransEndOfQuarter)
  ORK_RETURNS_NOTHING(TransFstDayOfFisQuarter)
  ORK_RETURNS_NOTHING(TransEndOfFisQuarter)
  ORK_RETURNS_NOTHING(TransToDate)
  ORK_RETURNS_NOTHING(TransThisYear)
  ORK_RETURNS_NOTHING(TransThisFisYear)
  ORK_RETURNS_NOTHING(TransLastYear)
  ORK_RETURNS_NOTHING(TransLastFisYear)
  ORK_RETURNS_NOTHING(TransThisQuarter)
  ORK_RETURNS_NOTHING(TransThisFisQuarter)
  ORK_RETURNS_NOTHING(TransLastQuarter)
  ORK_RETURNS_NOTHING(TransLastFisQuarter)
  ORK_RETURNS_NOTHING(TransThisMonth)
  ORK_RETURNS_NOTHING(TransThisFisMonth)
  ORK_RETURNS_NOTHING(TransLastMonth)
  ORK_RETURNS_NOTHING(TransLastFisMonth)
  ORK_RETURNS_NOTHING(TransSwitch)
  ORK_RETURNS_NOTHING(TransThisSet)
  ORK_RETURNS_NOTHING(TransToNumber)
  ORK_RETURNS_NOTHING(TransHour)
  ORK_RETURNS_NOTHING(TransMinute)
  ORK_RETURNS_NOTHING(TransLog10)
  ORK_RETURNS_NOTHING(TransYear)
  ORK_RETURNS_NOTHING(TransMonth)
  ORK_RETURNS_NOTHING(TransDay)
  ORK_RETURNS_NOTHING(TransDateAdd)
  ORK_RETURNS_NOTHING(TransTimeInterval)
#undef ORK_RETURNS_NOTHING
};

std::u16string TranslateBy(MxSql92Translator& translator, const TranslatorModes& modes,
                           const std::u16string& parsed) {
  translator.dictionaries = modes.dictionaries;
  translator.rtId = modes.rtId;
  translator.formDataIn = modes.formDataIn;
  translator.useIsNull = modes.useIsNull;
  translator.InitCaxEnums();
  std::u16string out;
  if (translator.Translate(parsed, out) != 0) throw std::runtime_error(U8(translator.errorDesc));
  return out;
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

std::u16string RebuildAll(MxSql92Translator& translator, const ReplacementMap& map,
                          std::u16string text) {
  for (;;) {
    TagTree tree;
    Read(text, tree);
    Tag found = FirstHandled(tree);
    if (!found) return text;
    const TransEntry* entry = map.Find(LookupKey(found.Get(Attr::kPrimary)));
    if (!entry) throw std::logic_error("a handled function without an entry");
    const Tag made = (translator.*entry->handler)(found.DeepCopy());
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

template <class Translator>
std::u16string Plainly(const TranslatorModes& modes, const std::u16string& parsed) {
  FirstPassOnly<Translator> first;
  const std::u16string text = TranslateBy(first, modes, parsed);
  Translator translator;
  // Gives the translator its dictionaries; the nodes that its handlers make live in its own tree.
  TranslateBy(translator, modes, u"<tag/>");
  return MarkAggregates(RebuildAll(translator, Translator::Map(), text));
}

template <class Translator>
std::u16string ByEngine(const TranslatorModes& modes, const std::u16string& parsed) {
  Translator translator;
  return TranslateBy(translator, modes, parsed);
}

}  // namespace

std::u16string TranslatePlainly(ORKDB_DSType_ENUM dsType, const TranslatorModes& modes,
                                const std::u16string& parsed) {
  switch (dsType) {
    case kSqlServerDs:
      return Plainly<MxSql92Translator>(modes, parsed);
    case kOracleDs:
      return Plainly<MxPLsqlTranslator>(modes, parsed);
    case kDMDs:
      return Plainly<MxDMTranslator>(modes, parsed);
    case kKingbaseDs:
      return Plainly<MxKingbaseTranslator>(modes, parsed);
    case kOpenGaussDs:
      return Plainly<MxOpenGaussTranslator>(modes, parsed);
  }
  throw std::logic_error("no such database");
}

std::u16string TranslateByEngine(ORKDB_DSType_ENUM dsType, const TranslatorModes& modes,
                                 const std::u16string& parsed) {
  switch (dsType) {
    case kSqlServerDs:
      return ByEngine<MxSql92Translator>(modes, parsed);
    case kOracleDs:
      return ByEngine<MxPLsqlTranslator>(modes, parsed);
    case kDMDs:
      return ByEngine<MxDMTranslator>(modes, parsed);
    case kKingbaseDs:
      return ByEngine<MxKingbaseTranslator>(modes, parsed);
    case kOpenGaussDs:
      return ByEngine<MxOpenGaussTranslator>(modes, parsed);
  }
  throw std::logic_error("no such database");
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
