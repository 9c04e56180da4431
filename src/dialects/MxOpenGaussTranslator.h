// SQL for openGauss: Kingbase with four other names and another is-null function.
#pragma once

#include "dialects/MxKingbaseTranslator.h"

namespace ORKBASE {

class MxOpenGaussTranslator : public MxKingbaseTranslator {
 public:
  explicit MxOpenGaussTranslator(TagTree& doc);
  static const ReplacementMap& Map();
};

}  // namespace ORKBASE
