// SQL for DM: the default dialect with other names for a few functions.
#pragma once

#include "dialects/MxSql92Translator.h"

namespace ORKBASE {

class MxDMTranslator : public MxSql92Translator {
 public:
  explicit MxDMTranslator(TagTree& doc);
  static const ReplacementMap& Map();

 protected:
  Tag TransConvert(Tag node) override;
};

}  // namespace ORKBASE
