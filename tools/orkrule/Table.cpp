#include "Table.h"

#include "Text.h"

#include <algorithm>

namespace ORKTOOL {
namespace {

constexpr std::size_t kBlanksBetween = 2;

std::size_t ColumnsOfWord(const std::string& word) {
  return DisplayWidth(FromUtf8(word).value_or(std::u16string()));
}

std::vector<std::size_t> WidthsOf(const std::vector<TableRow>& rows) {
  std::vector<std::size_t> widths;
  for (const TableRow& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], ColumnsOfWord(row[i]));
    }
  }
  return widths;
}

}  // namespace

std::string TableText(const std::vector<TableRow>& rows) {
  const std::vector<std::size_t> widths = WidthsOf(rows);
  std::string text;
  for (const TableRow& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += i + 1 < row.size() ? Padded(row[i], widths[i] + kBlanksBetween) : row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text.append(line).append("\n");
  }
  return text;
}

}  // namespace ORKTOOL
