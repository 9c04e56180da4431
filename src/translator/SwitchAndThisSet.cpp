// `switch` as a CASE expression, and `thisSet` as a union of selects with a FROM list of its own:
//
//   x in thisSet(T.a, U.b)   ->   x in (select  [T].a  from [T]  union  select  [U].b  from [U])
#include <string>

#include "dictionary/MxDictionarys.h"
#include "foundation/Format.h"
#include "translator/Insides.h"
#include "translator/TranslatorFrame.h"

namespace ORKBASE {
namespace {

constexpr std::u16string_view kIsNullLetters = u"isnull(";

bool IsFieldSymbol(std::int32_t symbol) noexcept {
  return symbol == kDataFieldSymbol || symbol == kCAXFieldSymbol || symbol == kReportFieldSymbol;
}

/// The table in front of the column of a field's text.
/// kept: the is-null form is taken for granted by its first letter alone, which costs other texts
/// that begin so seven letters; a shorter one throws `std::out_of_range`.
std::u16string_view TableOf(std::u16string_view text) {
  if (!text.empty() && kIsNullLetters.find(text.front()) != kIsNullLetters.npos) {
    text = text.substr(kIsNullLetters.size());
    text = text.substr(0, text.find(u','));
  }
  return text.substr(0, text.rfind(u'.'));
}

/// A comma list that takes each item once. The empty item is there already in an empty list.
class NameList {
 public:
  bool Has(std::u16string_view item) const {
    return Fenced(text_).find(Fenced(item)) != std::u16string::npos;
  }
  void Add(std::u16string_view item) {
    if (Has(item)) return;
    if (!text_.empty()) text_ += u',';
    text_ += item;
  }
  const std::u16string& text() const noexcept { return text_; }

 private:
  static std::u16string Fenced(std::u16string_view text) {
    return std::u16string(1, u',').append(text).append(1, u',');
  }

  std::u16string text_;
};

/// The tables that the fields of one member need.
struct FromList {
  NameList from;
  NameList seen;
};

}  // namespace

Tag TranslatorFrame::TransSwitch(Tag node) {
  const std::int32_t count = node.ChildCount();
  Tag made = MakeNode(kOpNotSymbol, kNoDataType, u"case");
  Tag argument = node.FirstChild();
  for (std::int32_t i = 1; i <= count; ++i) {
    const Tag next = argument.Next();
    const std::u16string_view keyword = i % 2 == 0 ? u" then " : i == count ? u" else " : u" when ";
    Tag branch = MakeNode(kOpNotSymbol, kNoDataType, keyword);
    made.AddChild(branch);
    branch.AddChild(argument);
    argument = next;
  }
  made.AddChild(MakeNode(kOpNotSymbol, kNoDataType, u" end "));
  return made;
}

Tag TranslatorFrame::TransThisSet(Tag node) {
  SearchInside(node);
  const auto addTable = [this](Tag field, FromList& lists) {
    const std::u16string_view table = TableOf(field.Get(Attr::kText));
    if (lists.seen.Has(table)) return;
    const bool isDataField = field.GetInt(Attr::kSymbol) == kDataFieldSymbol;
    const MxWord* word = isDataField && dictionaries
                             ? dictionaries->FindByPrimary(field.Get(Attr::kPrimary))
                             : nullptr;
    const std::u16string real = word ? QuoteName(word->tabRealName) : std::u16string(table);
    lists.from.Add(real == table ? real : real + u" as " + std::u16string(table));
    lists.seen.Add(table);
  };
  const auto selectOf = [&](Tag member) {
    FromList lists;
    const std::int32_t symbol = member.GetInt(Attr::kSymbol);
    if (IsFieldSymbol(symbol)) {
      addTable(member, lists);
      member.Set(Attr::kInSubQry, 1);
    } else if (symbol != kConstantSymbol) {
      bool below = false;  // a marked field: what lies there is not marked again
      Tag behind;
      const auto next = [member](Tag at) {
        return Holds(at, kFieldInside) ? at.NextInDocument(member) : at.NextBehind(member);
      };
      for (Tag at = member; at; at = next(at)) {
        if (at == behind) below = false;
        if (!IsField(at)) continue;
        addTable(at, lists);
        if (below) continue;
        at.Set(Attr::kInSubQry, 1);
        below = true;
        behind = at.NextBehind(member);
      }
    }
    Tag select = MakeNode(kSubQuerySymbol, kNoDataType, u"select ");
    select.AddChild(member);
    if (!lists.from.text().empty()) {
      select.AddChild(
          MakeNode(kConstantSymbol, kNoDataType, Format(u" from %s", {lists.from.text()})));
    }
    return select;
  };

  Tag result;
  Tag next;
  for (Tag member = node.FirstChild(); member; member = next) {
    next = member.Next();
    Tag select = selectOf(member);
    if (result) {
      Tag both = MakeNode(kOpComposeSymbol, kNoDataType, u" union ");
      both.AddChild(result);
      both.AddChild(select);
      select = both;
    }
    result = select;
  }
  result.Set(Attr::kInBrackets, 1);
  return result;
}

}  // namespace ORKBASE
