// The checks of the consumer's programs: each failed one is told on standard error and counted, so
// that these programs need nothing but the library under test.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

inline int failures = 0;

/// ASCII as it is, other units as "?".
inline std::string Ascii(std::u16string_view text) {
  std::string out;
  for (char16_t unit : text) out += unit < 0x80 ? static_cast<char>(unit) : '?';
  return out;
}

inline void Check(bool holds, const char* what) {
  if (holds) return;
  ++failures;
  std::fprintf(stderr, "%s: does not hold\n", what);
}

inline void CheckText(std::u16string_view actual, std::u16string_view expected, const char* what) {
  if (actual == expected) return;
  ++failures;
  std::fprintf(stderr, "%s\n expected |%s|\n actual   |%s|\n", what, Ascii(expected).c_str(),
               Ascii(actual).c_str());
}
