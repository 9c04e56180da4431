// The one table of dialects: numbers, names, and what is made by it.
#include "dialects/Dialects.h"

#include "Utf8.h"
#include "dialects/MxDMTranslator.h"
#include "dialects/MxOpenGaussTranslator.h"
#include "dialects/MxPLsqlTranslator.h"
#include "foundation/Text.h"

#include <gtest/gtest.h>

#include <set>

namespace ORKBASE {
namespace {

TEST(Dialects, HaveNumbersAndNamesOfTheirOwn) {
  std::set<ORKDB_DSType_ENUM> numbers;
  std::set<std::u16string> names;
  for (const RuleDialect& dialect : RuleDialects()) {
    EXPECT_TRUE(numbers.insert(dialect.number).second) << U8(dialect.name);
    EXPECT_TRUE(names.emplace(dialect.name).second) << U8(dialect.name);
    for (const std::u16string_view other : SplitText(dialect.otherNames, u",")) {
      EXPECT_TRUE(names.emplace(other).second) << U8(other);
    }
  }
  for (const std::u16string& name : names) {
    EXPECT_EQ(name.find_first_not_of(u"abcdefghijklmnopqrstuvwxyz0123456789"), name.npos)
        << U8(name);
    EXPECT_NE(name, u"all");  // what programs call all of them
  }
}

TEST(Dialects, BeginWithTheOneThatServesEveryOtherNumber) {
  EXPECT_EQ(RuleDialects().front().number, kSqlServerDs);
  for (const int number : {-1, 1, 2, 4, 7, 16, 1000}) {
    EXPECT_EQ(DialectOf(static_cast<ORKDB_DSType_ENUM>(number)).dialect.number, kSqlServerDs);
  }
  for (const RuleDialect& dialect : RuleDialects()) {
    EXPECT_EQ(DialectOf(dialect.number).dialect.name, dialect.name);
  }
}

struct NameRow {
  const char16_t* name;
  ORKDB_DSType_ENUM number;
};

constexpr NameRow kNames[] = {
    {u"default", kSqlServerDs},
    {u"sqlserver", kSqlServerDs},
    {u"mssql", kSqlServerDs},
    {u"tsql", kSqlServerDs},
    {u"SQL Server", kSqlServerDs},
    {u"T-SQL", kSqlServerDs},
    {u"oracle", kOracleDs},
    {u"plsql", kOracleDs},
    {u"PL/SQL", kOracleDs},
    {u"ora", kOracleDs},
    {u"dm", kDMDs},
    {u"kingbase", kKingbaseDs},
    {u"kingbasees", kKingbaseDs},
    {u"Kingbase ES", kKingbaseDs},
    {u"opengauss", kOpenGaussDs},
    {u"open_gauss", kOpenGaussDs},
};

TEST(Dialects, AreFoundByTheirNamesInAnyCase) {
  for (const NameRow& row : kNames) {
    for (const std::u16string& name : {std::u16string(row.name), ToUpper(row.name)}) {
      const RuleDialect* found = FindRuleDialect(name);
      ASSERT_TRUE(found) << U8(name);
      EXPECT_EQ(found->number, row.number) << U8(name);
    }
  }
  for (const char16_t* name : {u"", u" ", u"/", u" oracle", u"oracle-", u"oracle,plsql",
                               u"sqlserver,mssql", u"orac", u"mysql", u",", u"all"}) {
    EXPECT_EQ(FindRuleDialect(name), nullptr) << U8(name);
  }
}

template <class Translator>
bool Makes(ORKDB_DSType_ENUM number) {
  TagTree tree;
  const auto made = DialectOf(number).newTranslator(tree);
  return typeid(*made) == typeid(Translator) && &DialectOf(number).map() == &Translator::Map();
}

TEST(Dialects, MakeTheirTranslators) {
  EXPECT_TRUE(Makes<MxSql92Translator>(kSqlServerDs));
  EXPECT_TRUE(Makes<MxPLsqlTranslator>(kOracleDs));
  EXPECT_TRUE(Makes<MxDMTranslator>(kDMDs));
  EXPECT_TRUE(Makes<MxKingbaseTranslator>(kKingbaseDs));
  EXPECT_TRUE(Makes<MxOpenGaussTranslator>(kOpenGaussDs));
}

TEST(Dialects, HaveADriverEach) {
  for (const RuleDialect& dialect : RuleDialects()) {
    EXPECT_FALSE(ORKDB::DriverOf(dialect.number).name.empty()) << U8(dialect.name);
  }
  EXPECT_EQ(&ORKDB::DriverOf(static_cast<ORKDB_DSType_ENUM>(7)), &ORKDB::DriverOf(kSqlServerDs));
}

}  // namespace
}  // namespace ORKBASE
