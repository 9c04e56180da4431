// One pass over the words. What the lexer takes for a word, a name or a text, is passed over;
// what it refuses, and signs, are looked at letter by letter, since a slip need not begin where a
// word does: `Orders.State!=1` has the word `Orders.State!`.
#include "authoring/Notation.h"

#include "authoring/BareDates.h"
#include "dictionary/MxDictionarys.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace ORKBASE {
namespace {

struct SignRow {
  std::u16string_view seen;
  std::u16string_view first;   ///< canonical word for it
  std::u16string_view second;  ///< another that it may stand for, or empty
};

// clang-format off
/// The longer first. Blanks between two signs count as none.
constexpr SignRow kSigns[] = {
    {u"===",    u"=",   u""},
    {u"!==",    u"<>",  u""},
    {u"==",     u"=",   u""},
    {u"!=",     u"<>",  u""},
    {u"=>",     u">=",  u""},
    {u"=<",     u"<=",  u""},
    {u"><",     u"<>",  u""},
    {u"~=",     u"<>",  u""},
    {u":=",     u"=",   u""},
    {u"&&",     u"and", u"&"},
    {u"||",     u"or",  u"&"},
    {u"\u2265", u">=",  u""},  // ≥
    {u"\u2264", u"<=",  u""},  // ≤
    {u"\u2267", u">=",  u""},  // ≧
    {u"\u2266", u"<=",  u""},  // ≦
    {u"\u2260", u"<>",  u""},  // ≠
    {u"!",      u"not", u""},
};

/// Signs apart that are one sign together.
constexpr std::pair<std::u16string_view, std::u16string_view> kTornSigns[] = {
    {u">", u"="}, {u"<", u"="}, {u"<", u">"},
};

constexpr std::u16string_view kCurrencies = u"$\u20AC\u00A3\u00A5";
// clang-format on

bool IsDigit(char16_t unit) noexcept {
  return unit >= u'0' && unit <= u'9';
}
bool AreDigits(std::u16string_view text) noexcept {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}
bool IsWordSign(std::u16string_view primary) noexcept {
  return primary.front() >= u'a' && primary.front() <= u'z';
}

class Scan {
 public:
  Scan(Workbench& bench, std::int32_t refused)
      : bench_(bench), draft_(bench.Now()), text_(draft_.text), refused_(refused) {}

  void Run() {
    while (word_ < draft_.Size()) {
      if (TakeComment() || TakeTorn() || TakeName() || TakeNumber()) continue;
      if (draft_.IsRefused(word_) ? Written().front() != u'\'' : IsSign()) {
        ScanWord();
      } else {
        ++word_;
      }
    }
  }

 private:
  std::u16string_view Written() const { return draft_.Written(word_); }
  std::int32_t At() const { return draft_.Offset(word_); }
  bool IsSign() const {
    constexpr std::u16string_view kOperators = u"=<>&-/*+";
    return kOperators.find(Written().front()) != kOperators.npos;
  }
  std::u16string_view Piece(std::int32_t from, std::int32_t to) const {
    return text_.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
  }
  bool Covers(std::int32_t from, std::int32_t to) const {
    return refused_ >= from && refused_ <= to;
  }
  std::u16string Display(std::u16string_view primary) const {
    const MxWord* word = bench_.call.Dictionaries().FindByPrimary(primary);
    return word ? word->outDesc : std::u16string(primary);
  }

  void Tell(std::int32_t from, std::int32_t to, std::vector<Remedy> remedies) {
    if (remedies.size() > 1) bench_.Rank(remedies, false);
    bench_.Tell(from, to - from, kMsgForeignForm, {Piece(from, to)}, remedies);
    word_ = draft_.WordFrom(to);
    at_ = std::max(at_, static_cast<std::size_t>(to));
  }
  Remedy Write(std::int32_t from, std::int32_t to, std::u16string text) const {
    const std::u16string told(TrimBlanks(text));
    return {kMsgFixWrite, told, {{from, to - from, std::move(text)}}};
  }
  Remedy TakeOut(std::int32_t from, std::int32_t to, std::u16string_view told) const {
    return {kMsgFixTakeOut, std::u16string(told), {{from, to - from, {}}}};
  }

  // --- comments, and marks at the end

  bool TakeComment() {
    if (!draft_.Touches(word_)) {
      return false;
    }
    const bool isBlock = draft_.IsSign(word_, u"/") && draft_.Written(word_ + 1).front() == u'*';
    const bool isLine = (draft_.IsSign(word_, u"-") && draft_.IsSign(word_ + 1, u"-")) ||
                        (draft_.IsSign(word_, u"/") && draft_.IsSign(word_ + 1, u"/"));
    if (!isBlock && !isLine) return false;
    const auto from = static_cast<std::size_t>(At());
    std::size_t to = isBlock ? text_.find(u"*/", from + 2) : LineEnd(from);
    to = to == text_.npos ? text_.size() : isBlock ? to + 2 : to;
    const auto behind = static_cast<std::int32_t>(to);
    // Two minus signs are arithmetic, too.
    if (draft_.IsSign(word_, u"-") && !HoldsRefused(word_ + 2, behind)) return false;
    TellOfRest(At(), behind);
    return true;
  }
  std::size_t LineEnd(std::size_t from) {
    if (from >= lineEnd_) lineEnd_ = std::min(text_.find_first_of(u"\n\r", from), text_.size());
    return lineEnd_;
  }
  bool HoldsRefused(std::size_t word, std::int32_t to) {
    if (Covers(At(), to)) return true;
    nextRefused_ = std::max(nextRefused_, word);
    while (nextRefused_ < draft_.Size() && !draft_.IsRefused(nextRefused_)) ++nextRefused_;
    return nextRefused_ < draft_.Size() && draft_.Offset(nextRefused_) < to;
  }
  /// Goes with the blanks in front of it, at the beginning with those behind.
  void TellOfRest(std::int32_t from, std::int32_t to) {
    std::int32_t begin = from;
    while (begin > 0 && IsBlank(text_[static_cast<std::size_t>(begin - 1)])) --begin;
    std::int32_t end = to;
    while (begin == 0 && end < static_cast<std::int32_t>(text_.size()) &&
           IsBlank(text_[static_cast<std::size_t>(end)])) {
      ++end;
    }
    const bool isInside = begin > 0 && end < static_cast<std::int32_t>(text_.size());
    Remedy remedy = TakeOut(begin, end, Piece(from, to));
    if (isInside) remedy.edits.front().text = u" ";
    Tell(from, to, {std::move(remedy)});
  }

  // --- signs

  bool TakeTorn() {
    if (draft_.IsRefused(word_) || word_ + 1 >= draft_.Size() || draft_.Touches(word_)) {
      return false;
    }
    for (const auto& [first, second] : kTornSigns) {
      if (!draft_.IsSign(word_, first) || !draft_.IsSign(word_ + 1, second)) continue;
      const std::int32_t to = draft_.End(word_ + 1);
      Tell(At(), to, {Write(At(), to, std::u16string(first).append(second))});
      return true;
    }
    return false;
  }

  void ScanWord() {
    const bool isRefused = draft_.IsRefused(word_);
    const auto end = static_cast<std::size_t>(draft_.End(word_));
    at_ = std::max(at_, static_cast<std::size_t>(At()));
    const std::size_t word = word_;
    while (at_ < end) {
      if (TakeSign() || (isRefused && (TakeQuoted() || TakeMark(end)))) {
        if (at_ >= end) return;
        word_ = word;
      } else {
        ++at_;
      }
    }
    word_ = word + 1;
  }

  bool TakeSign() {
    const auto rest = text_.substr(at_);
    for (const SignRow& row : kSigns) {
      if (!rest.starts_with(row.seen)) continue;
      const auto from = static_cast<std::int32_t>(at_);
      const auto to = static_cast<std::int32_t>(at_ + row.seen.size());
      if (row.seen == u"!" && at_ > 0 && !IsBlank(text_[at_ - 1]) && text_[at_ - 1] != u'(') {
        continue;
      }
      std::vector<Remedy> remedies = {Write(from, to, InPlace(from, to, row, row.first))};
      if (!row.second.empty()) {
        remedies.push_back(Write(from, to, InPlace(from, to, row, row.second)));
      }
      Tell(from, to, std::move(remedies));
      return true;
    }
    return false;
  }
  /// Words and what was a sign of its own width get room on both sides.
  std::u16string InPlace(std::int32_t from, std::int32_t to, const SignRow& row,
                         std::u16string_view primary) const {
    std::u16string sign = Display(primary);
    if (!IsWordSign(primary) && row.seen.front() < 0x80) return sign;
    const auto behind = static_cast<std::size_t>(to);
    if (from > 0 && !IsBlank(text_[static_cast<std::size_t>(from - 1)])) sign.insert(0, 1, u' ');
    if (behind < text_.size() && !IsBlank(text_[behind])) sign += u' ';
    return sign;
  }

  // --- names and texts in other quotes

  static char16_t ClosingOf(char16_t unit) noexcept {
    return unit == u'[' ? u']' : unit == u'"' || unit == u'`' ? unit : char16_t{0};
  }
  /// Behind a quoted piece that begins there; `npos` for none.
  std::size_t QuotedEnd(std::size_t from) {
    const char16_t closing = from < text_.size() ? ClosingOf(text_[from]) : char16_t{0};
    if (closing == 0 || closing == noneBehind_) return text_.npos;
    const std::size_t end = text_.find(closing, from + 1);
    if (end == text_.npos) noneBehind_ = closing;
    return end == text_.npos ? end : end + 1;
  }

  bool TakeQuoted() {
    const bool begins = at_ == static_cast<std::size_t>(At()) || text_[at_ - 1] == u'=' ||
                        text_[at_ - 1] == u'>' || text_[at_ - 1] == u'<';
    std::size_t end = begins ? QuotedEnd(at_) : text_.npos;
    if (end == text_.npos) return false;
    const char16_t quote = text_[at_];
    std::u16string name(text_.substr(at_ + 1, end - at_ - 2));
    const std::u16string inside = name;
    bool isChain = false;
    while (end + 1 < text_.size() && text_[end] == u'.') {
      const std::size_t next = QuotedEnd(end + 1);
      const std::size_t bare = text_.find_first_of(u" \n\r(),+-/\\*=><&%^", end + 1);
      const std::size_t stop = next != text_.npos ? next : std::min(bare, text_.size());
      if (stop == end + 1) break;
      name += u'.';
      name += next != text_.npos ? text_.substr(end + 2, next - end - 3)
                                 : text_.substr(end + 1, stop - end - 1);
      end = stop;
      isChain = true;
    }
    const auto from = static_cast<std::int32_t>(at_);
    const auto to = static_cast<std::int32_t>(end);
    if (IsBlankText(name)) return false;
    if (quote != u'"' || isChain) {
      Tell(from, to, {Write(from, to, name)});
      return true;
    }
    const std::u16string quoted = u'\'' + ReplaceAll(inside, u"'", u"''") + u'\'';
    std::vector<Remedy> remedies = {{kMsgFixQuoteText, quoted, {{from, to - from, quoted}}}};
    if (bench_.call.Dictionaries().FindByDesc(inside)) remedies.push_back(Write(from, to, inside));
    Tell(from, to, std::move(remedies));
    return true;
  }

  /// `Orders . Amount`, with blanks on one side or both.
  bool TakeName() {
    const std::size_t last = draft_.Size();
    std::size_t dot = word_;
    if (word_ + 1 < last && (draft_.Written(word_ + 1).front() == u'.')) ++dot;
    const bool isAlone = draft_.Written(dot) == u".";
    if (dot == word_ && !Written().ends_with(u'.')) return false;
    if (dot > word_ && (draft_.IsNumber(dot) || draft_.Touches(word_))) return false;
    const std::size_t behind = isAlone || dot == word_ ? dot + 1 : dot;
    if (behind >= last || isAlone == (dot == word_)) return false;
    if (draft_.IsNumber(word_) || draft_.IsNumber(behind)) return false;
    std::u16string name;
    for (std::size_t i = word_; i <= behind; ++i) name += draft_.Written(i);
    const bool areNames = draft_.IsRefused(word_) && draft_.IsRefused(behind);
    if (!areNames && !bench_.call.Dictionaries().FindByDesc(name)) return false;
    const std::int32_t to = draft_.End(behind);
    Tell(At(), to, {Write(At(), to, name)});
    return true;
  }

  // --- marks at words

  /// A sign of a currency, or a semicolon at the end.
  bool TakeMark(std::size_t end) {
    const char16_t unit = text_[at_];
    const auto from = static_cast<std::int32_t>(at_);
    if (unit == u';' && IsBlankText(text_.substr(at_ + 1))) {
      const auto to = static_cast<std::int32_t>(text_.size());
      Tell(from, from + 1, {TakeOut(from, to, u";")});
      at_ = end;
      return true;
    }
    if (kCurrencies.find(unit) == kCurrencies.npos) return false;
    const bool before = at_ + 1 < end && IsDigit(text_[at_ + 1]);
    const bool behind = at_ + 1 == end && at_ > 0 && IsDigit(text_[at_ - 1]);
    if (!before && !behind) return false;
    Tell(from, from + 1, {TakeOut(from, from + 1, Piece(from, from + 1))});
    return true;
  }

  // --- numbers and dates

  bool TakeNumber() { return TakeDate() || TakeThousands() || TakePercent(); }

  bool IsPart(std::size_t word, std::size_t most) const {
    return word < draft_.Size() && draft_.Written(word).size() <= most &&
           AreDigits(draft_.Written(word));
  }
  bool TakeDate() {
    const std::optional<BareDate> date = BareDateAt(draft_, word_);
    if (!date) return false;
    const std::int32_t to = date->offset + date->length;
    if (date->isArithmetic && !MeansDate(to)) return false;
    bench_.Tell(At(), date->length, kMsgDateUnquoted, {Piece(At(), to)},
                {{kMsgFixQuoteDate, date->quoted, {{At(), date->length, date->quoted}}}});
    word_ = draft_.WordFrom(to);
    return true;
  }
  /// Whether an arithmetic of numbers can be no such: beside a date, or where the rule is refused.
  bool MeansDate(std::int32_t to) const {
    if (Covers(At(), to)) return true;
    return word_ >= 2 && draft_.Word(word_ - 1).symbol == kOpRelaSymbol &&
           !draft_.IsRefused(word_ - 2) && draft_.Word(word_ - 2).dataType == kDateDataType;
  }

  bool TakeThousands() {
    if (!IsPart(word_, 3)) return false;
    std::size_t last = word_;
    while (draft_.Touches(last) && draft_.IsSign(last + 1, u",") && draft_.Touches(last + 1) &&
           IsGroup(last + 2)) {
      last += 2;
    }
    if (last == word_) return false;
    const std::int32_t to = draft_.End(last);
    if (IsInCall() && !Covers(At(), to)) return false;
    Tell(At(), to, {Write(At(), to, ReplaceAll(Piece(At(), to), u",", u""))});
    return true;
  }
  bool IsGroup(std::size_t word) const {
    const auto written = draft_.Written(word);
    const auto fraction = written.substr(std::min<std::size_t>(3, written.size()));
    return written.size() >= 3 && AreDigits(written.substr(0, 3)) &&
           (fraction.empty() || (fraction.front() == u'.' && AreDigits(fraction.substr(1))));
  }
  /// Whether a comma may stand here at all.
  bool IsInCall() const {
    int open = 0;
    constexpr std::size_t kFarthest = 200;
    for (std::size_t i = word_; i > 0 && word_ - i < kFarthest; --i) {
      if (draft_.IsSign(i - 1, u")")) ++open;
      if (!draft_.IsSign(i - 1, u"(")) continue;
      if (open-- == 0) return true;
    }
    return false;
  }

  bool TakePercent() {
    if (!draft_.IsNumber(word_) || !draft_.Touches(word_) || !draft_.IsSign(word_ + 1, u"%")) {
      return false;
    }
    const std::size_t next = word_ + 2;
    if (next < draft_.Size() && BeginsValue(next)) return false;
    const std::u16string number = Hundredth(Written());
    if (number.empty()) return false;
    const std::int32_t to = draft_.End(word_ + 1);
    Tell(At(), to, {Write(At(), to, number)});
    return true;
  }
  bool BeginsValue(std::size_t word) const {
    const std::int32_t symbol = draft_.Word(word).symbol;
    if (symbol == kDelimiterSymbol) return draft_.IsSign(word, u"(");
    return symbol < kOpSumSymbol || symbol > kOpInSymbol || draft_.IsSign(word, u"-");
  }
  /// `50` becomes `0.50`, with the point two places to the left.
  static std::u16string Hundredth(std::u16string_view number) {
    const std::size_t point = number.find(u'.');
    std::u16string whole(number.substr(0, point));
    const auto rest = point == number.npos ? std::u16string_view() : number.substr(point + 1);
    if (!AreDigits(whole) || (!rest.empty() && !AreDigits(rest))) return {};
    if (whole.size() < 3) whole.insert(0, 3 - whole.size(), u'0');
    std::u16string moved = whole.substr(0, whole.size() - 2);
    return moved.append(1, u'.').append(whole, whole.size() - 2).append(rest);
  }

  Workbench& bench_;
  const Draft& draft_;
  std::u16string_view text_;
  std::int32_t refused_;
  std::size_t word_ = 0;
  std::size_t at_ = 0;
  std::size_t lineEnd_ = 0;
  std::size_t nextRefused_ = 0;
  char16_t noneBehind_ = 0;  ///< a closing quote of which there is no further one
};

}  // namespace

void FindNotation(Workbench& bench, std::int32_t refused) {
  Scan(bench, refused).Run();
}

}  // namespace ORKBASE
