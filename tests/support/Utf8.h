// GoogleTest shows 16-bit text unreadably: tests compare UTF-8, made by these two.
#pragma once

#include <string>
#include <string_view>

#include "foundation/Text.h"

inline std::string U8(std::u16string_view text) {
  return ORKBASE::WideToUtf8(text);
}
inline std::u16string U16(std::string_view text) {
  return ORKBASE::Utf8ToWide(text);
}
