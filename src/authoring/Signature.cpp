#include "authoring/Signature.h"

namespace ORKBASE {

RuleSignature SignatureAt(AuthoringCall&, std::u16string_view, std::int32_t) {
  return {};
}

}  // namespace ORKBASE
