// Reading of rows held in memory.
#include "database/RowTable.h"

#include "foundation/Text.h"

namespace ORKDB {

std::u16string& RowTable::TextColumn(std::u16string& out, std::u16string_view column,
                                     std::u16string_view defaultText) {
  const std::u16string* found = Find(column);
  return out.assign(found != nullptr ? std::u16string_view(*found) : defaultText);
}

std::int32_t RowTable::IntColumn(std::u16string_view column, std::int32_t defaultValue) {
  const std::u16string* found = Find(column);
  return found != nullptr ? ORKBASE::ReadInt(*found) : defaultValue;
}

bool RowTable::EndOfRows() const {
  return first_ >= cells_.size();
}

void RowTable::NextRow() {
  if (!EndOfRows()) first_ += columns_.size();
}

const std::u16string* RowTable::Find(std::u16string_view column) const noexcept {
  if (EndOfRows()) return nullptr;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (!ORKBASE::EqualsIgnoringCase(columns_[i], column)) continue;
    const Cell& cell = cells_[first_ + i];
    return cell ? &*cell : nullptr;
  }
  return nullptr;
}

}  // namespace ORKDB
