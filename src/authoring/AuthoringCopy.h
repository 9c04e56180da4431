// What an editor asks, asked beside the engine: the views of a copy follow those of their source.
#pragma once

#include <memory>
#include <vector>

#include "RuleAuthoring.h"
#include "dictionary/MxDictionarys.h"

namespace ORKBASE {

struct AuthoringAccess {
  /// Has calls on `copy`, whose engine is a reading copy of that of `source`, answer as they would
  /// on `source`: with the tables that calls there have loaded for themselves. A call that would
  /// ask the database sets `asked`, and its answer is void.
  static void TakeOver(RuleAuthoring& copy, const RuleAuthoring& source,
                       const std::shared_ptr<bool>& asked);
  /// What calls depend on: the same as long as nothing was loaded, for the engine or for them.
  static std::vector<MxDictionarys::Stamp> Stamps(const RuleAuthoring& authoring);
};

}  // namespace ORKBASE
