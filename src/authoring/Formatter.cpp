#include "authoring/Formatter.h"

namespace ORKBASE {

std::u16string FormatRule(AuthoringCall&, std::u16string_view text, std::int32_t) {
  return std::u16string(text);
}

}  // namespace ORKBASE
