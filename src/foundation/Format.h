// The formatting of message texts: a template with arguments.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace ORKBASE {

using FormatArgument = std::variant<std::u16string_view, std::int32_t>;

/// Fills `%s` (a text, up to its first zero), `%d` (a number) and `%%`. Any other directive, one
/// without an argument of its kind, and a lone "%" at the end make the whole result empty: names of
/// tables and fields become part of templates, so such templates do come.
std::u16string Format(std::u16string_view pattern, std::initializer_list<FormatArgument> arguments);

}  // namespace ORKBASE
