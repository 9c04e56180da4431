#include "authoring/NearNames.h"

#include "MxRuleEnums.h"
#include "RuleAuthoring.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace ORKBASE {
namespace {

constexpr std::size_t kLongest = 64;       // names beyond it are not compared
constexpr std::size_t kOtherTable = 1000;  // behind all names that are near

std::size_t CountOf(std::uint64_t letters) noexcept {
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

/// How near a name is: its distance, or `kFar`.
constexpr std::size_t kFar = static_cast<std::size_t>(-1);

std::size_t Nearness(std::u16string_view a, std::u16string_view b, std::size_t most) {
  const std::size_t limit = std::min(NearLimit(a, b), most);
  if (limit == 0) return a == b ? 0 : kFar;
  const std::size_t distance = DistanceOf(a, b, limit);
  return distance > limit ? kFar : distance;
}

/// Looks for the nearest names. A name is of interest only as long as it can be among the best.
class Search {
 public:
  Search(std::u16string_view folded, std::size_t most)
      : name_(folded), letters_(LettersOf(folded)), most_(most) {}

  void Look(const IndexedWord& entry) {
    const bool sameField = !name_.field.empty() && entry.folded.size() > name_.field.size() &&
                           entry.folded.ends_with(name_.field);
    if (!sameField && !MayBeNear(entry)) return;
    const Halves other(entry.folded);
    if (!CanBeMeant(*entry.word)) return;
    const std::int32_t symbol = entry.word->symbol;
    const bool isField = symbol == kDataFieldSymbol || symbol == kFormFieldSymbol;
    const bool byHalves = isField && !name_.table.empty();
    const std::size_t distance =
        byHalves ? OfHalves(other) : Nearness(name_.whole, other.whole, Bound());
    if (distance == kFar) return;
    found_.push_back({&entry, distance});
    ++counts_[std::min(distance, kLongest)];
    NarrowBound();
  }

  std::vector<NearName> Take() { return std::move(found_); }

 private:
  std::size_t Bound() const noexcept { return bound_; }
  void NarrowBound() noexcept {
    std::size_t count = 0;
    for (std::size_t i = 0; i < bound_; ++i) {
      count += counts_[i];
      if (count >= most_) bound_ = i;
    }
  }

  /// Each letter that only one of them has costs a change.
  bool MayBeNear(const IndexedWord& other) const noexcept {
    const std::size_t longer = std::max(name_.whole.size(), other.folded.size());
    const std::size_t shorter = std::min(name_.whole.size(), other.folded.size());
    const std::size_t limit = std::min(std::max<std::size_t>(longer / 3, 1) + 1, bound_);
    return longer - shorter <= limit && CountOf(letters_ & ~other.letters) <= limit;
  }

  std::size_t OfHalves(const Halves& other) {
    if (other.table.empty()) return kFar;
    // Words of one table stand side by side.
    if (other.table != lastTable_) {
      lastTable_ = other.table;
      lastDistance_ = Nearness(name_.table, other.table, kLongest);
    }
    if (lastDistance_ == kFar) return other.field == name_.field ? kOtherTable : kFar;
    if (lastDistance_ > bound_) return kFar;
    const std::size_t fields = Nearness(name_.field, other.field, bound_ - lastDistance_);
    return fields == kFar ? kFar : fields + lastDistance_;
  }

  Halves name_;
  std::uint64_t letters_;
  std::size_t most_;
  std::size_t bound_ = kLongest;  ///< farther names cannot be among the best
  std::array<std::size_t, kLongest + 1> counts_{};
  std::u16string_view lastTable_;
  std::size_t lastDistance_ = kFar;
  std::vector<NearName> found_;
};

}  // namespace

std::size_t NearLimit(std::u16string_view a, std::u16string_view b) noexcept {
  const std::size_t longer = std::max(a.size(), b.size());
  const std::size_t shorter = std::min(a.size(), b.size());
  if (shorter == 0 || longer > kLongest) return 0;
  if (shorter <= 2 && a.front() != b.front()) return 0;
  return std::max<std::size_t>(longer / 3, 1);
}

std::size_t DistanceOf(std::u16string_view a, std::u16string_view b, std::size_t limit) {
  while (!a.empty() && !b.empty() && a.front() == b.front()) {
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  while (!a.empty() && !b.empty() && a.back() == b.back()) {
    a.remove_suffix(1);
    b.remove_suffix(1);
  }
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
  if (name.size() > kLongest) return {};
  const std::u16string folded = Folded(name);
  Search search(folded, most);
  for (const IndexedWord& entry : index.All()) search.Look(entry);
  std::vector<NearName> near = search.Take();
  const auto isBefore = [](const NearName& a, const NearName& b) {
    return a.distance != b.distance ? a.distance < b.distance : a.word->folded < b.word->folded;
  };
  const auto kept = near.begin() + static_cast<std::ptrdiff_t>(std::min(most, near.size()));
  std::partial_sort(near.begin(), kept, near.end(), isBefore);
  near.erase(kept, near.end());
  return near;
}

std::u16string_view NearestName(std::u16string_view text,
                                std::span<const std::u16string_view> names) {
  const std::u16string folded = Folded(text.substr(0, kLongest + 1));
  std::u16string_view nearest;
  std::size_t least = kFar;
  for (const std::u16string_view name : names) {
    const std::size_t distance = Nearness(folded, Folded(name), kLongest);
    if (distance >= least) continue;
    nearest = name;
    least = distance;
  }
  return nearest;
}

}  // namespace ORKBASE
