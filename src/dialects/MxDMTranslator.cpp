// SQL for DM. It keeps the "+" of the default dialect for "&".
#include "dialects/MxDMTranslator.h"

#include "dialects/SharedDialectRows.h"

namespace ORKBASE {
namespace {

constexpr DialectFields kFields = {kDMDs, u"", u"isnull", u"+", kDateStyleLiterals};

// clang-format off
constexpr std::u16string_view kOwnWords[] = {u"quarter", u"weekDay", u"hour", u"minute"};

constexpr ReplacementRow kRows[] = {
    {u"CHARINDEX",  u"locate"},
    {u"STRING_AGG", u"listagg"},
};
// clang-format on

}  // namespace

MxDMTranslator::MxDMTranslator() : MxSql92Translator(kFields, Map()) {}

const ReplacementMap& MxDMTranslator::Map() {
  static const ReplacementMap map = MakeMap(MxSql92Translator::Map(), kFields, InitFunctions);
  return map;
}

void MxDMTranslator::InitFunctions(ReplacementMap& map) {
  for (const std::u16string_view word : kOwnWords) map.RemoveReplacement(word);
  map.AddRows(kBareUserFunctions);
  map.AddRows(kRows);
}

std::u16string MxDMTranslator::QuoteName(std::u16string_view name) const {
  return DoubleQuoted(name);
}

}  // namespace ORKBASE
