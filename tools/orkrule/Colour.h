// Colours of a terminal: when they are wanted, and around what.
#pragma once

#include <cstddef>
#include <string>

namespace CLI {
class App;
}

namespace ORKTOOL {

/// How text is written to one of the standard streams.
struct Style {
  bool colours = false;
  std::size_t columns = 0;  ///< of the terminal; 0 where there is none
};

/// Adds --color. `choice` is "auto" unless the user says otherwise.
void AddColourOption(CLI::App& command, std::string& choice);

/// Whether terminals of this name (TERM) do more than write one line below the other: colours too.
bool CanMoveCursor();

/// The style for the stream of a descriptor. By itself a terminal has colours, unless NO_COLOR is
/// set to anything or it is one that cannot show them.
Style StyleOf(int file, const std::string& choice);

enum class Colour { kPlain, kError, kWarning, kInformation, kMark, kRemoved, kAdded };

/// The text in a colour, where the style has colours.
std::string Coloured(const Style& style, Colour colour, const std::string& text);

}  // namespace ORKTOOL
