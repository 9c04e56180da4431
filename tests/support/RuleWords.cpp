// The words and how to find them.
#include "RuleWords.h"

#include "MxLexicalAnalyzer.h"
#include "Utf8.h"
#include "dictionary/VocabularyTables.h"
#include "foundation/Text.h"

#include <iterator>
#include <stdexcept>

using namespace ORKBASE;

namespace {

// clang-format off
constexpr RuleWord kSampleWords[] = {
    {u"1",                      kConstantSymbol,    kNumDataType},
    {u"2.5",                    kConstantSymbol,    kNumDataType},
    {u"100",                    kConstantSymbol,    kNumDataType},
    {u"'abc'",                  kConstantSymbol,    kStrDataType},
    {u"'it''s'",                kConstantSymbol,    kStrDataType},
    {u"''",                     kConstantSymbol,    kStrDataType},
    {u"'\u540D\u79F0'",         kConstantSymbol,    kStrDataType},
    {u"'2020-1-2'",             kConstantSymbol,    kDateDataType},
    {u"'2021-05-06'",           kConstantSymbol,    kDateDataType},
    {u"T.a",                    kDataFieldSymbol,   kNumDataType},
    {u"T.b",                    kDataFieldSymbol,   kNumDataType},
    {u"Orders.Amount",          kDataFieldSymbol,   kNumDataType},
    {u"Orders.Qty",             kDataFieldSymbol,   kNumDataType},
    {u"T.s",                    kDataFieldSymbol,   kStrDataType},
    {u"Customer.Name",          kDataFieldSymbol,   kStrDataType},
    {u"Orders.Memo",            kDataFieldSymbol,   kStrDataType},
    {u"T.d",                    kDataFieldSymbol,   kDateDataType},
    {u"Orders.OrderDate",       kDataFieldSymbol,   kDateDataType},
    {u"Orders.Photo",           kDataFieldSymbol,   kPicDataType},
    {u"Orders.File",            kDataFieldSymbol,   kLinkDataType},
    {u"T.rcid",                 kDataFieldSymbol,   kVarDataType},
    {u"Sms.n[N]",               kSmsSymbol,         kNumDataType},
    {u"Sms.s[S]",               kSmsSymbol,         kStrDataType},
    {u"Sms.d[D]",               kSmsSymbol,         kDateDataType},
    {u"Input.n[N]",             kInputSymbol,       kNumDataType},
    {u"Input.s[S]",             kInputSymbol,       kStrDataType},
    {u"Input.d[D]",             kInputSymbol,       kDateDataType},
    {u"thisDoc.Part.Width",     kCAXFieldSymbol,    kVarDataType},
    {u"sysVar.currentDate",     kSysvarSymbol,      kDateDataType},
    {u"sysVar.CurrentTask",     kSysvarSymbol,      kStrDataType},
    {u"Constant.Null",          kSysvarSymbol,      kVarDataType},
    {u"sysVar.userName",        kSysvarUserSymbol,  kStrDataType},
    {u"sysVar.RepState",        kSysvarCaseSymbol,  kNumDataType},
    {u"sysVar.FillReportDate",  kSysvarCaseSymbol,  kDateDataType},
};

constexpr RuleWord kFormWords[] = {
    {u"thisReport.Header.Total",   kFormFieldSymbol, kNumDataType},
    {u"thisReport.Header.Buyer",   kFormFieldSymbol, kStrDataType},
    {u"thisReport.Header.Ordered", kFormFieldSymbol, kDateDataType},
    {u"thisReport.Lines.Qty",      kFormFieldSymbol, kNumDataType},
    {u"thisReport.Lines.Item",     kFormFieldSymbol, kStrDataType},
    {u"thisReport.Lines.Due",      kFormFieldSymbol, kDateDataType},
};

constexpr RuleWord kCaxWords[] = {
    {u"AutoCADEnum.Color.Red",  kCAXEnumSymbol, kNumDataType},
    {u"AutoCADEnum.Color.Blue", kCAXEnumSymbol, kNumDataType},
};
// clang-format on

template <class Function>
void ForEachVocabularyRow(Function&& function) {
  for (const VocabularyRow& row : kOperatorRows) function(row);
  for (const VocabularyRow& row : kFunctionRows) function(row);
  for (const VocabularyRow& row : kOtherRows) function(row);
}

bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

MxWord WordOf(const std::u16string& token) {
  for (const RuleWord& known : AllRuleWords()) {
    if (known.text == token) return MakeRuleWord(token, known.symbol, known.dataType);
  }
  if (token.front() == u'\'') {
    const bool isDate = token.size() > 5 && IsDigit(token[1]) && IsDigit(token[4]);
    const MxWord style = VocabularyWord(token);
    if (style.symbol != kUnknownSymbol) return style;
    return MakeRuleWord(token, kConstantSymbol, isDate ? kDateDataType : kStrDataType);
  }
  if (IsDigit(token.front())) return MakeRuleWord(token, kConstantSymbol, kNumDataType);
  MxWord word = VocabularyWord(token);
  if (word.symbol == kUnknownSymbol) throw std::logic_error("no such word: " + U8(token));
  return word;
}

}  // namespace

const char16_t* const kCaxWordsDocument =
    u"<dd><tabs/><enums><e name='Color' dispName='Color'><v name='Red' dispName='Red' val='1'/>"
    u"<v name='Blue' dispName='Blue' val='5'/></e></enums></dd>";

std::span<const RuleWord> SampleWords() {
  return kSampleWords;
}
std::span<const RuleWord> FormWords() {
  return kFormWords;
}
std::span<const RuleWord> CaxWords() {
  return kCaxWords;
}

std::vector<RuleWord> AllRuleWords() {
  std::vector<RuleWord> words(std::begin(kSampleWords), std::end(kSampleWords));
  words.insert(words.end(), std::begin(kFormWords), std::end(kFormWords));
  words.insert(words.end(), std::begin(kCaxWords), std::end(kCaxWords));
  return words;
}

MxWord MakeRuleWord(std::u16string_view text, std::int32_t symbol, std::int32_t dataType) {
  MxWord word;
  word.primary = word.outDesc = word.content = text;
  word.symbol = symbol;
  word.dataType = dataType;
  const bool hasPrefixWord = symbol == kSmsSymbol || symbol == kInputSymbol ||
                             (symbol == kCAXFieldSymbol && text.starts_with(u"thisDoc."));
  if (hasPrefixWord) word.outDesc.resize(text.find(u'.') + 1);
  return word;
}

MxWord VocabularyWord(std::u16string_view text) {
  MxWord word = MakeRuleWord(text, kUnknownSymbol, kVarDataType);
  ForEachVocabularyRow([&](const VocabularyRow& row) {
    for (const std::u16string_view primary : SplitText(row.primary, u"|")) {
      if (!EqualsIgnoringCase(primary, text)) continue;
      word = MakeRuleWord(primary, row.symbol, row.dataType);
      word.content = text;
    }
  });
  return word;
}

std::vector<MxWord> WholeVocabulary() {
  std::vector<MxWord> words;
  ForEachVocabularyRow([&](const VocabularyRow& row) {
    if (row.display == Display::kMessageAndDot) return;
    for (const std::u16string_view primary : SplitText(row.primary, u"|")) {
      words.push_back(MakeRuleWord(primary, row.symbol, row.dataType));
    }
  });
  return words;
}

std::vector<MxWord> WordsOf(const std::u16string& text) {
  std::vector<std::u16string> tokens;
  MxLexicalAnalyzer().GenerateOriginalTokens(text, tokens);
  std::vector<MxWord> words;
  for (const std::u16string& token : tokens) {
    if (!IsBlankText(token)) words.push_back(WordOf(token));
  }
  return words;
}
