// Parts of a date, calendar and fiscal. What is fiscal is decided in the business database.
#include "translator/MxSql92Translator.h"

namespace ORKBASE {

Tag MxSql92Translator::TransDatePart(Tag node, std::u16string_view part) {
  if (!node.FirstChild()) return {};
  Tag made = MakeWithHead(node, u"Datepart");
  made.AddChild(MakeNode(kDatePartSymbol, kNoDataType, part));
  made.AddChild(node.FirstChild());
  return made;
}

Tag MxSql92Translator::TransFisDatePart(Tag node, std::u16string_view part) {
  if (!node.FirstChild()) return {};
  Tag made =
      MakeWithHead(node, dbType() == kSqlServerDs ? u"dbo.fDatePart_acct" : u"fDatePart_acct");
  made.AddChild(MakeNode(kDatePartSymbol, kNoDataType, part));
  made.AddChild(node.FirstChild());
  return made;
}

// clang-format off
Tag MxSql92Translator::TransQuarter(Tag node) { return TransDatePart(node, u"quarter"); }
Tag MxSql92Translator::TransWeekDay(Tag node) { return TransDatePart(node, u"weekday"); }
Tag MxSql92Translator::TransHour(Tag node)    { return TransDatePart(node, u"hour"); }
Tag MxSql92Translator::TransMinute(Tag node)  { return TransDatePart(node, u"minute"); }

Tag MxSql92Translator::TransFisYear(Tag node)    { return TransFisDatePart(node, u"'yy'"); }
Tag MxSql92Translator::TransFisMonth(Tag node)   { return TransFisDatePart(node, u"'mm'"); }
Tag MxSql92Translator::TransFisQuarter(Tag node) { return TransFisDatePart(node, u"'qq'"); }

Tag MxSql92Translator::TransLog10(Tag node)        { return node; }
Tag MxSql92Translator::TransYear(Tag node)         { return node; }
Tag MxSql92Translator::TransMonth(Tag node)        { return node; }
Tag MxSql92Translator::TransDay(Tag node)          { return node; }
Tag MxSql92Translator::TransDateAdd(Tag node)      { return node; }
Tag MxSql92Translator::TransTimeInterval(Tag node) { return node; }
// clang-format on

}  // namespace ORKBASE
