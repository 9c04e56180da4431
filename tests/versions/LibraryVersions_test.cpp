// The versions that the libraries tell while the program runs; here they are also those of the
// headers that this was compiled with.
#include "OrkPlatform.h"
#include "Utf8.h"

#include <gtest/gtest.h>
#include <libxml/xmlversion.h>
#include <sqlite3.h>
#include <unicode/uvernum.h>

#include <algorithm>
#include <string>

namespace ORKBASE {
namespace {

TEST(LibraryVersions, AreThoseOfTheLibrariesAtWork) {
  struct Row {
    const char* name;
    const char* version;
  };
  const Row rows[] = {
      {"OrkRule", ORKRULE_VERSION},
      {"libxml2", LIBXML_DOTTED_VERSION},
      {"ICU", U_ICU_VERSION},
      {"SQLite", SQLITE_VERSION},
  };
  const std::vector<LibraryVersion> versions = LibraryVersions();
  ASSERT_EQ(versions.size(), std::size(rows) + 1);
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(U8(versions[i].name), rows[i].name);
    EXPECT_EQ(U8(versions[i].version), rows[i].version);
  }
}

TEST(LibraryVersions, OfTheDriverManagerAreTwoNumbers) {
  const LibraryVersion odbc = LibraryVersions().back();
  EXPECT_EQ(odbc.name, u"unixODBC");
  const std::string version = U8(odbc.version);
  EXPECT_TRUE(version.starts_with("2.")) << version;
  EXPECT_EQ(std::count(version.begin(), version.end(), '.'), 1) << version;
}

}  // namespace
}  // namespace ORKBASE
