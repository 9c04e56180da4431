// SQL for Oracle: date functions, conversions and names in forms of its own. What Oracle has no
// form for is refused by an `Mx_Exception`, before the node of the function is looked at.
#pragma once

#include "dialects/MxSql92Translator.h"

namespace ORKBASE {

class MxPLsqlTranslator : public MxSql92Translator {
 public:
  explicit MxPLsqlTranslator(TagTree& doc);
  static const ReplacementMap& Map();

  std::u16string TransColumnName(std::u16string_view name) const override;
  std::u16string TransDateConstant(std::u16string_view text) const override;

  /// Brackets around the function are lost.
  Tag TransDatePart(Tag node, std::u16string_view part) override;
  /// Of the calendar alone: what is fiscal is refused by its row.
  Tag TransPeriodBound(Tag node, bool start, std::u16string_view part, bool fiscal) override;
  Tag TransToText(Tag node) override;
  Tag TransToDate(Tag node) override;
  Tag TransToNumber(Tag node) override;
  Tag TransLog10(Tag node);
  Tag TransDateAdd(Tag node);
  Tag TransTimeInterval(Tag node);

 protected:
  Tag MakeOneLess() override;

 private:
  Tag DatePartOf(Tag date, std::u16string_view part);
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
