// The values in which dialects differ, apart from their rows and the operations of their classes.
#pragma once

#include <optional>
#include <string_view>

namespace ORKBASE {

/// One record a dialect, `constexpr` in its file; it outlives every translator.
struct DialectFields {
  std::u16string_view nameQuotes;     ///< around table names: two characters, or empty for none
  std::u16string_view unicodePrefix;  ///< in front of text constants
  std::u16string_view isNullName;     ///< function of the is-null form
  std::u16string_view concatOp;       ///< operator "&"
  std::u16string_view dateStyles;     ///< what the sixteen style literals become, "|" between
  /// In front of the names of the user functions that the business database holds. Nothing: they
  /// have no row, and go to the database under the names that the rule language gives them.
  std::optional<std::u16string_view> userPrefix;
  /// In front of names of temporary report tables. kept: doubled where it is not that of the
  /// default dialect.
  std::u16string_view reportMark;
  bool quotesReportTable;  ///< whether such a name stands in `nameQuotes`
};

/// The sixteen date style literals, and the `dateStyles` of dialects that keep them as they are.
inline constexpr std::u16string_view kDateStyleLiterals =
    u"'yyyymmdd'|'yyyy-mm-dd'|'mm-dd-yyyy'|'dd-mm-yyyy'|'yyyy/mm/dd'|'mm/dd/yyyy'|'dd/mm/yyyy'|"
    u"'yymmdd'|'yy-mm-dd'|'mm-dd-yy'|'dd-mm-yy'|'yy/mm/dd'|'mm/dd/yy'|'dd/mm/yy'|'hh:mm:ss'|"
    u"'hh:mm:ss:mmm'";

}  // namespace ORKBASE
