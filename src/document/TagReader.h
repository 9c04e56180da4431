// Reading expression documents into a `TagTree`.
#pragma once

#include <string_view>

namespace ORKBASE {

class TagTree;

/// Reads a document (UTF-16, up to its first zero) into the emptied tree. False when it does not
/// parse; the tree then has no root.
bool ReadTagTree(std::u16string_view text, TagTree& tree);

}  // namespace ORKBASE
