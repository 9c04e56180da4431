// Translating documents without the ceremony of out texts.
#pragma once

#include "MxExpression.h"
#include "Utf8.h"

#include <string>

namespace ORKBASE {

/// What came out; the texts stay as they are here where nothing is written.
struct Result {
  bool done = false;
  std::u16string translated = u"t";
  std::u16string a = u"a";
  std::u16string b = u"b";
};

inline Result Translate(MxExpression& rules, const std::u16string& document,
                        ORKDB_DSType_ENUM dsType = kSqlServerDs) {
  Result result;
  result.done = rules.GetSpec(document, dsType, result.translated, result.a, result.b, false);
  return result;
}

/// The text, or the error behind "error".
inline std::string Sql(MxExpression& rules, const std::u16string& document,
                       ORKDB_DSType_ENUM dsType = kSqlServerDs) {
  const Result result = Translate(rules, document, dsType);
  return result.done ? U8(result.a) : "error " + U8(rules.errDescription());
}

}  // namespace ORKBASE
