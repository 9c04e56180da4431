// Cutting out of a parsed rule what depends on given tables.
#pragma once

#include <string_view>

#include "document/TagTree.h"

namespace ORKBASE {

/// Removes from the leaves to the root: fields of the tables (a comma list), functions that lose an
/// argument, operators that have no operand left. An operator that lost one of two operands gives
/// its place to the other. Returns what stands at the root now, null when nothing is left.
Tag RemoveSubTree(std::u16string_view tables, Tag root);

}  // namespace ORKBASE
