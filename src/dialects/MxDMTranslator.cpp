// SQL for DM.
#include "dialects/MxDMTranslator.h"

namespace ORKBASE {
namespace {

constexpr DialectFields kFields = {
    .nameQuotes = u"\"\"",
    .unicodePrefix = u"",
    .isNullName = u"isnull",
    .concatOp = u"+",  // kept: that of the default dialect
    .dateStyles = kDateStyleLiterals,
    .userPrefix = u"",
    .reportMark = u"##",
    .quotesReportTable = false,
};

// clang-format off
constexpr ReplacementRow kRows[] = {
    {u"quarter",    OwnWord{}},
    {u"weekDay",    OwnWord{}},
    {u"hour",       OwnWord{}},
    {u"minute",     OwnWord{}},
    {u"CHARINDEX",  u"locate"},
    {u"STRING_AGG", u"listagg"},
};
// clang-format on

}  // namespace

MxDMTranslator::MxDMTranslator(TagTree& doc) : MxSql92Translator(kFields, Map(), doc) {}

const ReplacementMap& MxDMTranslator::Map() {
  static const ReplacementMap map = MakeMap(MxSql92Translator::Map(), kFields, kRows);
  return map;
}

/// `to_char(d,'yyyy-mm-dd')`: the style stays as the rule has it.
Tag MxDMTranslator::TransConvert(Tag node) {
  const Tag argument = node.FirstChild();
  const Tag style = argument.Next();
  Tag made = MakeWithHead(node, u"to_char");
  made.AddChild(DateArgument(argument));
  made.AddChild(style);
  return made;
}

}  // namespace ORKBASE
