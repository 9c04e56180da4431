// A refused rule goes through stages, each of which finds slips of one kind and mends them, so that
// the next one sees a text without them: signs of other widths, notation of other languages,
// phrases, single words, brackets, types. Then the error of `Verify` is told with the remedy of the
// slip that it comes from, and the other slips behind it.
#include "authoring/Check.h"

#include "authoring/Aliases.h"
#include "authoring/BracketFixes.h"
#include "authoring/Expectations.h"
#include "authoring/Mending.h"
#include "authoring/Notation.h"
#include "authoring/Phrases.h"
#include "authoring/RefusalWords.h"
#include "authoring/TypeFixes.h"
#include "authoring/Warnings.h"
#include "authoring/WideSigns.h"
#include "authoring/WordFixes.h"
#include "foundation/MessageNumbers.h"
#include "platform/ErrorTexts.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace ORKBASE {
namespace {

bool IsWide(const Slip& slip) noexcept {
  return slip.number == kMsgWideSign || slip.number == kMsgOddBlank;
}

/// Whether the slip is one of notation, whose remedy either mends its place or is none.
bool IsOfNotation(const Slip& slip) noexcept {
  return IsWide(slip) || slip.number == kMsgForeignForm;
}

/// `DescriptionOf` where it names the word.
std::u16string TextOfRefusal(const AuthoringCall& call, const MxErrorRecord& refusal) {
  const std::u16string text = DescriptionOf(refusal, call.TextLanguage());
  const bool namesWord = refusal.word.empty() || text.find(refusal.word) != text.npos;
  return namesWord && !text.empty() ? text : call.TextOf(refusal);
}

class Checking {
 public:
  Checking(AuthoringCall& call, MXRULE_DATATYPE type, std::u16string_view rule,
           const MxErrorRecord& refusal)
      : call_(call), bench_(call, type, rule), lexicon_(call), refusal_(refusal) {
    first_.offset = std::max(refusal.offset, 0);
    first_.length = std::max(refusal.length, 0);
  }

  std::vector<RuleProblem> Run() {
    DescribeFirst();
    if (refusal_.cause != kRequestCause) {
      FindSlips();
      DropFixesOfNoUse();
      MergeFirst();
      FindExpected();
      FindWords();
    }
    return Problems();
  }

 private:
  void DescribeFirst() {
    const Draft& typed = bench_.Now();
    first_.number = refusal_.message == 0 ? std::int32_t{kMsgUnknownWord} : refusal_.message;
    first_.text = TextOfRefusal(call_, refusal_);
    if (refusal_.cause == kDatabaseCause) {
      first_.text = call_.Text(kMsgDatabaseFailed, {call_.TextOf(refusal_)});
      first_.number = kMsgDatabaseFailed;
    }
    if (refusal_.offset < 0) return;
    word_ = typed.WordFrom(first_.offset);
    first_.expected = ExpectedAt(bench_, typed, word_);
    // These two name no word.
    if (first_.number != kMsgEndsTooEarly && first_.number != kMsgSurplusWords) return;
    std::u16string mixUp = MixUpText(bench_, typed);
    if (mixUp.empty()) return;
    first_.number = kMsgOtherTypeExpected;
    first_.text = std::move(mixUp);
  }

  void FindSlips() {
    FindWideSigns(bench_);
    bench_.Mend();
    FindNotation(bench_, bench_.Judge(bench_.Now()).reach);
    bench_.Mend();
    FindPhrases(bench_, lexicon_);
    bench_.Mend();
    FindRefusedWords(bench_, lexicon_);
    if (bench_.Mend()) {
      FindPhrases(bench_, lexicon_);
      bench_.Mend();
    }
    FindLoneBrackets(bench_);
    FindTypeSlips(bench_, lexicon_);
  }

  /// What leaves the rule refused at its own place mends nothing.
  void DropFixesOfNoUse() {
    const Outcome outcome = bench_.Judge(bench_.Now());
    if (outcome.kind == Outcome::kVerifies) return;
    const std::int32_t place = bench_.TypedOffset(outcome.reach);
    for (Slip& slip : bench_.slips) {
      if (!IsOfNotation(slip) || slip.fixes.empty()) continue;
      const std::vector<RuleEdit>& edits = slip.fixes.back().edits;
      const bool isThere = std::any_of(edits.begin(), edits.end(), [&](const RuleEdit& edit) {
        return place >= edit.offset && place < edit.offset + edit.length;
      });
      if (isThere) slip.fixes.clear();
    }
  }

  // --- the first error and the slip that it comes from

  bool Meets(const Slip& slip) const {
    const std::int32_t end = first_.offset + first_.length;
    const std::int32_t slipEnd = slip.offset + slip.length;
    if (first_.length == 0) return slip.offset <= first_.offset && slipEnd >= first_.offset;
    return std::max(first_.offset, slip.offset) < std::min(end, slipEnd);
  }
  bool IsWithin(const Slip& slip) const {
    return slip.offset >= first_.offset &&
           slip.offset + slip.length <= first_.offset + first_.length;
  }

  static constexpr std::int32_t kElsewhere = std::numeric_limits<std::int32_t>::max();
  /// How little a slip has to do with the first error: signs within the refused word come first,
  /// then what is told of the word itself, then what it is part of.
  std::int32_t Remoteness(const Slip& slip) const {
    if (!Meets(slip)) return kElsewhere;
    if (IsWide(slip) && IsWithin(slip)) return 0;
    const bool isSame = slip.offset == first_.offset && slip.length == first_.length;
    return isSame ? 1 : 2 + slip.length;
  }

  void MergeFirst() {
    auto& slips = bench_.slips;
    auto found = std::min_element(slips.begin(), slips.end(), [&](const Slip& a, const Slip& b) {
      return Remoteness(a) < Remoteness(b);
    });
    if (found == slips.end() || Remoteness(*found) == kElsewhere) found = FindCause();
    if (found == slips.end()) return;
    first_.fixes = std::move(found->fixes);
    if (IsWide(*found)) {
      MergeWide(found);
    } else {
      slips.erase(found);
    }
  }

  /// All signs of other widths within the refused word are one slip.
  void MergeWide(std::vector<Slip>::iterator found) {
    auto& slips = bench_.slips;
    RuleFix alone = first_.fixes.empty() ? RuleFix{} : first_.fixes.back();
    const bool isPart = first_.fixes.size() > 1;
    found = slips.erase(found);
    for (auto slip = found; slip != slips.end();) {
      if (!IsWide(*slip) || !IsWithin(*slip)) {
        ++slip;
        continue;
      }
      if (isPart && !slip->fixes.empty()) {
        const RuleFix& more = slip->fixes.back();
        alone.edits.insert(alone.edits.end(), more.edits.begin(), more.edits.end());
      }
      slip = slips.erase(slip);
    }
    if (!isPart) return;
    first_.fixes.pop_back();
    if (alone.edits.size() < first_.fixes.front().edits.size()) {
      first_.fixes.push_back(std::move(alone));
    }
  }

  /// The slip that makes the rule be refused where it is, though it stands elsewhere.
  std::vector<Slip>::iterator FindCause() {
    constexpr int kMostTried = 6;
    auto& slips = bench_.slips;
    auto best = slips.end();
    int tried = 0;
    for (auto slip = slips.begin(); slip != slips.end() && tried < kMostTried; ++slip) {
      if (slip->fixes.empty() || !bench_.MayTry()) continue;
      ++tried;
      const auto& edits = slip->fixes.front().edits;
      const Draft draft(call_, WithEdits(bench_.rule, edits));
      const Outcome outcome = bench_.Judge(draft);
      if (outcome.kind == Outcome::kVerifies) return slip;
      std::int32_t place = first_.offset;
      for (const RuleEdit& edit : edits) {
        if (edit.offset < first_.offset) {
          place += static_cast<std::int32_t>(edit.text.size()) - edit.length;
        }
      }
      if (best == slips.end() && outcome.reach > place) best = slip;
    }
    return best;
  }

  /// Behind a slip only the mended text tells what may stand in a place.
  void FindExpected() {
    const auto find = [&](Slip& slip) {
      const Draft& mended = bench_.Now();
      const std::size_t word = mended.WordFrom(bench_.PresentOffset(slip.offset));
      slip.expected = ExpectedAt(bench_, mended, word);
    };
    if (first_.expected.empty() && refusal_.offset >= 0) find(first_);
    constexpr std::size_t kMostFound = 3;
    for (std::size_t i = 0; i < std::min(bench_.slips.size(), kMostFound); ++i) {
      find(bench_.slips[i]);
    }
  }

  /// What is said where no remedy is sure.
  void FindWords() {
    if (!first_.fixes.empty() || refusal_.offset < 0) return;
    const Draft typed(call_, bench_.rule);
    if (word_ < typed.Size() && !typed.IsRefused(word_)) TellOfArgumentsIn(typed);
  }
  void TellOfArgumentsIn(const Draft& typed) {
    // Places are those of the typed text here.
    Workbench untouched(call_, bench_.type, bench_.rule);
    TellOfArguments(untouched, typed, word_);
    for (Slip& slip : untouched.slips) bench_.slips.push_back(std::move(slip));
  }

  std::vector<RuleProblem> Problems() {
    auto& slips = bench_.slips;
    std::stable_sort(slips.begin(), slips.end(), [](const Slip& a, const Slip& b) {
      return a.offset != b.offset ? a.offset < b.offset : a.length < b.length;
    });
    std::vector<RuleProblem> problems;
    const auto add = [&](Slip& slip) {
      problems.push_back({slip.offset, slip.length, kErrorSeverity, slip.number,
                          std::move(slip.text), std::move(slip.expected), std::move(slip.fixes)});
    };
    add(first_);
    for (Slip& slip : slips) {
      const auto same = [&](const RuleProblem& problem) {
        return problem.offset == slip.offset && problem.length == slip.length;
      };
      if (same(problems.front()) || same(problems.back())) continue;
      add(slip);
    }
    return problems;
  }

  AuthoringCall& call_;
  Workbench bench_;
  Lexicon lexicon_;
  const MxErrorRecord& refusal_;
  Slip first_;
  std::size_t word_ = 0;
};

}  // namespace

std::vector<RuleProblem> CheckRule(AuthoringCall& call, MXRULE_DATATYPE type,
                                   std::u16string_view rule,
                                   std::span<const ORKDB_DSType_ENUM> dsTypes, bool twoParts) {
  std::u16string document;
  MxErrorRecord refusal;
  if (call.Verify(type, rule, document, refusal)) {
    return WarningsOf(call, type, rule, document, dsTypes, twoParts);
  }
  return Checking(call, type, rule, refusal).Run();
}

std::u16string ApplyFirstFixes(std::u16string_view rule, std::span<const RuleProblem> problems) {
  std::vector<RuleEdit> taken;  // in order of place
  const auto isSame = [](const RuleEdit& a, const RuleEdit& b) {
    return a.length > 0 && a.offset == b.offset && a.length == b.length && a.text == b.text;
  };
  const auto clash = [](const RuleEdit& a, const RuleEdit& b) {
    return a.offset < b.offset + b.length && b.offset < a.offset + a.length;
  };
  for (const RuleProblem& problem : problems) {
    if (problem.fixes.empty()) continue;
    std::vector<RuleEdit> fresh;
    bool fits = true;
    for (const RuleEdit& edit : problem.fixes.front().edits) {
      auto at = std::partition_point(taken.begin(), taken.end(), [&](const RuleEdit& other) {
        return other.offset + other.length < edit.offset;
      });
      bool isKnown = false;
      for (; at != taken.end() && at->offset <= edit.offset + edit.length; ++at) {
        isKnown = isKnown || isSame(*at, edit);
        fits = fits && (isSame(*at, edit) || !clash(*at, edit));
      }
      if (!isKnown) fresh.push_back(edit);
    }
    if (!fits) continue;
    taken.insert(taken.end(), fresh.begin(), fresh.end());
    std::stable_sort(taken.begin(), taken.end(), [](const RuleEdit& a, const RuleEdit& b) {
      return a.offset != b.offset ? a.offset < b.offset : a.length < b.length;
    });
  }
  return WithEdits(rule, std::move(taken));
}

}  // namespace ORKBASE
