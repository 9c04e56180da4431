// Which translator serves which database.
#pragma once

#include <memory>

#include "MxRuleEnums.h"
#include "translator/IMxTranslator.h"

namespace ORKBASE {

/// `requested` counts only when it asks for Oracle; otherwise the database of the connection
/// decides. An unknown type gets the default dialect.
std::unique_ptr<IMxTranslator> NewTranslator(ORKDB_DSType_ENUM requested,
                                             ORKDB_DSType_ENUM connected);

}  // namespace ORKBASE
