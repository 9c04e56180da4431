// The dates of the user's locale, which the desktop system would answer for: what reads as a date,
// and how a short date is written. The user's locale is LC_TIME of the thread's POSIX locale, else
// of the process, else of the environment; "C" and "POSIX" are no wish, and no wish is en_US. What
// a locale needs is prepared at its first use and kept. Everything here may be called by any
// thread.
#pragma once

#include <string>
#include <string_view>

namespace ORKBASE {

/// Whether the text is a date in the user's locale. The caller has taken the outer quotes away and
/// turned "." into "-". Blanks at both ends are skipped. The answer is the same on every day and in
/// every time zone.
bool IsDateText(std::u16string_view text);

/// The short date pattern in the letters y, M and d, such as u"M/d/yy"; empty for a locale that
/// cannot be read.
std::u16string ShortDatePattern();

/// What stands between the parts of that pattern, such as u"/"; empty where the pattern is.
std::u16string DateSeparator();

}  // namespace ORKBASE
