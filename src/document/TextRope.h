// Texts that are joined again and again before they are written once.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace ORKBASE {

/// A text of a rope; 0 is the empty text.
using RopeText = std::uint32_t;

/// Joining costs the same however long the parts are; only `Write` copies.
class TextRope {
 public:
  /// The text is referred to, not copied.
  RopeText Make(std::u16string_view text) {
    if (text.empty()) return 0;
    pieces_.push_back({text, 0, 0});
    return static_cast<RopeText>(pieces_.size());
  }

  RopeText Join(RopeText left, RopeText right) {
    if (left == 0 || right == 0) return left + right;
    pieces_.push_back({{}, left, right});
    return static_cast<RopeText>(pieces_.size());
  }

  RopeText Join(std::initializer_list<RopeText> texts) {
    RopeText all = 0;
    for (const RopeText text : texts) all = Join(all, text);
    return all;
  }

  std::u16string Write(RopeText text) const {
    std::u16string out;
    std::vector<RopeText> pending;
    for (;;) {
      if (text != 0 && pieces_[text - 1].left != 0) {
        pending.push_back(pieces_[text - 1].right);
        text = pieces_[text - 1].left;
        continue;
      }
      if (text != 0) out += pieces_[text - 1].text;
      if (pending.empty()) return out;
      text = pending.back();
      pending.pop_back();
    }
  }

 private:
  struct Piece {
    std::u16string_view text;
    RopeText left;
    RopeText right;
  };
  std::vector<Piece> pieces_;
};

}  // namespace ORKBASE
