// Flattening a translated tree into SQL text, whole or split by grouped functions.
#pragma once

#include <cstdint>
#include <string>

#include "MxRuleEnums.h"
#include "document/TagTree.h"

namespace ORKBASE {

/// Which attribute holds the words: the SQL of a translated tree, or what the user wrote.
enum class WordsOf : bool { kSql, kRule };

/// The whole tree as one text. The null tag gives the empty text.
std::u16string ExpSpec1(Tag root, WordsOf words);

/// The tree in two parts: `a` holds what may stand in a plain filter, `b` what depends on a grouped
/// function. What the two hold before is part of the result where a connective is the root. They
/// may be one and the same text.
void ExpSpec2(Tag root, std::u16string& a, std::u16string& b);

/// How a node says that it prints. Absent is a word by itself, empty is 0.
inline std::int32_t SemanticTypeOf(Tag node) {
  return node.Has(Attr::kSemanticType) ? node.GetInt(Attr::kSemanticType) : kLeafSemantic;
}

inline bool IsInBrackets(Tag node) {
  return node.GetInt(Attr::kInBrackets) == 1;
}

}  // namespace ORKBASE
