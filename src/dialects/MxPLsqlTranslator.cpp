// SQL for Oracle: fields, map, conversions and names. The dates stand in a file of their own.
#include "dialects/MxPLsqlTranslator.h"

#include "dialects/OracleRefusals.h"
#include "foundation/Text.h"
#include "platform/LocaleDates.h"

namespace ORKBASE {
namespace {

using T = MxPLsqlTranslator;

constexpr DialectFields kFields = {
    .nameQuotes = u"",
    .unicodePrefix = u"",
    .isNullName = u"nvl",
    .concatOp = u"||",
    .dateStyles = kDateStyleLiterals,
    .userPrefix = std::nullopt,
    .reportMark = u"#",  // kept: temporary tables are named as in the default dialect
    .quotesReportTable = false,
};

// clang-format off
constexpr ReplacementRow kRows[] = {
    {u"quarter",      DatePart{u"'q'"}},
    {u"weekDay",      DatePart{u"'d'"}},  // kept: each database numbers the days in its own way
    {u"year",         DatePart{u"'yyyy'"}},
    {u"month",        DatePart{u"'mm'"}},
    {u"day",          DatePart{u"'dd'"}},
    {u"hour",         DatePart{u"'hh24'"}},
    {u"minute",       DatePart{u"'mi'"}},
    {u"dateAdd",      HandleBy<&T::TransDateAdd>},
    {u"timeInterval", HandleBy<&T::TransTimeInterval>},
    {u"log10",        HandleBy<&T::TransLog10>},
    {u"log",          u"ln"},
    {u"ltrim",        u"ltrim"},
    {u"rtrim",        u"rtrim"},
    {u"substring",    u"substr"},
    {u"length",       u"length"},
    {u"isNull",       u"nvl"},
    {u"toLower",      OwnWord{}},  // kept: although toUpper becomes upper

    {u"thisSet",            kSetRefused},
    {u"fisYear",            kFiscalPartRefused},
    {u"fisMonth",           kFiscalPartRefused},
    {u"fisQuarter",         kFiscalPartRefused},
    {u"fstDayOfFisYear",    kFiscalBoundRefused},
    {u"endOfFisYear",       kFiscalBoundRefused},
    {u"fstDayOfFisQuarter", kFiscalBoundRefused},
    {u"endOfFisQuarter",    kFiscalBoundRefused},
    {u"fstDayOfFisMonth",   kFiscalBoundRefused},
    {u"endOfFisMonth",      kFiscalBoundRefused},
    {u"thisFisYear",        kFiscalBoundRefused},
    {u"lastFisYear",        kFiscalBoundRefused},
    {u"thisFisQuarter",     kFiscalBoundRefused},
    {u"lastFisQuarter",     kFiscalBoundRefused},
    {u"thisFisMonth",       kFiscalBoundRefused},
    {u"lastFisMonth",       kFiscalBoundRefused},
};

struct FormatPiece {
  char16_t letter;
  std::u16string_view format;
};

constexpr FormatPiece kFormatPieces[] = {
    {u'Y', u"yyyy"},
    {u'M', u"mm"},
    {u'D', u"dd"},
};
// clang-format on

constexpr std::u16string_view kTimeFormat = u"hh24:mi:ss";

/// The number of letters in the user's pattern plays no part.
std::u16string FormatOf(std::u16string_view piece) {
  std::u16string upper = ToUpper(piece);
  for (const FormatPiece& row : kFormatPieces) {
    if (upper.find(row.letter) != std::u16string::npos) return std::u16string(row.format);
  }
  return upper;
}

}  // namespace

MxPLsqlTranslator::MxPLsqlTranslator(TagTree& doc) : MxSql92Translator(kFields, Map(), doc) {}

/// Of what the default dialect has for itself it takes nothing over.
const ReplacementMap& MxPLsqlTranslator::Map() {
  static const ReplacementMap map = MakeMap(SharedMap(), kFields, kRows);
  return map;
}

std::u16string OracleDateFormat(std::u16string_view pattern, std::u16string_view separator) {
  std::u16string format;
  bool isFirst = true;
  for (const std::u16string_view piece : SplitText(pattern, separator)) {
    if (!isFirst) format += separator;
    format += FormatOf(piece);
    isFirst = false;
  }
  return format.append(u" ").append(kTimeFormat);
}

std::u16string LocaleDateFormat() {
  return OracleDateFormat(ShortDatePattern(), DateSeparator());
}

std::u16string MxPLsqlTranslator::TransColumnName(std::u16string_view name) const {
  if (!name.starts_with(u'[')) return std::u16string(name);
  name.remove_prefix(1);
  if (!name.empty()) name.remove_suffix(1);
  return std::u16string(name);
}

/// Oracle reads the constant in the format of the user's locale; nothing converts it.
std::u16string MxPLsqlTranslator::TransDateConstant(std::u16string_view text) const {
  if (text.empty()) return {};
  return std::u16string(u"to_date(")
      .append(text)
      .append(u",'")
      .append(LocaleDateFormat())
      .append(u"')");
}

/// A date stays as it is.
Tag MxPLsqlTranslator::TransToDate(Tag node) {
  const Tag value = node.FirstChild();
  if (value.GetInt(Attr::kDataType) == kDateDataType) return value;
  Tag made = MakeWithHead(node, u"to_date");
  made.AddChild(value);
  made.AddChild(Word(std::u16string(1, u'\'').append(LocaleDateFormat()).append(1, u'\'')));
  return made;
}

Tag MxPLsqlTranslator::TransToText(Tag node) {
  const Tag value = node.FirstChild();
  const Tag style = value.Next();
  Tag made = MakeWithHead(node, u"to_char");
  made.AddChild(value);
  made.AddChild(style);
  return made;
}

/// kept: with a scale it is `trunc`, although the value is text; a precision is dropped.
Tag MxPLsqlTranslator::TransToNumber(Tag node) {
  const Tag value = node.FirstChild();
  const Tag scale = value.Next();
  Tag made = MakeWithHead(node, scale ? u"trunc" : u"to_number");
  made.AddChild(value);
  made.AddChild(scale);
  return made;
}

Tag MxPLsqlTranslator::TransLog10(Tag node) {
  const Tag value = node.FirstChild();
  Tag made = MakeWithHead(node, u"log");
  made.AddChild(Number(u"10"));
  made.AddChild(value);
  return made;
}

}  // namespace ORKBASE
