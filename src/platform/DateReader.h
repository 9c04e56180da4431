// The reader of date texts: whether a text is a date by the month names and the day-period words of
// one locale. It never asks what day it is, so its answer is always the same. Nor does it ask for
// the locale's order of parts: all orders in use are tried, and which one fits is of no interest.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ORKBASE {

/// A word that a date text may hold, case folded.
struct DateWord {
  std::u16string text;
  int month = 0;  // 1 to 12; 0 for a day-period word
};

/// The words of a locale, by first unit and the longest first. Made by `AddDateWord` and
/// `SortDateWords`, then immutable.
using DateWords = std::vector<DateWord>;

/// Adds a word as date texts show it: case folded, dots as "-", no-break blanks as blanks, format
/// marks dropped. A name with a dot at its end is known without it too. A word that is there
/// already, and one without a letter, is passed over.
void AddDateWord(DateWords& words, std::u16string_view word, int month);
/// Brings the words into the order in which the reader looks for them.
void SortDateWords(DateWords& words);

/// Whether the whole text is a date, a time of day, or a date with a time before or behind it.
/// Blanks at both ends are skipped.
bool ReadsAsDate(std::u16string_view text, const DateWords& words);

}  // namespace ORKBASE
