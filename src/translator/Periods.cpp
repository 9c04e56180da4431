// First and last days of periods, and whole periods behind "between". The bounds are functions of
// the business database: a translator holds no fiscal calendar, and leaves it to them to make sense
// of month 0.
#include "foundation/Text.h"
#include "translator/MxSql92Translator.h"

namespace ORKBASE {

/// Always five arguments: part, year, quarter, month, fiscal; "0" where the part uses none.
Tag MxSql92Translator::TransPeriodBound(Tag node, bool start, std::u16string_view part,
                                        bool fiscal) {
  const Tag first = node.FirstChild();
  if (!first) return {};
  const Tag second = first.Next();
  const auto number = [this](std::u16string_view text) {
    return MakeNode(kConstantSymbol, kNumDataType, text);
  };
  const bool byQuarter = EqualsIgnoringCase(part, u"'qq'");
  const bool byMonth = EqualsIgnoringCase(part, u"'mm'");
  std::u16string_view name = start ? u"dbo.fStartTime" : u"dbo.fEndTime";
  if (dbType() != kSqlServerDs) name.remove_prefix(std::u16string_view(u"dbo.").size());
  Tag made = MakeWithHead(node, name);
  made.AddChild(MakeNode(kDatePartSymbol, kNoDataType, part));
  made.AddChild(first);
  made.AddChild(byQuarter ? second : number(u"0"));
  made.AddChild(byMonth ? second : number(u"0"));
  made.AddChild(number(fiscal ? u"1" : u"0"));
  return made;
}

// clang-format off
Tag MxSql92Translator::TransFstDayOfMonth(Tag node)      { return TransPeriodBound(node, true,  u"'mm'", false); }
Tag MxSql92Translator::TransLstDayOfMonth(Tag node)      { return TransPeriodBound(node, false, u"'mm'", false); }
Tag MxSql92Translator::TransFstDayOfFisMonth(Tag node)   { return TransPeriodBound(node, true,  u"'mm'", true); }
Tag MxSql92Translator::TransEndOfFisMonth(Tag node)      { return TransPeriodBound(node, false, u"'mm'", true); }
Tag MxSql92Translator::TransFstDayOfYear(Tag node)       { return TransPeriodBound(node, true,  u"'yy'", false); }
Tag MxSql92Translator::TransEndOfYear(Tag node)          { return TransPeriodBound(node, false, u"'yy'", false); }
Tag MxSql92Translator::TransFstDayOfFisYear(Tag node)    { return TransPeriodBound(node, true,  u"'yy'", true); }
Tag MxSql92Translator::TransEndOfFisYear(Tag node)       { return TransPeriodBound(node, false, u"'yy'", true); }
Tag MxSql92Translator::TransFstDayOfQuarter(Tag node)    { return TransPeriodBound(node, true,  u"'qq'", false); }
Tag MxSql92Translator::TransEndOfQuarter(Tag node)       { return TransPeriodBound(node, false, u"'qq'", false); }
Tag MxSql92Translator::TransFstDayOfFisQuarter(Tag node) { return TransPeriodBound(node, true,  u"'qq'", true); }
Tag MxSql92Translator::TransEndOfFisQuarter(Tag node)    { return TransPeriodBound(node, false, u"'qq'", true); }
// clang-format on

/// Both bounds, the lower one of a copy of the arguments.
Tag MxSql92Translator::Period(Tag node, Bound lower, Bound upper) {
  const Tag first = (this->*lower)(node.DeepCopy());
  if (!first) return {};
  Tag made = MakeNode(kOpComposeSymbol, kDateDataType, u" and ");
  made.AddChild(first);
  made.AddChild((this->*upper)(node));
  return made;
}

using T = MxSql92Translator;
// clang-format off
Tag T::TransThisYear(Tag node)       { return Period(node, &T::TransFstDayOfYear,       &T::TransEndOfYear); }
Tag T::TransThisFisYear(Tag node)    { return Period(node, &T::TransFstDayOfFisYear,    &T::TransEndOfFisYear); }
Tag T::TransThisQuarter(Tag node)    { return Period(node, &T::TransFstDayOfQuarter,    &T::TransEndOfQuarter); }
Tag T::TransThisFisQuarter(Tag node) { return Period(node, &T::TransFstDayOfFisQuarter, &T::TransEndOfFisQuarter); }
Tag T::TransThisMonth(Tag node)      { return Period(node, &T::TransFstDayOfMonth,      &T::TransLstDayOfMonth); }
Tag T::TransThisFisMonth(Tag node)   { return Period(node, &T::TransFstDayOfFisMonth,   &T::TransEndOfFisMonth); }
// clang-format on

Tag MxSql92Translator::MakeOneLess() {
  return MakeNode(kOpSumSymbol, kNumDataType, u" - ");
}

/// Puts `x  -  1` in the place of an argument. The year does not change at a turn of the year.
Tag MxSql92Translator::OneLess(Tag node, std::int32_t argument) {
  Tag old = node.ChildAt(argument);
  Tag less = MakeOneLess();
  old.ReplaceBy(less);
  less.AddChild(old);
  less.AddChild(MakeNode(kConstantSymbol, kNumDataType, u"1"));
  return node;
}

// clang-format off
Tag T::TransLastYear(Tag node)       { return TransThisYear(OneLess(node, 0)); }
Tag T::TransLastFisYear(Tag node)    { return TransThisFisYear(OneLess(node, 0)); }
Tag T::TransLastQuarter(Tag node)    { return TransThisQuarter(OneLess(node, 1)); }
Tag T::TransLastFisQuarter(Tag node) { return TransThisFisQuarter(OneLess(node, 1)); }
Tag T::TransLastMonth(Tag node)      { return TransThisMonth(OneLess(node, 1)); }
Tag T::TransLastFisMonth(Tag node)   { return TransThisFisMonth(OneLess(node, 1)); }
// clang-format on

}  // namespace ORKBASE
