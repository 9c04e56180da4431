// A request as a JSON object. It is read event by event and never becomes a tree: values that no
// call takes are passed over, and what is nested beyond a limit is refused before it costs a stack.
#pragma once

#include "service/Fields.h"

#include <string_view>

namespace ORKBASE {

struct JsonRequest {
  Request fields;
  std::string_view id;  ///< the value of the field `id` as it stands in the text, empty without one
};

/// How deep a request may be nested, its own braces counted.
inline constexpr std::size_t kJsonDepth = 32;

/// Reads the text of one JSON object in UTF-8, which the result refers to. Throws `BadRequest` for
/// anything else, for texts that are no Unicode (a lone surrogate, a broken sequence), and beyond
/// `kJsonDepth`.
JsonRequest ReadJson(std::string_view text);

}  // namespace ORKBASE
