// Reading dates as Oracle does, as far as needed: three pieces with signs between them, and a time
// of day of up to three numbers. A sign stands for any other, and zeros in front may be left out.
#include "authoring/DateMask.h"

#include "foundation/Text.h"

#include <algorithm>
#include <vector>

namespace ORKBASE {
namespace {

bool IsDigit(char16_t unit) noexcept {
  return unit >= u'0' && unit <= u'9';
}

bool IsLetter(char16_t unit) noexcept {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit >= 0x80;
}

/// What parts a date in Chinese.
constexpr std::u16string_view kChineseMarks = u"年月日";

struct Piece {
  std::u16string_view text;
  bool isNumber = false;
};

struct Cut {
  std::vector<Piece> date;     ///< three at most
  std::u16string_view behind;  ///< the rest, blanks cut off
  bool hasPlainSigns = true;   ///< ASCII between the pieces
};

Cut CutDate(std::u16string_view text) {
  Cut cut;
  std::size_t at = 0;
  while (at < text.size() && cut.date.size() < 3) {
    const std::size_t begin = at;
    const bool isNumber = IsDigit(text[at]);
    const bool isMark = kChineseMarks.find(text[at]) != kChineseMarks.npos;
    if (isMark || (!isNumber && !IsLetter(text[at]))) {
      cut.hasPlainSigns &= !isMark;
      ++at;
      continue;
    }
    while (at < text.size() && kChineseMarks.find(text[at]) == kChineseMarks.npos &&
           (isNumber ? IsDigit(text[at]) : IsLetter(text[at]))) {
      ++at;
    }
    cut.date.push_back({text.substr(begin, at - begin), isNumber});
  }
  if (at < text.size() && kChineseMarks.find(text[at]) != kChineseMarks.npos) {
    cut.hasPlainSigns = false;
    ++at;
  }
  cut.behind = TrimBlanks(text.substr(at));
  return cut;
}

/// Hours, minutes and seconds; nothing is a time, too.
bool IsTime(std::u16string_view text) {
  constexpr std::array<std::int32_t, 3> kBorders = {24, 60, 60};
  std::size_t index = 0;
  for (const std::u16string_view piece : SplitText(text, u":")) {
    std::int32_t value = 0;
    const bool fits = index < kBorders.size() && piece.size() <= 2 &&
                      std::all_of(piece.begin(), piece.end(), IsDigit) &&
                      ReadWholeInt(piece, value) && value < kBorders[index];
    if (!fits) return false;
    ++index;
  }
  return true;
}

std::int32_t ValueOf(const Piece& piece) {
  std::int32_t value = 0;
  return piece.isNumber && piece.text.size() <= 4 && ReadWholeInt(piece.text, value) ? value : 0;
}

bool FitsPlace(const Piece& piece, char16_t place) {
  if (place == u'y') return piece.isNumber && piece.text.size() == 4;
  if (!piece.isNumber) return place == u'm';
  const std::int32_t most = place == u'm' ? 12 : 31;
  const std::int32_t value = ValueOf(piece);
  return piece.text.size() <= 2 && value >= 1 && value <= most;
}

/// The pieces as year, month and day, by the one order that is possible.
bool Understand(const std::vector<Piece>& pieces, std::array<Piece, 3>& date) {
  constexpr std::array<std::array<std::size_t, 3>, 4> kOrders = {
      {{0, 1, 2}, {0, 2, 1}, {2, 0, 1}, {2, 1, 0}}};  // places of year, month, day
  bool isFound = false;
  for (const auto& order : kOrders) {
    const std::array<Piece, 3> made = {pieces[order[0]], pieces[order[1]], pieces[order[2]]};
    const bool isAll = FitsPlace(made[0], u'y') && made[1].isNumber && FitsPlace(made[1], u'm') &&
                       FitsPlace(made[2], u'd');
    if (!isAll) continue;
    if (!isFound) {
      date = made;
      isFound = true;
    }
    // Year, day, month is in use nowhere.
    const bool isSame = ValueOf(date[1]) == ValueOf(made[1]);
    if (!isSame && order[0] == 2) return false;
  }
  return isFound;
}

std::u16string Padded(const Piece& piece) {
  return piece.text.size() == 1 ? u"0" + std::u16string(piece.text) : std::u16string(piece.text);
}

}  // namespace

DateMask::DateMask(std::u16string_view mask) {
  const Cut cut = CutDate(mask);
  if (cut.date.size() < 3) return;
  for (std::size_t i = 0; i < 3; ++i) order_[i] = cut.date[i].text.front();
  text_ = mask.substr(0, mask.find(u" hh24"));
  for (const char16_t unit : text_) {
    if (IsLetter(unit)) continue;
    separator_ = unit;
    break;
  }
  std::array<char16_t, 3> sorted = order_;
  std::sort(sorted.begin(), sorted.end());
  isWhole_ = sorted == std::array<char16_t, 3>{u'd', u'm', u'y'};
}

bool DateMask::Reads(std::u16string_view date) const {
  const Cut cut = CutDate(TrimBlanks(date));
  if (cut.date.size() < 3 || !cut.hasPlainSigns || !IsTime(cut.behind)) return false;
  for (std::size_t i = 0; i < 3; ++i) {
    if (!FitsPlace(cut.date[i], order_[i])) return false;
  }
  return true;
}

std::u16string DateMask::Rewritten(std::u16string_view date) const {
  const Cut cut = CutDate(TrimBlanks(date));
  std::array<Piece, 3> read;
  if (cut.date.size() < 3 || !IsTime(cut.behind) || !Understand(cut.date, read)) return {};
  std::u16string text;
  for (const char16_t place : order_) {
    if (!text.empty()) text += separator_;
    text += Padded(read[place == u'y' ? 0 : place == u'm' ? 1 : 2]);
  }
  if (!cut.behind.empty()) text.append(u" ").append(cut.behind);
  return text;
}

}  // namespace ORKBASE
