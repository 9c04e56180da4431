// Values of a store for people and for programs.
#pragma once

#include "Output.h"

#include "RuleStore.h"

#include <optional>
#include <string>
#include <string_view>

namespace ORKTOOL {

/// A value as text: numbers in digits, NULL and bytes have none.
std::optional<std::u16string> TextOfValue(const ORKDB::StoreValue& value);

/// A value on one line: NULL as that word, bytes as x'0AFF', control characters as blanks, a long
/// one cut.
std::string ShownValue(const ORKDB::StoreValue& value);

/// A value as JSON: NULL is null, bytes are the text of `ShownValue`, uncut.
Json JsonOfValue(const ORKDB::StoreValue& value);

/// A text on one line: control characters, which would move the cursor, are blanks.
std::string OneLine(std::u16string_view text);

/// Whether two names are the same but for the case of ASCII letters.
bool IsSameName(std::u16string_view one, std::u16string_view other) noexcept;

}  // namespace ORKTOOL
