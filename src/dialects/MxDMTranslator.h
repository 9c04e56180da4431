// SQL for DM: the default dialect with other names for a few functions.
#pragma once

#include "translator/MxSql92Translator.h"

namespace ORKBASE {

class MxDMTranslator : public MxSql92Translator {
 public:
  MxDMTranslator();
  static const ReplacementMap& Map();
  static void InitFunctions(ReplacementMap& map);

  std::u16string QuoteName(std::u16string_view name) const override;
};

}  // namespace ORKBASE
