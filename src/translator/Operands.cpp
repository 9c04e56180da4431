// The first pass: what a word becomes that the replacement map does not know. Fields turn into a
// column of the business database, a column of a temporary table, or a placeholder.
#include "dictionary/MxDictionarys.h"
#include "foundation/Text.h"
#include "translator/IsNullForm.h"
#include "translator/TranslatorFrame.h"

#include <algorithm>
#include <iterator>

namespace ORKBASE {
namespace {

/// The record key columns: they need no dictionary and no quotes.
constexpr std::u16string_view kKeyColumns[] = {u"LUMENTARCID", u"RCID"};

enum class CaseText : std::uint8_t { kColumn, kDay };

struct SysVarCaseRow {
  std::u16string_view word;
  CaseText form;
  std::u16string_view column;
};

// clang-format off
constexpr SysVarCaseRow kSysVarCaseRows[] = {
    {u"sysVar.RepFillTime",     CaseText::kColumn, u".fillDate"},
    {u"sysVar.RepRevLastTime",  CaseText::kColumn, u".lstfillDate"},
    {u"sysVar.FillReportDate",  CaseText::kDay,    u".fillDate"},
    {u"sysVar.LastUpdatedDate", CaseText::kDay,    u".lstfillDate"},
    {u"sysVar.RepState",        CaseText::kColumn, u".state"},
    {u"sysVar.RepLockState",    CaseText::kColumn, u".LockState"},
};
// clang-format on

/// A full stop at the very end parts nothing.
bool IsKeyColumn(std::u16string_view lowerPrimary) {
  if (lowerPrimary.ends_with(u'.')) lowerPrimary.remove_suffix(1);
  const std::size_t stop = lowerPrimary.find(u'.');
  if (stop == lowerPrimary.npos) return false;
  const std::u16string column = ToUpper(lowerPrimary.substr(stop + 1));
  return std::find(std::begin(kKeyColumns), std::end(kKeyColumns), column) != std::end(kKeyColumns);
}

}  // namespace

void TranslatorFrame::TransNode(Tag node) {
  const std::u16string_view primary = node.Get(Attr::kPrimary);
  const LookupKey key(primary);
  for (auto values = caxEnums_.rbegin(); values != caxEnums_.rend(); ++values) {
    const auto value = (*values)->find(key);
    if (value == (*values)->end()) continue;
    node.Set(Attr::kTransType, static_cast<std::int32_t>(TransType::kPlain));
    node.Set(Attr::kTargetDesc, value->second);
    node.Set(Attr::kText, value->second);
    return;
  }
  if (const TransEntry* entry = map_.Find(key)) {
    node.Set(Attr::kTransType, static_cast<std::int32_t>(entry->transType()));
    node.Set(Attr::kTargetDesc, entry->target);
    node.Set(Attr::kText, entry->transType() == TransType::kPlain ? entry->target : primary);
    return;
  }
  node.Set(Attr::kText, TransOperand(node, primary));
}

std::u16string TranslatorFrame::TransOperand(Tag node, std::u16string_view primary) {
  std::u16string text;
  switch (node.GetInt(Attr::kSymbol)) {
    case kConstantSymbol:
      return TransConstant(node, primary);
    case kSmsSymbol:
    case kInputSymbol: {
      const auto pieces = SplitText(primary, u".");
      return std::u16string(u"<").append(pieces.size() > 1 ? pieces[1] : u"").append(u">");
    }
    case kDataFieldSymbol:
      text = TransDataField(node, primary);
      break;
    case kCAXFieldSymbol:
      text = TransCAXField(node, primary);
      break;
    case kSysvarCaseSymbol:
      text = TransSysVarCase(primary);
      break;
    case kFormFieldSymbol:
      text = TransFormField(node, primary);
      break;
    default:
      return std::u16string(primary);
  }
  if (useIsNull) AddIsNullForm(node, text);
  return text;
}

std::u16string TranslatorFrame::TransConstant(Tag node, std::u16string_view text) const {
  switch (node.GetInt(Attr::kDataType)) {
    case kStrDataType:
      return std::u16string(fields_.unicodePrefix).append(text);
    case kDateDataType:
      return TransDateConstant(text);
  }
  return std::u16string(text);
}

/// The word of a field, or one without names and numbers where the dictionaries do not know it.
const MxWord& TranslatorFrame::FieldWord(std::u16string_view primary) const {
  static const MxWord unknown;
  const MxWord* word = dictionaries ? dictionaries->FindByPrimary(primary) : nullptr;
  return word ? *word : unknown;
}

std::u16string TranslatorFrame::TransDataField(Tag node, std::u16string_view primary) {
  std::u16string lower = ToLower(primary);
  if (IsKeyColumn(lower)) return lower;
  const MxWord& word = FieldWord(primary);
  node.Set(Attr::kDtId, word.dtId);
  node.Set(Attr::kFldId, word.fldId);
  std::u16string text = QuoteName(word.dtName);
  const std::u16string column = TransColumnName(word.fldRealName);
  text.reserve(text.size() + 1 + column.size());
  text.append(1, u'.').append(column);
  return text;
}

std::u16string TranslatorFrame::TransFormField(Tag node, std::u16string_view primary) {
  const MxWord& word = FieldWord(primary);
  node.Set(Attr::kRttId, word.rttId);
  node.Set(Attr::kRttName, word.dtName);
  node.Set(Attr::kRtfId, word.rtfId);
  node.Set(Attr::kRtfName, word.fldName);
  const bool fromTables = formDataIn == 1;
  const std::u16string table = Decimal(word.rttId);
  if (fromTables && word.created) {
    node.Set(Attr::kCreated, 1);
    return GetTempColumnName(kFormFieldSymbol, table) + u"." + word.fldRealName;
  }
  if (word.detailTable) {
    node.Set(Attr::kSymbol, kReportFieldSymbol);
    const std::u16string name = GetTempColumnName(kReportFieldSymbol, table);
    node.Set(Attr::kTempTabName, name);
    return name + u".F" + Decimal(word.rtfId);
  }
  if (fromTables) node.Set(Attr::kCreated, 0);
  return u"<F" + Decimal(word.rtfId) + u">";
}

std::u16string TranslatorFrame::TransCAXField(Tag node, std::u16string_view primary) {
  const MxWord& word = FieldWord(primary);
  node.Set(Attr::kCaxTName, word.tabRealName);
  node.Set(Attr::kCaxFName, word.fldRealName);
  return GetTempColumnName(kCAXFieldSymbol, word.tabRealName) + u"." + word.fldRealName;
}

std::u16string TranslatorFrame::TransSysVarCase(std::u16string_view primary) const {
  const std::u16string lower = ToLower(primary);
  std::u16string_view word = lower;
  std::u16string_view extra;
  if (const std::size_t bracket = word.find(u'['); bracket != word.npos) {
    extra = word.substr(bracket + 1);
    if (!extra.empty()) extra.remove_suffix(1);
    word = word.substr(0, bracket);
  }
  std::u16string table = GetTempColumnName(kSysvarCaseSymbol, extra);
  for (const SysVarCaseRow& row : kSysVarCaseRows) {
    if (!EqualsIgnoringCase(word, row.word)) continue;
    const std::u16string column = table + std::u16string(row.column);
    // Through ten characters of text, which cuts the time of day.
    // kept: in this form for every database, also where it is no SQL.
    return row.form == CaseText::kColumn
               ? column
               : u"cast(cast(" + column + u" as nvarchar(10)) as datetime)";
  }
  return table;
}

std::u16string TranslatorFrame::GetTempColumnName(std::int32_t symbol,
                                                  std::u16string_view extra) const {
  const std::u16string id = ReplaceAll(rtId, u".", u"_");
  std::u16string name = u"t_";
  switch (symbol) {
    case kCAXFieldSymbol:
      name = u"#t_CAX";
      break;
    case kSysvarCaseSymbol:
      name += u"sysVar_Case";
      break;
    case kFormFieldSymbol:
      name += id + u"_thisCaseVar";
      break;
    case kReportFieldSymbol:
      name = std::u16string(fields_.reportMark).append(name).append(id).append(u"_repvar");
      break;
    default:
      break;
  }
  if (!extra.empty()) name.append(u"_").append(extra);
  return symbol == kReportFieldSymbol && fields_.quotesReportTable ? QuoteName(name) : name;
}

/// Only the first character is looked at.
std::u16string TranslatorFrame::QuoteName(std::u16string_view name) const {
  const std::u16string_view quotes = fields_.nameQuotes;
  if (name.empty() || quotes.empty() || name.front() == quotes.front()) return std::u16string(name);
  std::u16string quoted;
  quoted.reserve(name.size() + quotes.size());
  quoted.append(1, quotes.front()).append(name).append(quotes.substr(1));
  return quoted;
}

std::u16string TranslatorFrame::TransColumnName(std::u16string_view name) const {
  return std::u16string(name);
}

std::u16string TranslatorFrame::TransDateConstant(std::u16string_view text) const {
  return std::u16string(text);
}

void TranslatorFrame::AddIsNullForm(Tag node, std::u16string& text) const {
  if (const Tag parent = node.Parent()) {
    if (parent.GetInt(Attr::kSymbol) == kOpIsNullSymbol) return;
    // kept: the vocabulary spells it "IsNull", so only a document from elsewhere is meant here.
    if (parent.Get(Attr::kPrimary) == u"isNull") return;
  }
  WrapIsNull(node.GetInt(Attr::kDataType), text, fields_.isNullName);
}

}  // namespace ORKBASE
