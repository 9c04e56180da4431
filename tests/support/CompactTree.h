// A parsed rule on one line, for tables of cases: `T.a + 1 > 2` is ">{+{T.a 1} 2}". A node is its
// canonical text with its children in braces; a term that stood in brackets is marked "()" behind
// its text. With `kTypes` every node that carries a semantic type shows it, ">:0{...}", so that a
// call without arguments, "RAND:1", differs from a word.
#pragma once

#include <string>
#include <string_view>

enum class CompactDetail { kShape, kTypes };

/// Of a document's text; UTF-8. "not XML" for a text that does not parse.
std::string CompactTree(std::u16string_view document, CompactDetail detail = CompactDetail::kShape);
