// Composing in the plain way, by recursion over texts: the measure of the engine's composers.
#pragma once

#include "document/TagTree.h"

#include <string>

/// The whole tree as one text.
std::u16string PlainExpSpec1(ORKBASE::Tag node, bool useContent);
/// The tree in two parts; true when a grouped function decided for side B.
bool PlainExpSpec2(ORKBASE::Tag node, std::u16string& a, std::u16string& b, bool goesToB);
/// Both parts of a translated document in an outer pair of brackets each.
void PlainCompose(ORKBASE::Tag root, std::u16string& a, std::u16string& b);
