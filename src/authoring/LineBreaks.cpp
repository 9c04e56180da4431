// The layout follows the words alone, never the breaks that were there.
//
// A range of words (what brackets hold, or one argument) stays whole if it fits between the column
// where it begins and the width, together with what cannot be taken from it: everything up to the
// next place for a break.
#include "authoring/LineBreaks.h"

#include <algorithm>
#include <cstddef>

namespace ORKBASE {
namespace {

using Role = LayoutWord::Role;
using Column = std::int64_t;

constexpr std::size_t kDeepestIndent = 30;

class Layout {
 public:
  Layout(std::span<const LayoutWord> words, Column width) : words_(words), width_(width) {}

  std::vector<LayoutGap> Run() {
    Measure();
    FindRanges();
    std::vector<LayoutGap> gaps(words_.size());
    open_.push_back(Enter(0, words_.size(), 0));
    Column column = 0;
    for (std::size_t i = 0; i < words_.size(); ++i) {
      gaps[i] = GapBefore(i, column);
      column = (gaps[i].breaks ? 0 : column) + gaps[i].blanks + Length(i);
      if (words_[i].role == Role::kOpening) open_.push_back(Enter(i + 1, rangeEnd_[i], column));
      if (words_[i].role == Role::kClosing && open_.size() > 1) open_.pop_back();
    }
    return gaps;
  }

 private:
  /// Brackets that are open, or the whole rule.
  struct Level {
    bool isBroken;          ///< arguments may go on lines of their own
    bool isArgumentBroken;  ///< the argument at work has each condition on a line of its own
  };

  Column Length(std::size_t i) const { return static_cast<Column>(words_[i].text.size()); }
  bool CanBreakBefore(std::size_t i) const {
    return words_[i].blankBefore &&
           (words_[i].role == Role::kConnective || words_[i - 1].role == Role::kComma);
  }

  /// Columns of the words on one line, and how far a line reaches that cannot be broken.
  void Measure() {
    const std::size_t count = words_.size();
    starts_.resize(count);
    reaches_.resize(count + 1);
    Column column = 0;
    for (std::size_t i = 0; i < count; ++i) {
      starts_[i] = column + (words_[i].blankBefore ? 1 : 0);
      column = starts_[i] + Length(i);
    }
    reaches_[count] = column;
    for (std::size_t i = count; i-- > 0;) {
      reaches_[i] = i > 0 && CanBreakBefore(i) ? starts_[i - 1] + Length(i - 1) : reaches_[i + 1];
    }
  }

  /// For the first word of each argument where the argument ends, and for each opening bracket
  /// where its partner is. What is open at the end ends there.
  void FindRanges() {
    const std::size_t count = words_.size();
    argumentEnd_.assign(count + 1, count);
    rangeEnd_.assign(count, count);
    std::vector<std::size_t> brackets;
    std::vector<std::size_t> arguments{0};
    for (std::size_t i = 0; i < count; ++i) {
      switch (words_[i].role) {
        case Role::kOpening:
          brackets.push_back(i);
          arguments.push_back(i + 1);
          break;
        case Role::kComma:
          argumentEnd_[arguments.back()] = i;
          arguments.back() = i + 1;
          break;
        case Role::kClosing:
          if (brackets.empty()) break;
          argumentEnd_[arguments.back()] = i;
          rangeEnd_[brackets.back()] = i;
          arguments.pop_back();
          brackets.pop_back();
          break;
        case Role::kOther:
        case Role::kConnective:
          break;
      }
    }
  }

  bool Fits(std::size_t first, std::size_t end, Column column) const {
    return first >= end || column + reaches_[end] - starts_[first] <= width_;
  }

  Level Enter(std::size_t first, std::size_t end, Column column) const {
    const bool isBroken = !Fits(first, end, column);
    return {isBroken, isBroken && !Fits(first, argumentEnd_[first], column)};
  }

  LayoutGap GapBefore(std::size_t i, Column column) {
    if (!words_[i].blankBefore) return {};
    Level& level = open_.back();
    const LayoutGap broken{
        true, static_cast<std::int32_t>(2 * std::min(open_.size() - 1, kDeepestIndent))};
    bool breaks = words_[i].role == Role::kConnective && level.isArgumentBroken && i > 0;
    if (words_[i - 1].role == Role::kComma && level.isBroken) {
      breaks = !Fits(i, argumentEnd_[i], column + 1);
      level.isArgumentBroken = breaks && !Fits(i, argumentEnd_[i], broken.blanks);
    }
    return breaks ? broken : LayoutGap{false, 1};
  }

  std::span<const LayoutWord> words_;
  Column width_;
  std::vector<Column> starts_;
  std::vector<Column> reaches_;  ///< from a word on: the column before the next place for a break
  std::vector<std::size_t> argumentEnd_;
  std::vector<std::size_t> rangeEnd_;
  std::vector<Level> open_;
};

}  // namespace

std::vector<LayoutGap> BreakLines(std::span<const LayoutWord> words, std::int32_t width) {
  if (width > 0) return Layout(words, width).Run();
  std::vector<LayoutGap> gaps;
  gaps.reserve(words.size());
  for (const LayoutWord& word : words) gaps.push_back({false, word.blankBefore ? 1 : 0});
  return gaps;
}

}  // namespace ORKBASE
