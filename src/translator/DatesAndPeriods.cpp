// Parts of dates, first and last days of periods, and whole periods behind "between". Bounds, and
// all that is fiscal, are functions of the business database: a translator holds no fiscal
// calendar, and leaves it to them to make sense of month 0.
#include "foundation/Text.h"
#include "translator/TranslatorFrame.h"

namespace ORKBASE {

Tag TranslatorFrame::TransFisDatePart(Tag node, std::u16string_view part) {
  Tag made = MakeWithHead(node, UserFunction(u"fDatePart_acct"));
  made.AddChild(MakeNode(kDatePartSymbol, kNoDataType, part));
  made.AddChild(node.FirstChild());
  return made;
}

/// Always five arguments: part, year, quarter, month, fiscal; "0" where the part uses none.
Tag TranslatorFrame::TransPeriodBound(Tag node, bool start, std::u16string_view part, bool fiscal) {
  const Tag first = node.FirstChild();
  const Tag second = first.Next();
  const auto number = [this](std::u16string_view text) {
    return MakeNode(kConstantSymbol, kNumDataType, text);
  };
  const bool byQuarter = EqualsIgnoringCase(part, u"'qq'");
  const bool byMonth = EqualsIgnoringCase(part, u"'mm'");
  Tag made = MakeWithHead(node, UserFunction(start ? u"fStartTime" : u"fEndTime"));
  made.AddChild(MakeNode(kDatePartSymbol, kNoDataType, part));
  made.AddChild(first);
  made.AddChild(byQuarter ? second : number(u"0"));
  made.AddChild(byMonth ? second : number(u"0"));
  made.AddChild(number(fiscal ? u"1" : u"0"));
  return made;
}

/// The lower bound is made of a copy of the arguments.
Tag TranslatorFrame::RebuildBy(const WholePeriod& row, Tag node) {
  const Tag lower = RebuildAs(row.lower, node.DeepCopy());
  Tag made = MakeNode(kOpComposeSymbol, kDateDataType, u" and ");
  made.AddChild(lower);
  made.AddChild(RebuildAs(row.upper, node));
  return made;
}

Tag TranslatorFrame::MakeOneLess() {
  return MakeNode(kOpSumSymbol, kNumDataType, u" - ");
}

/// Puts `x  -  1` in the place of the argument. kept: the year does not change at a turn of the
/// year.
Tag TranslatorFrame::RebuildBy(const OneLess& row, Tag node) {
  Tag old = node.ChildAt(row.argument);
  Tag less = MakeOneLess();
  old.ReplaceBy(less);
  less.AddChild(old);
  less.AddChild(MakeNode(kConstantSymbol, kNumDataType, u"1"));
  return RebuildAs(row.period, node);
}

}  // namespace ORKBASE
