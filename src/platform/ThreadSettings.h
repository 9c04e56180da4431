// What a thread has of its own that answers depend on, for threads that work in place of another.
#pragma once

#include <locale.h>

#include <string>

namespace ORKBASE {

/// The language and the locale of the thread that made it. Valid as long as that thread keeps them.
class ThreadSettings {
 public:
  ThreadSettings();

  /// Gives the calling thread the settings, and its own locale back at the end of the scope.
  class Scope {
   public:
    explicit Scope(const ThreadSettings& settings);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    locale_t own_;
  };

 private:
  std::u16string wish_;  ///< empty for none
  locale_t locale_;
};

}  // namespace ORKBASE
