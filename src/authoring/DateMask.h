// The order in which Oracle reads the date constants of a rule: that of the user's locale, in which
// the engine writes its masks. Nothing converts the constants, so one in another order fails, or
// means another day.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace ORKBASE {

class DateMask {
 public:
  /// Of a mask such as u"mm/dd/yyyy hh24:mi:ss".
  explicit DateMask(std::u16string_view mask);

  /// Whether the mask has a year, a month and a day.
  bool IsWhole() const noexcept { return isWhole_; }
  /// Without the time, for people.
  const std::u16string& text() const noexcept { return text_; }

  /// Whether Oracle reads the text (without its quotes) as the date that it is.
  bool Reads(std::u16string_view date) const;
  /// The same date in this order; empty where it is not sure which date it is.
  std::u16string Rewritten(std::u16string_view date) const;

 private:
  std::u16string text_;
  std::array<char16_t, 3> order_{};  // of y, m, d
  char16_t separator_ = u'/';
  bool isWhole_ = false;
};

}  // namespace ORKBASE
