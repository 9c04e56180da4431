// SQL for openGauss.
#include "dialects/MxOpenGaussTranslator.h"

namespace ORKBASE {
namespace {

constexpr DialectFields kFields = {kOpenGaussDs, u"", u"COALESCE", u"||", kDateStyleLiterals};

// clang-format off
constexpr ReplacementRow kRows[] = {
    {u"timeInterval", u"fDateDiff"},
    {u"CHARINDEX",    u"fCHARINDEX"},
    {u"STRING_AGG",   u"string_agg"},
    {u"isNull",       u"COALESCE"},
};
// clang-format on

}  // namespace

MxOpenGaussTranslator::MxOpenGaussTranslator() : MxKingbaseTranslator(kFields, Map()) {}

const ReplacementMap& MxOpenGaussTranslator::Map() {
  static const ReplacementMap map = MakeMap(MxKingbaseTranslator::Map(), kFields, InitFunctions);
  return map;
}

void MxOpenGaussTranslator::InitFunctions(ReplacementMap& map) {
  map.AddRows(kRows);
}

}  // namespace ORKBASE
