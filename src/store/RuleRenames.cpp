// Only the pairs whose names stand in a rule are handed to the lexer, so that a long list costs a
// rule that it does not touch nothing but looking up its words. The lexer alone decides what a pair
// matches, also for the counts.
#include "store/RuleRenames.h"

#include "foundation/MessageNumbers.h"
#include "foundation/RenameList.h"
#include "foundation/Text.h"
#include "platform/ErrorTexts.h"
#include "store/UpkeepFindings.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ORKBASE {
namespace {

/// Around these the lexer looks for names inside a word.
constexpr std::u16string_view kNameEnds = u".[]\"";

bool IsText(std::u16string_view token) noexcept {
  return token.starts_with(u'\'');
}

bool IsWholePiece(std::u16string_view name) noexcept {
  return !name.empty() && name.find_first_of(kNameEnds) == name.npos;
}

std::u16string JoinedItems(const std::vector<std::u16string>& items) {
  std::u16string list;
  for (const std::u16string& item : items) {
    if (!list.empty()) list += u',';
    list += item;
  }
  return list;
}

/// What a table is called once all are renamed.
std::u16string NewNameOf(std::u16string_view table, const std::vector<RenameItem>& renames) {
  const bool isNew = std::any_of(renames.begin(), renames.end(),
                                 [table](const RenameItem& item) { return item.to == table; });
  if (isNew) return std::u16string(table);
  for (const RenameItem& item : renames) {
    if (item.from == table) table = item.to;
  }
  return std::u16string(table);
}

std::u16string OldNameOf(std::u16string_view table, const std::vector<RenameItem>& renames) {
  for (auto item = renames.rbegin(); item != renames.rend(); ++item) {
    if (item->to == table) table = item->from;
  }
  return std::u16string(table);
}

void SortOnce(std::vector<std::size_t>& indices) {
  std::sort(indices.begin(), indices.end());
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
}

}  // namespace

std::u16string ListedRename::Item() const {
  const std::u16string name =
      isField ? std::u16string(table).append(1, u'.').append(oldName) : oldName;
  return std::u16string(name).append(1, u':').append(newName);
}

std::vector<ListedRename> ReadListedRenames(std::u16string_view tables,
                                            std::u16string_view fields) {
  std::vector<ListedRename> listed;
  const std::vector<RenameItem> renames = ReadRenames(tables);
  for (const RenameItem& item : renames) {
    if (item.from.empty()) continue;
    const std::u16string from(item.from);
    listed.push_back({false, from, from, from, std::u16string(item.to)});
  }
  for (const RenameItem& item : ReadRenames(fields)) {
    if (item.from.empty()) continue;
    const std::size_t dot = std::min(item.from.find(u'.'), item.from.size());
    const std::u16string table = NewNameOf(item.from.substr(0, dot), renames);
    const std::u16string_view field = item.from.substr(std::min(dot + 1, item.from.size()));
    listed.push_back(
        {true, OldNameOf(table, renames), table, std::u16string(field), std::u16string(item.to)});
  }
  return listed;
}

RuleRenames::RuleRenames(const UpkeepSettings& settings)
    : listed_(ReadListedRenames(settings.tableRenames, settings.fieldRenames)),
      dialect_(settings.dialects.empty() ? kSqlServerDs : settings.dialects.front()) {
  for (std::size_t i = 0; i < listed_.size(); ++i) {
    const ListedRename& one = listed_[i];
    std::u16string today = one.oldName;
    if (one.isField) today = std::u16string(one.today).append(1, u'.').append(one.oldName);
    pairs_.push_back({std::move(today), one.newName, 0, 0});
    items_.push_back(one.Item());
    const std::u16string item = ToLower(items_.back());
    smallItems_.push_back(item.substr(0, item.find(u':')).append(u":?"));
    if (IsWholePiece(one.oldName)) {
      byName_[ToLower(one.oldName)].push_back(i);
    } else {
      everywhere_.push_back(i);
    }
  }
}

EngineRenames RuleRenames::ForEngine() const {
  EngineRenames renames;
  std::vector<std::u16string> tables;
  std::vector<std::u16string> fields;
  for (std::size_t i = 0; i < listed_.size(); ++i) {
    (listed_[i].isField ? fields : tables).push_back(items_[i]);
    renames.loaded.push_back(listed_[i].today);
  }
  std::sort(renames.loaded.begin(), renames.loaded.end());
  renames.loaded.erase(std::unique(renames.loaded.begin(), renames.loaded.end()),
                       renames.loaded.end());
  renames.tables = JoinedItems(tables);
  renames.fields = JoinedItems(fields);
  return renames;
}

void RuleRenames::Find(std::u16string_view piece, Indices& found) const {
  const auto named = byName_.find(ToLower(piece));
  if (named == byName_.end()) return;
  found.insert(found.end(), named->second.begin(), named->second.end());
}

void RuleRenames::FindPieces(std::u16string_view text, Indices& found) const {
  for (;;) {
    const std::size_t end = text.find_first_of(kNameEnds);
    if (end != 0) Find(text.substr(0, end), found);
    if (end == text.npos) return;
    text.remove_prefix(end + 1);
  }
}

/// The pairs that may match in a word, also after pairs before them have.
RuleRenames::Indices RuleRenames::TouchedBy(std::u16string_view token) const {
  Indices found = everywhere_;
  FindPieces(token, found);
  if (found.empty()) return found;
  SortOnce(found);
  std::vector<bool> isTaken(listed_.size());
  for (const std::size_t index : found) isTaken[index] = true;
  for (std::size_t i = 0; i < found.size(); ++i) {
    Indices behind;
    FindPieces(listed_[found[i]].newName, behind);
    for (const std::size_t next : behind) {
      if (!isTaken[next]) found.push_back(next);
      isTaken[next] = true;
    }
  }
  SortOnce(found);
  return found;
}

RenamedText RuleRenames::Apply(const std::u16string& text) {
  RenamedText renamed;
  renamed.text = text;
  told_.clear();
  std::vector<std::u16string> tokens;
  lexer_.GenerateOriginalTokens(text, tokens);
  Indices all;
  std::size_t at = 0;
  for (const std::u16string& token : tokens) {
    const Indices touched = IsBlankText(token) ? Indices{} : TouchedBy(token);
    if (!touched.empty()) Count(touched, token, at, renamed);
    if (IsText(token)) LookIntoText(token, at, renamed);
    all.insert(all.end(), touched.begin(), touched.end());
    at += token.size();
  }
  if (all.empty()) return renamed;
  SortOnce(all);
  std::array<std::vector<std::u16string>, 2> lists;
  for (const std::size_t index : all)
    lists[listed_[index].isField ? 1 : 0].push_back(items_[index]);
  MxLexicalAnalyzer lexer;
  lexer.ChangeExpWithNewDtDfNames(dialect_, JoinedItems(lists[0]), JoinedItems(lists[1]), text,
                                  renamed.text);
  if (lexer.ErrNumber() != 0) renamed.refusal = MakeError(kRequestCause, kMsgRenamedTooLong);
  return renamed;
}

/// Whether an item changes a word, which then is changed.
bool RuleRenames::Change(const std::u16string& item, bool isField, std::u16string& token) {
  static const std::u16string kNone;
  std::u16string changed;
  lexer_.ChangeExpWithNewDtDfNames(dialect_, isField ? kNone : item, isField ? item : kNone, token,
                                   changed);
  if (changed == token) return false;
  token = std::move(changed);
  return true;
}

void RuleRenames::Count(const Indices& touched, std::u16string_view written, std::size_t at,
                        RenamedText& renamed) {
  std::u16string token(written);
  for (const std::size_t index : touched) {
    const bool isField = listed_[index].isField;
    std::u16string changed = token;
    if (Change(items_[index], isField, changed)) {
      ++pairs_[index].matched;
      // Each table is looked for in what the ones before made of the word, each field in the word.
      if (!isField) token = std::move(changed);
      continue;
    }
    std::u16string small = ToLower(token);
    if (!Change(smallItems_[index], isField, small)) continue;
    ++pairs_[index].differingInCase;
    Tell(index, kMsgUpkeepOtherCase, written, at, renamed);
  }
}

/// Words of a text constant that are an old name: it may be part of a statement, or a word like any
/// other.
void RuleRenames::LookIntoText(std::u16string_view token, std::size_t at, RenamedText& renamed) {
  std::u16string_view inner = token.substr(1);
  if (inner.ends_with(u'\'')) inner.remove_suffix(1);
  std::vector<std::u16string> words;
  lexer_.GenerateOriginalTokens(std::u16string(inner), words);
  std::size_t place = at + 1;
  for (const std::u16string& word : words) {
    Indices found;
    const std::size_t dot = word.find(u'.');
    Find(std::u16string_view(word).substr(0, dot), found);
    if (dot != word.npos) Find(std::u16string_view(word).substr(dot + 1), found);
    for (const std::size_t index : found) {
      const std::u16string& old = pairs_[index].oldName;
      const bool isNamed = word == old || (!listed_[index].isField && word.starts_with(old) &&
                                           word[old.size()] == u'.');
      if (isNamed) Tell(index, kMsgUpkeepNameInText, word, place, renamed);
    }
    place += word.size();
  }
}

/// Once a rule for each pair and message.
void RuleRenames::Tell(std::size_t pair, std::int32_t message, std::u16string_view word,
                       std::size_t at, RenamedText& renamed) {
  if (!told_.emplace(pair, message).second) return;
  const std::u16string& old = pairs_[pair].oldName;
  const std::u16string text =
      message == kMsgUpkeepOtherCase ? TextOf(message, {word, old}) : TextOf(message, {old});
  UpkeepFinding finding;
  finding.state = kNoticeState;
  finding.number = message;
  finding.text = text;
  finding.offset = static_cast<std::int32_t>(at);
  finding.length = static_cast<std::int32_t>(word.size());
  renamed.notices.push_back(std::move(finding));
}

}  // namespace ORKBASE
