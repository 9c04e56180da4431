// What ICU knows of a locale's dates is brought into the notation of the desktop system: of a
// pattern only the letters y, M and d and the separator stay, so that "dd. MM. y." becomes
// "dd. MM. y". A table in front holds the languages where the desktop writes another short date.
#include "platform/LocaleDates.h"

#include "platform/DateReader.h"

#include <unicode/uchar.h>
#include <unicode/udat.h>
#include <unicode/uloc.h>
#include <unicode/ures.h>

#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>

namespace ORKBASE {
namespace {

/// All that is kept of one locale.
struct LocaleDates {
  std::string name;  // as POSIX has it, "zh_CN.UTF-8"
  std::u16string pattern;
  std::u16string separator;
  DateWords words;
};

struct ShortDate {
  std::string_view language;
  std::u16string_view pattern;
  std::u16string_view separator;
};

// clang-format off
constexpr std::array kDesktopShortDates = {
    ShortDate{"ko", u"yyyy-MM-dd", u"-"},
};
// clang-format on

using LocaleBuffer = std::array<char, ULOC_FULLNAME_CAPACITY>;

// --- the user's locale

/// "C", "POSIX" and "C" with a codeset say nothing about the user.
bool IsNoWish(std::string_view name) {
  return name.empty() || name == "C" || name == "POSIX" || name.starts_with("C.");
}

/// LC_TIME of the process, for a thread that has a locale of its own.
std::string ProcessLocale() {
  if (uselocale(nullptr) == LC_GLOBAL_LOCALE) return {};
  locale_t process = duplocale(LC_GLOBAL_LOCALE);
  if (process == nullptr) return {};
  std::string name = nl_langinfo_l(_NL_LOCALE_NAME(LC_TIME), process);
  freelocale(process);
  return name;
}

/// The first variable that is set decides, as POSIX has it.
std::string ReadEnvironmentLocale() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return IsNoWish(value) ? "en_US" : value;
  }
  return "en_US";
}

std::string LocaleOfProcessOrEnvironment() {
  static const std::string environment = ReadEnvironmentLocale();
  std::string process = ProcessLocale();
  return IsNoWish(process) ? environment : process;
}

// --- from ICU to the desktop's notation

/// Quoted letters are plain text; they and format marks are no part of a date, nor is an era.
class PatternCleaner {
 public:
  explicit PatternCleaner(std::u16string_view raw) {
    for (const char16_t unit : raw) Take(unit);
    separator_ = FirstSeparator();
  }

  /// The runs of letters and, of what stands between and behind them, the separators.
  std::u16string Pattern() const {
    std::u16string pattern;
    for (std::size_t at = 0; at < plain_.size();) {
      const bool isSeparator =
          !separator_.empty() && plain_.compare(at, separator_.size(), separator_) == 0;
      if (isSeparator) {
        pattern += separator_;
        at += separator_.size();
      } else {
        if (IsDateLetter(plain_[at])) pattern += plain_[at];
        ++at;
      }
    }
    return pattern;
  }

  const std::u16string& Separator() const { return separator_; }

 private:
  static bool IsDateLetter(char16_t unit) { return unit == u'y' || unit == u'M' || unit == u'd'; }

  void Take(char16_t unit) {
    if (unit == u'\'') {
      quoted_ = !quoted_;
      return;
    }
    const int category = u_charType(unit);
    if (category == U_FORMAT_CHAR) return;
    if (category == U_SPACE_SEPARATOR) {
      plain_ += u' ';
    } else if (!u_isalpha(unit)) {
      plain_ += unit;
    } else if (!quoted_) {
      TakeLetter(unit);
    }
  }

  /// Other letters of ICU for a month and a year become the desktop's.
  void TakeLetter(char16_t unit) {
    if (unit == u'L') unit = u'M';
    if (unit == u'u' || unit == u'r' || unit == u'Y') unit = u'y';
    if (IsDateLetter(unit)) plain_ += unit;
  }

  /// What stands between the first two runs of letters.
  std::u16string FirstSeparator() const {
    constexpr std::u16string_view kLetters = u"yMd";
    const std::size_t first = plain_.find_first_of(kLetters);
    const std::size_t begin = plain_.find_first_not_of(kLetters, first);
    const std::size_t end = plain_.find_first_of(kLetters, begin);
    return end == std::u16string::npos ? std::u16string() : plain_.substr(begin, end - begin);
  }

  std::u16string plain_;
  std::u16string separator_;
  bool quoted_ = false;
};

/// The name as ICU has it with the Gregorian calendar; empty for one that cannot be read.
std::string IcuName(const std::string& posixName) {
  LocaleBuffer name{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_canonicalize(posixName.c_str(), name.data(), static_cast<std::int32_t>(name.size()),
                    &status);
  if (U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING) return {};
  // ICU answers with its default locale for a language that it does not know.
  icu::LocalUResourceBundlePointer bundle(ures_open(nullptr, name.data(), &status));
  if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING) return {};
  uloc_setKeywordValue("calendar", "gregorian", name.data(), static_cast<std::int32_t>(name.size()),
                       &status);
  return U_FAILURE(status) ? std::string() : std::string(name.data());
}

/// The short date of an ICU locale; null when there is none. The time zone plays no part, a fixed
/// one keeps ICU from asking for that of the machine.
icu::LocalUDateFormatPointer OpenShortDate(const std::string& icuName) {
  UErrorCode status = U_ZERO_ERROR;
  icu::LocalUDateFormatPointer format(
      udat_open(UDAT_NONE, UDAT_SHORT, icuName.c_str(), u"UTC", -1, nullptr, 0, &status));
  if (U_FAILURE(status)) format.adoptInstead(nullptr);
  return format;
}

std::u16string ReadPattern(const UDateFormat* format) {
  std::array<char16_t, 128> pattern{};
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = udat_toPattern(format, false, pattern.data(),
                                             static_cast<std::int32_t>(pattern.size()), &status);
  if (U_FAILURE(status)) return {};
  return {pattern.data(), static_cast<std::size_t>(length)};
}

void AddSymbols(DateWords& words, const UDateFormat* format, UDateFormatSymbolType type,
                bool areMonths) {
  const std::int32_t count = udat_countSymbols(format, type);
  for (std::int32_t i = 0; i < count; ++i) {
    std::array<char16_t, 128> symbol{};
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = udat_getSymbols(format, type, i, symbol.data(),
                                                static_cast<std::int32_t>(symbol.size()), &status);
    if (U_FAILURE(status)) continue;
    AddDateWord(words, {symbol.data(), static_cast<std::size_t>(length)}, areMonths ? i + 1 : 0);
  }
}

void AddWordsOf(DateWords& words, const UDateFormat* format) {
  for (const UDateFormatSymbolType months :
       {UDAT_MONTHS, UDAT_SHORT_MONTHS, UDAT_STANDALONE_MONTHS, UDAT_STANDALONE_SHORT_MONTHS}) {
    AddSymbols(words, format, months, true);
  }
  AddSymbols(words, format, UDAT_AM_PMS, false);
}

// --- what is kept

void SetShortDate(LocaleDates& dates, const std::string& icuName, const UDateFormat* format) {
  LocaleBuffer language{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_getLanguage(icuName.c_str(), language.data(), static_cast<std::int32_t>(language.size()),
                   &status);
  for (const ShortDate& row : kDesktopShortDates) {
    if (row.language == language.data()) {
      dates.pattern = row.pattern;
      dates.separator = row.separator;
      return;
    }
  }
  const PatternCleaner cleaner(ReadPattern(format));
  dates.pattern = cleaner.Pattern();
  dates.separator = cleaner.Separator();
}

/// The words of English count everywhere.
LocaleDates PrepareDates(const std::string& name) {
  LocaleDates dates;
  dates.name = name;
  const std::string icuName = IcuName(name);
  if (!icuName.empty()) {
    if (const icu::LocalUDateFormatPointer format = OpenShortDate(icuName); format.isValid()) {
      SetShortDate(dates, icuName, format.getAlias());
      AddWordsOf(dates.words, format.getAlias());
    }
  }
  if (const icu::LocalUDateFormatPointer format = OpenShortDate("en@calendar=gregorian");
      format.isValid()) {
    AddWordsOf(dates.words, format.getAlias());
  }
  SortDateWords(dates.words);
  return dates;
}

/// Prepared once for each name and never let go, so that a thread may remember the last one.
const LocaleDates& DatesOf(const std::string& name) {
  static std::mutex mutex;
  static auto& kept = *new std::map<std::string, std::unique_ptr<const LocaleDates>>;
  const std::lock_guard lock(mutex);
  std::unique_ptr<const LocaleDates>& dates = kept[name];
  if (dates == nullptr) dates = std::make_unique<const LocaleDates>(PrepareDates(name));
  return *dates;
}

const LocaleDates& UserDates() {
  thread_local const LocaleDates* last = nullptr;
  const char* thread = nl_langinfo(_NL_LOCALE_NAME(LC_TIME));
  if (!IsNoWish(thread)) {
    if (last == nullptr || last->name != thread) last = &DatesOf(thread);
    return *last;
  }
  const std::string name = LocaleOfProcessOrEnvironment();
  if (last == nullptr || last->name != name) last = &DatesOf(name);
  return *last;
}

}  // namespace

bool IsDateText(std::u16string_view text) {
  // Every date and every time has a digit: most text constants end here.
  const auto isDigit = [](char16_t unit) { return unit >= u'0' && unit <= u'9'; };
  if (std::none_of(text.begin(), text.end(), isDigit)) return false;
  return ReadsAsDate(text, UserDates().words);
}

std::u16string ShortDatePattern() {
  return UserDates().pattern;
}

std::u16string DateSeparator() {
  return UserDates().separator;
}

}  // namespace ORKBASE
