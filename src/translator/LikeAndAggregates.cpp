// `like`, whose pattern gets wild cards unless the rule wrote one, and the distinct count.
#include "translator/Insides.h"
#include "translator/TranslatorFrame.h"

namespace ORKBASE {

/// `a  like  ('%' + b + '%')`.
Tag TranslatorFrame::TransLike(Tag node) {
  const Tag field = node.FirstChild();
  SearchInside(node);
  const Tag pattern = field.Next();
  Tag made = MakeWithHead(node, u" like ");
  made.AddChild(field);
  // In a constant, or anywhere in an expression: there the modulo operator counts, too.
  const bool hasWildCard = pattern.GetInt(Attr::kSymbol) == kConstantSymbol
                               ? HoldsWildCard(pattern.Get(Attr::kText))
                               : Holds(pattern, kWildCardInside);
  if (hasWildCard) {
    made.AddChild(pattern);
    return made;
  }
  Tag outer = MakeInfix(fields_.concatOp, true);
  Tag inner = MakeInfix(fields_.concatOp, false);
  made.AddChild(outer);
  outer.AddChild(MakeNode(kConstantSymbol, kStrDataType, u"'%'"));
  outer.AddChild(inner);
  inner.AddChild(pattern);
  inner.AddChild(MakeNode(kConstantSymbol, kStrDataType, u"'%'"));
  return made;
}

/// `count(distinct  x)`. It keeps its word, so that it is marked as an aggregate.
Tag TranslatorFrame::TransCount1(Tag node) {
  Tag made = MakeWithHead(node);
  made.Set(Attr::kPrimary, node.Get(Attr::kPrimary));
  made.Set(Attr::kText, u"count");
  Tag distinct = MakeNode(kOpNotSymbol, kNoDataType, u"distinct ");
  made.AddChild(distinct);
  distinct.AddChild(node.FirstChild());
  return made;
}

}  // namespace ORKBASE
