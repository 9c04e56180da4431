#include "WordDiff.h"

#include "EditScript.h"
#include "Text.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <vector>

namespace ORKTOOL {
namespace {

constexpr std::string_view kCut = "...";
constexpr std::size_t kAround = 24;       // columns that are kept before and behind a change
constexpr std::size_t kOfChange = 60;     // and of either end of a long change
constexpr std::size_t kMostChanges = 50;  // that are shown of one rule

enum class Kind { kWord, kBlank, kSign };

Kind KindOf(char32_t character) {
  const auto point = static_cast<UChar32>(character);
  if (IsControl(character) || u_isUWhiteSpace(point)) return Kind::kBlank;
  const bool isWord = u_isalnum(point) || character == U'_' || character == U'.' ||
                      (U_GET_GC_MASK(point) & U_GC_M_MASK) != 0;
  return isWord ? Kind::kWord : Kind::kSign;
}

Words WordsOf(std::u16string_view text) {
  Words words;
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin;
    const Kind kind = KindOf(NextCodePoint(text, end));
    while (kind != Kind::kSign && end < text.size()) {
      std::size_t next = end;
      if (KindOf(NextCodePoint(text, next)) != kind) break;
      end = next;
    }
    words.push_back(text.substr(begin, end - begin));
    begin = end;
  }
  return words;
}

/// The text of some words that follow each other.
std::u16string_view TextOf(const Words& words, std::size_t begin, std::size_t end) {
  if (begin == end) return {};
  const char16_t* const first = words[begin].data();
  const std::u16string_view& last = words[end - 1];
  return {first, static_cast<std::size_t>(last.data() + last.size() - first)};
}

/// Control characters, which would move the cursor, are shown as blanks.
std::string Shown(std::u16string_view text) {
  std::u16string shown(text);
  std::replace_if(shown.begin(), shown.end(), IsControl, u' ');
  return ToUtf8(shown);
}

/// A character of no width counts too: there may be any number of them.
std::size_t ColumnsOf(char32_t character) {
  return IsControl(character) ? 1 : std::max<std::size_t>(CharacterWidth(character), 1);
}

/// Where a text is cut: at the end of a word, unless that leaves more than half of the room empty.
class CutPlace {
 public:
  explicit CutPlace(std::size_t columns) : columns_(columns) {}

  void EndOfWord(std::size_t at) {
    word_ = at;
    columnsOfWords_ = taken_;
  }
  /// False where the character has no room.
  bool Takes(char32_t character) {
    if (ColumnsOf(character) > columns_ - taken_) return false;
    taken_ += ColumnsOf(character);
    return true;
  }
  std::size_t At(std::size_t anywhere) const {
    return columnsOfWords_ * 2 >= columns_ ? word_ : anywhere;
  }

 private:
  std::size_t columns_;
  std::size_t taken_ = 0;
  std::size_t word_ = 0;
  std::size_t columnsOfWords_ = 0;
};

/// Units of the beginning of a text that fit into so many columns.
std::size_t HeadOf(std::u16string_view text, std::size_t columns) {
  CutPlace cut(columns);
  bool wasWord = false;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t next = at;
    const char32_t character = NextCodePoint(text, next);
    const bool isWord = KindOf(character) == Kind::kWord;
    if (!isWord || !wasWord) cut.EndOfWord(at);
    if (!cut.Takes(character)) return cut.At(at);
    wasWord = isWord;
    at = next;
  }
  return text.size();
}

std::size_t CharacterBefore(std::u16string_view text, std::size_t at) {
  const bool isLow = (text[at - 1] & 0xFC00) == 0xDC00;
  const bool isPair = isLow && at > 1 && (text[at - 2] & 0xFC00) == 0xD800;
  return at - (isPair ? 2 : 1);
}

/// Where the end of a text begins that fits into so many columns.
std::size_t TailOf(std::u16string_view text, std::size_t columns) {
  CutPlace cut(columns);
  bool wasWord = false;
  for (std::size_t at = text.size(); at > 0;) {
    const std::size_t before = CharacterBefore(text, at);
    std::size_t behind = before;
    const char32_t character = NextCodePoint(text, behind);
    const bool isWord = KindOf(character) == Kind::kWord;
    if (!isWord || !wasWord) cut.EndOfWord(at);
    if (!cut.Takes(character)) return cut.At(at);
    wasWord = isWord;
    at = before;
  }
  return 0;
}

/// A text with so many columns of its beginning and of its end, and a sign for what is between.
std::string Shortened(std::u16string_view text, std::size_t head, std::size_t tail) {
  const std::size_t spared = HeadOf(text, head + tail + kCut.size());
  if (spared == text.size()) return Shown(text);
  const std::string begin = head == 0 ? "" : Shown(text.substr(0, HeadOf(text, head)));
  const std::string end = tail == 0 ? "" : Shown(text.substr(TailOf(text, tail)));
  return begin + std::string(kCut) + end;
}

std::string Marked(std::u16string_view text, const Style& style, bool isAdded) {
  if (text.empty()) return "";
  const std::string shown = Shortened(text, kOfChange, kOfChange);
  if (style.colours) return Coloured(style, isAdded ? Colour::kAdded : Colour::kRemoved, shown);
  return (isAdded ? "{+" : "[-") + shown + (isAdded ? "+}" : "-]");
}

}  // namespace

std::string WordDiff(std::u16string_view before, std::u16string_view after, const Style& style) {
  const Words from = WordsOf(before);
  const Words to = WordsOf(after);
  const std::vector<Edit> edits = EditsOf(from, to);
  const std::size_t shown = std::min(edits.size(), kMostChanges);
  std::string text;
  std::size_t at = 0;  // word of the text before
  for (std::size_t i = 0; i < shown; ++i) {
    const Edit& edit = edits[i];
    text += Shortened(TextOf(from, at, edit.before), i == 0 ? 0 : kAround, kAround);
    at = edit.before + edit.removed;
    text += Marked(TextOf(from, edit.before, at), style, false);
    text += Marked(TextOf(to, edit.after, edit.after + edit.added), style, true);
  }
  const std::size_t end = shown < edits.size() ? edits[shown].before : from.size();
  text += Shortened(TextOf(from, at, end), edits.empty() ? 2 * kAround : kAround, 0);
  if (shown == edits.size()) return text;
  return text + " (" + std::to_string(edits.size() - shown) + " more changes)";
}

}  // namespace ORKTOOL
