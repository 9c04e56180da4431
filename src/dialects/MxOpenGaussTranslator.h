// SQL for openGauss: Kingbase with four other names and another is-null function.
#pragma once

#include "dialects/MxKingbaseTranslator.h"

namespace ORKBASE {

class MxOpenGaussTranslator : public MxKingbaseTranslator {
 public:
  MxOpenGaussTranslator();
  static const ReplacementMap& Map();
  static void InitFunctions(ReplacementMap& map);
};

}  // namespace ORKBASE
