#include "authoring/MetadataNames.h"

namespace ORKBASE {

bool TablesLike(AuthoringCall&, std::u16string_view, RuleTables&, MxErrorRecord&) {
  return true;
}
bool FieldsOf(AuthoringCall&, std::u16string_view, std::vector<RuleField>&, MxErrorRecord&) {
  return true;
}

}  // namespace ORKBASE
