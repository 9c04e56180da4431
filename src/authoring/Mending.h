// A rule on its way from what was typed to what verifies: each stage of a check finds slips in the
// present text, mends it, and hands a text with fewer slips to the next one. Places are told in the
// text as it was typed.
//
//   `a ＝＝ ５`  ->  signs:  `a == 5`  ->  notation:  `a = 5`
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "RuleAuthoring.h"
#include "authoring/AuthoringCall.h"

namespace ORKBASE {

/// The text with replacements, each told in the places of the text before any. One that overlaps
/// an earlier one is left out.
std::u16string WithEdits(std::u16string_view text, std::vector<RuleEdit> edits);

/// A text with its words and the partners of its brackets.
struct Draft {
  explicit Draft(AuthoringCall& call, std::u16string_view rule);
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  std::size_t Size() const noexcept { return reading.words.size(); }
  const WordView& Word(std::size_t i) const { return reading.words[i]; }
  std::u16string_view Written(std::size_t i) const { return reading.words[i].written; }
  std::int32_t Offset(std::size_t i) const { return reading.OffsetOf(i); }
  std::int32_t End(std::size_t i) const { return reading.OffsetOf(i) + reading.LengthOf(i); }
  bool IsRefused(std::size_t i) const { return reading.IsRefused(i); }
  /// Whether a word that is taken has this canonical spelling.
  bool Is(std::size_t i, std::u16string_view primary) const;
  /// Whether the word is a sign as it stands: an operator of signs, a bracket or a comma.
  bool IsSign(std::size_t i, std::u16string_view sign) const {
    return i < Size() && Written(i) == sign;
  }
  bool IsNumber(std::size_t i) const;
  /// Whether nothing stands between a word and the next.
  bool Touches(std::size_t i) const { return i + 1 < Size() && End(i) == Offset(i + 1); }
  /// The word at a place, or the first behind it; the number of words for none.
  std::size_t WordFrom(std::int32_t offset) const;

  static constexpr std::int32_t kAlone = -1;
  std::u16string text;
  RuleReading reading;
  std::vector<std::int32_t> partners;  ///< of each word: that of a bracket, or `kAlone`
};

/// Something that is wrong with the rule, in the places of the text as it was typed.
struct Slip {
  std::int32_t offset = 0;
  std::int32_t length = 0;
  std::int32_t number = 0;  ///< of the message
  std::u16string text;
  std::vector<std::u16string> expected;
  std::vector<RuleFix> fixes;
};

/// How far a text gets.
struct Outcome {
  enum Kind : std::uint8_t { kVerifies, kUnknownWord, kEndsEarly, kRefusedWord };
  Kind kind = kRefusedWord;
  std::int32_t reach = 0;  ///< the place of the first word that cannot stand, or the end
};

/// One way to mend a slip, in the places of the present text.
struct Remedy {
  std::int32_t label = 0;  ///< number of the message
  std::u16string told;     ///< what the label is filled with
  std::vector<RuleEdit> edits;
};

/// What the stages of one check share.
class Workbench {
 public:
  Workbench(AuthoringCall& asked, MXRULE_DATATYPE expected, std::u16string_view rule);

  AuthoringCall& call;
  const MXRULE_DATATYPE type;
  const std::u16string_view rule;  ///< as it was typed
  std::vector<Slip> slips;
  /// Further slips are not told: a text of nothing but slips would have a million.
  static constexpr std::size_t kMostSlips = 500;

  const Draft& Now() const { return *draft_; }
  bool IsFull() const noexcept { return slips.size() >= kMostSlips; }

  /// Tells of a slip in the present text. The first remedy is carried out at the end of the stage.
  void Tell(std::int32_t offset, std::int32_t length, std::int32_t number,
            std::initializer_list<std::u16string_view> arguments,
            const std::vector<Remedy>& remedies);
  /// The same for a problem that brings its own text.
  void TellText(std::int32_t offset, std::int32_t length, std::int32_t number, std::u16string text,
                const std::vector<Remedy>& remedies);
  /// Ends a stage: the present text becomes the mended one. False where nothing was mended.
  bool Mend();

  enum Grade : std::uint8_t { kVerifies, kGetsOn, kStays };
  struct Trial {
    Grade grade = kStays;
    std::size_t wordsLeft = 0;  ///< from the refused word on
  };
  /// What becomes of the present text with what this stage has mended and with further edits.
  Trial Try(const std::vector<RuleEdit>& edits);
  /// Whether remedies are still tried; there is an end to it, by number and by length of texts.
  bool MayTry() const noexcept { return tries_ > 0 && units_ > 0; }
  /// Brings those forward that make the rule verify, then those that let it get past their place.
  /// Where `onlyGood`, the others go.
  void Rank(std::vector<Remedy>& remedies, bool onlyGood);

  Outcome Judge(const Draft& draft);
  /// The place in the text as it was typed.
  std::int32_t TypedOffset(std::int32_t offset) const;
  /// The place in the present text of one in the text as it was typed.
  std::int32_t PresentOffset(std::int32_t typed) const;

 private:
  /// A replacement that is carried out, and where its text stands now.
  struct Done {
    RuleEdit edit;
    std::int32_t now = 0;
    std::int32_t End() const noexcept { return now + static_cast<std::int32_t>(edit.text.size()); }
    std::int32_t TypedEnd() const noexcept { return edit.offset + edit.length; }
  };

  void CountRefused();
  RuleEdit Typed(const RuleEdit& edit, std::vector<bool>* covered) const;

  std::vector<Done> done_;
  std::vector<RuleEdit> chosen_;  ///< of this stage, in the places of the present text
  std::unique_ptr<Draft> draft_;
  int tries_ = 40;
  std::int64_t units_ = 16'000;
  std::int64_t refused_ = 0;  ///< words of the present text
};

}  // namespace ORKBASE
