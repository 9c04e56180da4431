// A document with such a character is none that parses, so it is looked for before: a rule that
// holds one verifies, and its document says no more than that.
#include "authoring/UnwritableText.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/ErrorTexts.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace ORKBASE {
namespace {

constexpr std::int32_t kNone = 0;

/// What is wrong with a character, by its number.
std::int32_t MessageFor(std::uint32_t point) noexcept {
  if (U_IS_SURROGATE(point)) return kMsgHalfCharacter;
  const bool isAllowed = point >= u' ' || point == u'\t' || point == u'\n' || point == u'\r';
  return isAllowed ? kNone : kMsgControlCharacter;
}

int DigitOf(char16_t unit, std::uint32_t base) noexcept {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  const char16_t lower = ToLower(unit);
  return base == 16 && lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

/// The character that the reference at the beginning of the text stands for; a blank for none.
std::uint32_t PointOfReference(std::u16string_view text) noexcept {
  constexpr std::uint32_t kHighest = 0x10FFFF;
  if (!text.starts_with(u"&#")) return u' ';
  text.remove_prefix(2);
  const std::uint32_t base = text.starts_with(u'x') ? 16 : 10;
  if (base == 16) text.remove_prefix(1);
  std::uint32_t point = 0;
  std::size_t at = 0;
  for (; at < text.size() && DigitOf(text[at], base) >= 0; ++at) {
    point = point * base + static_cast<std::uint32_t>(DigitOf(text[at], base));
    if (point > kHighest) return u' ';
  }
  return at > 0 && at < text.size() && text[at] == u';' ? point : u' ';
}

std::int32_t MessageAt(std::u16string_view text, std::size_t at) noexcept {
  const char16_t unit = text[at];
  if (unit == u'&') return MessageFor(PointOfReference(text.substr(at)));
  const bool isFirstHalf = U16_IS_LEAD(unit) && at + 1 < text.size() && U16_IS_TRAIL(text[at + 1]);
  const bool isSecondHalf = U16_IS_TRAIL(unit) && at > 0 && U16_IS_LEAD(text[at - 1]);
  return isFirstHalf || isSecondHalf ? kNone : MessageFor(unit);
}

/// The value of the attribute around a place, as far as a message shows it.
std::u16string_view ValueAround(std::u16string_view document, std::size_t at) noexcept {
  constexpr std::size_t kShown = 40;  // units on each side
  std::u16string_view before = document.substr(0, at);
  before.remove_prefix(std::max(before.rfind(u'"') + 1, at - std::min(at, kShown)));
  const std::size_t end = std::min(document.find(u'"', at), at + kShown);
  return document.substr(at - before.size(), end - (at - before.size()));
}

}  // namespace

bool HoldsUnwritable(std::u16string_view document, MxErrorRecord& error) {
  document = UpToZero(document);
  for (std::size_t at = 0; at < document.size(); ++at) {
    const std::int32_t message = MessageAt(document, at);
    if (message == kNone) continue;
    error = MakeError(kDocumentCause, message, {ValueAround(document, at)});
    return true;
  }
  return false;
}

}  // namespace ORKBASE
