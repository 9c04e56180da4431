// SQL for Oracle: date parts, periods and date arithmetic out of its own functions.
#include "dialects/MxPLsqlTranslator.h"
#include "dialects/OracleRefusals.h"
#include "foundation/Text.h"

namespace ORKBASE {
namespace {

/// How `dateAdd` counts a part: in months, or as an interval of a unit.
struct AddedPart {
  std::u16string_view part;
  std::u16string_view factor;  // of the number, empty for none
  std::u16string_view unit;    // empty: months
};

/// How `timeInterval` counts a part.
enum class Difference : std::uint8_t { kYears, kMonths, kTruncated, kRefused };

struct DifferencePart {
  std::u16string_view part;
  Difference difference;
  std::u16string_view format;  // what both dates are cut to
  std::u16string_view factor;  // of the difference in days, empty for none
  const Refusal* refusal = nullptr;
};

// clang-format off
constexpr AddedPart kAddedParts[] = {
    {u"yy", u"12", u""},
    {u"qq", u"3",  u""},
    {u"mm", u"",   u""},
    {u"ww", u"7",  u"'day'"},
    {u"dd", u"",   u"'day'"},
    {u"hh", u"",   u"'hour'"},
    {u"mi", u"",   u"'minute'"},
    {u"ss", u"",   u"'second'"},
};

constexpr DifferencePart kDifferenceParts[] = {
    {u"yy", Difference::kYears,     u"",       u""},
    {u"qq", Difference::kRefused,   u"",       u"", &kQuarterDifferenceRefused},
    {u"mm", Difference::kMonths,    u"",       u""},
    {u"ww", Difference::kRefused,   u"",       u"", &kWeekDifferenceRefused},
    {u"dd", Difference::kTruncated, u"'dd'",   u""},
    {u"hh", Difference::kTruncated, u"'hh24'", u"24"},
    {u"mi", Difference::kTruncated, u"'mi'",   u"24*60"},
    {u"ss", Difference::kTruncated, u"'ss'",   u"24*60*60"},  // kept: no format of `trunc`
};
// clang-format on

}  // namespace

Tag MxPLsqlTranslator::Word(std::u16string_view text) {
  return MakeNode(kConstantSymbol, kStrDataType, text);
}

Tag MxPLsqlTranslator::Number(std::u16string_view text) {
  return MakeNode(kConstantSymbol, kNumDataType, text);
}

// --- date parts ----------------------------------------------------------------------------------

Tag MxPLsqlTranslator::TransDatePart(Tag node, std::u16string_view part) {
  return DatePartOf(node.FirstChild(), part);
}

Tag MxPLsqlTranslator::DatePartOf(Tag date, std::u16string_view part) {
  return MakeCall(kNumDataType, u"to_char", {date, Word(part)});
}

// --- periods -------------------------------------------------------------------------------------

/// `last_day(to_date(y || '/12/31','yyyy/mm/dd'))`.
/// kept: every end is the last day of its last month, the year's too.
Tag MxPLsqlTranslator::TransPeriodBound(Tag node, bool start, std::u16string_view part,
                                        bool /*fiscal*/) {
  const Tag year = node.FirstChild();
  const Tag second = year.Next();
  Tag day;
  if (EqualsIgnoringCase(part, u"'yy'")) {
    day = ConcatNode(year, Word(start ? u"'/1/1'" : u"'/12/31'"));
  } else if (EqualsIgnoringCase(part, u"'qq'")) {
    day = FirstDayOf(year, start ? QuarterFirstMonthNode(second) : TimesConstantNode(second, u"3"));
  } else if (EqualsIgnoringCase(part, u"'mm'")) {
    day = FirstDayOf(year, second);
  }
  Tag made = MakeWithHead(node, u"to_date");
  made.AddChild(day);
  made.AddChild(Word(u"'yyyy/mm/dd'"));
  if (start) return made;
  Tag last = MakeWithHead(made, u"last_day");
  last.AddChild(made);
  return last;
}

Tag MxPLsqlTranslator::FirstDayOf(Tag year, Tag month) {
  return ConcatNode(ConcatNode(year, Word(u"'/'")), ConcatNode(month, Word(u"'/1'")));
}

/// `(3 * (q - 1) + 1)`.
Tag MxPLsqlTranslator::QuarterFirstMonthNode(Tag quarter) {
  return PlusMinusNode(TimesConstantNode(PlusMinusNode(quarter, Number(u"1"), false), u"3"),
                       Number(u"1"), true);
}

/// Unlike that of the default dialect, in brackets.
Tag MxPLsqlTranslator::MakeOneLess() {
  Tag less = MxSql92Translator::MakeOneLess();
  less.Set(Attr::kInBrackets, 1);
  return less;
}

// --- arithmetic ----------------------------------------------------------------------------------

Tag MxPLsqlTranslator::PlusMinusNode(Tag a, Tag b, bool plus) {
  Tag node = MakeOperator(plus ? u"+" : u"-", kOpSumSymbol);
  node.Set(Attr::kInBrackets, 1);
  node.AddChild(a);
  node.AddChild(b);
  return node;
}

Tag MxPLsqlTranslator::ConcatNode(Tag a, Tag b) {
  Tag node = NewTag();
  node.Set(Attr::kSymbol, kOpComposeSymbol);
  node.Set(Attr::kDataType, kStrDataType);
  node.Set(Attr::kSemanticType, kInfixSemantic);
  node.Set(Attr::kTransType, static_cast<std::int32_t>(TransType::kPlain));
  node.Set(Attr::kText, u"||");
  node.AddChild(a);
  node.AddChild(b);
  return node;
}

Tag MxPLsqlTranslator::TimesConstantNode(Tag a, std::u16string_view constant) {
  return TimesNode(Number(constant), a);
}

/// `(d + numtodsinterval(n,'day'))`.
Tag MxPLsqlTranslator::AddIntervalNode(Tag date, Tag number, std::u16string_view unit) {
  return PlusMinusNode(date, MakeCall(kDateDataType, u"numtodsinterval", {number, Word(unit)}),
                       true);
}

Tag MxPLsqlTranslator::TransDateAdd(Tag node) {
  const Tag part = node.FirstChild();
  const Tag number = part.Next();
  const Tag date = number.Next();
  for (const AddedPart& row : kAddedParts) {
    if (!EqualsIgnoringCase(part.Get(Attr::kText), row.part)) continue;
    const Tag amount = row.factor.empty() ? number : TimesConstantNode(number, row.factor);
    return row.unit.empty() ? MakeCall(kDateDataType, u"add_months", {date, amount})
                            : AddIntervalNode(date, amount, row.unit);
  }
  return {};
}

/// Years as calendar numbers: `(to_char(b,'yyyy') - to_char(a,'yyyy'))`.
Tag MxPLsqlTranslator::YearDiffNode(Tag a, Tag b) {
  const Tag from = DatePartOf(a, u"'yyyy'");
  const Tag to = DatePartOf(b, u"'yyyy'");
  return PlusMinusNode(to, from, false);
}

Tag MxPLsqlTranslator::TruncDiffNode(Tag a, Tag b, std::u16string_view format) {
  const Tag from = MakeCall(kNumDataType, u"trunc", {a, Word(format)});
  const Tag to = MakeCall(kNumDataType, u"trunc", {b, Word(format)});
  return PlusMinusNode(to, from, false);
}

const Refusal* RefusedDifference(std::u16string_view part) {
  for (const DifferencePart& row : kDifferenceParts) {
    if (EqualsIgnoringCase(part, row.part)) return row.refusal;
  }
  return nullptr;
}

/// Positive when the third argument is the later date.
Tag MxPLsqlTranslator::TransTimeInterval(Tag node) {
  const Tag part = node.FirstChild();
  const Tag a = part.Next();
  const Tag b = a.Next();
  for (const DifferencePart& row : kDifferenceParts) {
    if (!EqualsIgnoringCase(part.Get(Attr::kText), row.part)) continue;
    switch (row.difference) {
      case Difference::kRefused:
        Refuse(*row.refusal);
      case Difference::kYears:
        return YearDiffNode(a, b);
      case Difference::kMonths:
        return MakeCall(kNumDataType, u"ceil", {MakeCall(kNumDataType, u"months_between", {b, a})});
      case Difference::kTruncated: {
        const Tag days = TruncDiffNode(a, b, row.format);
        return row.factor.empty() ? days : TimesNode(days, Number(row.factor));
      }
    }
  }
  return {};
}

}  // namespace ORKBASE
