// SQL for Kingbase: date parts, number conversion and date arithmetic in forms of its own.
#pragma once

#include "translator/MxSql92Translator.h"

namespace ORKBASE {

class MxKingbaseTranslator : public MxSql92Translator {
 public:
  MxKingbaseTranslator();
  static const ReplacementMap& Map();
  static void InitFunctions(ReplacementMap& map);

  std::u16string QuoteName(std::u16string_view name) const override;

  /// Takes the date itself, not its function.
  Tag TransDatePart(Tag date, std::u16string_view part) override;
  Tag TransQuarter(Tag node) override;
  Tag TransWeekDay(Tag node) override;
  Tag TransToNumber(Tag node) override;
  Tag TransHour(Tag node) override;
  Tag TransMinute(Tag node) override;
  Tag TransDay(Tag node) override;
  Tag TransDateAdd(Tag node) override;

 protected:
  MxKingbaseTranslator(const DialectFields& fields, const ReplacementMap& map);

 private:
  Tag DatePartOf(Tag node, std::u16string_view part);
  Tag KingbaseIntervalNode(Tag date, Tag number, std::u16string_view unit);
};

}  // namespace ORKBASE
