// One word of a rule: what the dictionaries hold, what the lexer hands to the parser.
#pragma once

#include <cstdint>
#include <string>

#include "MxRuleEnums.h"

namespace ORKBASE {

/// Where a field word comes from. All texts are UTF-16; words that name no field keep the defaults.
struct MxFieldRecord {
  std::int32_t rttId = 0;      ///< report-template table
  std::int32_t rtfId = 0;      ///< report-template field
  std::u16string dtName;       ///< display name of the table
  std::u16string tabRealName;  ///< physical table
  std::u16string fldName;      ///< display name of the field
  std::u16string fldRealName;  ///< physical column
  std::int32_t baseType = 0;   ///< field type, 8 already folded to 2
  std::int32_t dtId = 0;       ///< data table
  std::int32_t fldId = 0;      ///< data field
  std::u16string tabRefName;   ///< reference name of the table
  bool detailTable = false;    ///< report template: a table with many rows a record
  bool created = false;        ///< the physical table exists
};

/// One word, a plain record that owns its texts.
struct MxWord : MxFieldRecord {
  std::u16string primary;         ///< canonical text, with the postfix that the token carried
  std::u16string outDesc;         ///< display form: what a user sees and writes
  std::int32_t symbol = 0;        ///< `MXRULE_SYMBOL_TYPE`
  std::int32_t dataType = 0;      ///< `MXRULE_DATATYPE`
  std::int32_t postfixCheck = 0;  ///< 0 none, 1 a data type "[S]", "[N]", "[D]", 2 a data table
  std::u16string content;         ///< the token as written; error texts quote it
};

}  // namespace ORKBASE
