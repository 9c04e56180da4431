#include "authoring/Check.h"

namespace ORKBASE {

std::vector<RuleProblem> CheckRule(AuthoringCall&, MXRULE_DATATYPE, std::u16string_view,
                                   std::span<const ORKDB_DSType_ENUM>, bool) {
  return {};
}

}  // namespace ORKBASE
