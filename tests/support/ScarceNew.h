// An operator new that gives out after as many calls as a test allows. For one file of a program,
// since it replaces the operators of all of it.
#pragma once

#include <cstdlib>
#include <new>

/// How many allocations by operator new are left in this thread; negative: any number.
inline thread_local int allowance = -1;

inline void* Allocate(std::size_t size) noexcept {
  if (allowance == 0) return nullptr;
  if (allowance > 0) --allowance;
  return std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
  void* const memory = Allocate(size);
  if (!memory) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
// Not inline, lest the compiler sees free() at the end of what came from new.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
