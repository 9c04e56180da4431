// The dictionaries of one engine by their keys, and what makes copies of the engine safe in other
// threads: the content of a dictionary is never changed, only replaced as a whole.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "dictionary/MxDictionary.h"

namespace ORKBASE {

/// Keys of one engine. A copy has keys of its own and shares the dictionaries behind them: a
/// content that is replaced through one is seen by the others from their next `Renew` on. One map
/// serves one thread at a time; copies may be used, made and destroyed in other threads at the same
/// time.
class DictionaryMap {
 public:
  using Content = std::shared_ptr<const MxDictionary>;

  /// The place of a dictionary that copies share; read and written under the lock of the copies.
  struct Cell {
    Content content;
  };

  struct Entry {
    Content content;             ///< as the last `Renew` found it
    std::shared_ptr<Cell> cell;  ///< null for what never changes
    const MxDictionary* operator->() const noexcept { return content.get(); }
  };
  using Entries = std::map<std::u16string, Entry, std::less<>>;

  /// Contents and keys as they are to become.
  struct Change {
    Entries entries;
    std::vector<Entry> displaced;  ///< without a key from now on, but maybe not in a copy
  };

  /// Takes over what copies have replaced. Costs one atomic load where they have not. Contents that
  /// were found before may be gone afterwards.
  void Renew();

  /// A number that is another after each change that a copy has made.
  std::uint64_t SharedVersion() const noexcept {
    return family_ ? family_->version.load(std::memory_order_acquire) : 0;
  }

  const Entries& All() const noexcept { return entries_; }
  const MxDictionary* Find(std::u16string_view key) const;
  void Remove(std::u16string_view key);
  /// Enters a dictionary in place of the one that has the key. Copies keep that one.
  void Enter(std::u16string key, Content content);
  /// The same for one that is never replaced.
  void EnterFixed(std::u16string_view key, Content content);

  Change BeginChange() const { return {entries_, {}}; }
  /// Carries out a change that was begun after the last `Renew`, for all copies at once. False, and
  /// nothing is done, when a copy was quicker: the change has to be made anew.
  bool Commit(Change& change);

 private:
  /// What the copies of one engine have in common.
  struct Family {
    std::mutex mutex;                       ///< of all cells; never held while waiting for anything
    std::atomic<std::uint64_t> version{0};  ///< counts the changes of cells
  };

  Entries entries_;
  std::shared_ptr<Family> family_;  ///< null as long as there is nothing to share
  std::uint64_t seen_ = 0;          ///< the version that the contents are of
};

}  // namespace ORKBASE
