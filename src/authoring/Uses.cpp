#include "authoring/Uses.h"

namespace ORKBASE {

std::vector<RuleUse> UsesOf(AuthoringCall&, std::u16string_view) {
  return {};
}

}  // namespace ORKBASE
