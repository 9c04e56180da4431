#include "authoring/Mending.h"

#include "expression/ExpressionState.h"
#include "foundation/Text.h"

#include <algorithm>
#include <utility>

namespace ORKBASE {
namespace {

constexpr std::size_t kMostFixes = 5;
/// A word that is unknown is looked for in every dictionary.
constexpr std::int64_t kUnitsOfUnknown = 150;

std::int32_t SizeOf(std::u16string_view text) noexcept {
  return static_cast<std::int32_t>(text.size());
}

/// What is put in goes before what is replaced in the same place.
bool IsBefore(const RuleEdit& a, const RuleEdit& b) noexcept {
  return a.offset != b.offset ? a.offset < b.offset : a.length == 0 && b.length > 0;
}

void SortByPlace(std::vector<RuleEdit>& edits) {
  std::stable_sort(edits.begin(), edits.end(), IsBefore);
}

/// Behind the last of the edits, in the text that has them and those of `before`.
std::int32_t PlaceBehind(const std::vector<RuleEdit>& edits, const std::vector<RuleEdit>& before) {
  std::int32_t last = 0;
  for (const RuleEdit& edit : edits) last = std::max(last, edit.offset + edit.length);
  std::int32_t moved = 0;
  for (const auto* const list : {&edits, &before}) {
    for (const RuleEdit& edit : *list) {
      if (edit.offset + edit.length <= last) moved += SizeOf(edit.text) - edit.length;
    }
  }
  return last + moved;
}

}  // namespace

std::u16string WithEdits(std::u16string_view text, std::vector<RuleEdit> edits) {
  SortByPlace(edits);
  std::u16string result;
  std::size_t taken = 0;
  for (const RuleEdit& edit : edits) {
    const auto from = static_cast<std::size_t>(edit.offset);
    if (edit.offset < 0 || edit.length < 0 || from < taken) continue;
    const std::size_t behind = from + static_cast<std::size_t>(edit.length);
    if (behind > text.size()) continue;
    result.append(text, taken, from - taken).append(edit.text);
    taken = behind;
  }
  return result.append(text, taken);
}

// --- drafts --------------------------------------------------------------------------------------

Draft::Draft(AuthoringCall& call, std::u16string_view rule) : text(rule) {
  call.Read(text, reading);
  partners.assign(Size(), kAlone);
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < Size(); ++i) {
    if (IsSign(i, u"(")) open.push_back(i);
    if (!IsSign(i, u")") || open.empty()) continue;
    partners[i] = static_cast<std::int32_t>(open.back());
    partners[open.back()] = static_cast<std::int32_t>(i);
    open.pop_back();
  }
}

bool Draft::Is(std::size_t i, std::u16string_view primary) const {
  return i < Size() && !IsRefused(i) && EqualsIgnoringCase(Word(i).primary, primary);
}

bool Draft::IsNumber(std::size_t i) const {
  return i < Size() && !IsRefused(i) && Word(i).symbol == kConstantSymbol &&
         Word(i).dataType == kNumDataType;
}

std::size_t Draft::WordFrom(std::int32_t offset) const {
  const auto found =
      std::partition_point(reading.words.begin(), reading.words.end(), [&](const WordView& word) {
        return word.written.data() + word.written.size() <= text.data() + offset;
      });
  return static_cast<std::size_t>(found - reading.words.begin());
}

// --- the workbench -------------------------------------------------------------------------------

Workbench::Workbench(AuthoringCall& asked, MXRULE_DATATYPE expected, std::u16string_view typed)
    : call(asked), type(expected), rule(typed), draft_(std::make_unique<Draft>(asked, typed)) {
  // At least a few, also for a long rule.
  units_ = std::max(units_, 2 * static_cast<std::int64_t>(typed.size()));
  CountRefused();
}

void Workbench::CountRefused() {
  const auto& refusals = draft_->reading.refusals;
  refused_ = std::count_if(refusals.begin(), refusals.end(),
                           [](const MxErrorRecord& error) { return error.cause != kNoCause; });
}

Outcome Workbench::Judge(const Draft& draft) {
  std::size_t known = 0;
  while (known < draft.Size() && !draft.IsRefused(known)) ++known;
  const std::span<const WordView> words = std::span(draft.reading.words).first(known);
  std::u16string document;
  MxErrorRecord error;
  std::int32_t refused = -1;
  const bool parses =
      call.Engine().parser.ParseExpr(ParsedType(type), words, document, error, refused);
  if (parses && known == draft.Size()) return {Outcome::kVerifies, SizeOf(draft.text)};
  const std::size_t at = parses ? known : static_cast<std::size_t>(std::max(refused, 0));
  if (at >= draft.Size()) return {Outcome::kEndsEarly, SizeOf(draft.text)};
  return {at == known ? Outcome::kUnknownWord : Outcome::kRefusedWord, draft.Offset(at)};
}

/// A text gets on where the word behind the edits, if it is one that is known, is not refused.
Workbench::Trial Workbench::Try(const std::vector<RuleEdit>& edits) {
  --tries_;
  units_ -= SizeOf(draft_->text) + kUnitsOfUnknown * refused_;
  std::vector<RuleEdit> all = chosen_;
  all.insert(all.end(), edits.begin(), edits.end());
  const Draft draft(call, WithEdits(draft_->text, std::move(all)));
  const Outcome outcome = Judge(draft);
  if (outcome.kind == Outcome::kVerifies) return {kVerifies, 0};
  const std::size_t reached = draft.WordFrom(outcome.reach);
  const std::int32_t behind = PlaceBehind(edits, chosen_);
  const bool getsOn = outcome.reach >= behind &&
                      (outcome.kind != Outcome::kRefusedWord || draft.WordFrom(behind) < reached);
  return {getsOn ? kGetsOn : kStays, draft.Size() - reached};
}

void Workbench::Rank(std::vector<Remedy>& remedies, bool onlyGood) {
  if (remedies.size() < 2 && !onlyGood) return;
  std::vector<std::pair<Grade, Remedy>> graded;
  for (Remedy& remedy : remedies) {
    const Grade grade = MayTry() ? Try(remedy.edits).grade : kStays;
    if (!onlyGood || grade != kStays) graded.emplace_back(grade, std::move(remedy));
  }
  std::stable_sort(graded.begin(), graded.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  remedies.clear();
  for (auto& [grade, remedy] : graded) remedies.push_back(std::move(remedy));
}

void Workbench::Tell(std::int32_t offset, std::int32_t length, std::int32_t number,
                     std::initializer_list<std::u16string_view> arguments,
                     const std::vector<Remedy>& remedies) {
  // A text costs more than all else where there are very many slips.
  TellText(offset, length, number, IsFull() ? std::u16string() : call.Text(number, arguments),
           remedies);
}

void Workbench::TellText(std::int32_t offset, std::int32_t length, std::int32_t number,
                         std::u16string text, const std::vector<Remedy>& remedies) {
  if (!remedies.empty()) {
    chosen_.insert(chosen_.end(), remedies.front().edits.begin(), remedies.front().edits.end());
  }
  if (IsFull()) return;
  const RuleEdit place = Typed({offset, length, {}}, nullptr);
  Slip slip{place.offset, place.length, number, std::move(text), {}, {}};
  for (const Remedy& remedy : remedies) {
    RuleFix fix;
    fix.label =
        remedy.told.empty() ? call.Text(remedy.label) : call.Text(remedy.label, {remedy.told});
    for (const RuleEdit& edit : remedy.edits) fix.edits.push_back(Typed(edit, nullptr));
    SortByPlace(fix.edits);
    const auto same = [&](const RuleFix& other) { return other.label == fix.label; };
    if (std::any_of(slip.fixes.begin(), slip.fixes.end(), same)) continue;
    slip.fixes.push_back(std::move(fix));
    if (slip.fixes.size() == kMostFixes) break;
  }
  // What one remedy mends in whole is one slip: `!` and `=` before `null`.
  const auto isPart = [&](const Slip& other) {
    return slip.length > 0 && other.offset >= slip.offset &&
           other.offset + other.length <= slip.offset + slip.length && other.length < slip.length;
  };
  if (!slip.fixes.empty() && slip.fixes.front().edits.size() == 1 && number == kMsgForeignForm) {
    std::erase_if(slips, isPart);
  }
  slips.push_back(std::move(slip));
}

bool Workbench::Mend() {
  if (chosen_.empty()) return false;
  SortByPlace(chosen_);
  std::vector<bool> covered(done_.size(), false);
  // With the place in the present text: texts that are put in at one place keep their order.
  std::vector<std::pair<std::int32_t, RuleEdit>> all;
  std::int32_t taken = 0;
  for (const RuleEdit& edit : chosen_) {
    if (edit.offset < taken) continue;
    taken = edit.offset + edit.length;
    all.emplace_back(edit.offset, Typed(edit, &covered));
  }
  for (std::size_t i = 0; i < done_.size(); ++i) {
    if (!covered[i]) all.emplace_back(done_[i].now, std::move(done_[i].edit));
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::stable_sort(all.begin(), all.end(),
                   [](const auto& a, const auto& b) { return IsBefore(a.second, b.second); });
  done_.clear();
  std::int32_t moved = 0;
  taken = 0;
  for (auto& [place, edit] : all) {
    if (edit.offset < taken) continue;
    taken = edit.offset + edit.length;
    const std::int32_t now = edit.offset + moved;
    moved += SizeOf(edit.text) - edit.length;
    done_.push_back({std::move(edit), now});
  }
  std::vector<RuleEdit> edits;
  for (const Done& done : done_) edits.push_back(done.edit);
  draft_ = std::make_unique<Draft>(call, WithEdits(rule, std::move(edits)));
  CountRefused();
  chosen_.clear();
  return true;
}

std::int32_t Workbench::TypedOffset(std::int32_t offset) const {
  return Typed({offset, 0, {}}, nullptr).offset;
}

std::int32_t Workbench::PresentOffset(std::int32_t typed) const {
  const auto behind = std::partition_point(
      done_.begin(), done_.end(), [&](const Done& done) { return done.TypedEnd() <= typed; });
  if (behind != done_.end() && behind->edit.offset < typed) return behind->now;
  if (behind == done_.begin()) return typed;
  return (behind - 1)->End() + typed - (behind - 1)->TypedEnd();
}

/// The edit in the places of the typed text, widened to the whole of those earlier ones that it
/// cuts; `covered` marks those that it stands for.
RuleEdit Workbench::Typed(const RuleEdit& edit, std::vector<bool>* covered) const {
  const std::int32_t from = edit.offset;
  const std::int32_t to = edit.offset + edit.length;
  RuleEdit typed{from, 0, edit.text};
  std::int32_t end = to;
  const auto first = std::partition_point(done_.begin(), done_.end(),
                                          [&](const Done& done) { return done.End() <= from; });
  if (first != done_.begin()) typed.offset = (first - 1)->TypedEnd() + from - (first - 1)->End();
  end = typed.offset + edit.length;
  for (auto done = first; done != done_.end() && done->now <= to; ++done) {
    const bool isCutInFront = done->now < from;
    const bool ends = done->now < to || isCutInFront;
    if (!ends) break;
    if (isCutInFront) {
      typed.offset = done->edit.offset;
      typed.text.insert(0, done->edit.text, 0, static_cast<std::size_t>(from - done->now));
    }
    if (done->End() > to) {
      typed.text.append(done->edit.text, static_cast<std::size_t>(to - done->now));
      end = done->TypedEnd();
    } else {
      end = done->TypedEnd() + to - done->End();
    }
    if (covered) (*covered)[static_cast<std::size_t>(done - done_.begin())] = true;
  }
  typed.length = std::max(end - typed.offset, 0);
  return typed;
}

}  // namespace ORKBASE
