// SQL for openGauss.
#include "dialects/MxOpenGaussTranslator.h"

namespace ORKBASE {
namespace {

constexpr DialectFields kFields = {
    .nameQuotes = u"\"\"",
    .unicodePrefix = u"",
    .isNullName = u"COALESCE",
    .concatOp = u"||",
    .dateStyles = kDateStyleLiterals,
    .userPrefix = u"",
    .reportMark = u"##",
    .quotesReportTable = true,
};

// clang-format off
constexpr ReplacementRow kRows[] = {
    {u"timeInterval", u"fDateDiff"},
    {u"CHARINDEX",    u"fCHARINDEX"},
    {u"STRING_AGG",   u"string_agg"},
    {u"isNull",       u"COALESCE"},
};
// clang-format on

}  // namespace

MxOpenGaussTranslator::MxOpenGaussTranslator(TagTree& doc)
    : MxKingbaseTranslator(kFields, Map(), doc) {}

const ReplacementMap& MxOpenGaussTranslator::Map() {
  static const ReplacementMap map = MakeMap(MxKingbaseTranslator::Map(), kFields, kRows);
  return map;
}

}  // namespace ORKBASE
