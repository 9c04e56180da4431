// Connection strings by database type, and passwords that stay hidden.
#include "database/OdbcConnectionText.h"

#include "Utf8.h"
#include "foundation/MessageNumbers.h"

#include <gtest/gtest.h>

using namespace ORKDB;

namespace {

AccessorRequest Request(const std::u16string& host, std::int32_t port,
                        ORKBASE::ORKDB_DSType_ENUM type) {
  return {MxSvrInfo(host, port, u"me", u""), host, {}, u"shop", type, false, false, u"pw", u""};
}

}  // namespace

TEST(OdbcConnectionText, NamesTheDriverOfTheDatabaseType) {
  struct Row {
    int type;
    const char* text;
  };
  // clang-format off
  constexpr Row kCases[] = {
      {ORKBASE::kSqlServerDs, "Driver={FreeTDS};Server=h;Port=5;Database=shop;UID=me;PWD={pw};TDS_Version=7.4;"},
      {ORKBASE::kOracleDs,    "Driver={Oracle};Dbq=//h:5/shop;UID=me;PWD={pw};"},
      {ORKBASE::kDMDs,        "Driver={DM};Server=h;TCP_PORT=5;Database=shop;UID=me;PWD={pw};"},
      {ORKBASE::kKingbaseDs,  "Driver={Kingbase};Server=h;Port=5;Database=shop;UID=me;PWD={pw};"},
      {ORKBASE::kOpenGaussDs, "Driver={PostgreSQL Unicode};Server=h;Port=5;Database=shop;UID=me;PWD={pw};"},
      {99,                    "Driver={FreeTDS};Server=h;Port=5;Database=shop;UID=me;PWD={pw};TDS_Version=7.4;"},
  };
  // clang-format on
  for (const Row& row : kCases) {
    const auto type = static_cast<ORKBASE::ORKDB_DSType_ENUM>(row.type);
    const OdbcConnectionText made = TextOfHost(Request(u"h", 5, type));
    EXPECT_EQ(U8(made.text), row.text);
    EXPECT_EQ(made.problem, 0);
  }
}

TEST(OdbcConnectionText, LeavesOutWhatIsNotGiven) {
  const AccessorRequest request = {
      MxSvrInfo(u"h", 0, u"", u""), u"h", {}, u"", ORKBASE::kOracleDs, false, false, u"", u""};
  EXPECT_EQ(U8(TextOfHost(request).text), "Driver={Oracle};Dbq=//h;");
}

TEST(OdbcConnectionText, AsksForEncryptionAndReadingWhereTheDriverCan) {
  AccessorRequest request = Request(u"h", 0, ORKBASE::kOpenGaussDs);
  request.encrypted = true;
  request.readOnly = true;
  EXPECT_EQ(U8(TextOfHost(request).text),
            "Driver={PostgreSQL Unicode};Server=h;Database=shop;UID=me;PWD={pw};SSLmode=require;"
            "ReadOnly=1;");
  request.dsType = ORKBASE::kSqlServerDs;
  EXPECT_EQ(U8(TextOfHost(request).text),
            "Driver={FreeTDS};Server=h;Database=shop;UID=me;PWD={pw};TDS_Version=7.4;"
            "Encryption=require;ApplicationIntent=ReadOnly;");
}

// A connection that is not encrypted although that was asked for would be worse than none.
TEST(OdbcConnectionText, RefusesEncryptionThatTheDriverCannotBeAskedFor) {
  for (const auto type : {ORKBASE::kOracleDs, ORKBASE::kDMDs}) {
    AccessorRequest request = Request(u"h", 0, type);
    request.encrypted = true;
    EXPECT_EQ(TextOfHost(request).problem, ORKBASE::kMsgNoEncryption);
  }
}

TEST(OdbcConnectionText, KeepsValuesInsideTheirKeys) {
  AccessorRequest request = Request(u"h;Driver={X}", 0, ORKBASE::kOpenGaussDs);
  request.password = u"a;b}c";
  request.database = u" shop";
  EXPECT_EQ(U8(TextOfHost(request).text),
            "Driver={PostgreSQL Unicode};Server={h;Driver={X}}};Database={ shop};UID=me;"
            "PWD={a;b}}c};");
}

TEST(OdbcConnectionText, AddsUserAndPasswordToAString) {
  AccessorRequest request = Request(u"", 0, ORKBASE::kSqlServerDs);
  request.location = u"DSN=shop";
  EXPECT_EQ(U8(TextOfString(request).text), "DSN=shop;UID=me;PWD={pw};");
  request.location = u"DSN=shop;";
  EXPECT_EQ(U8(TextOfString(request).text), "DSN=shop;UID=me;PWD={pw};");
}

TEST(OdbcConnectionText, AnEmptyTargetIsAProblem) {
  EXPECT_EQ(TextOfString(Request(u"", 0, ORKBASE::kSqlServerDs)).problem,
            ORKBASE::kMsgNoOdbcString);
  EXPECT_EQ(TextOfHost(Request(u"", 0, ORKBASE::kSqlServerDs)).problem, ORKBASE::kMsgNoServerName);
}

TEST(OdbcConnectionText, HidesWhatStandsBehindAPasswordKey) {
  struct Row {
    const char16_t* text;
    const char* shown;
  };
  // clang-format off
  constexpr Row kCases[] = {
      {u"UID=me;PWD=abc;X=1",           "UID=me;PWD=***;X=1"},
      {u"pwd = abc",                    "pwd = ***"},
      {u"Password={a;b}}c};X=1",        "Password=***;X=1"},
      {u"Password={never closed;X=1",   "Password=***"},
      {u"sslPASSWORD=k;PWD=",           "sslPASSWORD=***;PWD=***"},
      {u"password authentication failed", "password authentication failed"},
      {u"",                             ""},
  };
  // clang-format on
  for (const Row& row : kCases) EXPECT_EQ(U8(HideSecrets(row.text, {})), row.shown);
}

TEST(OdbcConnectionText, HidesThePasswordItself) {
  AccessorRequest request = Request(u"", 0, ORKBASE::kSqlServerDs);
  request.location = u"DSN=shop;Pwd={in}}side};Password=second";
  request.password = u"third}";
  const auto secrets = TextOfString(request).secrets;
  EXPECT_EQ(U8(HideSecrets(u"no in}side, {in}}side}, second, third}, {third}}} here", secrets)),
            "no ***, ***, ***, ***, *** here");
}
