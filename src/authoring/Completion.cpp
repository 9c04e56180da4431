#include "authoring/Completion.h"

namespace ORKBASE {

RuleCompletion CompleteAt(AuthoringCall&, MXRULE_DATATYPE, std::u16string_view, std::int32_t,
                          std::int32_t, bool) {
  return {};
}

}  // namespace ORKBASE
