// SQL for Oracle: fields, map, conversions and names. The dates stand in a file of their own.
#include "dialects/MxPLsqlTranslator.h"

#include "Mx_Exception.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/LocaleDates.h"
#include "platform/MessageTexts.h"

namespace ORKBASE {
namespace {

using T = MxSql92Translator;

// The type stays that of the default dialect: inherited code treats Oracle like it.
constexpr DialectFields kFields = {kSqlServerDs, u"", u"nvl", u"||", kDateStyleLiterals};

// clang-format off
constexpr ReplacementRow kRows[] = {
    {u"count1",             u"", &T::TransCount1},
    {u"switch",             u"", &T::TransSwitch},
    {u"thisSet",            u"", &T::TransThisSet},
    {u"ToNumber",           u"", &T::TransToNumber},
    {u"ToDate",             u"", &T::TransToDate},
    {u"fisYear",            u"", &T::TransFisYear},
    {u"fisMonth",           u"", &T::TransFisMonth},
    {u"fisQuarter",         u"", &T::TransFisQuarter},
    {u"fstDayOfMonth",      u"", &T::TransFstDayOfMonth},
    {u"lstDayOfMonth",      u"", &T::TransLstDayOfMonth},
    {u"fstDayOfFisMonth",   u"", &T::TransFstDayOfFisMonth},
    {u"endOfFisMonth",      u"", &T::TransEndOfFisMonth},
    {u"fstDayOfYear",       u"", &T::TransFstDayOfYear},
    {u"endOfYear",          u"", &T::TransEndOfYear},
    {u"fstDayOfFisYear",    u"", &T::TransFstDayOfFisYear},
    {u"endOfFisYear",       u"", &T::TransEndOfFisYear},
    {u"fstDayOfQuarter",    u"", &T::TransFstDayOfQuarter},
    {u"endOfQuarter",       u"", &T::TransEndOfQuarter},
    {u"fstDayOfFisQuarter", u"", &T::TransFstDayOfFisQuarter},
    {u"endOfFisQuarter",    u"", &T::TransEndOfFisQuarter},
    {u"thisYear",           u"", &T::TransThisYear},
    {u"thisFisYear",        u"", &T::TransThisFisYear},
    {u"lastYear",           u"", &T::TransLastYear},
    {u"lastFisYear",        u"", &T::TransLastFisYear},
    {u"thisQuarter",        u"", &T::TransThisQuarter},
    {u"thisFisQuarter",     u"", &T::TransThisFisQuarter},
    {u"lastQuarter",        u"", &T::TransLastQuarter},
    {u"lastFisQuarter",     u"", &T::TransLastFisQuarter},
    {u"thisMonth",          u"", &T::TransThisMonth},
    {u"thisFisMonth",       u"", &T::TransThisFisMonth},
    {u"lastMonth",          u"", &T::TransLastMonth},
    {u"lastFisMonth",       u"", &T::TransLastFisMonth},
    {u"quarter",            u"", &T::TransQuarter},
    {u"weekDay",            u"", &T::TransWeekDay},
    {u"hour",               u"", &T::TransHour},
    {u"minute",             u"", &T::TransMinute},
    {u"year",               u"", &T::TransYear},
    {u"month",              u"", &T::TransMonth},
    {u"day",                u"", &T::TransDay},
    {u"dateAdd",            u"", &T::TransDateAdd},
    {u"timeInterval",       u"", &T::TransTimeInterval},
    {u"ToText",             u"", &T::TransToText},
    {u"log10",              u"", &T::TransLog10},
    {u"log",                u"ln"},
    {u"Exponent",           u"exp"},
    {u"toUpper",            u"upper"},
    {u"ltrim",              u"ltrim"},
    {u"rtrim",              u"rtrim"},
    {u"substring",          u"substr"},
    {u"length",             u"length"},
    {u"average",            u"avg"},
    {u"lastDate",           u"max"},
    {u"firstDate",          u"min"},
    {u"isNull",             u"nvl"},
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

MxPLsqlTranslator::MxPLsqlTranslator() : MxSql92Translator(kFields, Map()) {}

/// Begins empty: of the default dialect's functions it has only what it names itself.
const ReplacementMap& MxPLsqlTranslator::Map() {
  static const ReplacementMap map = MakeMap({}, kFields, InitFunctions);
  return map;
}

void MxPLsqlTranslator::InitFunctions(ReplacementMap& map) {
  map.AddRows(kRows);
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

std::u16string MxPLsqlTranslator::QuoteName(std::u16string_view name) const {
  return std::u16string(name);
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
  if (!value) return {};
  if (value.GetInt(Attr::kDataType) == kDateDataType) return value;
  Tag made = MakeWithHead(node, u"to_date");
  made.AddChild(value);
  made.AddChild(Word(std::u16string(1, u'\'').append(LocaleDateFormat()).append(1, u'\'')));
  return made;
}

Tag MxPLsqlTranslator::TransToText(Tag node) {
  const Tag value = node.FirstChild();
  if (!value) return {};
  const Tag style = value.Next();
  Tag made = MakeWithHead(node, u"to_char");
  made.AddChild(value);
  made.AddChild(style);
  return made;
}

/// With a scale it is `trunc`, although the value is text; a precision is dropped.
Tag MxPLsqlTranslator::TransToNumber(Tag node) {
  const Tag value = node.FirstChild();
  if (!value) return {};
  const Tag scale = value.Next();
  Tag made = MakeWithHead(node, scale ? u"trunc" : u"to_number");
  made.AddChild(value);
  made.AddChild(scale);
  return made;
}

Tag MxPLsqlTranslator::TransLog10(Tag node) {
  const Tag value = node.FirstChild();
  if (!value) return {};
  Tag made = MakeWithHead(node, u"log");
  made.AddChild(Number(u"10"));
  made.AddChild(value);
  return made;
}

Tag MxPLsqlTranslator::TransThisSet(Tag /*node*/) {
  throw Mx_Exception(LoadMessage(kMsgThisSetRefused), u"mx_PLSql_translator", u"Fn_thisSet", 802);
}

}  // namespace ORKBASE
