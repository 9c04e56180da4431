#include "foundation/Arena.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace ORKBASE {
namespace {

TEST(Arena, GivesMemoryThatIsAlignedAndApart) {
  Arena arena;
  std::vector<std::pair<unsigned char*, std::size_t>> given;
  for (std::size_t i = 0; i < 2000; ++i) {
    const std::size_t bytes = 1 + i * 7 % 300;
    const std::size_t alignment = std::size_t{1} << (i % 5);
    auto* at = static_cast<unsigned char*>(arena.Allocate(bytes, alignment));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(at) % alignment, 0u);
    std::memset(at, static_cast<int>(i % 251), bytes);
    given.emplace_back(at, bytes);
  }
  for (std::size_t i = 0; i < given.size(); ++i) {
    for (std::size_t k = 0; k < given[i].second; ++k) ASSERT_EQ(given[i].first[k], i % 251);
  }
}

TEST(Arena, TakesWhatIsLargerThanAnyBlock) {
  Arena arena;
  for (const std::size_t bytes : {std::size_t{1}, std::size_t{1} << 20, std::size_t{3}}) {
    std::memset(arena.Allocate(bytes, 1), 1, bytes);
  }
}

// The second round finds one block that holds it all: what is next to each other stays so.
TEST(Arena, KeepsOneBlockForTheNextRound) {
  Arena arena;
  for (int i = 0; i < 1000; ++i) arena.Allocate(64, 8);
  arena.Clear();
  auto* const first = static_cast<std::byte*>(arena.Allocate(64, 8));
  for (std::ptrdiff_t i = 1; i < 1000; ++i) {
    ASSERT_EQ(static_cast<std::byte*>(arena.Allocate(64, 8)), first + 64 * i);
  }
  arena.Clear();
  EXPECT_EQ(arena.Allocate(64, 8), first);
}

TEST(Arena, IsEmptyAndUsableAtOnceAndAfterEveryClear) {
  Arena arena;
  arena.Clear();
  arena.Allocate(0, 1);
  arena.Clear();
  arena.Clear();
  struct Pair {
    int a = 0;
    int b = 7;
  };
  const Pair* const pair = arena.Make<Pair>(3);
  EXPECT_EQ(pair->a, 3);
  EXPECT_EQ(pair->b, 7);
}

}  // namespace
}  // namespace ORKBASE
