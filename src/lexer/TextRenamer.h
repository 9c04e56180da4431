// Renaming tables and fields inside rule text, token by token, without dictionaries.
#pragma once

#include <string>
#include <string_view>

namespace ORKBASE {

/// The quotes that make the quoted form of a name.
struct NameQuotes {
  std::u16string_view open = u"[";
  std::u16string_view close = u"]";
};

/// `expression` with tables (`old:new,...`) renamed first and then fields (`table.old:new,...`). A
/// text that holds none of the names comes back unchanged.
std::u16string RenameInText(std::u16string_view tableRenames, std::u16string_view fieldRenames,
                            NameQuotes quotes, std::u16string_view expression);

}  // namespace ORKBASE
