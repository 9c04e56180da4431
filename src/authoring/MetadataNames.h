// Names of tables and fields as the metadata database has them.
#pragma once

#include <string_view>
#include <vector>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Tables`. False with the error.
bool TablesLike(AuthoringCall& call, std::u16string_view like, RuleTables& tables,
                MxErrorRecord& error);
/// See `RuleAuthoring::Fields`. False with the error.
bool FieldsOf(AuthoringCall& call, std::u16string_view table, std::vector<RuleField>& fields,
              MxErrorRecord& error);

}  // namespace ORKBASE
