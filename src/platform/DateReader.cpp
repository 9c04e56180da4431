// A text is read once from left to right into at most three parts of a date and one time of day:
// "October 19, 1962" gives October, 19 and 1962, "10:20 2020-1-2" a time and 2020, 1 and 2. Then
// the orders are tried until one gives a real day.
#include "platform/DateReader.h"

#include "foundation/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ORKBASE {
namespace {

constexpr char16_t kYearSign = u'\u5e74';
constexpr char16_t kMonthSign = u'\u6708';
constexpr char16_t kDaySign = u'\u65e5';
constexpr int kLeapYear = 2000;

/// What a part can be: a number anything at first, a name or a number with a sign one thing only.
enum class PartKind : std::uint8_t { kAny, kYear, kMonth, kDay };

struct DatePart {
  PartKind kind = PartKind::kAny;
  int value = 0;
  int digits = 0;
};

bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

/// Anything beyond ASCII counts as a letter here: it only has to tell where a word cannot end.
bool IsLetter(char16_t unit) {
  return unit >= 0x80 || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

/// Simple case folding of one unit, so that lengths stay.
char16_t Fold(char16_t unit) {
  if (unit < 0x80) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
  }
  if (U16_IS_SURROGATE(unit)) return unit;
  return static_cast<char16_t>(u_foldCase(unit, U_FOLD_CASE_DEFAULT));
}

bool IsLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysInMonth(int year, int month) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month == 2 && IsLeapYear(year)) return 29;
  return kDays[static_cast<std::size_t>(month - 1)];
}

/// Year, month and day found so far; 0 for none. Without a year 29 February is a day.
struct CivilDate {
  int year = 0;
  int month = 0;
  int day = 0;

  bool IsReal() const {
    return day == 0 || day <= DaysInMonth(year == 0 ? kLeapYear : year, month);
  }
};

bool CanBe(const DatePart& part, PartKind kind) {
  return part.kind == PartKind::kAny || part.kind == kind;
}

/// The year of a part, 0 for none: two digits stand for 1930 to 2029, three and four for
/// themselves.
int YearOf(const DatePart& part) {
  if (part.digits > 2) return part.value >= 100 ? part.value : 0;
  return part.value < 30 ? 2000 + part.value : 1900 + part.value;
}

/// Takes the part as the kind asked for; a number of three or four digits can only be a year.
bool TakePart(const DatePart& part, PartKind kind, CivilDate& date) {
  if (!CanBe(part, kind)) return false;
  switch (kind) {
    case PartKind::kYear:
      date.year = YearOf(part);
      return date.year != 0;
    case PartKind::kMonth:
      date.month = part.value;
      return part.digits <= 2 && part.value >= 1 && part.value <= 12;
    case PartKind::kDay:
      date.day = part.value;
      return part.digits <= 2 && part.value >= 1 && part.value <= 31;
    case PartKind::kAny:
      break;
  }
  return false;
}

bool IsRealDay(std::span<const DatePart> parts, std::span<const PartKind> kinds) {
  CivilDate date;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (!TakePart(parts[i], kinds[i], date)) return false;
  }
  return date.IsReal();
}

/// The orders in use, each with what its parts are. "1-0" has no year: 0 is one only beside a day
/// and a month.
bool IsDateOfTwo(std::span<const DatePart> parts) {
  using enum PartKind;
  // clang-format off
  constexpr std::array<std::array<PartKind, 2>, 4> kOrders = {{
      {kMonth, kDay},
      {kDay,   kMonth},
      {kMonth, kYear},
      {kYear,  kMonth},
  }};
  // clang-format on
  if (parts[0].value == 0 || parts[1].value == 0) return false;
  return std::any_of(kOrders.begin(), kOrders.end(),
                     [&](const auto& order) { return IsRealDay(parts, order); });
}

bool IsDateOfThree(std::span<const DatePart> parts) {
  using enum PartKind;
  // clang-format off
  constexpr std::array<std::array<PartKind, 3>, 4> kOrders = {{
      {kMonth, kDay,   kYear},
      {kDay,   kMonth, kYear},
      {kYear,  kMonth, kDay},
      {kYear,  kDay,   kMonth},
  }};
  // clang-format on
  return std::any_of(kOrders.begin(), kOrders.end(),
                     [&](const auto& order) { return IsRealDay(parts, order); });
}

class DateTextReader {
 public:
  DateTextReader(std::u16string_view text, const DateWords& words) : text_(text), words_(words) {}

  bool Read() {
    while (ReadItem()) {
      if (AtEnd()) return IsDate();
      if (!ReadSeparator() || AtEnd()) return false;
    }
    return false;
  }

 private:
  bool AtEnd() const { return at_ == text_.size(); }
  char16_t Unit(std::size_t at) const { return at < text_.size() ? text_[at] : u'\0'; }
  bool ReadItem();
  bool ReadSeparator();
  bool ReadNumber(int& value, int& digits);
  bool ReadNumberItem();
  bool ReadTime(int hour, int hourDigits);
  bool ReadSixty();
  bool ReadDayPeriod();
  PartKind ReadSign();
  const DateWord* WordAt(std::size_t at) const;
  bool Matches(const DateWord& word, std::size_t at) const;
  std::size_t SkipBlanks(std::size_t at) const;
  bool AddPart(const DatePart& part);
  bool AddTime();
  bool IsDate() const;

  std::u16string_view text_;
  const DateWords& words_;
  std::size_t at_ = 0;
  std::array<DatePart, 3> parts_;
  std::size_t partCount_ = 0;
  bool hasTime_ = false;
  bool dateIsOver_ = false;  // a time stands behind the parts
  bool dashed_ = false;      // the last separator was "-" or "/"
};

bool DateTextReader::ReadItem() {
  if (const DateWord* word = WordAt(at_)) {
    if (word->month == 0) return false;  // a day period without an hour in front
    at_ += word->text.size();
    return AddPart({PartKind::kMonth, word->month, 2});
  }
  return ReadNumberItem();
}

bool DateTextReader::ReadNumberItem() {
  int value = 0;
  int digits = 0;
  if (!ReadNumber(value, digits)) return false;
  if (Unit(at_) == u':') return ReadTime(value, digits);
  if (ReadDayPeriod()) return digits <= 2 && value <= 23 && AddTime();
  return AddPart({ReadSign(), value, digits});
}

/// One to four digits.
bool DateTextReader::ReadNumber(int& value, int& digits) {
  for (; IsDigit(Unit(at_)); ++at_) {
    if (++digits > 4) return false;
    value = value * 10 + (text_[at_] - u'0');
  }
  return digits > 0;
}

/// "h:mm" and "h:mm:ss" from the first colon on, with a day period behind it or none. "13:55 PM"
/// is a time.
bool DateTextReader::ReadTime(int hour, int hourDigits) {
  if (hourDigits > 2 || hour > 23 || !ReadSixty()) return false;
  if (Unit(at_) == u':' && !ReadSixty()) return false;
  ReadDayPeriod();
  return AddTime();
}

/// A colon and the minutes or seconds.
bool DateTextReader::ReadSixty() {
  ++at_;
  int value = 0;
  int digits = 0;
  return ReadNumber(value, digits) && digits <= 2 && value <= 59;
}

/// Steps over blanks and a day-period word; over nothing when there is no such word.
bool DateTextReader::ReadDayPeriod() {
  const std::size_t at = SkipBlanks(at_);
  const DateWord* word = WordAt(at);
  if (word == nullptr || word->month != 0) return false;
  at_ = at + word->text.size();
  return true;
}

/// The kind that a Chinese sign behind a number gives it.
PartKind DateTextReader::ReadSign() {
  const std::size_t at = SkipBlanks(at_);
  const char16_t sign = Unit(at);
  if (sign != kYearSign && sign != kMonthSign && sign != kDaySign) return PartKind::kAny;
  at_ = at + 1;
  if (sign == kYearSign) return PartKind::kYear;
  return sign == kMonthSign ? PartKind::kMonth : PartKind::kDay;
}

/// Blanks with at most one "-", "/" or "," among them. Between a number and a word, or behind a
/// sign, nothing need stand.
bool DateTextReader::ReadSeparator() {
  const std::size_t start = at_;
  at_ = SkipBlanks(at_);
  const char16_t mark = Unit(at_);
  dashed_ = mark == u'-' || mark == u'/';
  if (dashed_ || mark == u',') at_ = SkipBlanks(at_ + 1);
  return at_ > start || IsDigit(mark) || IsLetter(mark);
}

std::size_t DateTextReader::SkipBlanks(std::size_t at) const {
  while (Unit(at) == u' ') ++at;
  return at;
}

const DateWord* DateTextReader::WordAt(std::size_t at) const {
  const char16_t first = Fold(Unit(at));
  auto word = std::lower_bound(
      words_.begin(), words_.end(), first,
      [](const DateWord& entry, char16_t unit) { return entry.text.front() < unit; });
  for (; word != words_.end() && word->text.front() == first; ++word) {
    if (Matches(*word, at)) return &*word;
  }
  return nullptr;
}

bool DateTextReader::Matches(const DateWord& word, std::size_t at) const {
  const std::u16string_view rest = text_.substr(at);
  if (rest.size() < word.text.size()) return false;
  if (!std::equal(word.text.begin(), word.text.end(), rest.begin(),
                  [](char16_t own, char16_t unit) { return own == Fold(unit); })) {
    return false;
  }
  // "may" is no word in "mayor", and "1" with a month sign none in "1" with a longer number.
  const char16_t last = word.text.back();
  const char16_t next = Unit(at + word.text.size());
  return !(IsLetter(last) && IsLetter(next)) && !(IsDigit(last) && IsDigit(next));
}

bool DateTextReader::AddPart(const DatePart& part) {
  if (dateIsOver_ || partCount_ == parts_.size()) return false;
  // Dots arrive as "-": "10:20:30.5 ..." is a fraction of a second and no date behind a time.
  if (hasTime_ && partCount_ == 0 && dashed_) return false;
  parts_[partCount_++] = part;
  return true;
}

bool DateTextReader::AddTime() {
  if (hasTime_ || (partCount_ > 0 && dashed_)) return false;
  hasTime_ = true;
  dateIsOver_ = partCount_ > 0;
  return true;
}

bool DateTextReader::IsDate() const {
  const std::span<const DatePart> parts(parts_.data(), partCount_);
  if (partCount_ == 0) return hasTime_;
  if (partCount_ == 1) return false;
  return partCount_ == 2 ? IsDateOfTwo(parts) : IsDateOfThree(parts);
}

/// The word as a date text shows it.
std::u16string AsInDateText(std::u16string_view word) {
  std::u16string text;
  for (const char16_t unit : word) {
    const int category = u_charType(unit);
    if (category == U_FORMAT_CHAR) continue;
    if (category == U_SPACE_SEPARATOR) {
      text += u' ';
    } else {
      text += unit == u'.' ? u'-' : Fold(unit);
    }
  }
  return text;
}

}  // namespace

void AddDateWord(DateWords& words, std::u16string_view word, int month) {
  std::u16string text = AsInDateText(word);
  if (std::none_of(text.begin(), text.end(), IsLetter)) return;
  const auto add = [&](const std::u16string& form) {
    const auto isSame = [&](const DateWord& entry) { return entry.text == form; };
    if (std::none_of(words.begin(), words.end(), isSame)) {
      words.push_back({form, month});
    }
  };
  add(text);
  if (text.back() == u'-') add(text.substr(0, text.size() - 1));
}

void SortDateWords(DateWords& words) {
  std::sort(words.begin(), words.end(), [](const DateWord& a, const DateWord& b) {
    if (a.text.front() != b.text.front()) return a.text.front() < b.text.front();
    if (a.text.size() != b.text.size()) return a.text.size() > b.text.size();
    return a.text < b.text;
  });
}

bool ReadsAsDate(std::u16string_view text, const DateWords& words) {
  return DateTextReader(TrimBlanks(text), words).Read();
}

}  // namespace ORKBASE
