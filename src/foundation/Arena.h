// Memory for many small things that are dropped all at once.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace ORKBASE {

/// Hands out memory from blocks that it owns. What was used is kept over `Clear`, as one block and
/// up to a limit, so that work of the same size again asks the system for nothing. Used by one
/// thread at a time; runs no destructors.
class Arena {
 public:
  /// Memory of this alignment (a power of two, that of `std::max_align_t` at most), unset.
  void* Allocate(std::size_t bytes, std::size_t alignment) {
    std::size_t begin = (used_ + alignment - 1) & ~(alignment - 1);
    if (begin > size_ || bytes > size_ - begin) {
      AddBlock(bytes);
      begin = 0;
    }
    used_ = begin + bytes;
    return block_ + begin;
  }

  template <class T, class... Arguments>
  T* Make(Arguments&&... arguments) {
    return new (Allocate(sizeof(T), alignof(T))) T{std::forward<Arguments>(arguments)...};
  }

  /// Drops everything that was handed out.
  void Clear();

 private:
  void AddBlock(std::size_t bytes);

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::byte* block_ = nullptr;  ///< the one in use
  std::size_t size_ = 0;        ///< of that block
  std::size_t used_ = 0;        ///< of that block
  std::size_t total_ = 0;       ///< of all blocks
  std::size_t wanted_ = 0;      ///< of the next first block
};

}  // namespace ORKBASE
