// Items and reasons.
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

void ItemMaker::AddText(std::u16string_view text, RuleItem& item) const {
  if (WouldJoin(before_, text)) item.text = u' ';
  item.text += text;
}

void ItemMaker::AddFitting(const Candidate& candidate, RuleItem& item) const {
  AddText(candidate.text, item);
  item.kind = candidate.kind;
  item.dataType = candidate.dataType;
  if (candidate.group >= 0) return;
  AddTexts(candidate, FormOf(candidate, item), item);
  AddPrefix(candidate, item);
}

/// Of a function with several forms the first whose result the place takes, else the first.
const CallForm* ItemMaker::FormOf(const Candidate& candidate, RuleItem& item) const {
  if (candidate.order != kFunctionOrder) return nullptr;
  const std::span<const CallForm> forms = FormsOf(candidate.word->primary);
  if (forms.empty()) return nullptr;
  const auto fits = [&](const CallForm& form) { return place_.TakesField(form.dataType); };
  const auto fitting = std::find_if(forms.begin(), forms.end(), fits);
  const CallForm& form = fitting == forms.end() ? forms.front() : *fitting;
  if (forms.size() > 1 && fitting != forms.end() && place_.IsKnown()) {
    item.dataType = TypeNameOf(form.dataType);
  }
  return &form;
}

void ItemMaker::AddTexts(const Candidate& candidate, const CallForm* form, RuleItem& item) const {
  const void* const key = form ? static_cast<const void*>(form) : candidate.word;
  const WordTexts& texts = candidates_.TextsOf(key, [&] {
    const Language language = call_.TextLanguage();
    WordTexts made{InfoOf(candidate.word->primary, language), {}, {}};
    if (form) made.signature = SignatureText(*form, candidate.text, language);
    if (form) made.snippet = SnippetOf(*form, candidate.text, language);
    return made;
  });
  item.info = texts.info;
  item.signature = texts.signature;
  item.snippet = texts.snippet;
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

void ItemMaker::AddTable(const FieldGroup& group, RuleItem& item) const {
  AddText(group.text, item);
  item.kind = u"table";
}

// --- why a word may not stand in the place -------------------------------------------------------

void ItemMaker::AddUnfit(const Candidate& candidate, RuleItem& item) {
  AddFitting(candidate, item);
  item.fits = false;
  std::u16string& reason = reasons_[candidate.wordClass];
  if (reason.empty()) reason = ReasonFor(candidate);
  item.reason = reason;
}

/// The same for all words of a class.
std::u16string ItemMaker::ReasonFor(const Candidate& candidate) const {
  const bool byKind = IsTypeTaken(candidate);
  return call_.Text(kMsgNoFit, {NameOf(candidate, byKind), Expected(byKind)});
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
  // Behind "in" stands one function and nothing else.
  const MxWord* const set = call_.Dictionaries().FindByPrimary(u"thisSet");
  const bool takesSet =
      set && place_.TakesWord(grammar.LiteralOf(set->primary), set->symbol, set->dataType);
  return takesSet ? set->outDesc : call_.Text(kMsgExpectEnd);
}

}  // namespace ORKBASE
