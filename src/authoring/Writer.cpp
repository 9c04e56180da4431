#include "authoring/Writer.h"

namespace ORKBASE {

bool WriteRule(AuthoringCall&, std::u16string_view, std::u16string&, MxErrorRecord&) {
  return false;
}

}  // namespace ORKBASE
