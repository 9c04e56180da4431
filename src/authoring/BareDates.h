// Dates that were typed without quotes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "authoring/Mending.h"

namespace ORKBASE {

struct BareDate {
  std::int32_t offset = 0;
  std::int32_t length = 0;
  std::u16string quoted;      ///< as a rule writes it
  bool isArithmetic = false;  ///< it reads as a rule, too: `2024-05-01` is a difference
};

/// The date that begins with a word: three numbers with a minus or a slash between them, or one
/// word with points, each with a time of day behind it or without.
std::optional<BareDate> BareDateAt(const Draft& draft, std::size_t word);

}  // namespace ORKBASE
