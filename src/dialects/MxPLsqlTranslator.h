// SQL for Oracle: date functions, conversions and names in forms of its own. What Oracle has no
// form for is refused by an `Mx_Exception`, before the node of the function is looked at.
#pragma once

#include "translator/MxSql92Translator.h"

namespace ORKBASE {

class MxPLsqlTranslator : public MxSql92Translator {
 public:
  MxPLsqlTranslator();
  static const ReplacementMap& Map();
  static void InitFunctions(ReplacementMap& map);

  std::u16string QuoteName(std::u16string_view name) const override;
  std::u16string TransColumnName(std::u16string_view name) const override;
  std::u16string TransDateConstant(std::u16string_view text) const override;

  /// Takes the date itself, not its function, so brackets around the function are lost.
  Tag TransDatePart(Tag date, std::u16string_view part) override;
  Tag TransFisDatePart(Tag node, std::u16string_view part) override;
  Tag TransPeriodBound(Tag node, bool start, std::u16string_view part, bool fiscal) override;
  Tag TransQuarter(Tag node) override;
  Tag TransWeekDay(Tag node) override;
  Tag TransToText(Tag node) override;
  Tag TransToDate(Tag node) override;
  Tag TransThisSet(Tag node) override;
  Tag TransToNumber(Tag node) override;
  Tag TransHour(Tag node) override;
  Tag TransMinute(Tag node) override;
  Tag TransLog10(Tag node) override;
  Tag TransYear(Tag node) override;
  Tag TransMonth(Tag node) override;
  Tag TransDay(Tag node) override;
  Tag TransDateAdd(Tag node) override;
  Tag TransTimeInterval(Tag node) override;

 protected:
  Tag MakeOneLess() override;

 private:
  Tag DatePartOf(Tag node, std::u16string_view part);
  Tag PlusMinusNode(Tag a, Tag b, bool plus);
  Tag ConcatNode(Tag a, Tag b);
  Tag TimesConstantNode(Tag a, std::u16string_view constant);
  Tag QuarterFirstMonthNode(Tag quarter);
  Tag FirstDayOf(Tag year, Tag month);
  Tag AddIntervalNode(Tag date, Tag number, std::u16string_view unit);
  Tag YearDiffNode(Tag a, Tag b);
  Tag TruncDiffNode(Tag a, Tag b, std::u16string_view format);
  Tag Word(std::u16string_view text);
  Tag Number(std::u16string_view text);
};

/// A short date pattern, such as u"M/d/yy" with the separator u"/", as an Oracle format with the
/// time behind it.
std::u16string OracleDateFormat(std::u16string_view pattern, std::u16string_view separator);

/// The same of the user's pattern.
std::u16string LocaleDateFormat();

}  // namespace ORKBASE
