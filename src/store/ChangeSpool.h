// Changes on their way to the store, kept in a file without a name so that memory does not grow
// with their number. Written to the end, read from any record that was read before.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "StoreChanges.h"

namespace ORKDB {

class ChangeSpool {
 public:
  /// A record that can be returned to.
  struct Place {
    std::int64_t offset = 0;
    std::int64_t index = 0;
  };

  /// Makes the file in the folder for temporary files. As everything here it throws `StoreFailure`
  /// where the system refuses, as for a full disk.
  ChangeSpool();
  ChangeSpool(const ChangeSpool&) = delete;
  ChangeSpool& operator=(const ChangeSpool&) = delete;
  ~ChangeSpool();

  void Add(const StoreChange& change);
  std::int64_t Count() const noexcept { return count_; }

  const Place& Here() const noexcept { return place_; }
  void ReturnTo(const Place& place) noexcept { place_ = place; }
  bool IsAtEnd() const noexcept { return place_.index == count_; }
  /// Reads the change at this place and goes on to the next.
  void Read(StoreChange& change);

 private:
  void WriteOut();
  void Fill(std::size_t size);
  [[noreturn]] void Fail(int number) const;

  std::string folder_;
  int file_ = -1;
  std::int64_t count_ = 0;
  std::string unwritten_;
  std::int64_t written_ = 0;
  std::string record_;
  Place place_;
  std::string read_;  ///< a piece of the file
  std::int64_t readAt_ = 0;
};

}  // namespace ORKDB
