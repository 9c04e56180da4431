// The lists of examples that stand in files, for commands that show them: rows under section names.
//
//   # A comment.
//   # [dates]
//   date    ToDate(Customer.Code)
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ORKTOOL {

struct ListRow {
  std::vector<std::string> columns;
  std::string place;  ///< "FILE:LINE"
};

struct ListSection {
  std::string name;
  std::vector<ListRow> rows;
};

/// Reads rows of so many columns. Blanks stand between columns, the last one may hold some; in a
/// row with tabs only these part. Throws `Failure` for a row with fewer columns or before any
/// section.
std::vector<ListSection> ReadListFile(const std::string& path, std::size_t columns);

}  // namespace ORKTOOL
