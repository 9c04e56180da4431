#include "Password.h"

#include "Output.h"
#include "Text.h"

#include <termios.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace ORKTOOL {
namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// Switches the echo of a terminal off for its own lifetime.
class QuietTerminal {
 public:
  explicit QuietTerminal(int terminal) : terminal_(terminal) {
    changed_ = tcgetattr(terminal_, &before_) == 0;
    if (!changed_) return;
    termios quiet = before_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(terminal_, TCSAFLUSH, &quiet);
  }
  QuietTerminal(const QuietTerminal&) = delete;
  QuietTerminal& operator=(const QuietTerminal&) = delete;
  ~QuietTerminal() {
    if (changed_) tcsetattr(terminal_, TCSAFLUSH, &before_);
  }

 private:
  int terminal_;
  bool changed_ = false;
  termios before_{};
};

std::string AskAtTerminal() {
  const File terminal(std::fopen("/dev/tty", "r+"), std::fclose);
  if (!terminal) throw Failure{kInputOutput, "there is no terminal to ask for the password at"};
  std::string password;
  {
    // Before the prompt, since what was typed until now is dropped.
    const QuietTerminal quiet(fileno(terminal.get()));
    std::fputs("Password: ", terminal.get());
    std::fflush(terminal.get());
    for (int c = std::fgetc(terminal.get()); c != EOF && c != '\n';
         c = std::fgetc(terminal.get())) {
      password += static_cast<char>(c);
    }
  }
  std::fseek(terminal.get(), 0, SEEK_CUR);
  std::fputs("\n", terminal.get());
  return password;
}

}  // namespace

std::u16string ReadPassword(bool ask) {
  const char* variable = std::getenv("ORKRULE_PASSWORD");
  const std::string password = ask ? AskAtTerminal() : variable == nullptr ? "" : variable;
  const std::optional<std::u16string> text = FromUtf8(password);
  if (!text) throw Failure{kInputOutput, "the password is not UTF-8 text"};
  return *text;
}

}  // namespace ORKTOOL
