#include "EditScript.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace ORKTOOL {
namespace {

using Index = std::int64_t;

/// The greedy search of E. W. Myers, "An O(ND) Difference Algorithm and Its Variations", for so
/// many steps; from the place that got furthest until then it starts anew.
class Search {
 public:
  Search(const Words& before, const Words& after) : before_(before), after_(after) {
    const auto same = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend());
    endX_ = before.rend() - same.first;
    endY_ = after.rend() - same.second;
  }

  std::vector<Edit> All() {
    while (FromHere()) {
    }
    return std::move(edits_);
  }

 private:
  static constexpr Index kMostSteps = 128;
  static constexpr Index kUnreachable = -1;

  /// How far along the list before a path of the diagonal `x - y` is, after each number of steps.
  using Reached = std::vector<Index>;

  Index Rows() const { return endX_ - x_; }
  Index Columns() const { return endY_ - y_; }
  static std::size_t At(Index diagonal) {
    return static_cast<std::size_t>(diagonal + kMostSteps + 1);
  }

  bool AreSame(Index x, Index y) const {
    return before_[static_cast<std::size_t>(x_ + x)] == after_[static_cast<std::size_t>(y_ + y)];
  }

  Index Follow(Index x, Index diagonal) const {
    while (x < Rows() && x - diagonal < Columns() && AreSame(x, x - diagonal)) ++x;
    return x;
  }

  /// Where a path of the diagonal is before it follows what is the same: one added from the
  /// diagonal above, or one removed from that below.
  Index Step(const Reached& last, Index diagonal) const {
    const Index added = last[At(diagonal + 1)];
    const Index removed = last[At(diagonal - 1)];
    const Index byAdding = added >= 0 && added - diagonal <= Columns() ? added : kUnreachable;
    const Index byRemoving = removed >= 0 && removed < Rows() ? removed + 1 : kUnreachable;
    return std::max(byAdding, byRemoving);
  }

  /// False at the end of both lists.
  bool FromHere() {
    const Index same = Follow(0, 0);
    x_ += same;
    y_ += same;
    if (Rows() == 0 && Columns() == 0) return false;
    history_.clear();
    Reached reached(static_cast<std::size_t>(2 * kMostSteps + 3), kUnreachable);
    reached[At(0)] = 0;
    history_.push_back(reached);
    for (Index steps = 1; steps <= kMostSteps; ++steps) {
      Reached next(reached.size(), kUnreachable);
      for (Index diagonal = -steps; diagonal <= steps; diagonal += 2) {
        const Index x = Step(reached, diagonal);
        if (x == kUnreachable) continue;
        next[At(diagonal)] = Follow(x, diagonal);
        if (next[At(diagonal)] == Rows() && Rows() - diagonal == Columns()) {
          TakePath(steps, diagonal, Rows());
          return false;
        }
      }
      reached.swap(next);
      history_.push_back(reached);
    }
    GoOnFromFurthest(reached);
    return true;
  }

  void GoOnFromFurthest(const Reached& reached) {
    Index best = -kMostSteps;
    const auto length = [&](Index diagonal) { return 2 * reached[At(diagonal)] - diagonal; };
    for (Index diagonal = -kMostSteps; diagonal <= kMostSteps; diagonal += 2) {
      const bool isReached = reached[At(diagonal)] != kUnreachable;
      if (isReached && (reached[At(best)] == kUnreachable || length(diagonal) > length(best))) {
        best = diagonal;
      }
    }
    TakePath(kMostSteps, best, reached[At(best)]);
  }

  /// Walks back the path that ends at a place, and keeps its edits.
  void TakePath(Index steps, Index diagonal, Index x) {
    const Index endX = x;
    const Index endY = x - diagonal;
    std::vector<Edit> path;
    for (Index step = steps; step > 0; --step) {
      const Reached& last = history_[static_cast<std::size_t>(step - 1)];
      const Index added = last[At(diagonal + 1)];
      const bool isAdded =
          added >= 0 && added - diagonal <= Columns() && added == Step(last, diagonal);
      const Index from = isAdded ? added : last[At(diagonal - 1)];
      const Index fromDiagonal = isAdded ? diagonal + 1 : diagonal - 1;
      path.push_back({static_cast<std::size_t>(x_ + from), isAdded ? 0u : 1u,
                      static_cast<std::size_t>(y_ + from - fromDiagonal), isAdded ? 1u : 0u});
      diagonal = fromDiagonal;
    }
    std::for_each(path.rbegin(), path.rend(), [this](const Edit& edit) { Add(edit); });
    x_ += endX;
    y_ += endY;
  }

  /// Joins an edit with the one before where nothing common is between them.
  void Add(const Edit& edit) {
    if (!edits_.empty()) {
      Edit& last = edits_.back();
      if (last.before + last.removed == edit.before && last.after + last.added == edit.after) {
        last.removed += edit.removed;
        last.added += edit.added;
        return;
      }
    }
    edits_.push_back(edit);
  }

  const Words& before_;
  const Words& after_;
  Index endX_ = 0;  // where the words begin that both end with
  Index endY_ = 0;
  Index x_ = 0;  // what was looked at of both
  Index y_ = 0;
  std::vector<Reached> history_;
  std::vector<Edit> edits_;
};

}  // namespace

std::vector<Edit> EditsOf(const Words& before, const Words& after) {
  return Search(before, after).All();
}

}  // namespace ORKTOOL
