// Message formatting by the rules of the printf family, as far as message texts use them.
#include "foundation/Format.h"

#include "foundation/Text.h"

namespace ORKBASE {
namespace {

/// Appends one argument as its directive asks; false when the two do not fit.
bool AppendArgument(char16_t directive, const FormatArgument& argument, std::u16string& out) {
  if (directive == u's') {
    const auto* text = std::get_if<std::u16string_view>(&argument);
    if (text) out += UpToZero(*text);
    return text != nullptr;
  }
  const auto* number = std::get_if<std::int32_t>(&argument);
  if (number) out += Decimal(*number);
  return directive == u'd' && number != nullptr;
}

}  // namespace

std::u16string Format(std::u16string_view pattern,
                      std::initializer_list<FormatArgument> arguments) {
  pattern = UpToZero(pattern);
  std::u16string out;
  const auto* argument = arguments.begin();
  for (std::size_t at = pattern.find(u'%'); at != pattern.npos; at = pattern.find(u'%')) {
    out += pattern.substr(0, at);
    const char16_t directive = at + 1 < pattern.size() ? pattern[at + 1] : u'\0';
    if (directive == u'%') {
      out += u'%';
    } else if (argument == arguments.end() || !AppendArgument(directive, *argument++, out)) {
      return {};
    }
    pattern.remove_prefix(at + 2);
  }
  return out.append(pattern);
}

}  // namespace ORKBASE
