// Gives the calling thread a POSIX locale for the length of a scope, out of those that the build
// makes into its own folder.
#pragma once

#include <locale.h>
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#include <cstdlib>
#include <stdexcept>
#include <string>

/// A name such as "zh_CN.UTF-8"; throws, and so fails the test, when there is no such locale.
class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name) : own_(Make(name)), previous_(uselocale(own_)) {}
  ~ScopedLocale() {
    uselocale(previous_);
    freelocale(own_);
  }
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

  /// Points LOCPATH at the built locales, unless the environment has one already.
  static void FindBuiltLocales() {
    static const int once = setenv("LOCPATH", ORKRULE_BINARY_DIR "/locale", 0);
    static_cast<void>(once);
  }

 private:
  static locale_t Make(const char* name) {
    FindBuiltLocales();
#ifdef __SANITIZE_ADDRESS__
    const __lsan::ScopedDisabler disabler;  // glibc never frees its copy of LOCPATH
#endif
    locale_t made = newlocale(LC_ALL_MASK, name, nullptr);
    if (made == nullptr) throw std::runtime_error(std::string("no locale ") + name);
    return made;
  }

  locale_t own_;
  locale_t previous_;
};
