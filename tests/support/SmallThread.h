// A thread with a stack of 1 MiB, as hosts give to their workers: what recurses too deeply dies
// here.
#pragma once

#include <pthread.h>

#include <functional>
#include <stdexcept>

/// Runs `work` on such a thread and waits for it. `work` must not throw.
inline void OnSmallThread(const std::function<void()>& work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, std::size_t{1} << 20);
  pthread_t thread{};
  const auto run = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  const int status =
      pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work));
  pthread_attr_destroy(&attributes);
  if (status != 0) throw std::runtime_error("no thread");
  pthread_join(thread, nullptr);
}
