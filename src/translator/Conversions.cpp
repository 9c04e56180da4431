// `ToText`, `ToDate` and `ToNumber`: rebuilt as cast and convert.
#include "foundation/Format.h"
#include "foundation/Text.h"
#include "translator/MxSql92Translator.h"

namespace ORKBASE {
namespace {

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

bool NeedsCast(Tag argument) {
  return argument.GetInt(Attr::kDataType) != kDateDataType ||
         StandsAsText(argument.GetInt(Attr::kSymbol));
}

}  // namespace

Tag MxSql92Translator::TransToDate(Tag node) {
  return TransCast(node, kDateDataType);
}

Tag MxSql92Translator::TransToText(Tag node) {
  return node.HasOneChild() ? TransCast(node, kStrDataType) : TransConvert(node);
}

/// `cast(x  as   datetime )`: the type has no length, and each joint adds its blanks.
Tag MxSql92Translator::TransCast(Tag node, std::int32_t target) {
  if (!node.FirstChild()) return {};
  Tag made = MakeWithHead(node, u"cast");
  Tag as = MakeInfix(u" as ", false);
  made.AddChild(as);
  as.AddChild(node.FirstChild());
  as.AddChild(MakeNode(kDatePartSymbol, kNoDataType,
                       target == kDateDataType ? u" datetime " : u" nvarchar "));
  return made;
}

Tag MxSql92Translator::CastToDate(Tag argument) {
  Tag as = MakeInfix(u" as ", false);
  Tag cast = doc_.NewTag();
  cast.Set(Attr::kSymbol, kFunctionSymbol);
  cast.Set(Attr::kSemanticType, kFunctionSemantic);
  cast.Set(Attr::kDataType, kStrDataType);
  cast.Set(Attr::kText, u"cast");
  cast.AddChild(as);
  as.AddChild(argument);
  as.AddChild(MakeNode(kDatePartSymbol, kNoDataType, u"datetime"));
  return cast;
}

/// `convert( nvarchar(10) ,d,120)`: as wide as the style literal is between its quotes.
Tag MxSql92Translator::TransConvert(Tag node) {
  if (!node.FirstChild()) return {};
  const Tag argument = node.FirstChild();
  Tag style = argument.Next();
  const bool isSqlServer = dbType() == kSqlServerDs;
  Tag made = MakeWithHead(node);
  if (isSqlServer) made.Set(Attr::kText, u"convert");
  if (dbType() == kDMDs) made.Set(Attr::kText, u"to_char");
  if (isSqlServer) {
    const auto width = static_cast<std::int32_t>(style.Get(Attr::kContent).size()) - 2;
    made.AddChild(MakeNode(kDatePartSymbol, kNoDataType, Format(u" nvarchar(%d) ", {width})));
  }
  made.AddChild(NeedsCast(argument) ? CastToDate(argument) : argument);
  std::int32_t code = 0;
  if (isSqlServer && !ReadWholeInt(style.Get(Attr::kText), code)) style.Set(Attr::kText, u"100");
  made.AddChild(style);
  return made;
}

/// The third argument of the rule is the precision, and comes first in SQL; a fourth is ignored.
Tag MxSql92Translator::TransToNumber(Tag node) {
  const Tag value = node.FirstChild();
  if (!value) return {};
  const Tag scale = value.Next();
  Tag made = MakeWithHead(node, u"convert");
  if (!scale) {
    made.AddChild(MakeNode(kConstantSymbol, kNoDataType, u"int"));
  } else {
    const Tag precision = scale.Next();
    made.AddChild(
        MakeCall(kNoDataType, u"decimal",
                 {precision ? precision : MakeNode(kConstantSymbol, kNumDataType, u"30"), scale}));
  }
  made.AddChild(value);
  return made;
}

}  // namespace ORKBASE
