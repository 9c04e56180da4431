#include "Excerpt.h"

#include "Text.h"

#include <algorithm>

namespace ORKTOOL {
namespace {

constexpr std::string_view kMargin = "  ";
constexpr std::string_view kCut = "...";
constexpr std::size_t kColumnsOfAFile = 400;  // where no terminal tells how wide a line may be

/// Control characters, which would move the cursor, are shown as blanks, and so are tabs.
std::size_t ColumnsOfCharacter(char32_t character) {
  return IsControl(character) ? 1 : CharacterWidth(character);
}

std::size_t BeginBefore(std::u16string_view text, std::size_t at) {
  const bool isLow = (text[at - 1] & 0xFC00) == 0xDC00;
  const bool isPair = isLow && at > 1 && (text[at - 2] & 0xFC00) == 0xD800;
  return at - (isPair ? 2 : 1);
}

/// The window of a line that is shown: grows from the beginning of the stretch in both directions.
class Window {
 public:
  Window(std::u16string_view rule, std::size_t at, std::size_t columns)
      : rule_(rule), begin_(at), end_(at), left_(columns) {
    const std::size_t later = columns / 2;
    left_ -= later;
    GrowBack();
    left_ += later;
    GrowOn();
    GrowBack();
  }

  std::size_t Begin() const noexcept { return begin_; }
  std::size_t End() const noexcept { return end_; }
  bool IsCutBefore() const { return begin_ > 0 && rule_[begin_ - 1] != u'\n'; }
  bool IsCutBehind() const { return end_ < rule_.size() && rule_[end_] != u'\n'; }

 private:
  void GrowBack() {
    while (IsCutBefore()) {
      const std::size_t before = BeginBefore(rule_, begin_);
      std::size_t at = before;
      if (!Takes(NextCodePoint(rule_, at), begin_ - before)) return;
      begin_ = before;
    }
  }
  void GrowOn() {
    while (IsCutBehind()) {
      std::size_t behind = end_;
      if (!Takes(NextCodePoint(rule_, behind), 1)) return;
      end_ = behind;
    }
  }
  /// A character of no width takes room too: there may be any number of them.
  bool Takes(char32_t character, std::size_t least) {
    const std::size_t room = std::max(ColumnsOfCharacter(character), least);
    if (room > left_) return false;
    left_ -= room;
    return true;
  }

  std::u16string_view rule_;
  std::size_t begin_;
  std::size_t end_;
  std::size_t left_;  // columns that are free
};

struct Piece {
  std::string text;
  std::size_t columns = 0;
};

Piece PieceOf(std::u16string_view text) {
  std::u16string shown(text);
  std::replace_if(shown.begin(), shown.end(), IsControl, u' ');
  return {ToUtf8(shown), DisplayWidth(shown)};
}

}  // namespace

std::string Excerpt(std::u16string_view rule, Stretch stretch, const Style& style, Colour colour) {
  const std::size_t wide = style.columns > 0 ? style.columns : kColumnsOfAFile;
  const std::size_t taken = kMargin.size() + 2 * kCut.size() + 1;
  const std::size_t at = std::min(stretch.offset, rule.size());
  const Window window(rule, at, std::max<std::size_t>(wide, taken + 16) - taken);
  const std::size_t markEnd =
      std::max(at, std::min({at + stretch.length, window.End(), rule.size()}));

  const Piece before = PieceOf(rule.substr(window.Begin(), at - window.Begin()));
  const Piece marked = PieceOf(rule.substr(at, markEnd - at));
  const Piece behind = PieceOf(rule.substr(markEnd, window.End() - markEnd));
  const std::string_view cut = window.IsCutBefore() ? kCut : "";

  std::string lines(kMargin);
  lines.append(cut).append(before.text).append(Coloured(style, colour, marked.text));
  lines.append(behind.text).append(window.IsCutBehind() ? kCut : "").append("\n");
  std::string mark = "^";
  if (marked.columns > 1) mark.append(marked.columns - 1, '~');
  lines.append(kMargin).append(cut.size() + before.columns, ' ');
  return lines.append(Coloured(style, colour, mark)).append("\n");
}

}  // namespace ORKTOOL
