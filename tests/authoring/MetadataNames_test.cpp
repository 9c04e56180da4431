// Names of tables and fields, read from the metadata database and not loaded.
#include "TwoLanguages.h"

#include "PostgresSuite.h"
#include "foundation/MessageNumbers.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

constexpr const char* kView = R"sql(
create table fields (n integer, dtName varchar(40), fldName varchar(40), fldRealName varchar(40),
  baseType integer);
insert into fields values
  (1, 'Orders',  'Amount', 'amt',  1),
  (2, 'Orders',  'Memo',   'memo', 8),
  (3, 'Orders',  'Photo',  'p',    6),
  (4, 'Orders',  'File',   'f',    7),
  (5, 'Orders',  'Due',    'due',  3),
  (6, 'orderIn', 'a',      'a',    2),
  (7, '客户',    '名称',   '名称', 2),
  (8, '50%',     'x',      'x',    1),
  (9, 'a_b',     'x',      'x',    1),
  (10, 'it''s',  'x',      null,   9),
  (11, '',       'x',      'x',    1),
  (12, null,     'x',      'x',    1);
create view mx_v_datafield as
  select dtName, fldName, fldRealName, baseType, 1 as dtId, n as fldId, 'r' as tabRealName,
    null as tabRefName, 1 as state from fields order by n;
)sql";

/// The names that contain a text, "," between them; the error between bars.
std::string TablesLike(RuleAuthoring& authoring, const std::u16string& like) {
  RuleTables tables;
  if (!authoring.Tables(like, tables)) return "|" + U8(authoring.errDescription()) + "|";
  std::string all;
  for (const std::u16string& name : tables.tables) {
    if (!all.empty()) all += ',';
    all += U8(name);
  }
  return all;
}

/// `name type realName`, "," between them; the error between bars.
std::string FieldsOf(RuleAuthoring& authoring, const std::u16string& table) {
  std::vector<RuleField> fields{{u"as", u"it", u"was"}};
  if (!authoring.Fields(table, fields)) {
    EXPECT_TRUE(fields.empty());
    return "|" + U8(authoring.errDescription()) + "|";
  }
  std::string all;
  for (const RuleField& field : fields) {
    if (!all.empty()) all += ',';
    ((((all += U8(field.name)) += ' ') += U8(field.dataType)) += ' ') += U8(field.realName);
  }
  return all;
}

struct Row {
  const char16_t* asked;
  const char* names;
};

// clang-format off
constexpr Row kTables[] = {
    {u"",      "50%,a_b,it's,orderIn,Orders,客户"},
    {u"ORDER", "orderIn,Orders"},
    {u"rs",    "Orders"},
    {u"户",    "客户"},
    {u"%",     "50%"},
    {u"_",     "a_b"},
    {u"'",     "it's"},
    {u"zz",    ""},
};
constexpr Row kFields[] = {
    {u"Orders", "Amount number amt,Memo text memo,Photo picture p,File link f,Due date due"},
    {u"客户",   "名称 text 名称"},
    {u"it's",   "x  "},  // a type that no rule has, no real name
    {u"Order",  "|The data table \"Order\" does not exist or has no fields.|"},
    {u"' or 1=1 --", "|The data table \"' or 1=1 --\" does not exist or has no fields.|"},
};
// clang-format on

void ExpectNames(MxExpression& engine) {
  RuleAuthoring authoring(engine);
  authoring.set_language(u"en");
  for (const Row& row : kTables) {
    SCOPED_TRACE(U8(row.asked));
    EXPECT_EQ(TablesLike(authoring, row.asked), row.names);
  }
  for (const Row& row : kFields) {
    SCOPED_TRACE(U8(row.asked));
    EXPECT_EQ(FieldsOf(authoring, row.asked), row.names);
  }
  EXPECT_EQ(authoring.errRecord().message, kMsgNoDataTable);
  EXPECT_EQ(authoring.errRecord().cause, kRequestCause);
}

TEST(MetadataNames, AreThoseOfTheDatabase) {
  const TempDatabase database(kView);
  SpokenEngine english(u"en", database, {});
  ExpectNames(english.Engine());
}

TEST(MetadataNames, AreReadAnewAndNotLoaded) {
  const TempDatabase database(kView);
  SpokenEngine english(u"en", database, {});
  RuleAuthoring authoring(english.Engine());
  EXPECT_EQ(FieldsOf(authoring, u"a_b"), "x number x");
  database.Run("update fields set fldName = 'y' where dtName = 'a_b'");
  EXPECT_EQ(FieldsOf(authoring, u"a_b"), "y number x");
  database.Run("update fields set dtName = 'c' where dtName = 'a_b'");
  EXPECT_EQ(TablesLike(authoring, u"a_b"), "");
  // The engine has loaded no table, so a rule does not know the old name either.
  EXPECT_EQ(U8(english.Verify(kNumDataType, u"a_b.x")), "|The word \"a_b.x\" is unknown.|");
}

TEST(MetadataNames, OfManyTablesTheFirstThousandAreGiven) {
  const TempDatabase database(
      "create table mx_v_datafield (dtName, fldName, fldRealName, baseType, dtId, fldId,"
      " tabRealName, tabRefName, state);"
      "with recursive n(i) as (select 0 union all select i + 1 from n where i < 1000)"
      " insert into mx_v_datafield select printf('T%04d', 1000 - i), 'a', 'a', 1, 1, 1, 'r', '', 1"
      " from n;");
  SpokenEngine english(u"en", database, {});
  RuleAuthoring authoring(english.Engine());
  RuleTables tables;
  ASSERT_TRUE(authoring.Tables(u"t", tables));
  ASSERT_EQ(tables.tables.size(), 1'000u);
  EXPECT_EQ(U8(tables.tables.front()), "T0000");
  EXPECT_EQ(U8(tables.tables.back()), "T0999");
  EXPECT_TRUE(tables.more);
  ASSERT_TRUE(authoring.Tables(u"T0", tables));
  EXPECT_EQ(tables.tables.size(), 1'000u);
  EXPECT_FALSE(tables.more);
}

TEST(MetadataNames, NeedAConnectionAndAnAnswer) {
  MxExpression unconnected;
  RuleAuthoring without(unconnected);
  without.set_language(u"en");
  EXPECT_EQ(TablesLike(without, u""), FieldsOf(without, u"T"));
  EXPECT_EQ(without.errRecord().message, kMsgNoConnection);

  const TempDatabase empty("create table t (a)");
  SpokenEngine english(u"en", empty, {});
  RuleAuthoring authoring(english.Engine());
  RuleTables tables;
  std::vector<RuleField> fields;
  EXPECT_FALSE(authoring.Tables(u"", tables));
  EXPECT_EQ(authoring.errRecord().cause, kDatabaseCause);
  EXPECT_FALSE(authoring.Fields(u"T", fields));
  EXPECT_EQ(authoring.errRecord().cause, kDatabaseCause);
  EXPECT_NE(authoring.errDescription().find(u"mx_v_datafield"), std::u16string::npos);
}

class MetadataNamesServer : public PostgresSuite {
 protected:
  static void SetUpTestSuite() { StartServer(kView); }
};

TEST_F(MetadataNamesServer, AreThoseOfTheDatabase) {
  MxExpression engine;
  engine.Connect(U16("odbc:Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" +
                     std::to_string(server_->Port()) + ";Database=postgres"),
                 0, u"", U16(PostgresServer::User()), u"", kOpenGaussDs, false, true,
                 U16(PostgresServer::Password()));
  ExpectNames(engine);
}

}  // namespace
}  // namespace ORKBASE
