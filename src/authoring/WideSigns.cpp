// A word that is known may hold such signs, so only refused words are looked through, and in them
// the longest piece that is known is left alone: a field may be called `金额（元）`.
#include "authoring/WideSigns.h"

#include "authoring/WordIndex.h"
#include "dictionary/MxDictionarys.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <algorithm>

namespace ORKBASE {
namespace {

struct SignRow {
  char16_t first;
  char16_t last;
  std::u16string_view ordinary;
};

// clang-format off
constexpr SignRow kBlanks[] = {
    {u'\t',     u'\t',     u" "},
    {u'\v',     u'\f',     u" "},
    {u'\u0085', u'\u0085', u" "},
    {u'\u00A0', u'\u00A0', u" "},
    {u'\u00AD', u'\u00AD', u""},   // shows only at the end of a line
    {u'\u2000', u'\u200A', u" "},
    {u'\u200B', u'\u200F', u""},   // no width
    {u'\u2028', u'\u2029', u" "},
    {u'\u202F', u'\u202F', u" "},
    {u'\u205F', u'\u205F', u" "},
    {u'\u2060', u'\u2060', u""},
    {u'\u3000', u'\u3000', u" "},
    {u'\uFEFF', u'\uFEFF', u""},
};

constexpr SignRow kSigns[] = {
    {u'\u2013', u'\u2014', u"-"},
    {u'\u2212', u'\u2212', u"-"},
    {u'\u00D7', u'\u00D7', u"*"},
    {u'\u00F7', u'\u00F7', u"/"},
    {u'\u3001', u'\u3001', u","},
    {u'\u3002', u'\u3002', u"."},
    {u'\u3008', u'\u3008', u"<"},
    {u'\u3009', u'\u3009', u">"},
    {u'\u3010', u'\u3010', u"["},
    {u'\u3011', u'\u3011', u"]"},
    {u'\u3014', u'\u3014', u"("},
    {u'\u3015', u'\u3015', u")"},
    {u'\uFFE5', u'\uFFE5', u"\u00A5"},
};

struct QuoteRow {
  char16_t open;
  char16_t close;
};
constexpr QuoteRow kQuotes[] = {
    {u'\u201C', u'\u201D'},  // “ ”
    {u'\u2018', u'\u2019'},  // ‘ ’
    {u'\u201D', u'\u201D'},
    {u'\u2019', u'\u2019'},
    {u'\uFF02', u'\uFF02'},  // ＂ ＂
    {u'\uFF07', u'\uFF07'},  // ＇ ＇
    {u'\u300C', u'\u300D'},  // 「 」
};
// clang-format on

constexpr char16_t kWideFirst = 0xFF01;  // in the order of "!" to "~"
constexpr char16_t kWideLast = 0xFF5E;

const SignRow* RowOf(std::span<const SignRow> rows, char16_t unit) noexcept {
  for (const SignRow& row : rows) {
    if (unit >= row.first && unit <= row.last) return &row;
  }
  return nullptr;
}

enum class Width : std::uint8_t { kOrdinary, kBlank, kSign, kQuote };

const QuoteRow* QuoteOf(char16_t unit) noexcept {
  for (const QuoteRow& row : kQuotes) {
    if (unit == row.open) return &row;
  }
  return nullptr;
}

Width WidthOf(char16_t unit) noexcept {
  if (unit > u' ' && unit < 0x7F) return Width::kOrdinary;
  if (RowOf(kBlanks, unit)) return Width::kBlank;
  if (QuoteOf(unit)) return Width::kQuote;
  const bool isWide = unit >= kWideFirst && unit <= kWideLast;
  return isWide || RowOf(kSigns, unit) ? Width::kSign : Width::kOrdinary;
}

bool IsComparison(std::u16string_view signs) noexcept {
  return !signs.empty() && signs.find_first_not_of(u"=<>!") == signs.npos;
}

class Scan {
 public:
  explicit Scan(Workbench& bench) : bench_(bench), text_(bench.Now().text) {}

  void Run() {
    const Draft& draft = bench_.Now();
    for (std::size_t i = 0; i < draft.Size(); ++i) {
      const auto from = static_cast<std::size_t>(draft.Offset(i));
      if (!draft.IsRefused(i) || text_[from] == u'\'' || from < at_) continue;
      at_ = from;
      end_ = static_cast<std::size_t>(draft.End(i));
      ScanWord();
    }
  }

  struct WideRun {
    RuleEdit edit;
    bool isBlank = false;
  };
  std::vector<WideRun> runs;

 private:
  void ScanWord() {
    const auto isWide = [](char16_t unit) { return WidthOf(unit) != Width::kOrdinary; };
    const auto word = text_.substr(at_, end_ - at_);
    if (std::none_of(word.begin(), word.end(), isWide)) return;
    bool mayBegin = true;  // whether a name may begin here
    while (at_ < end_) {
      if (mayBegin && SkipKnown()) continue;
      const Width width = WidthOf(text_[at_]);
      mayBegin = width != Width::kOrdinary;
      if (width == Width::kOrdinary) {
        ++at_;
      } else if (width != Width::kQuote || !TakeQuoted()) {
        TakeRun(width == Width::kQuote ? Width::kSign : width);
      }
    }
  }

  /// Passes over the longest known word that holds wide signs, of those that end in front of one.
  bool SkipKnown() {
    constexpr int kMostPieces = 4;
    std::size_t known = 0;
    int pieces = 0;
    bool isWide = false;
    for (std::size_t i = at_; i < end_ && pieces < kMostPieces; ++i) {
      if (WidthOf(text_[i]) == Width::kOrdinary) continue;
      ++pieces;
      if (isWide && IsKnown(i)) known = i;
      isWide = true;
      if (i + 1 < end_ && IsKnown(i + 1)) known = i + 1;
    }
    if (known <= at_) return false;
    at_ = known;
    return true;
  }
  bool IsKnown(std::size_t behind) {
    const auto piece = text_.substr(at_, behind - at_);
    return piece.size() > 1 && bench_.call.Dictionaries().FindByDesc(piece) != nullptr;
  }

  /// A text in quotes of another kind; it may hold blanks, so it goes on behind the word.
  bool TakeQuoted() {
    const QuoteRow& quote = *QuoteOf(text_[at_]);
    if (noneBehind_ == quote.close) return false;
    const std::size_t close = text_.find(quote.close, at_ + 1);
    if (close == text_.npos) {
      noneBehind_ = quote.close;
      return false;
    }
    const std::u16string inside = ReplaceAll(text_.substr(at_ + 1, close - at_ - 1), u"'", u"''");
    Add(close + 1, u'\'' + inside + u'\'', false);
    end_ = std::max(end_, at_);
    return true;
  }

  void TakeRun(Width width) {
    std::size_t behind = at_;
    std::u16string ordinary;
    while (behind < end_) {
      const char16_t unit = text_[behind];
      const Width here = WidthOf(unit);
      if (here != width && !(width == Width::kSign && here == Width::kQuote)) break;
      if (here == Width::kQuote && behind > at_) break;
      AddOrdinary(unit, ordinary);
      ++behind;
    }
    if (width == Width::kSign) {
      // A full stop or semicolon ends a sentence there, and nothing in a rule.
      const bool atEnd = IsBlankText(text_.substr(behind));
      if (atEnd && (ordinary == u"." || ordinary == u";")) ordinary.clear();
      if (IsComparison(ordinary)) AddBlanks(behind, ordinary);
    }
    Add(behind, std::move(ordinary), width == Width::kBlank);
  }

  static void AddOrdinary(char16_t unit, std::u16string& text) {
    const SignRow* row = RowOf(kBlanks, unit);
    if (!row) row = RowOf(kSigns, unit);
    if (row) {
      text += row->ordinary;
    } else if (QuoteOf(unit)) {
      text += u'\'';
    } else {
      text += Folded({&unit, 1}) == std::u16string(1, unit) ? unit : Ordinary(unit);
    }
  }
  static char16_t Ordinary(char16_t unit) noexcept {
    return static_cast<char16_t>(unit - kWideFirst + u'!');
  }

  /// Wide signs bring their own room along.
  void AddBlanks(std::size_t behind, std::u16string& sign) const {
    const auto isOpen = [](char16_t unit) {
      return !IsBlank(unit) && unit != u'=' && unit != u'<' && unit != u'>' &&
             WidthOf(unit) != Width::kBlank;
    };
    if (at_ > 0 && isOpen(text_[at_ - 1])) sign.insert(0, 1, u' ');
    if (behind < text_.size() && isOpen(text_[behind])) sign += u' ';
  }

  void Add(std::size_t behind, std::u16string text, bool isBlank) {
    runs.push_back(
        {{static_cast<std::int32_t>(at_), static_cast<std::int32_t>(behind - at_), std::move(text)},
         isBlank});
    at_ = behind;
  }

  Workbench& bench_;
  std::u16string_view text_;
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  char16_t noneBehind_ = 0;  ///< a closing quote of which there is no further one
};

}  // namespace

void FindWideSigns(Workbench& bench) {
  constexpr std::size_t kMostEdits = 10'000;
  Scan scan(bench);
  scan.Run();
  Remedy all{kMsgFixWideSigns, {}, {}};
  for (const auto& run : scan.runs) all.edits.push_back(run.edit);
  bool givesAll = scan.runs.size() > 1;
  for (const auto& [edit, isBlank] : scan.runs) {
    const auto signs =
        std::u16string_view(bench.Now().text)
            .substr(static_cast<std::size_t>(edit.offset), static_cast<std::size_t>(edit.length));
    std::vector<Remedy> remedies;
    if (givesAll) remedies.push_back(all);
    // Of a text with very many each would tell of all others.
    givesAll = givesAll && all.edits.size() * scan.runs.size() <= kMostEdits;
    const std::u16string told(TrimBlanks(edit.text));
    remedies.push_back({scan.runs.size() == 1 ? kMsgFixWideSigns : kMsgFixWideSign,
                        scan.runs.size() == 1 ? u""
                        : told.empty()        ? u"' '"
                                              : told,
                        {edit}});
    if (isBlank) {
      bench.Tell(edit.offset, edit.length, kMsgOddBlank, {}, remedies);
    } else {
      bench.Tell(edit.offset, edit.length, kMsgWideSign, {signs}, remedies);
    }
  }
}

}  // namespace ORKBASE
