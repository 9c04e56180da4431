// Characters that no rule can give to a document.
#pragma once

#include <string_view>

#include "MxErrorRecord.h"

namespace ORKBASE {

/// Whether the text of a document, up to its first zero, holds a control character or one half of a
/// character, as it is or as a reference; the error then names the text that it stands in.
bool HoldsUnwritable(std::u16string_view document, MxErrorRecord& error);

}  // namespace ORKBASE
