// A command line that is being typed in a shell: which command it calls, and what its last word, at
// which the user asks what may follow, is to be.
#pragma once

#include <CLI/CLI.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace ORKTOOL {

/// What a word of a shell stands for: without quotes and backslashes, `~/` as the home folder. A
/// quote that is open at the end counts too. Variables and the like are left alone.
std::string Unquoted(const std::string& word);

/// A command line up to the word that is being typed.
struct ShellLine {
  const CLI::App* app = nullptr;        ///< the tool, or the command that is called
  std::vector<std::string> values;      ///< `--name=value` of each option before
  std::vector<std::string> arguments;   ///< those before
  const CLI::Option* option = nullptr;  ///< whose value is being typed; null for none
  std::string before;                   ///< `--name=` where that begins the word
  std::string word;                     ///< what is typed of the value, option, command or argument
  bool mayBeOption = true;              ///< no `--` stands before
};

/// Reads the words behind the name of the tool, as they are typed; the last one is the current one.
ShellLine ReadShellLine(const CLI::App& tool, const std::vector<std::string>& words);

}  // namespace ORKTOOL
