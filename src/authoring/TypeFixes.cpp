#include "authoring/TypeFixes.h"

#include "authoring/BareDates.h"
#include "authoring/Operands.h"
#include "authoring/RefusalWords.h"
#include "authoring/WordKinds.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace ORKBASE {
namespace {

constexpr int kMostRounds = 6;

struct Value {
  std::size_t first;
  std::size_t last;
  std::int32_t dataType;
};

/// What is told with a remedy.
struct Candidate {
  std::int32_t number;
  std::u16string first;  ///< what the message is filled with, or empty
  std::u16string second;
  Remedy remedy;
};

bool ReadsAsNumber(std::u16string_view text) noexcept {
  std::size_t points = 0;
  std::size_t digits = 0;
  if (text.starts_with(u'-')) text.remove_prefix(1);
  for (const char16_t unit : text) {
    if (unit == u'.') {
      ++points;
    } else if (unit < u'0' || unit > u'9') {
      return false;
    } else {
      ++digits;
    }
  }
  return digits > 0 && points <= 1 && text.front() != u'.' && text.back() != u'.';
}

class Round {
 public:
  Round(Workbench& bench, const Lexicon& lexicon)
      : bench_(bench), draft_(bench.Now()), lexicon_(lexicon) {}

  /// Whether something was mended.
  bool Run() {
    const Outcome outcome = bench_.Judge(draft_);
    if (outcome.kind == Outcome::kVerifies || outcome.kind == Outcome::kUnknownWord) return false;
    atEnd_ = outcome.kind == Outcome::kEndsEarly;
    refused_ = outcome.kind == Outcome::kEndsEarly ? draft_.Size() : draft_.WordFrom(outcome.reach);
    if (LacksArgument(draft_, refused_)) return false;
    QuoteDates();
    Unquote();
    MoveDate();
    JoinTexts();
    ConvertAround();
    return TellBest();
  }

 private:
  std::int32_t TypeOf(std::size_t first, std::size_t last) const {
    for (std::size_t i = first; i < last; ++i) {
      if (draft_.IsSign(i, u"(") && draft_.partners[i] != Draft::kAlone) {
        i = static_cast<std::size_t>(draft_.partners[i]);
      } else if (IsBetweenValues(draft_, i)) {
        return draft_.IsSign(i, u"&") ? kStrDataType : kNumDataType;
      }
    }
    while (first < last && draft_.IsSign(first, u"(")) ++first;
    return draft_.Word(first).dataType;
  }
  std::optional<Value> From(std::size_t first, bool joined) const {
    if (first >= draft_.Size()) return {};
    const std::size_t last = ValueEnd(draft_, first, joined);
    if (last == kNoWord) return {};
    return Value{first, last, TypeOf(first, last)};
  }
  std::optional<Value> UpTo(std::size_t last, bool joined) const {
    if (last >= draft_.Size()) return {};
    const std::size_t first = ValueBegin(draft_, last, joined);
    if (first == kNoWord) return {};
    return Value{first, last, TypeOf(first, last)};
  }
  std::u16string Piece(const Value& value) const {
    const auto from = static_cast<std::size_t>(draft_.Offset(value.first));
    return draft_.text.substr(from, static_cast<std::size_t>(draft_.End(value.last)) - from);
  }

  /// A value may be of the wrong type some words in front of the one that tells.
  std::size_t FarthestBack() const {
    constexpr std::size_t kFarthest = 24;
    return refused_ - std::min(refused_, kFarthest);
  }

  void QuoteDates() {
    for (std::size_t i = std::min(refused_ + 1, draft_.Size()); i-- > FarthestBack();) {
      const std::optional<BareDate> date = BareDateAt(draft_, i);
      if (!date) continue;
      candidates_.push_back(
          {kMsgDateUnquoted,
           draft_.text.substr(static_cast<std::size_t>(date->offset),
                              static_cast<std::size_t>(date->length)),
           {},
           {kMsgFixQuoteDate, date->quoted, {{date->offset, date->length, date->quoted}}}});
    }
  }

  void Unquote() {
    for (std::size_t i = std::min(refused_ + 1, draft_.Size()); i-- > FarthestBack();) {
      if (draft_.IsRefused(i)) continue;
      const std::u16string_view written = draft_.Written(i);
      if (written.size() < 3 || written.front() != u'\'') continue;
      const std::u16string number(written.substr(1, written.size() - 2));
      if (!ReadsAsNumber(number)) continue;
      candidates_.push_back({kMsgNumberQuoted,
                             std::u16string(written),
                             {},
                             {kMsgFixUnquote,
                              number,
                              {{draft_.Offset(i), draft_.End(i) - draft_.Offset(i), number}}}});
    }
  }

  /// The place of a sign at the refused word or beside it.
  std::optional<std::size_t> SignHere(std::u16string_view signs) const {
    for (const std::size_t i : {refused_, refused_ - 1, refused_ + 1}) {
      if (i > 0 && i < draft_.Size() && draft_.Written(i).size() == 1 &&
          signs.find(draft_.Written(i).front()) != signs.npos) {
        return i;
      }
    }
    return {};
  }

  // --- dates

  void MoveDate() {
    const auto sign = SignHere(u"+-");
    if (!sign) return;
    const auto left = UpTo(*sign - 1, false);
    if (!left) return;
    for (const bool joined : {false, true}) {
      const auto right = From(*sign + 1, joined);
      if (!right) continue;
      const bool isMinus = draft_.IsSign(*sign, u"-");
      if (left->dataType == kDateDataType && right->dataType != kDateDataType) {
        std::u16string days = Piece(*right);
        if (isMinus && right->last > right->first) days.insert(0, u"(").append(u")");
        if (isMinus) days.insert(0, 1, u'-');
        AddMove(*left, *right, lexicon_.Display(u"dateAdd"), days, {});
      } else if (!isMinus && right->dataType == kDateDataType) {
        AddMove(*left, *right, lexicon_.Display(u"dateAdd"), Piece(*left), Piece(*right));
      } else if (isMinus && left->dataType == kDateDataType) {
        AddMove(*left, *right, lexicon_.Display(u"timeInterval"), Piece(*right), {});
      }
    }
  }
  /// A call with the number in front of the date; `date` is empty where it stays where it is.
  void AddMove(const Value& left, const Value& right, const std::u16string& function,
               const std::u16string& number, const std::u16string& date) {
    const std::u16string head = function + u"(dd, " + number + u", ";
    const std::int32_t from = draft_.Offset(left.first);
    const std::int32_t behind = draft_.End(right.last);
    Remedy remedy{kMsgFixMoveDate, head + (date.empty() ? Piece(left) : date) + u')', {}};
    if (date.empty()) {
      remedy.edits = {{from, 0, head},
                      {draft_.End(left.last), behind - draft_.End(left.last), u")"}};
    } else {
      remedy.edits = {{from, draft_.Offset(right.first) - from, head}, {behind, 0, u")"}};
    }
    candidates_.push_back({kMsgPlusAfterDate, {}, {}, std::move(remedy)});
  }

  // --- texts

  RuleEdit Joined(std::size_t sign) const { return {draft_.Offset(sign), 1, u"&"}; }

  void JoinTexts() {
    const auto sign = SignHere(u"+");
    if (!sign) return;
    const auto left = UpTo(*sign - 1, false);
    const auto right = From(*sign + 1, false);
    if (!left || !right) return;
    if (left->dataType != kStrDataType && right->dataType != kStrDataType) return;
    const auto add = [&](std::vector<RuleEdit> edits) {
      candidates_.push_back(
          {kMsgPlusBetweenTexts, {}, {}, {kMsgFixJoinTexts, u"&", std::move(edits)}});
    };
    add({Joined(*sign)});
    std::vector<RuleEdit> all;
    const auto chain = UpTo(*sign - 1, true);
    const std::size_t end = ValueEnd(draft_, *sign + 1, true);
    constexpr std::size_t kLongestChain = 100;
    for (std::size_t i = chain->first; end != kNoWord && i < end; ++i) {
      if (draft_.IsSign(i, u"(") && draft_.partners[i] != Draft::kAlone) {
        i = static_cast<std::size_t>(draft_.partners[i]);
      } else if (draft_.IsSign(i, u"+") && all.size() < kLongestChain) {
        all.push_back(Joined(i));
      }
    }
    if (all.size() > 1) add(std::move(all));
    if (left->dataType != kStrDataType) return;
    for (const bool joined : {false, true}) {
      const auto number = From(*sign + 1, joined);
      if (!number || number->dataType == kStrDataType) continue;
      std::vector<RuleEdit> edits = Conversion(*number, u"ToText");
      edits.insert(edits.begin(), Joined(*sign));
      add(std::move(edits));
    }
  }

  // --- conversions

  std::vector<RuleEdit> Conversion(const Value& value, std::u16string_view function) const {
    std::u16string tail;
    if (value.dataType == kDateDataType) tail = u", 'yyyy-mm-dd'";
    return {{draft_.Offset(value.first), 0, lexicon_.Display(function) + u'('},
            {draft_.End(value.last), 0, tail + u')'}};
  }
  std::u16string Phrase(std::int32_t dataType) const {
    return bench_.call.Text(PhraseOf(dataType));
  }
  void Convert(const std::optional<Value>& value) {
    if (!value) return;
    const bool isText = value->dataType == kStrDataType;
    if (!isText && value->dataType != kNumDataType && value->dataType != kDateDataType) return;
    // A value that ends where another candidate's does and begins there is the same.
    const auto span = std::pair(value->first, value->last);
    if (std::find(converted_.begin(), converted_.end(), span) != converted_.end()) return;
    converted_.push_back(span);
    const std::u16string_view function = isText ? u"ToNumber" : u"ToText";
    const std::vector<RuleEdit> edits = Conversion(*value, function);
    candidates_.push_back({kMsgOtherTypeExpected,
                           Phrase(value->dataType),
                           Phrase(isText ? kNumDataType : kStrDataType),
                           {kMsgFixConvert, edits[0].text + Piece(*value) + edits[1].text, edits}});
  }
  void ConvertAround() {
    for (const bool joined : {false, true}) Convert(From(refused_, joined));
    if (refused_ == 0) return;
    for (const bool joined : {false, true}) Convert(UpTo(refused_ - 1, joined));
    if (refused_ < 2) return;
    for (const bool joined : {false, true}) Convert(UpTo(refused_ - 2, joined));
  }

  // --- choosing

  /// A text that ends too early gets on with whatever has another type, and what stands in front of
  /// a refused word may change without any good to it.
  bool IsGood(const Workbench::Trial& trial) const {
    if (trial.grade == Workbench::kVerifies) return true;
    return !atEnd_ && trial.grade == Workbench::kGetsOn &&
           trial.wordsLeft < draft_.Size() - refused_;
  }

  bool TellBest() {
    std::vector<std::pair<Workbench::Grade, Candidate>> graded;
    for (Candidate& candidate : candidates_) {
      if (!bench_.MayTry()) break;
      const Workbench::Trial trial = bench_.Try(candidate.remedy.edits);
      if (IsGood(trial)) graded.emplace_back(trial.grade, std::move(candidate));
    }
    if (graded.empty()) return false;
    std::stable_sort(graded.begin(), graded.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<Remedy> remedies;
    remedies.reserve(graded.size());
    for (const auto& [grade, candidate] : graded) remedies.push_back(candidate.remedy);
    const Candidate& best = graded.front().second;
    const std::int32_t from =
        atEnd_ ? static_cast<std::int32_t>(draft_.text.size()) : draft_.Offset(refused_);
    const std::int32_t length = atEnd_ ? 0 : draft_.End(refused_) - from;
    if (best.first.empty()) {
      bench_.Tell(from, length, best.number, {}, remedies);
    } else if (best.second.empty()) {
      bench_.Tell(from, length, best.number, {best.first}, remedies);
    } else {
      bench_.Tell(from, length, best.number, {best.first, best.second}, remedies);
    }
    return true;
  }

  Workbench& bench_;
  const Draft& draft_;
  const Lexicon& lexicon_;
  std::size_t refused_ = 0;
  bool atEnd_ = false;
  std::vector<Candidate> candidates_;
  std::vector<std::pair<std::size_t, std::size_t>> converted_;
};

}  // namespace

void FindTypeSlips(Workbench& bench, const Lexicon& lexicon) {
  for (int round = 0; round < kMostRounds; ++round) {
    if (!Round(bench, lexicon).Run()) return;
    bench.Mend();
  }
}

}  // namespace ORKBASE
