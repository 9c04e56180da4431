#include "Colour.h"

#include <CLI/CLI.hpp>

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace ORKTOOL {
namespace {

bool IsSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

std::size_t ColumnsOf(int file) {
  constexpr std::size_t kUsual = 80;
  winsize size{};
  const bool isTold = ioctl(file, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isTold ? size.ws_col : kUsual;
}

const char* CodeOf(Colour colour) {
  switch (colour) {
    case Colour::kError:
      return "\x1B[1;31m";
    case Colour::kWarning:
      return "\x1B[1;35m";
    case Colour::kInformation:
      return "\x1B[1;36m";
    case Colour::kRemoved:
      return "\x1B[31m";
    case Colour::kMark:
    case Colour::kAdded:
      return "\x1B[32m";
    case Colour::kPlain:
      break;
  }
  return "";
}

}  // namespace

void AddColourOption(CLI::App& command, std::string& choice) {
  choice = "auto";
  command.add_option("--color", choice, "Colours: auto (on a terminal), always, never")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
}

bool CanMoveCursor() {
  return IsSet("TERM") && std::string_view(std::getenv("TERM")) != "dumb";
}

Style StyleOf(int file, const std::string& choice) {
  const bool isTerminal = isatty(file) != 0;
  const bool byItself = isTerminal && CanMoveCursor() && !IsSet("NO_COLOR");
  return {choice == "always" || (choice != "never" && byItself), isTerminal ? ColumnsOf(file) : 0};
}

std::string Coloured(const Style& style, Colour colour, const std::string& text) {
  if (!style.colours || colour == Colour::kPlain || text.empty()) return text;
  return CodeOf(colour) + text + "\x1B[0m";
}

}  // namespace ORKTOOL
