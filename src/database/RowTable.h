// The rows of a finished query, held in memory: the record set of both kinds that come with the
// library. Reading all rows at once makes a failure in the middle of them an error of the query
// and leaves the connection free.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DataAccess.h"

namespace ORKDB {

/// A text cell; nothing stands for NULL.
using Cell = std::optional<std::u16string>;

/// Record set over cells that a query has filled, row by row.
class RowTable final : public CDBRecordSet {
 public:
  explicit RowTable(std::vector<std::u16string> columns) : columns_(std::move(columns)) {}

  /// Appends the next cell of the rows, from left to right.
  void Add(Cell cell) { cells_.push_back(std::move(cell)); }
  std::size_t ColumnCount() const noexcept { return columns_.size(); }

  std::u16string& TextColumn(std::u16string& out, std::u16string_view column,
                             std::u16string_view defaultText) override;
  std::int32_t IntColumn(std::u16string_view column, std::int32_t defaultValue) override;
  bool EndOfRows() const override;
  void NextRow() override;

 private:
  const std::u16string* Find(std::u16string_view column) const noexcept;

  std::vector<std::u16string> columns_;
  std::vector<Cell> cells_;
  std::size_t first_ = 0;  // index of the current row's first cell
};

}  // namespace ORKDB
