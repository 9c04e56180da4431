#include "authoring/NearNames.h"

#include "MxRuleEnums.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace ORKBASE {
namespace {

constexpr std::size_t kLongest = 64;       // names beyond it are not compared
constexpr std::size_t kOtherTable = 1000;  // behind all names that are near

using Letters = std::uint64_t;

Letters LettersOf(std::u16string_view text) noexcept {
  Letters letters = 0;
  for (const char16_t unit : text) letters |= Letters{1} << (unit % 64);
  return letters;
}

std::size_t CountOf(Letters letters) noexcept {
  return static_cast<std::size_t>(__builtin_popcountll(letters));
}

/// Date parts, brackets and words that ask for a name behind them cannot be meant.
bool CanBeMeant(const MxWord& word) noexcept {
  return word.symbol != kDatePartSymbol && word.symbol != kDelimiterSymbol &&
         word.postfixCheck == 0 && !word.outDesc.ends_with(u'.');
}

/// A name and its halves, folded.
struct Halves {
  explicit Halves(std::u16string_view text) : whole(text) {
    const std::size_t dot = text.rfind(u'.');
    if (dot == text.npos || dot == 0 || dot + 1 == text.size()) return;
    table = text.substr(0, dot);
    field = text.substr(dot + 1);
  }
  std::u16string_view whole;
  std::u16string_view table;
  std::u16string_view field;
};

/// 0 where they are not near; a distance of 0 counts as 1 there.
std::size_t Nearness(std::u16string_view a, std::u16string_view b) {
  const std::size_t limit = NearLimit(a, b);
  if (limit == 0) return a == b ? 1 : 0;
  const std::size_t distance = DistanceOf(a, b, limit);
  return distance > limit ? 0 : distance + 1;
}

std::size_t NearnessOfHalves(const Halves& name, const Halves& other) {
  if (name.table.empty() || other.table.empty()) return 0;
  const std::size_t fields = Nearness(name.field, other.field);
  if (fields == 0) return 0;
  const std::size_t tables = Nearness(name.table, other.table);
  if (tables != 0) return tables + fields - 1;
  return fields == 1 ? kOtherTable : 0;
}

}  // namespace

std::size_t NearLimit(std::u16string_view a, std::u16string_view b) noexcept {
  const std::size_t longer = std::max(a.size(), b.size());
  const std::size_t shorter = std::min(a.size(), b.size());
  if (shorter == 0 || longer > kLongest) return 0;
  if (shorter <= 2 && a.front() != b.front()) return 0;
  return std::max<std::size_t>(longer / 3, 1);
}

std::size_t DistanceOf(std::u16string_view a, std::u16string_view b, std::size_t limit) {
  const std::size_t more = std::max(a.size(), b.size());
  if (more > kLongest || more - std::min(a.size(), b.size()) > limit) return limit + 1;
  std::array<std::array<std::size_t, kLongest + 1>, 3> rows;
  std::size_t* before = rows[0].data();
  std::size_t* last = rows[1].data();
  std::size_t* now = rows[2].data();
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    now[0] = i;
    std::size_t least = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
      now[j] = std::min({last[j] + 1, now[j - 1] + 1, last[j - 1] + cost});
      const bool isSwapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (isSwapped) now[j] = std::min(now[j], before[j - 2] + 1);
      least = std::min(least, now[j]);
    }
    if (least > limit) return limit + 1;
    std::swap(before, last);
    std::swap(last, now);
  }
  return last[b.size()];
}

std::vector<NearName> NearNamesOf(const WordIndex& index, std::u16string_view name,
                                  std::size_t most) {
  std::vector<NearName> near;
  if (name.size() > kLongest) return near;
  const std::u16string folded = Folded(name);
  const Halves wanted(folded);
  const Letters letters = LettersOf(folded);
  for (const IndexedWord& entry : index.All()) {
    const std::u16string_view other = entry.folded;
    const std::size_t longer = std::max(folded.size(), other.size());
    const std::size_t shorter = std::min(folded.size(), other.size());
    const std::size_t limit = std::max<std::size_t>(longer / 3, 1);
    const bool sameField = !wanted.field.empty() && other.size() > wanted.field.size() &&
                           other.ends_with(wanted.field) &&
                           other[other.size() - wanted.field.size() - 1] == u'.';
    // Each letter that only one of them has costs a change; a change pays for one on each side.
    if (!sameField) {
      if (longer - shorter > limit + 1) continue;
      if (CountOf(letters & ~LettersOf(other)) > limit + 1) continue;
    }
    if (!CanBeMeant(*entry.word)) continue;
    const Halves has(other);
    const bool isField =
        entry.word->symbol == kDataFieldSymbol || entry.word->symbol == kFormFieldSymbol;
    std::size_t nearness = isField ? NearnessOfHalves(wanted, has) : Nearness(folded, other);
    if (nearness == 0 && isField && wanted.table.empty()) nearness = Nearness(folded, other);
    if (nearness > 0) near.push_back({&entry, nearness - 1});
  }
  const auto isBefore = [](const NearName& a, const NearName& b) {
    return a.distance != b.distance ? a.distance < b.distance : a.word->folded < b.word->folded;
  };
  const auto kept = near.begin() + static_cast<std::ptrdiff_t>(std::min(most, near.size()));
  std::partial_sort(near.begin(), kept, near.end(), isBefore);
  near.erase(kept, near.end());
  return near;
}

}  // namespace ORKBASE
