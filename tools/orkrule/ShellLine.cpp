#include "ShellLine.h"

#include "Usage.h"

#include <cstdlib>

namespace ORKTOOL {
namespace {

const CLI::App* CommandOf(const CLI::App& app, const std::string& word) {
  for (const CLI::App* command : ShownCommands(app)) {
    if (command->get_name() == word) return command;
  }
  return nullptr;
}

bool IsLongOption(const std::string& word) {
  return word.starts_with("--") && word.size() > 2;
}

bool TakesValue(const CLI::Option* option) {
  return option != nullptr && option->get_type_size() != 0;
}

/// Takes the words before the current one.
class Reader {
 public:
  explicit Reader(const CLI::App& tool) { line_.app = &tool; }

  void Take(const std::string& word) {
    if (line_.option != nullptr) {
      line_.values.push_back(name_ + "=" + word);
      line_.option = nullptr;
    } else if (line_.mayBeOption && word == "--") {
      line_.mayBeOption = false;
    } else if (line_.mayBeOption && IsLongOption(word)) {
      TakeOption(word);
    } else if (const CLI::App* command = CommandOf(*line_.app, word)) {
      line_.app = command;
    } else {
      line_.arguments.push_back(word);
    }
  }

  ShellLine End(const std::string& word) {
    line_.word = word;
    const std::size_t sign = word.find('=');
    const bool isOption = line_.option == nullptr && line_.mayBeOption && IsLongOption(word);
    if (!isOption || sign == word.npos) return std::move(line_);
    line_.option = line_.app->get_option_no_throw(word.substr(0, sign));
    line_.before = word.substr(0, sign + 1);
    line_.word = word.substr(sign + 1);
    return std::move(line_);
  }

 private:
  void TakeOption(const std::string& word) {
    name_ = word.substr(0, word.find('='));
    const CLI::Option* const option = line_.app->get_option_no_throw(name_);
    if (!TakesValue(option)) return;
    if (name_ == word) {
      line_.option = option;
    } else {
      line_.values.push_back(word);
    }
  }

  ShellLine line_;
  std::string name_;  // of the option that waits for its value
};

}  // namespace

std::string Unquoted(const std::string& word) {
  std::string text;
  std::size_t begin = 0;
  const char* const home = std::getenv("HOME");
  if (word.starts_with("~/") && home != nullptr) {
    text = home;
    begin = 1;
  }
  char quote = '\0';
  for (std::size_t i = begin; i < word.size(); ++i) {
    const char c = word[i];
    const bool isEscape = c == '\\' && quote != '\'' && i + 1 < word.size();
    const bool opens = quote == '\0' && (c == '"' || c == '\'');
    if (isEscape) {
      text += word[++i];
    } else if (opens) {
      quote = c;
    } else if (quote != '\0' && c == quote) {
      quote = '\0';
    } else {
      text += c;
    }
  }
  return text;
}

ShellLine ReadShellLine(const CLI::App& tool, const std::vector<std::string>& words) {
  Reader reader(tool);
  for (std::size_t i = 0; i + 1 < words.size(); ++i) reader.Take(Unquoted(words[i]));
  return reader.End(words.empty() ? "" : Unquoted(words.back()));
}

}  // namespace ORKTOOL
