#include "ListFile.h"

#include "LineReader.h"
#include "Output.h"

#include <string_view>
#include <utility>

namespace ORKTOOL {
namespace {

/// The name in `# [name]`, empty for other lines.
std::string SectionName(const std::string& line) {
  constexpr std::string_view kBegin = "# [";
  if (!line.starts_with(kBegin) || !line.ends_with(']')) return "";
  return line.substr(kBegin.size(), line.size() - kBegin.size() - 1);
}

std::vector<std::string> ColumnsOf(const std::string& line, std::size_t count) {
  const char separator = line.find('\t') == line.npos ? ' ' : '\t';
  std::vector<std::string> columns;
  std::size_t begin = 0;
  while (columns.size() + 1 < count) {
    const std::size_t end = line.find(separator, begin);
    if (end == line.npos) break;
    columns.push_back(line.substr(begin, end - begin));
    begin = line.find_first_not_of(separator, end);
    if (begin == line.npos) return columns;
  }
  columns.push_back(line.substr(begin));
  return columns;
}

}  // namespace

std::vector<ListSection> ReadListFile(const std::string& path, std::size_t columns) {
  std::vector<ListSection> sections;
  LineReader reader(path);
  for (std::string line; reader.Next(line);) {
    const std::string place = path + ":" + std::to_string(reader.Number());
    if (const std::string name = SectionName(line); !name.empty()) {
      sections.push_back({name, {}});
    } else if (!line.empty() && line.front() != '#') {
      ListRow row{ColumnsOf(line, columns), place};
      if (row.columns.size() != columns || sections.empty()) {
        throw Failure{kInputOutput, place + ": a row has its columns, and stands below a section"};
      }
      sections.back().rows.push_back(std::move(row));
    }
  }
  return sections;
}

}  // namespace ORKTOOL
