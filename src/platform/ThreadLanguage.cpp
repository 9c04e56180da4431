// The language of a thread. A name is turned into a language number only when it is not the name of
// the last call; names are compared as text, since a freed locale's memory may be used again.
#include "platform/ThreadLanguage.h"

#include "OrkPlatform.h"

#include <langinfo.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace ORKBASE {
namespace {

using LocaleId = std::array<char, ULOC_FULLNAME_CAPACITY>;

/// The last locale name that this thread asked for; a longer name is looked up each time.
struct KnownLocale {
  std::array<char, 64> name{};
  LanguageId language = 0;
};

constinit thread_local KnownLocale knownLocale{};
constinit thread_local bool hasWish = false;
constinit thread_local LanguageId wishedLanguage = 0;
thread_local std::u16string wishedTag;

/// Name of the calling thread's locale for messages: of `uselocale`, else of the process.
const char* MessageLocaleName() noexcept {
  const char* const name = nl_langinfo(_NL_LOCALE_NAME(LC_MESSAGES));
  return name != nullptr ? name : "";
}

/// The name without codeset and modifier; empty for a locale that stands for no language.
std::string_view LanguagePart(std::string_view name) noexcept {
  const std::string_view part = name.substr(0, name.find_first_of(".@"));
  return part == "C" || part == "POSIX" ? std::string_view{} : part;
}

template <std::size_t Size>
bool CopyName(std::string_view from, std::array<char, Size>& to) noexcept {
  if (from.size() >= Size) return false;
  *std::copy(from.begin(), from.end(), to.begin()) = '\0';
  return true;
}

LanguageId NumberOf(const LocaleId& locale) noexcept {
  return static_cast<LanguageId>(uloc_getLCID(locale.data()) & 0xFFFF);
}

/// False for a bare language such as 0x0009 and for a bare script such as 0x7804.
bool HasTerritory(LanguageId language) noexcept {
  constexpr LanguageId kFirstBareScript = 0x1E;
  return language >= 1024 && SubLanguage(language) < kFirstBareScript;
}

/// One of ICU's readers of a part of a locale's name.
using ReadPart = std::int32_t (*)(const char*, char*, std::int32_t, UErrorCode*);

/// Joins a part of a locale's name behind what is there, with "_".
void AppendPart(const LocaleId& from, ReadPart read, LocaleId& to) noexcept {
  std::array<char, ULOC_SCRIPT_CAPACITY + ULOC_COUNTRY_CAPACITY> part{};
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length =
      read(from.data(), part.data(), static_cast<std::int32_t>(part.size()), &status);
  if (length <= 0 || U_FAILURE(status)) return;
  const std::size_t size = std::strlen(to.data());
  if (size + part.size() + 1 > to.size()) return;
  to[size] = '_';
  std::copy_n(part.begin(), length, to.begin() + static_cast<std::ptrdiff_t>(size) + 1);
}

/// The language of the name, joined with one more part of it.
LocaleId LanguageWith(const LocaleId& locale, ReadPart read) noexcept {
  LocaleId result{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_getLanguage(locale.data(), result.data(), ULOC_LANG_CAPACITY, &status);
  if (U_FAILURE(status)) return {};
  AppendPart(locale, read, result);
  return result;
}

/// A language without a territory, or with one that has no number, takes its likely one: "zh" is
/// Chinese as in China, "zh_Hant" as in Taiwan. ICU names the likely script too, but has numbers
/// only for the names that people write: en_US, but zh_Hans_CN and zh_CN.
LanguageId LanguageOfLocale(const LocaleId& locale) noexcept {
  const LanguageId language = NumberOf(locale);
  if (language == 0 || HasTerritory(language)) return language;
  LocaleId likely{};
  UErrorCode status = U_ZERO_ERROR;
  const LocaleId plain = LanguageWith(locale, &uloc_getScript);
  uloc_addLikelySubtags(plain.data(), likely.data(), ULOC_FULLNAME_CAPACITY, &status);
  if (U_FAILURE(status)) return language;
  for (const LocaleId& name : {likely, LanguageWith(likely, &uloc_getCountry)}) {
    if (HasTerritory(NumberOf(name))) return NumberOf(name);
  }
  return language;
}

/// ICU's name of a POSIX locale; false when it stands for no language.
bool ReadLocaleName(std::string_view name, LocaleId& locale) noexcept {
  LocaleId part{};
  const std::string_view language = LanguagePart(name);
  if (language.empty() || !CopyName(language, part)) return false;
  UErrorCode status = U_ZERO_ERROR;
  uloc_canonicalize(part.data(), locale.data(), ULOC_FULLNAME_CAPACITY, &status);
  return U_SUCCESS(status) && status != U_STRING_NOT_TERMINATED_WARNING;
}

/// The tag in ASCII; false when it holds anything else or is too long to be one.
bool ReadTag(std::u16string_view tag, LocaleId& ascii) noexcept {
  if (tag.size() >= ascii.size()) return false;
  if (std::any_of(tag.begin(), tag.end(), [](char16_t c) { return c == 0 || c > 0x7E; })) {
    return false;
  }
  std::transform(tag.begin(), tag.end(), ascii.begin(),
                 [](char16_t c) { return c == u'_' ? '-' : static_cast<char>(c); });
  ascii[tag.size()] = '\0';
  return true;
}

LanguageId ReadUserLanguage() noexcept {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return LanguageOfLocaleName(value);
  }
  return 0;
}

}  // namespace

LanguageId LanguageOfLocaleName(std::string_view name) noexcept {
  LocaleId locale{};
  return ReadLocaleName(name, locale) ? LanguageOfLocale(locale) : LanguageId{0};
}

LanguageId LanguageOfTag(std::u16string_view tag) noexcept {
  LocaleId ascii{};
  LocaleId locale{};
  if (tag.empty() || !ReadTag(tag, ascii)) return 0;
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t parsed = 0;
  uloc_forLanguageTag(ascii.data(), locale.data(), ULOC_FULLNAME_CAPACITY, &parsed, &status);
  const bool whole = static_cast<std::size_t>(parsed) == tag.size();
  return U_SUCCESS(status) && whole ? LanguageOfLocale(locale) : LanguageId{0};
}

LanguageId ThreadLanguageId() noexcept {
  if (hasWish) return wishedLanguage;
  const char* const name = MessageLocaleName();
  if (std::strcmp(name, knownLocale.name.data()) == 0) return knownLocale.language;
  const LanguageId language = LanguageOfLocaleName(name);
  if (CopyName(name, knownLocale.name)) knownLocale.language = language;
  return language;
}

LanguageId UserLanguageId() noexcept {
  static const LanguageId language = ReadUserLanguage();
  return language;
}

Language CurrentLanguage() noexcept {
  return {ThreadLanguageId(), UserLanguageId()};
}

Language LanguageNamed(std::u16string_view tag) noexcept {
  return {LanguageOfTag(tag), UserLanguageId()};
}

void SetThreadLanguage(std::u16string_view tag) {
  wishedTag = tag;
  wishedLanguage = LanguageOfTag(tag);
  hasWish = !tag.empty();
}

LanguageScope::LanguageScope(LanguageId language) : language_(wishedLanguage), hadWish_(hasWish) {
  tag_.swap(wishedTag);
  wishedLanguage = language;
  hasWish = true;
}

LanguageScope::~LanguageScope() {
  wishedTag.swap(tag_);
  wishedLanguage = language_;
  hasWish = hadWish_;
}

std::u16string ThreadLanguage() {
  if (hasWish) return wishedTag;
  LocaleId locale{};
  LocaleId tag{};
  if (!ReadLocaleName(MessageLocaleName(), locale)) return {};
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length =
      uloc_toLanguageTag(locale.data(), tag.data(), ULOC_FULLNAME_CAPACITY, false, &status);
  return U_SUCCESS(status) ? std::u16string(tag.data(), tag.data() + length) : std::u16string{};
}

}  // namespace ORKBASE
