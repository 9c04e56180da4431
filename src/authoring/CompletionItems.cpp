#include "authoring/CompletionItems.h"

#include "authoring/CursorWord.h"
#include "authoring/WordKinds.h"
#include "platform/DisplayNames.h"

#include <algorithm>

namespace ORKBASE {
namespace {

struct TypedPostfix {
  MXRULE_DATATYPE dataType;
  std::u16string_view postfix;
};

/// What stands in a place that takes no value, known by one word of its kind.
struct SignRow {
  std::u16string_view word;
  MessageNumber message;
};

// clang-format off
constexpr TypedPostfix kPostfixes[] = {
    {kNumDataType,  u"[N]"},
    {kStrDataType,  u"[S]"},
    {kDateDataType, u"[D]"},
};

constexpr MXRULE_DATATYPE kFieldTypes[] = {
    kNumDataType, kStrDataType, kDateDataType, kPicDataType, kLinkDataType,
};

constexpr SignRow kSigns[] = {
    {u"yy",         kMsgExpectDatePart},
    {u"'yyyymmdd'", kMsgExpectDateStyle},
    {u"thisYear",   kMsgExpectPeriod},
    {u"(",          kMsgExpectOpening},
    {u",",          kMsgExpectComma},
    {u"+",          kMsgExpectOperator},
    {u"*",          kMsgExpectOperator},
    {u"&",          kMsgExpectOperator},
    {u"=",          kMsgExpectOperator},
    {u"*=",         kMsgExpectOperator},
    {u"and",        kMsgExpectOperator},
    {u"in",         kMsgExpectOperator},
    {u"like",       kMsgExpectOperator},
    {u"null",       kMsgExpectOperator},
    {u")",          kMsgExpectClosing},
};
// clang-format on

/// A bracket, a comma or a part of a date by what it is; 0 for other words.
std::int32_t SignOf(const MxWord& word) noexcept {
  if (word.symbol == kDatePartSymbol) {
    return word.primary.starts_with(u'\'') ? kMsgExpectDateStyle : kMsgExpectDatePart;
  }
  for (const SignRow& row : kSigns) {
    if (word.symbol == kDelimiterSymbol && row.word == word.primary) return row.message;
  }
  return word.primary == u")" ? kMsgExpectClosing : 0;
}

}  // namespace

bool RulePlace::TakesClass(const WordClass& of) const noexcept {
  if (of.postfixCheck != kTypePostfix) return TakesWord(of.literal, of.symbol, of.dataType);
  return std::any_of(std::begin(kPostfixes), std::end(kPostfixes), [&](const TypedPostfix& row) {
    return TakesWord(kNoLiteral, of.symbol, row.dataType);
  });
}

std::u16string ItemMaker::TextToPut(std::u16string_view text) const {
  const bool joins = WouldJoin(before_, text);
  return (joins ? std::u16string(u" ") : std::u16string()).append(text);
}

RuleItem ItemMaker::Make(const Candidate& candidate) const {
  const MxWord& word = *candidate.word;
  RuleItem item;
  item.text = TextToPut(candidate.text);
  item.kind = ItemKindOf(word.symbol);
  item.dataType = TypeNameOf(word.dataType);
  if (candidate.group >= 0) return item;
  item.info = InfoOf(word.primary, call_.TextLanguage());
  if (word.symbol == kFunctionSymbol) AddForm(candidate, item);
  AddPrefix(candidate, item);
  return item;
}

/// Of a function with several forms the first whose result the place takes, else the first.
void ItemMaker::AddForm(const Candidate& candidate, RuleItem& item) const {
  const std::span<const CallForm> forms = FormsOf(candidate.word->primary);
  if (forms.empty()) return;
  const auto fits = [&](const CallForm& form) { return place_.TakesField(form.dataType); };
  const auto fitting = std::find_if(forms.begin(), forms.end(), fits);
  const CallForm& form = fitting == forms.end() ? forms.front() : *fitting;
  if (forms.size() > 1 && fitting != forms.end() && place_.IsKnown()) {
    item.dataType = TypeNameOf(form.dataType);
  }
  item.signature = SignatureText(form, candidate.text, call_.TextLanguage());
  item.snippet = SnippetOf(form, candidate.text, call_.TextLanguage());
}

/// What has to stand behind a prefix word.
void ItemMaker::AddPrefix(const Candidate& candidate, RuleItem& item) const {
  const std::u16string text(candidate.text);
  if (candidate.word->postfixCheck == kTablePostfix) {
    item.snippet = text + u"[${1:" + call_.Text(kMsgExpectTable) + u"}]";
  } else if (candidate.word->postfixCheck == kTypePostfix) {
    const auto takes = [&](const TypedPostfix& row) {
      return place_.TakesWord(kNoLiteral, candidate.word->symbol, row.dataType);
    };
    const auto first = std::find_if(std::begin(kPostfixes), std::end(kPostfixes), takes);
    const TypedPostfix& row = first == std::end(kPostfixes) ? *std::begin(kPostfixes) : *first;
    const bool isOnly = std::count_if(std::begin(kPostfixes), std::end(kPostfixes), takes) == 1;
    if (isOnly) item.dataType = TypeNameOf(row.dataType);
    item.snippet = text + u"${1:" + call_.Text(kMsgLabelName) + u'}';
    item.snippet += row.postfix;
  } else if (text.ends_with(u'.')) {
    item.snippet = text + u"${1:" + call_.Text(kMsgExpectTable) + u"}.${2:" +
                   call_.Text(kMsgExpectField) + u'}';
  }
}

RuleItem ItemMaker::Table(const FieldGroup& group) const {
  RuleItem item;
  item.text = TextToPut(group.text);
  item.kind = u"table";
  return item;
}

// --- why a word may not stand in the place -------------------------------------------------------

RuleItem ItemMaker::Unfit(const Candidate& candidate) const {
  RuleItem item = Make(candidate);
  item.fits = false;
  const bool byKind = IsTypeTaken(candidate);
  item.reason = call_.Text(kMsgNoFit, {NameOf(candidate, byKind), Expected(byKind)});
  return item;
}

/// Whether a value of the word's type may stand there, so that its kind is to blame.
bool ItemMaker::IsTypeTaken(const Candidate& candidate) const noexcept {
  return candidate.order != kOperatorOrder &&
         place_.TakesField(static_cast<MXRULE_DATATYPE>(candidate.word->dataType));
}

std::u16string ItemMaker::NameOf(const Candidate& candidate, bool byKind) const {
  const MxWord& word = *candidate.word;
  if (const std::int32_t sign = SignOf(word); sign != 0) return call_.Text(sign);
  if (candidate.order == kOperatorOrder) return call_.Text(kMsgExpectOperator);
  const std::span<const CallForm> forms = FormsOf(word.primary);
  if (!forms.empty() && forms.front().dataType == kLogicDataType) {
    return call_.Text(kMsgExpectPeriod);
  }
  return byKind ? SymbolName(word.symbol, call_.TextLanguage())
                : DataTypeName(word.dataType, call_.TextLanguage());
}

std::u16string ItemMaker::Expected(bool byKind) const {
  std::vector<MXRULE_DATATYPE> types;
  std::copy_if(std::begin(kFieldTypes), std::end(kFieldTypes), std::back_inserter(types),
               [this](MXRULE_DATATYPE type) { return place_.TakesField(type); });
  const bool takesConstants = std::any_of(types.begin(), types.end(), [this](MXRULE_DATATYPE type) {
    return place_.TakesConstant(type);
  });
  if (!types.empty() && byKind && !takesConstants) return call_.Text(kMsgExpectField);
  if (!types.empty()) return call_.Text(types.size() == 1 ? PhraseOf(types.front()) : kMsgAnyValue);
  const CompiledGrammar& grammar = CompiledGrammar::Instance();
  for (const SignRow& row : kSigns) {
    if (place_.TakesWord(grammar.LiteralOf(row.word), kUnknownSymbol, kNoDataType)) {
      return call_.Text(row.message);
    }
  }
  return call_.Text(place_.TakesWord(grammar.LiteralOf(u"thisSet"), kUnknownSymbol, kNoDataType)
                        ? kMsgAnyValue
                        : kMsgExpectEnd);
}

}  // namespace ORKBASE
