// A bound of time that holds on a busy machine: what the calling thread used of the processor.
#pragma once

#include <time.h>

/// Counts from its construction.
class CpuSeconds {
 public:
  double Used() const { return Now() - start_; }

 private:
  static double Now() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  }

  double start_ = Now();
};
