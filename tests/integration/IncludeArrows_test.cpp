// Which folder may include which: the table in src/README.md, held against every #include of the
// sources. A header in quotes is "folder/Name.h", or "Name.h" of the own folder or of include/.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path kSource = ORKRULE_SOURCE_DIR;

struct Allowed {
  std::vector<std::string> ours;    // folders
  std::vector<std::string> theirs;  // beginnings of header names
};
using Table = std::map<std::string, Allowed>;

std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

// The texts between the bars of a row of a table; of any other line, none.
std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  if (!line.starts_with("| ")) return cells;
  std::istringstream stream(line.substr(1));
  for (std::string cell; std::getline(stream, cell, '|');) cells.push_back(cell);
  return cells;
}

Table ReadTable(std::istream& readme) {
  Table table;
  for (std::string line; std::getline(readme, line);) {
    const std::vector<std::string> cells = Cells(line);
    if (cells.size() != 3) continue;
    const std::vector<std::string> folder = Words(cells[0]);
    if (folder.size() == 1 && folder[0] != "folder")
      table[folder[0]] = {Words(cells[1]), Words(cells[2])};
  }
  return table;
}

bool BeginsWithOneOf(const std::string& name, const std::vector<std::string>& beginnings) {
  return std::ranges::any_of(beginnings, [&](auto& b) { return name.starts_with(b); });
}

// What stands beside a file, the exported headers, and for a folder of the tool the tool's own.
bool OursMayBeIncluded(const std::string& name, const fs::path& folder, const Allowed& allowed) {
  const auto slash = name.find('/');
  if (slash == std::string::npos) {
    return fs::exists(folder / name) || fs::exists(kSource / "include" / name) ||
           (folder.parent_path() == kSource / "tools" / "orkrule" &&
            fs::exists(folder.parent_path() / name));
  }
  const std::string other = name.substr(0, slash);
  return other == folder.filename() || std::ranges::count(allowed.ours, other) != 0;
}

// Headers of the C++ standard library have neither a dot nor a slash in their names.
bool TheirsMayBeIncluded(const std::string& name, const Allowed& allowed) {
  return name.find_first_of("./") == std::string::npos || BeginsWithOneOf(name, allowed.theirs);
}

// What an #include names, with its opening mark: `"folder/Name.h` or `<vector`; else nothing.
std::string Included(std::string line) {
  std::erase_if(line, [](char c) { return c == ' ' || c == '\t'; });
  const std::string directive = "#include";
  if (!line.starts_with(directive)) return {};
  const auto end = line.find_first_of("\">", directive.size() + 1);
  return line.substr(directive.size(), end - directive.size());
}

// "file: header" of each #include that the folder may not have.
std::vector<std::string> Offences(std::istream& source, const fs::path& file,
                                  const Allowed& allowed) {
  std::vector<std::string> offences;
  for (std::string line; std::getline(source, line);) {
    const std::string included = Included(line);
    if (included.empty()) continue;
    const std::string name = included.substr(1);
    const bool may = included[0] == '"' ? OursMayBeIncluded(name, file.parent_path(), allowed)
                                        : TheirsMayBeIncluded(name, allowed);
    if (!may) offences.push_back(file.string() + ": " + name);
  }
  return offences;
}

bool IsSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp";
}

// The number of files looked at; offences are failures of the test.
int CheckFolder(const fs::path& folder, const Allowed& allowed) {
  int files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file() || !IsSource(entry.path())) continue;
    ++files;
    std::ifstream source(entry.path());
    for (const std::string& offence : Offences(source, entry.path(), allowed))
      ADD_FAILURE() << offence;
  }
  return files;
}

Table TableOfReadme() {
  std::ifstream readme(kSource / "src" / "README.md");
  return ReadTable(readme);
}

TEST(IncludeArrows, TableNamesEveryFolderOfTheSources) {
  const Table table = TableOfReadme();
  std::size_t folders = 0;
  for (const auto& entry : fs::directory_iterator(kSource / "src")) {
    if (!entry.is_directory()) continue;
    ++folders;
    EXPECT_EQ(table.count(entry.path().filename()), 1u) << entry.path();
  }
  EXPECT_EQ(table.size(), folders);
}

TEST(IncludeArrows, NoFolderReachesItselfThroughOthers) {
  Table table = TableOfReadme();
  // Take away, again and again, what needs nothing that is left: no circle, nothing remains.
  for (bool changed = true; changed;) {
    const Table before = table;
    changed = std::erase_if(table, [&](const auto& row) {
                return std::ranges::none_of(row.second.ours,
                                            [&](auto& other) { return before.count(other) != 0; });
              }) != 0;
  }
  EXPECT_TRUE(table.empty());
}

TEST(IncludeArrows, SourcesKeepToTheTable) {
  for (const auto& [folder, allowed] : TableOfReadme())
    EXPECT_GT(CheckFolder(kSource / "src" / folder, allowed), 0) << folder;
}

TEST(IncludeArrows, ToolsUseTheExportedHeadersAlone) {
  const Allowed anyLibrary = {{}, {""}};
  EXPECT_GT(CheckFolder(kSource / "tools" / "orkrule", anyLibrary), 0);
}

TEST(IncludeArrows, ExportedHeadersNeedNothingButEachOther) {
  EXPECT_GT(CheckFolder(kSource / "include", {}), 0);
}

TEST(IncludeArrows, AnUpwardIncludeIsSeen) {
  const fs::path file = kSource / "src" / "lexer" / "New.cpp";
  const Allowed allowed = {{"foundation"}, {"unicode/utf"}};
  std::istringstream source(
      "#include \"lexer/Lexer.h\"\n"
      "#include \"foundation/Text.h\"\n"
      "#include \"MxWord.h\"\n"
      "#include <string>\n"
      "#include <unicode/utf16.h>\n"
      "#include \"parser/SyntaxRules.h\"\n"
      "  #  include \"../parser/SyntaxRules.h\"  // also by the back door\n"
      "#include \"SyntaxRules.h\"\n"
      "#include <libxml/tree.h>\n"
      "#include <sqlite3.h>\n");
  std::vector<std::string> expected;
  for (const char* name : {"parser/SyntaxRules.h", "../parser/SyntaxRules.h", "SyntaxRules.h",
                           "libxml/tree.h", "sqlite3.h"})
    expected.push_back(file.string() + ": " + name);
  EXPECT_EQ(Offences(source, file, allowed), expected);
}

TEST(IncludeArrows, TableIsReadRowByRow) {
  std::istringstream readme(
      "# Title\n\n| folder | ours | theirs |\n|---|---|---|\n"
      "| a |  | x/ y.h |\n| bb  | a c |  |\n");
  const Table table = ReadTable(readme);
  ASSERT_EQ(table.size(), 2u);
  EXPECT_EQ(table.at("a").theirs, (std::vector<std::string>{"x/", "y.h"}));
  EXPECT_TRUE(table.at("a").ours.empty());
  EXPECT_EQ(table.at("bb").ours, (std::vector<std::string>{"a", "c"}));
}

}  // namespace
