// The way between the outside (UTF-8) and the engine (16-bit text), and how wide text is on a
// screen. Zeros are characters like others here, since JSON can carry them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ORKTOOL {

/// The text of well-formed UTF-8 below 2 GiB, else nothing.
std::optional<std::u16string> FromUtf8(std::string_view text);

/// Where the first bytes stand that are no well-formed UTF-8; nothing where all are.
std::optional<std::size_t> BadUtf8At(std::string_view text);

/// UTF-8 of a text; a lone surrogate becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);

/// Columns that a text takes on a terminal: 2 for a wide character (Chinese, Japanese, Korean),
/// 0 for a combining one, 1 for any other.
std::size_t DisplayWidth(std::u16string_view text);

/// The code point at `at`, which moves behind it; U+FFFD for a lone surrogate.
char32_t NextCodePoint(std::u16string_view text, std::size_t& at);

/// Whether a character moves the cursor instead of showing something.
bool IsControl(char32_t character);

/// Columns of one character.
std::size_t CharacterWidth(char32_t character);

/// Whether a line has nothing but white space.
bool IsBlank(std::string_view line);

/// UTF-8 text with blanks behind it up to `width` columns.
std::string Padded(std::string text, std::size_t width);

}  // namespace ORKTOOL
