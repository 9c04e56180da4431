#include "Markdown.h"

namespace ORKTOOL {

std::string AsCode(const std::string& text) {
  return "`" + text + "`";
}

std::string AsCodeCell(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '|') escaped += '\\';
    escaped += c;
  }
  return AsCode(escaped);
}

std::string JoinedTexts(const std::vector<std::string>& texts, const char* separator) {
  std::string joined;
  for (const std::string& text : texts) joined.append(joined.empty() ? "" : separator).append(text);
  return joined;
}

void AddTableRow(std::string& out, const std::vector<std::string>& cells) {
  out.append("| ").append(JoinedTexts(cells, " | ")).append(" |\n");
}

void AddTableHead(std::string& out, const std::vector<std::string>& cells) {
  AddTableRow(out, cells);
  out += '|';
  for (std::size_t i = 0; i < cells.size(); ++i) out += "---|";
  out += '\n';
}

}  // namespace ORKTOOL
