// SQL for Kingbase.
// kept: `year` and `month` go to the database as they stand, `day` does not; `ToDate` and the
// is-null form are those of the default dialect.
#include "dialects/MxKingbaseTranslator.h"

#include "foundation/Text.h"

namespace ORKBASE {
namespace {

using T = MxKingbaseTranslator;

constexpr DialectFields kFields = {
    .nameQuotes = u"\"\"",
    .unicodePrefix = u"",
    .isNullName = u"isnull",
    .concatOp = u"||",
    .dateStyles = kDateStyleLiterals,
    .userPrefix = u"",
    .reportMark = u"##",
    .quotesReportTable = true,
};

// clang-format off
constexpr ReplacementRow kRows[] = {
    {u"length",     OwnWord{}},
    {u"quarter",    DatePart{u"'Q'"}},
    {u"day",        DatePart{u"'DAY'"}},
    {u"hour",       DatePart{u"'HOUR'"}},
    {u"minute",     DatePart{u"'MINUTE'"}},
    {u"weekDay",    HandleBy<&T::TransWeekDay>},
    {u"dateAdd",    HandleBy<&T::TransDateAdd>},
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

MxKingbaseTranslator::MxKingbaseTranslator(TagTree& doc) : MxSql92Translator(kFields, Map(), doc) {}

const ReplacementMap& MxKingbaseTranslator::Map() {
  static const ReplacementMap map = MakeMap(MxSql92Translator::Map(), kFields, kRows);
  return map;
}

Tag MxKingbaseTranslator::TransDatePart(Tag node, std::u16string_view part) {
  return MakeCall(kNumDataType, u"date_part",
                  {MakeNode(kConstantSymbol, kStrDataType, part), node.FirstChild()});
}

/// `extract(isodow FROM  d)`.
Tag MxKingbaseTranslator::TransWeekDay(Tag node) {
  Tag from = MakeNode(kOpNotSymbol, kStrDataType, u"isodow FROM ");
  from.AddChild(node.FirstChild());
  return MakeCall(kNumDataType, u"extract", {from});
}

/// `cast(x  AS  decimal(18,4))`: precision and scale as in the default dialect.
Tag MxKingbaseTranslator::TransToNumber(Tag node) {
  const Tag value = node.FirstChild();
  const Tag type = NumberType(value.Next());
  Tag made = MakeWithHead(node, u"cast");
  Tag as = MakeNode(kConstantSymbol, kStrDataType, u" AS ");
  as.Set(Attr::kSemanticType, kInfixSemantic);
  as.AddChild(value);
  as.AddChild(type);
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
