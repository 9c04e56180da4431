// Blocks of memory.
#include "foundation/Arena.h"

#include <algorithm>

namespace ORKBASE {
namespace {

constexpr std::size_t kSmallestBlock = 4096;
constexpr std::size_t kMostKept = 4 << 20;

}  // namespace

void Arena::Clear() {
  used_ = 0;
  if (blocks_.size() <= 1 && total_ <= kMostKept) return;
  wanted_ = std::min(total_, kMostKept);
  blocks_.clear();
  block_ = nullptr;
  size_ = total_ = 0;
}

/// Each block is as large as all before it, so that their number grows with the logarithm.
void Arena::AddBlock(std::size_t bytes) {
  const std::size_t size = std::max({bytes, total_, wanted_, kSmallestBlock});
  blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(size));
  block_ = blocks_.back().get();
  size_ = size;
  total_ += size;
  wanted_ = 0;
}

}  // namespace ORKBASE
