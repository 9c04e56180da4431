// The marks of Markdown that generated documents need.
#pragma once

#include <string>
#include <vector>

namespace ORKTOOL {

std::string AsCode(const std::string& text);
/// Code within a cell of a table, where a bar would end the cell.
std::string AsCodeCell(const std::string& text);

std::string JoinedTexts(const std::vector<std::string>& texts, const char* separator);

void AddTableRow(std::string& out, const std::vector<std::string>& cells);
/// The row of titles, and the line below it.
void AddTableHead(std::string& out, const std::vector<std::string>& cells);

}  // namespace ORKTOOL
