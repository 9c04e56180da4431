#include "authoring/Capabilities.h"

namespace ORKBASE {

std::vector<RuleFunction> CapabilitiesOf(AuthoringCall&) {
  return {};
}

}  // namespace ORKBASE
