// Whether two documents are those of one rule.
#pragma once

#include "document/TagTree.h"

namespace ORKBASE {

/// Whether two trees have the same elements with the same attributes, in whatever order, but for
/// "outDesc" and "content", which tell how a word was written. Text between elements does not
/// count.
bool AreOfOneRule(Tag a, Tag b);

}  // namespace ORKBASE
