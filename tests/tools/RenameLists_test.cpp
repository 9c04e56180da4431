// The lists of new names, and under which name of its table a field is given.
#include "RenameLists.h"

#include "Output.h"
#include "Text.h"

#include <gtest/gtest.h>

#include <string>

namespace ORKTOOL {
namespace {

std::vector<NewName> Fields(const char* list, const char* tables) {
  return UnderNewTables(ReadNewNames(*FromUtf8(list), true),
                        ReadNewNames(*FromUtf8(tables), false));
}

TEST(RenameLists, PutFieldsUnderTheNewNamesOfTheirTables) {
  struct Row {
    const char* tables;
    const char* fields;
    const char* made;
  };
  const Row rows[] = {
      // clang-format off
      {"",              "A.x:y",         "A.x:y"},
      {"A:B",           "A.x:y",         "B.x:y"},
      {"A:B",           "B.x:y",         "B.x:y"},
      {"A:B",           "C.x:y,A.z:w",   "C.x:y,B.z:w"},
      {"A:B",           "a.x:y",         "a.x:y"},    // another name
      {"A:B",           "A.x.z:y",       "B.x.z:y"},  // a table ends at the first full stop
      {"A:B",           "A.x:y:z",       "B.x:y:z"},
      // names are given one after the other, as to the words of a rule
      {"A:B,B:C",       "A.x:y",         "C.x:y"},
      // what is a new name too is taken as one
      {"A:B,B:C",       "B.x:y",         "B.x:y"},
      {"A:z,B:A,z:B",   "A.x:y,B.x:w",   "A.x:y,B.x:w"},
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ToUtf8(ListOf(Fields(row.fields, row.tables))), row.made)
        << row.tables << " " << row.fields;
  }
}

TEST(RenameLists, KnowFieldsByTheNamesOfToday) {
  const auto today = [](const char* fields, const char* tables) {
    std::string names;
    for (const std::u16string& name :
         FieldsToday(Fields(fields, tables), ReadNewNames(*FromUtf8(tables), false))) {
      names.append(ToUtf8(name)).append(" ");
    }
    return names;
  };
  EXPECT_EQ(today("A.x:y,C.z:w", "A:B"), "A.x C.z ");
  EXPECT_EQ(today("B.x:y", "A:B,C:B"), "A.x C.x ");
}

TEST(RenameLists, HaveAnOldAndANewNameInEachItem) {
  for (const char* list : {"A", "A:B,C", ",", "A:B,,C:D"}) {
    EXPECT_THROW(ReadNewNames(*FromUtf8(list), false), Failure) << list;
  }
  for (const char* list : {"x:y", "A.x", "A:B.x"}) {
    EXPECT_THROW(ReadNewNames(*FromUtf8(list), true), Failure) << list;
  }
  EXPECT_EQ(ReadNewNames(u"A:B,", false).size(), 1u);
}

}  // namespace
}  // namespace ORKTOOL
