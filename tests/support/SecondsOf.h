// How long work takes on the wall clock, for tests of limits that promise an answer in time.
#pragma once

#include <chrono>

template <typename Work>
double SecondsOf(const Work& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}
