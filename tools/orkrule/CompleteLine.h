// What may stand at the end of a command line that is being typed: commands, options and their
// values from the tables of the command line itself; rules, tables and fields from the database of
// its `--db`.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace ORKTOOL {

/// The name of the command by which a shell asks; no help shows it.
inline constexpr const char* kCompleteLine = "complete-line";

/// Prints `files`, `words` or `parts` (behind which more may be typed at once), then one candidate
/// a line, each for the whole last word, perhaps with a tabulator and what it means. The words are
/// those behind the tool's name as they are typed. What cannot be found out is left out in silence.
void CompleteLine(const CLI::App& tool, const std::vector<std::string>& words);

}  // namespace ORKTOOL
