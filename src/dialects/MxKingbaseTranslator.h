// SQL for Kingbase: date parts, number conversion and date arithmetic in forms of its own.
#pragma once

#include "dialects/MxSql92Translator.h"

namespace ORKBASE {

class MxKingbaseTranslator : public MxSql92Translator {
 public:
  explicit MxKingbaseTranslator(TagTree& doc);
  static const ReplacementMap& Map();

  /// Brackets around the function are lost.
  Tag TransDatePart(Tag node, std::u16string_view part) override;
  Tag TransToNumber(Tag node) override;
  Tag TransWeekDay(Tag node);
  Tag TransDateAdd(Tag node);

 protected:
  using MxSql92Translator::MxSql92Translator;

 private:
  Tag KingbaseIntervalNode(Tag date, Tag number, std::u16string_view unit);
};

}  // namespace ORKBASE
