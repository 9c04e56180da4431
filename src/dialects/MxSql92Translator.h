// SQL for SQL Server, the default dialect: its date parts, casts and conversions, which the other
// dialects take over where they have no form of their own.
#pragma once

#include "translator/TranslatorFrame.h"

namespace ORKBASE {

class MxSql92Translator : public TranslatorFrame {
 public:
  explicit MxSql92Translator(TagTree& doc);
  /// The map of this class. A dialect makes its own of it.
  static const ReplacementMap& Map();

  Tag TransDatePart(Tag node, std::u16string_view part) override;
  Tag TransToText(Tag node) override;
  Tag TransToDate(Tag node) override;
  Tag TransToNumber(Tag node) override;

 protected:
  /// For dialects; all three outlive the translator.
  using TranslatorFrame::TranslatorFrame;

  /// `ToText` with a style.
  virtual Tag TransConvert(Tag node);
  /// The first argument of a conversion, as a date: cast where it stands in the SQL as text.
  Tag DateArgument(Tag argument);
  /// The number type of a scale and the precision behind it: `decimal(30,4)`, or `int` for none.
  Tag NumberType(Tag scale);

 private:
  Tag TransCast(Tag node, std::int32_t target);
};

}  // namespace ORKBASE
