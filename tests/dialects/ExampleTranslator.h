// SQL for an example database: the default dialect without the prefix of text constants, with "||"
// for "&", and with other names for three functions.
#pragma once

#include "dialects/MxSql92Translator.h"

namespace ORKBASE {

class ExampleTranslator : public MxSql92Translator {
 public:
  explicit ExampleTranslator(TagTree& doc) : MxSql92Translator(kFields, Map(), doc) {}

  static const ReplacementMap& Map() {
    static const ReplacementMap map = MakeMap(MxSql92Translator::Map(), kFields, kRows);
    return map;
  }

 private:
  static constexpr DialectFields kFields = {
      .nameQuotes = u"[]",
      .unicodePrefix = u"",
      .isNullName = u"isnull",
      .concatOp = u"||",
      .dateStyles = u"112|120|110|105|111|101|103|12|20|10|5|11|1|3|108|114",
      .userPrefix = u"dbo.",
      .reportMark = u"#",
      .quotesReportTable = false,
  };

  // clang-format off
  static constexpr ReplacementRow kRows[] = {
      {u"length",    u"char_length"},
      {u"CHARINDEX", u"position"},
      {u"RAND",      u"random"},
  };
  // clang-format on
};

}  // namespace ORKBASE
