// Where a rule that is too long for one line is broken.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace ORKBASE {

/// One word of a rule that is to be laid out.
struct LayoutWord {
  enum class Role : std::uint8_t { kOther, kOpening, kClosing, kComma, kConnective };

  std::u16string_view text;
  Role role = Role::kOther;
  bool blankBefore = false;
};

/// What stands in front of a word: nothing, a blank, or a line break and blanks.
struct LayoutGap {
  bool breaks = false;
  std::int32_t blanks = 0;
};

/// The gap in front of each word. What does not fit into `width` units goes on a line of its own in
/// its parts, the outermost first: conditions each before its "and" or "or", arguments as many on a
/// line as fit. A line passes the width only where it has no place to break. Two blanks for each
/// open bracket, sixty at most; a width of 0 and less keeps one line.
std::vector<LayoutGap> BreakLines(std::span<const LayoutWord> words, std::int32_t width);

}  // namespace ORKBASE
