#include "authoring/BareDates.h"

#include "foundation/Text.h"
#include "platform/LocaleDates.h"

#include <algorithm>
#include <vector>

namespace ORKBASE {
namespace {

bool IsDigit(char16_t unit) noexcept {
  return unit >= u'0' && unit <= u'9';
}

bool IsPart(const Draft& draft, std::size_t word, std::size_t most) {
  if (word >= draft.Size()) return false;
  const std::u16string_view written = draft.Written(word);
  return written.size() <= most && std::all_of(written.begin(), written.end(), IsDigit);
}

bool AreThreeParts(const Draft& draft, std::size_t word) {
  const auto isSign = [&](std::size_t i) {
    return (draft.IsSign(i, u"-") || draft.IsSign(i, u"/")) && draft.Touches(i - 1) &&
           draft.Touches(i);
  };
  if (!IsPart(draft, word, 4) || !IsPart(draft, word + 2, 2) || !IsPart(draft, word + 4, 4)) {
    return false;
  }
  if (!isSign(word + 1) || !isSign(word + 3)) return false;
  return draft.Written(word).size() == 4 || draft.Written(word + 4).size() == 4;
}

bool ReadsAsDate(std::u16string_view text) {
  return IsDateText(ReplaceAll(text, u".", u"-"));
}

/// As it was typed where that is read as a date, else in the order of the user; empty for none.
std::u16string Readable(std::u16string_view typed) {
  if (ReadsAsDate(typed)) return std::u16string(typed);
  std::vector<std::u16string> parts(1);
  for (const char16_t unit : typed) {
    if (IsDigit(unit)) {
      parts.back() += unit;
    } else {
      parts.emplace_back();
    }
  }
  if (parts.size() != 3 || parts[0].size() != 4) return {};
  std::u16string ordered;
  for (const char16_t unit : ShortDatePattern()) {
    const std::size_t part = unit == u'y' ? 0 : unit == u'M' ? 1 : unit == u'd' ? 2 : 3;
    if (part == 3) {
      ordered += unit;
    } else if (!ordered.ends_with(parts[part])) {
      ordered += parts[part];
    }
  }
  return ReadsAsDate(ordered) ? ordered : std::u16string();
}

}  // namespace

std::optional<BareDate> BareDateAt(const Draft& draft, std::size_t word) {
  constexpr std::int32_t kLongest = 40;
  const bool isWord = draft.IsRefused(word) && IsDigit(draft.Written(word).front());
  if (!isWord && !AreThreeParts(draft, word)) return {};
  const std::u16string_view text = draft.text;
  const std::size_t last = isWord ? word : word + 4;
  const std::int32_t from = draft.Offset(word);
  const auto piece = [&](std::size_t to) {
    return text.substr(static_cast<std::size_t>(from),
                       static_cast<std::size_t>(draft.End(to) - from));
  };
  if (draft.End(last) - from > kLongest) return {};
  std::size_t end = last;
  const bool hasTime = last + 1 < draft.Size() && draft.IsRefused(last + 1) &&
                       draft.End(last + 1) - from <= kLongest &&
                       draft.Written(last + 1).find(u':') != text.npos;
  if (hasTime && ReadsAsDate(piece(last + 1))) ++end;
  const std::u16string read = Readable(piece(end));
  if (read.empty()) return {};
  return BareDate{from, draft.End(end) - from, u'\'' + read + u'\'', !isWord && end == last};
}

}  // namespace ORKBASE
