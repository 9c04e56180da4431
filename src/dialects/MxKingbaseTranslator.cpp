// SQL for Kingbase. `year` and `month` go to the database as they stand, `day` does not.
#include "dialects/MxKingbaseTranslator.h"

#include "dialects/SharedDialectRows.h"
#include "foundation/Text.h"

namespace ORKBASE {
namespace {

using T = MxSql92Translator;

constexpr DialectFields kFields = {kKingbaseDs, u"", u"isnull", u"||", kDateStyleLiterals};

// clang-format off
constexpr ReplacementRow kRows[] = {
    {u"day",        u"", &T::TransDay},
    {u"dateAdd",    u"", &T::TransDateAdd},
    {u"ToText",     u"to_char"},
    {u"STRING_AGG", u"listagg"},
    {u"RAND",       u"RANDOM"},
    {u"REPLICATE",  u"repeat"},
};

struct IntervalUnit {
  std::u16string_view part;
  std::u16string_view unit;
  std::u16string_view factor;  // of the number, empty for none
};

constexpr IntervalUnit kIntervalUnits[] = {
    {u"yy", u"' yy'", u""},
    {u"qq", u"' mm'", u"3"},
    {u"mm", u"' mm'", u""},
    {u"ww", u"' ww'", u""},
    {u"dd", u"' dd'", u""},
    {u"hh", u"' hh'", u""},
    {u"mi", u"' mi'", u""},
    {u"ss", u"' ss'", u""},
};
// clang-format on

}  // namespace

MxKingbaseTranslator::MxKingbaseTranslator() : MxKingbaseTranslator(kFields, Map()) {}

MxKingbaseTranslator::MxKingbaseTranslator(const DialectFields& fields, const ReplacementMap& map)
    : MxSql92Translator(fields, map) {}

const ReplacementMap& MxKingbaseTranslator::Map() {
  static const ReplacementMap map = MakeMap(MxSql92Translator::Map(), kFields, InitFunctions);
  return map;
}

void MxKingbaseTranslator::InitFunctions(ReplacementMap& map) {
  map.RemoveReplacement(u"length");
  map.AddRows(kBareUserFunctions);
  map.AddRows(kRows);
}

std::u16string MxKingbaseTranslator::QuoteName(std::u16string_view name) const {
  return DoubleQuoted(name);
}

Tag MxKingbaseTranslator::TransDatePart(Tag date, std::u16string_view part) {
  return MakeCall(kNumDataType, u"date_part",
                  {MakeNode(kConstantSymbol, kStrDataType, part), date});
}

Tag MxKingbaseTranslator::DatePartOf(Tag node, std::u16string_view part) {
  return node.FirstChild() ? TransDatePart(node.FirstChild(), part) : Tag{};
}

// clang-format off
Tag MxKingbaseTranslator::TransQuarter(Tag node) { return DatePartOf(node, u"'Q'"); }
Tag MxKingbaseTranslator::TransDay(Tag node)     { return DatePartOf(node, u"'DAY'"); }
Tag MxKingbaseTranslator::TransHour(Tag node)    { return DatePartOf(node, u"'HOUR'"); }
Tag MxKingbaseTranslator::TransMinute(Tag node)  { return DatePartOf(node, u"'MINUTE'"); }
// clang-format on

/// `extract(isodow FROM  d)`.
Tag MxKingbaseTranslator::TransWeekDay(Tag node) {
  if (!node.FirstChild()) return {};
  Tag from = MakeNode(kOpNotSymbol, kStrDataType, u"isodow FROM ");
  from.AddChild(node.FirstChild());
  return MakeCall(kNumDataType, u"extract", {from});
}

/// `cast(x  AS  decimal(18,4))`: precision and scale as in the default dialect.
Tag MxKingbaseTranslator::TransToNumber(Tag node) {
  const Tag value = node.FirstChild();
  if (!value) return {};
  const Tag scale = value.Next();
  const Tag precision = scale.Next();
  Tag made = MakeWithHead(node, u"cast");
  Tag as = MakeNode(kConstantSymbol, kStrDataType, u" AS ");
  as.Set(Attr::kSemanticType, kInfixSemantic);
  as.AddChild(value);
  if (!scale) {
    as.AddChild(MakeNode(kConstantSymbol, kNoDataType, u"int"));
  } else {
    as.AddChild(
        MakeCall(kNoDataType, u"decimal",
                 {precision ? precision : MakeNode(kConstantSymbol, kNumDataType, u"30"), scale}));
  }
  made.AddChild(as);
  return made;
}

/// `d + (n || ' mm') ::INTERVAL`.
Tag MxKingbaseTranslator::KingbaseIntervalNode(Tag date, Tag number, std::u16string_view unit) {
  Tag sum = MakeNode(kOpComposeSymbol, kDateDataType, u"+");
  sum.AddChild(date);
  Tag interval = MakeNode(kConstantSymbol, kDateDataType, u"::INTERVAL");
  interval.Set(Attr::kSemanticType, kPostfixSemantic);
  Tag text = MakeNode(kOpComposeSymbol, kDateDataType, u"||");
  text.Set(Attr::kInBrackets, 1);
  text.AddChild(number);
  text.AddChild(MakeNode(kConstantSymbol, kDateDataType, unit));
  interval.AddChild(text);
  sum.AddChild(interval);
  return sum;
}

Tag MxKingbaseTranslator::TransDateAdd(Tag node) {
  const Tag part = node.FirstChild();
  const Tag number = part.Next();
  const Tag date = number.Next();
  for (const IntervalUnit& row : kIntervalUnits) {
    if (!EqualsIgnoringCase(part.Get(Attr::kText), row.part)) continue;
    const Tag amount = row.factor.empty()
                           ? number
                           : TimesNode(MakeNode(kConstantSymbol, kNumDataType, row.factor), number);
    return KingbaseIntervalNode(date, amount, row.unit);
  }
  return {};
}

}  // namespace ORKBASE
