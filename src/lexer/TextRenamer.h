// Renaming tables and fields inside rule text, token by token, without dictionaries.
#pragma once

#include <string>
#include <string_view>

#include "foundation/RenameList.h"

namespace ORKBASE {

/// Stores `expression` with tables (`old:new,...`) renamed first and then fields
/// (`table.old:new,...`) in `out`. A text that holds none of the names comes out unchanged. False,
/// with `out` as it was, where the new names make the text longer than they may.
bool RenameInText(std::u16string_view tableRenames, std::u16string_view fieldRenames,
                  const NameQuotes& quotes, std::u16string_view expression, std::u16string& out);

}  // namespace ORKBASE
