// Completion: the words that match what is typed, each kind of them judged once.
#include "authoring/Completion.h"

#include "authoring/AuthoringCall.h"
#include "authoring/CompletionItems.h"
#include "authoring/CursorWord.h"
#include "authoring/WordKinds.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ORKBASE {
namespace {

/// More fields than these are shown by their tables.
constexpr std::size_t kMostFields = 20;
constexpr MXRULE_DATATYPE kConstantTypes[] = {kNumDataType, kStrDataType, kDateDataType};

/// How well a candidate matches what is typed; the lower, the better.
enum MatchRank : std::int8_t { kBeginning, kBeginningOfPart, kInOrder, kNoMatch };
constexpr std::size_t kRanks = kNoMatch;

bool BeginsPart(std::u16string_view text, std::size_t at) noexcept {
  const char16_t before = text[at - 1];
  if (before == u'.' || before == u'_') return true;
  const auto isSmall = [](char16_t unit) { return ToUpper(unit) != unit; };
  return isSmall(before) && ToLower(text[at]) != text[at];
}

bool HoldsInOrder(std::u16string_view text, std::u16string_view letters) noexcept {
  std::size_t at = 0;
  for (const char16_t letter : letters) {
    at = text.find(letter, at);
    if (at == text.npos) return false;
    ++at;
  }
  return true;
}

MatchRank RankOf(const Candidate& candidate, std::u16string_view typed) noexcept {
  if (typed.size() > candidate.folded.size()) return kNoMatch;
  std::size_t at = candidate.folded.find(typed);
  if (at == 0) return kBeginning;
  for (; at != candidate.folded.npos; at = candidate.folded.find(typed, at + 1)) {
    if (BeginsPart(candidate.text, at)) return kBeginningOfPart;
  }
  return HoldsInOrder(candidate.folded, typed) ? kInOrder : kNoMatch;
}

/// Candidates that match, by rank; those of one rank in the order of the list.
using Ranked = std::array<std::vector<const Candidate*>, kRanks>;

struct Matches {
  Ranked fitting;
  Ranked unfit;
  std::size_t fields = 0;  ///< of those that fit
};

/// One line of the list: a candidate, or the group that stands for its fields.
struct Entry {
  const Candidate* candidate;
  const FieldGroup* group;
  bool fits;
};

class Completer {
 public:
  Completer(AuthoringCall& call, std::u16string_view text, const CursorWord& cursor)
      : call_(call), text_(text), cursor_(cursor) {}

  void FindPlace(MXRULE_DATATYPE type);
  bool IsUnsure() const noexcept { return !place_.IsKnown(); }
  void AddConstants(RuleCompletion& completion) const;
  void AddItems(std::int32_t limit, bool all, RuleCompletion& completion);

 private:
  void LoadTypedTable();
  std::vector<bool> JudgeClasses() const;
  std::vector<bool> OpenGroups() const;
  Matches Match(bool all) const;
  void AddEntries(const Ranked& ranked, bool fits, bool byTables, std::vector<Entry>& entries);

  AuthoringCall& call_;
  std::u16string_view text_;
  const CursorWord& cursor_;
  RuleReading before_;
  RulePlace place_;
  const CandidateList* candidates_ = nullptr;
};

std::u16string_view TableOf(std::u16string_view word) noexcept {
  return word.substr(0, word.find(u'.'));
}

/// Without the word before a field of the current record where that is not looked up.
std::u16string WithoutPrefix(AuthoringCall& call, std::u16string_view word) {
  if (call.Engine().lexer.thiscaseVarOn1RcId) return std::u16string(word);
  const std::u16string prefix = LoadMessage(kMsgThisReport, call.TextLanguage()) + u'.';
  return std::u16string(word.starts_with(prefix) ? word.substr(prefix.size()) : word);
}

/// A table whose fields are being typed is one that the rule names.
void Completer::LoadTypedTable() {
  const std::u16string word = WithoutPrefix(call_, cursor_.typed);
  const std::u16string_view table = TableOf(word);
  if (table.empty() || table.size() == word.size()) return;
  MxErrorRecord ignored;
  call_.Dictionaries().BindTable(table, ignored);
}

void Completer::FindPlace(MXRULE_DATATYPE type) {
  LoadTypedTable();
  call_.Read(text_.substr(0, cursor_.begin), before_);
  candidates_ = &call_.Candidates();
  for (std::size_t i = 0; i < before_.words.size(); ++i) {
    if (before_.IsRefused(i)) return;
  }
  NextWords next;
  call_.Engine().parser.FindNext(ParsedType(type), before_.words, next);
  if (next.IsReached()) place_ = RulePlace(std::move(next));
}

void Completer::AddConstants(RuleCompletion& completion) const {
  for (const MXRULE_DATATYPE type : kConstantTypes) {
    if (place_.TakesConstant(type)) completion.constants.push_back(TypeNameOf(type));
  }
}

std::vector<bool> Completer::JudgeClasses() const {
  std::vector<bool> taken;
  taken.reserve(candidates_->Classes().size());
  for (const WordClass& each : candidates_->Classes()) taken.push_back(place_.TakesClass(each));
  return taken;
}

/// The groups that count: those that the engine has loaded, and those that this rule names.
std::vector<bool> Completer::OpenGroups() const {
  std::vector<bool> open;
  for (const FieldGroup& group : candidates_->Groups()) open.push_back(group.isLoaded);
  const auto add = [&](std::u16string_view group) {
    const std::int32_t index = candidates_->GroupOf(group);
    if (index >= 0) open[static_cast<std::size_t>(index)] = true;
  };
  for (const WordView& word : before_.words) {
    if (word.symbol != kDataFieldSymbol) continue;
    if (word.entry) {
      add(GroupText(*word.entry, word.entry->outDesc));
    } else {
      add(word.written.substr(0, word.written.find(u'.') + 1));
    }
  }
  const std::u16string typed = WithoutPrefix(call_, cursor_.typed);
  add(std::u16string_view(typed).substr(0, typed.find(u'.') + 1));
  return open;
}

Matches Completer::Match(bool all) const {
  const std::vector<bool> taken = JudgeClasses();
  const std::vector<bool> open = OpenGroups();
  const std::u16string typed = Folded(cursor_.typed);
  Matches matches;
  for (const Candidate& candidate : candidates_->All()) {
    const bool fits = taken[candidate.wordClass];
    if (!fits && !all) continue;
    if (candidate.group >= 0 && !open[static_cast<std::size_t>(candidate.group)]) continue;
    const MatchRank rank = RankOf(candidate, typed);
    if (rank == kNoMatch) continue;
    (fits ? matches.fitting : matches.unfit)[static_cast<std::size_t>(rank)].push_back(&candidate);
    if (fits && candidate.group >= 0) ++matches.fields;
  }
  return matches;
}

/// Each group stands once, where the best of its fields would.
void Completer::AddEntries(const Ranked& ranked, bool fits, bool byTables,
                           std::vector<Entry>& entries) {
  std::vector<bool> shown(candidates_->Groups().size());
  for (const std::vector<const Candidate*>& candidates : ranked) {
    for (const Candidate* candidate : candidates) {
      if (!byTables || candidate->group < 0) {
        entries.push_back({candidate, nullptr, fits});
        continue;
      }
      const auto group = static_cast<std::size_t>(candidate->group);
      if (!shown[group]) entries.push_back({nullptr, &candidates_->Groups()[group], fits});
      shown[group] = true;
    }
  }
}

void Completer::AddItems(std::int32_t limit, bool all, RuleCompletion& completion) {
  const Matches matches = Match(all);
  const bool isPointTyped = cursor_.typed.find(u'.') != cursor_.typed.npos;
  const bool byTables = limit > 0 && !isPointTyped && matches.fields > kMostFields;
  std::vector<Entry> entries;
  AddEntries(matches.fitting, true, byTables, entries);
  AddEntries(matches.unfit, false, false, entries);
  completion.more = limit > 0 && entries.size() > static_cast<std::size_t>(limit);
  if (completion.more) entries.resize(static_cast<std::size_t>(limit));
  ItemMaker items(call_, place_, *candidates_, cursor_.before);
  completion.items.reserve(entries.size());
  for (const Entry& entry : entries) {
    RuleItem& item = completion.items.emplace_back();
    if (entry.group) {
      items.AddTable(*entry.group, item);
    } else if (entry.fits) {
      items.AddFitting(*entry.candidate, item);
    } else {
      items.AddUnfit(*entry.candidate, item);
    }
  }
}

bool IsNumber(AuthoringCall& call, std::u16string_view word) {
  RuleReading reading;
  call.Read(word, reading);
  return reading.words.size() == 1 && reading.words[0].symbol == kConstantSymbol;
}

}  // namespace

RuleCompletion CompleteAt(AuthoringCall& call, MXRULE_DATATYPE type, std::u16string_view text,
                          std::int32_t offset, std::int32_t limit, bool all) {
  const CursorWord cursor = WordAtCursor(text, offset);
  RuleCompletion completion;
  completion.offset = static_cast<std::int32_t>(cursor.begin);
  completion.length = static_cast<std::int32_t>(cursor.end - cursor.begin);
  if (cursor.isTextConstant) return completion;
  const std::u16string_view word = text.substr(cursor.begin, cursor.end - cursor.begin);
  if (cursor.mayBeNumber && IsNumber(call, word)) return completion;
  Completer completer(call, text, cursor);
  completer.FindPlace(type);
  completion.unsure = completer.IsUnsure();
  completer.AddConstants(completion);
  completer.AddItems(limit, all, completion);
  return completion;
}

}  // namespace ORKBASE
