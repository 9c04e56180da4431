// SQL for SQL Server.
#include "dialects/MxSql92Translator.h"

#include "foundation/Format.h"
#include "foundation/Text.h"

namespace ORKBASE {
namespace {

constexpr DialectFields kFields = {
    .nameQuotes = u"[]",
    .unicodePrefix = u"N",
    .isNullName = u"isnull",
    .concatOp = u"+",
    .dateStyles = u"112|120|110|105|111|101|103|12|20|10|5|11|1|3|108|114",
    .userPrefix = u"dbo.",
    .reportMark = u"#",
    .quotesReportTable = false,
};

// clang-format off
constexpr ReplacementRow kRows[] = {
    {u"quarter",      DatePart{u"quarter"}},
    {u"weekDay",      DatePart{u"weekday"}},
    {u"hour",         DatePart{u"hour"}},
    {u"minute",       DatePart{u"minute"}},
    {u"timeInterval", u"datediff"},
    {u"length",       u"len"},
};
// clang-format on

/// The style of an expression that is none.
constexpr std::u16string_view kAnyStyle = u"100";

/// Kinds of words whose dates stand in the SQL as text until the caller fills them in.
bool StandsAsText(std::int32_t symbol) noexcept {
  switch (symbol) {
    case kConstantSymbol:
    case kSmsSymbol:
    case kInputSymbol:
    case kSysvarSymbol:
    case kSysvarUserSymbol:
    case kFormFieldSymbol:
      return true;
  }
  return false;
}

}  // namespace

MxSql92Translator::MxSql92Translator(TagTree& doc) : TranslatorFrame(kFields, Map(), doc) {}

const ReplacementMap& MxSql92Translator::Map() {
  static const ReplacementMap map = MakeMap(SharedMap(), kFields, kRows);
  return map;
}

Tag MxSql92Translator::TransDatePart(Tag node, std::u16string_view part) {
  Tag made = MakeWithHead(node, u"Datepart");
  made.AddChild(MakeNode(kDatePartSymbol, kNoDataType, part));
  made.AddChild(node.FirstChild());
  return made;
}

Tag MxSql92Translator::TransToDate(Tag node) {
  return TransCast(node, kDateDataType);
}

Tag MxSql92Translator::TransToText(Tag node) {
  return node.HasOneChild() ? TransCast(node, kStrDataType) : TransConvert(node);
}

/// `cast(x  as   datetime )`. kept: the type of a text has no length, and each joint adds its
/// blanks.
Tag MxSql92Translator::TransCast(Tag node, std::int32_t target) {
  Tag made = MakeWithHead(node, u"cast");
  Tag as = MakeInfix(u" as ", false);
  made.AddChild(as);
  as.AddChild(node.FirstChild());
  as.AddChild(MakeNode(kDatePartSymbol, kNoDataType,
                       target == kDateDataType ? u" datetime " : u" nvarchar "));
  return made;
}

/// `convert( nvarchar(10) ,d,120)`: as wide as the style literal is between its quotes.
Tag MxSql92Translator::TransConvert(Tag node) {
  const Tag argument = node.FirstChild();
  Tag style = argument.Next();
  const auto width = static_cast<std::int32_t>(style.Get(Attr::kContent).size()) - 2;
  Tag made = MakeWithHead(node, u"convert");
  made.AddChild(MakeNode(kDatePartSymbol, kNoDataType, Format(u" nvarchar(%d) ", {width})));
  made.AddChild(DateArgument(argument));
  std::int32_t code = 0;
  if (!ReadWholeInt(style.Get(Attr::kText), code)) style.Set(Attr::kText, kAnyStyle);
  made.AddChild(style);
  return made;
}

Tag MxSql92Translator::DateArgument(Tag argument) {
  if (argument.GetInt(Attr::kDataType) == kDateDataType &&
      !StandsAsText(argument.GetInt(Attr::kSymbol))) {
    return argument;
  }
  Tag as = MakeInfix(u" as ", false);
  as.AddChild(argument);
  as.AddChild(MakeNode(kDatePartSymbol, kNoDataType, u"datetime"));
  return MakeCall(kStrDataType, u"cast", {as});
}

/// The third argument of the rule is the precision, and comes first in SQL; a fourth is ignored.
Tag MxSql92Translator::TransToNumber(Tag node) {
  const Tag value = node.FirstChild();
  Tag made = MakeWithHead(node, u"convert");
  made.AddChild(NumberType(value.Next()));
  made.AddChild(value);
  return made;
}

Tag MxSql92Translator::NumberType(Tag scale) {
  if (!scale) return MakeNode(kConstantSymbol, kNoDataType, u"int");
  const Tag precision = scale.Next();
  return MakeCall(kNoDataType, u"decimal",
                  {precision ? precision : MakeNode(kConstantSymbol, kNumDataType, u"30"), scale});
}

}  // namespace ORKBASE
