// What stands in a node and below it, for the handlers that ask.
#pragma once

#include <cstdint>
#include <string_view>

#include "document/TagTree.h"

namespace ORKBASE {

/// Whether the text of a pattern has a "%".
bool HoldsWildCard(std::u16string_view text) noexcept;

/// Whether the word is a field of a data table, a report or a CAX document.
bool IsField(Tag tag);

enum Inside : std::uint8_t { kWildCardInside = 1, kFieldInside = 2 };

/// Finds out for `Holds`, of the node and all below it. To be called by a handler before it moves
/// anything.
void SearchInside(Tag node);
/// Whether the node or one below it holds such a thing.
bool Holds(Tag node, Inside what) noexcept;

}  // namespace ORKBASE
