// In which language a thread, and the user who started the program, wants to read messages.
#pragma once

#include "platform/MessageFile.h"

#include <compare>
#include <string>
#include <string_view>

namespace ORKBASE {

/// In which language a text is looked for first, and in which second.
struct Language {
  LanguageId wished = 0;  ///< of the reader; 0 for none
  LanguageId user = 0;    ///< of the user who started the program; 0 for none

  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer in it
  friend auto operator<=>(const Language&, const Language&) = default;
};

/// The language of the calling thread.
Language CurrentLanguage() noexcept;

/// The language of a BCP 47 tag such as u"zh-CN", whatever thread asks.
Language LanguageNamed(std::u16string_view tag) noexcept;

/// The wish of the calling thread: what `SetThreadLanguage` set, else its POSIX locale for
/// messages. 0 for none and for a language without a number. Cheap enough to ask for every message.
LanguageId ThreadLanguageId() noexcept;

/// Gives the calling thread a language, and at its end the wish back that the thread had before.
class LanguageScope {
 public:
  explicit LanguageScope(LanguageId language);
  ~LanguageScope();
  LanguageScope(const LanguageScope&) = delete;
  LanguageScope& operator=(const LanguageScope&) = delete;

 private:
  std::u16string tag_;
  LanguageId language_;
  bool hadWish_;
};

/// The language of the environment (LC_ALL, LC_MESSAGES, LANG), read once; 0 for none.
LanguageId UserLanguageId() noexcept;

/// Of a POSIX locale name such as "zh_CN.UTF-8"; 0 for "C", "POSIX" and what is unknown.
LanguageId LanguageOfLocaleName(std::string_view name) noexcept;

/// Of a BCP 47 tag such as u"zh-CN" or u"en"; 0 for what is unknown.
LanguageId LanguageOfTag(std::u16string_view tag) noexcept;

}  // namespace ORKBASE
