// How a node of an expression document says that it prints.
#pragma once

#include <cstdint>

#include "MxRuleEnums.h"
#include "document/TagTree.h"

namespace ORKBASE {

/// Absent is a word by itself, empty is 0.
inline std::int32_t SemanticTypeOf(Tag node) {
  return node.Has(Attr::kSemanticType) ? node.GetInt(Attr::kSemanticType) : kLeafSemantic;
}

inline bool IsInBrackets(Tag node) {
  return node.GetInt(Attr::kInBrackets) == 1;
}

}  // namespace ORKBASE
