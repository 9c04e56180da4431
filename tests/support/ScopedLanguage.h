// Gives the calling thread a message language for the length of a scope. As the first member of a
// fixture it is there before the engine that the fixture holds, whose vocabulary follows it.
#pragma once

#include <string_view>

#include "OrkPlatform.h"

class ScopedLanguage {
 public:
  explicit ScopedLanguage(std::u16string_view tag) { ORKBASE::SetThreadLanguage(tag); }
  ~ScopedLanguage() { ORKBASE::SetThreadLanguage(u""); }
  ScopedLanguage(const ScopedLanguage&) = delete;
  ScopedLanguage& operator=(const ScopedLanguage&) = delete;
};
