// Versions of this library and of those that it works with, each asked while the program runs: what
// is loaded need not be what was there when this was compiled.
#include "OrkPlatform.h"

#include <libxml/parser.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlite3.h>
#include <unicode/uversion.h>

#include <array>
#include <charconv>
#include <string>

namespace ORKBASE {
namespace {

std::u16string Wide(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

/// A number of the form 20914, for 2.9.14; what stands behind its digits is of no interest.
std::u16string XmlVersion() {
  const std::string_view text = xmlParserVersion;
  unsigned number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return Wide(std::to_string(number / 10'000) + '.' + std::to_string(number / 100 % 100) + '.' +
              std::to_string(number % 100));
}

std::u16string UnicodeVersion() {
  UVersionInfo version{};
  std::array<char, U_MAX_VERSION_STRING_LENGTH> text{};
  u_getVersion(version);
  u_versionToString(version, text.data());
  return Wide(text.data());
}

/// "03.52.0002.0003": of the standard, then of the driver manager, which tells no third number.
std::u16string DriverManagerVersion(std::string_view text) {
  std::array<unsigned, 4> numbers{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (unsigned& number : numbers) {
    at = std::from_chars(at, end, number).ptr;
    if (at != end) ++at;
  }
  return Wide(std::to_string(numbers[2]) + '.' + std::to_string(numbers[3]));
}

/// The driver manager answers for itself without a connection.
std::u16string OdbcVersion() {
  SQLHENV environment = SQL_NULL_HENV;
  SQLHDBC connection = SQL_NULL_HDBC;
  std::array<char, 32> text{};
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment))) return {};
  // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how the standard hands over a number
  auto* const standard = reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3);
  SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, standard, 0);
  if (SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection))) {
    SQLSMALLINT length = 0;
    SQLGetInfo(connection, SQL_DM_VER, text.data(), static_cast<SQLSMALLINT>(text.size() - 1),
               &length);
    SQLFreeHandle(SQL_HANDLE_DBC, connection);
  }
  SQLFreeHandle(SQL_HANDLE_ENV, environment);
  return text[0] == '\0' ? std::u16string() : DriverManagerVersion(text.data());
}

}  // namespace

std::vector<LibraryVersion> LibraryVersions() {
  return {{u"OrkRule", Wide(ORKRULE_VERSION)},
          {u"libxml2", XmlVersion()},
          {u"ICU", UnicodeVersion()},
          {u"SQLite", Wide(sqlite3_libversion())},
          {u"unixODBC", OdbcVersion()}};
}

}  // namespace ORKBASE
