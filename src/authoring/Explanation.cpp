#include "authoring/Explanation.h"

namespace ORKBASE {

RuleExplanation ExplainAt(AuthoringCall&, std::u16string_view, std::int32_t) {
  return {};
}

}  // namespace ORKBASE
