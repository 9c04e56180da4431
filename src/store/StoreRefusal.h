// What the road to a store refuses by itself, before a database is asked.
#pragma once

#include <cstdint>
#include <string_view>

namespace ORKDB {

/// Throws a `StoreFailure` with the text of a message: a refusal, no outage.
[[noreturn]] void Refuse(std::int32_t message);

/// Refuses a statement without a word in it, and one with a zero, where a database would see its
/// end.
void CheckStatement(std::u16string_view statement);

/// Whether the text has a half of a character without its other half.
bool HasHalfCharacter(std::u16string_view text) noexcept;

}  // namespace ORKDB
