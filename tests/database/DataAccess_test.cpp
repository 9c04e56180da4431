// The creator with its kinds, the statement of a select by table, and the record set in memory.
#include "DataAccess.h"

#include "AccessorCalls.h"
#include "ScopedLanguage.h"
#include "database/RowTable.h"

#include <gtest/gtest.h>

#include <thread>

using namespace ORKDB;

namespace {

/// What a factory was asked for last, and what its accessor was told to run.
struct Asked {
  std::u16string location;
  std::u16string statement;
  std::u16string value;
  std::u16string user;
  std::u16string password;
};

class EchoAccessor final : public CDBAccessor {
 public:
  explicit EchoAccessor(Asked& asked) : asked_(asked) {}
  std::unique_ptr<CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                 const MxParams& params, const std::u16string&,
                                                 std::int32_t, std::int32_t) override {
    ResetError();
    asked_.statement = statement;
    for (const MxParam& param : params.Params()) asked_.value += param.value + u"|";
    auto rows = std::make_unique<RowTable>(std::vector<std::u16string>{u"fldName"});
    rows->Add(u"Own");
    return rows;
  }

 private:
  Asked& asked_;
};

/// Registers a kind for the length of a test.
class OwnKind {
 public:
  OwnKind(std::u16string prefix, AccessorFactory factory) : prefix_(std::move(prefix)) {
    CDBAccessorCreator::instance()->RegisterKind(prefix_, std::move(factory));
  }
  OwnKind(const OwnKind&) = delete;
  OwnKind& operator=(const OwnKind&) = delete;
  ~OwnKind() { CDBAccessorCreator::instance()->RegisterKind(prefix_, nullptr); }

 private:
  std::u16string prefix_;
};

AccessorFactory Echo(Asked& asked) {
  return [&asked](const AccessorRequest& request) {
    asked.location = request.location;
    asked.user = request.server.User();
    asked.password = request.password;
    return std::make_unique<EchoAccessor>(asked);
  };
}

}  // namespace

TEST(DataAccess, AKindOfACallerServesItsPrefix) {
  Asked asked;
  const OwnKind kind(u"Echo:", Echo(asked));
  const auto accessor = MakeAccessor(u"eCHO:in Memory", u"me", u"pw");
  EXPECT_EQ(U8(asked.location), "in Memory");
  EXPECT_EQ(U8(asked.user), "me");
  EXPECT_EQ(U8(asked.password), "pw");
  EXPECT_EQ(FieldsOf(*accessor, u"Orders"), "Own");
}

TEST(DataAccess, TheLongestPrefixWins) {
  Asked shorter;
  Asked longer;
  const OwnKind one(u"echo:", Echo(shorter));
  const OwnKind two(u"echo:two:", Echo(longer));
  MakeAccessor(u"echo:two:x");
  EXPECT_EQ(U8(longer.location), "x");
  EXPECT_EQ(U8(shorter.location), "");
  MakeAccessor(u"echo:tw");
  EXPECT_EQ(U8(shorter.location), "tw");
}

TEST(DataAccess, AFactoryThatMakesNothingGivesAnAccessorThatFails) {
  const OwnKind kind(u"none:", [](const AccessorRequest&) { return nullptr; });
  const auto accessor = MakeAccessor(u"none:x");
  ASSERT_NE(accessor, nullptr);
  EXPECT_EQ(accessor->errNumber, 0);
  EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr);
  EXPECT_EQ(accessor->errNumber, -1);
  EXPECT_FALSE(accessor->ErrDescription().empty());
}

TEST(DataAccess, ATakenAwayKindServesNoMore) {
  Asked asked;
  { const OwnKind kind(u"echo:", Echo(asked)); }
  const auto accessor = MakeAccessor(u"echo:x");
  EXPECT_EQ(U8(asked.location), "");
  EXPECT_EQ(dynamic_cast<EchoAccessor*>(accessor.get()), nullptr);
}

TEST(DataAccess, SelectByTableWritesNamesAndBindsValues) {
  Asked asked;
  EchoAccessor accessor(asked);
  MxParams params = Equals(u"dtName", u"x' or 1=1 --");
  params.AddParam(0, u"state", u"0", false, false, u"<>");
  EXPECT_NE(accessor.SelectByTable(u"mx_v_datafield", u"a, b", params), nullptr);
  EXPECT_EQ(U8(asked.statement), "select a, b from mx_v_datafield where dtName = ? and state <> ?");
  EXPECT_EQ(U8(asked.value), "x' or 1=1 --|0|");
}

TEST(DataAccess, SelectByTableTakesPlainNamesOnly) {
  struct Row {
    const char16_t* table;
    const char16_t* columns;
    const char16_t* name;
    const char16_t* operation;
  };
  // clang-format off
  constexpr Row kRefused[] = {
      {u"",             u"a",        u"n",        u"="},
      {u"t; drop",      u"a",        u"n",        u"="},
      {u"客户",         u"a",        u"n",        u"="},
      {u"t",            u"",         u"n",        u"="},
      {u"t",            u"a,,b",     u"n",        u"="},
      {u"t",            u"a b",      u"n",        u"="},
      {u"t",            u"(select)", u"n",        u"="},
      {u"t",            u"a",        u"n='x' or", u"="},
      {u"t",            u"a",        u"",         u"="},
      {u"t",            u"a",        u"n",        u""},
      {u"t",            u"a",        u"n",        u"= 1 or"},
  };
  // clang-format on
  for (const Row& row : kRefused) {
    Asked asked;
    EchoAccessor accessor(asked);
    MxParams params(false);
    params.AddParam(0, row.name, u"v", false, false, row.operation);
    EXPECT_EQ(accessor.SelectByTable(row.table, row.columns, params), nullptr) << U8(row.columns);
    EXPECT_EQ(accessor.errNumber, -1);
    EXPECT_EQ(U8(asked.statement), "");
  }
}

TEST(DataAccess, AProxyIsRefusedAtTheFirstUse) {
  const ScopedLanguage language(u"en");
  MxProxyInfo proxy;
  proxy.init(static_cast<ORKBASE::ORKBASE_ProxyType_ENUM>(2), u"proxy.example", 8080, u"user",
             u"hidden-word");
  for (const char16_t* server : {u"sqlite:shop.db", u"odbc:Driver={X}", u"db.example"}) {
    const auto accessor = CDBAccessorCreator::instance()->CreateAccessor(
        MxSvrInfo(server, 0, u"", u""), proxy, u"", ORKBASE::kSqlServerDs, false, true, u"", u"");
    EXPECT_EQ(accessor->errNumber, 0);
    EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr);
    EXPECT_EQ(accessor->errNumber, -1);
    EXPECT_NE(U8(accessor->ErrDescription()).find("proxy"), std::string::npos);
    EXPECT_EQ(U8(accessor->ErrDescription()).find("hidden-word"), std::string::npos);
  }
}

TEST(DataAccess, AProxyOfTypeNoneIsNoProxy) {
  MxProxyInfo proxy;
  proxy.init(ORKBASE::kNoProxy, u"proxy.example", 8080, u"", u"");
  const auto accessor = CDBAccessorCreator::instance()->CreateAccessor(
      MxSvrInfo(u"sqlite:/no/such/file", 0, u"", u""), proxy, u"", ORKBASE::kSqlServerDs, false,
      true, u"", u"");
  EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr);
  EXPECT_EQ(U8(accessor->ErrDescription()), "unable to open database file: /no/such/file");
}

// Each in the language of the query, whatever that of its making was.
TEST(DataAccess, ErrorsSpeakTheLanguageOfTheThread) {
  struct Row {
    const char16_t* server;
    const char16_t* statement;
    const char* english;
    const char* chinese;
  };
  // clang-format off
  constexpr Row kCases[] = {
      {u"none:x",        u"select 1", "No kind of database serves this server text.", "没有任何一种数据库能处理这个服务器文本。"},
      {u"odbc:",         u"select 1", "The connection string is empty.",              "连接字符串为空。"},
      {u"odbc:Driver=x", u"",         "The statement is empty or not plain ASCII.",   "语句为空，或不是纯 ASCII 文本。"},
      {u"",              u"select 1", "No database server was named.",                "没有指定数据库服务器。"},
  };
  // clang-format on
  const OwnKind kind(u"none:", [](const AccessorRequest&) { return nullptr; });
  for (const Row& row : kCases) {
    const auto accessor = MakeAccessor(row.server);
    for (const bool isChinese : {false, true}) {
      const ScopedLanguage language(isChinese ? u"zh-CN" : u"en");
      EXPECT_EQ(accessor->QueryByStatement(row.statement, MxParams(false)), nullptr);
      EXPECT_EQ(accessor->errNumber, -1);
      EXPECT_EQ(U8(accessor->ErrDescription()), isChinese ? row.chinese : row.english);
    }
  }
}

TEST(DataAccess, KindsMayBeRegisteredAndUsedByAllThreads) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i] {
      const std::u16string prefix = u"thread" + std::u16string(1, static_cast<char16_t>(u'a' + i));
      for (int round = 0; round < 200; ++round) {
        Asked asked;
        const OwnKind kind(prefix, Echo(asked));
        const auto accessor = MakeAccessor(prefix + u"!");
        EXPECT_EQ(U8(asked.location), "!");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(RowTable, ReadsColumnsByNameWithoutRegardToCase) {
  RowTable rows({u"fldname", u"BASETYPE", u"state"});
  rows.Add(u"Amount");
  rows.Add(u"1");
  rows.Add(std::nullopt);
  std::u16string text;
  EXPECT_EQ(U8(rows.TextColumn(text, u"fldName", u"-")), "Amount");
  EXPECT_EQ(rows.IntColumn(u"baseType", -7), 1);
  EXPECT_EQ(U8(rows.TextColumn(text, u"State", u"-")), "-");
  EXPECT_EQ(rows.IntColumn(u"State", -7), -7);
  EXPECT_EQ(U8(rows.TextColumn(text, u"absent", u"-")), "-");
  EXPECT_EQ(rows.IntColumn(u"absent", -7), -7);
}

TEST(RowTable, ReturnsTheTextThatItFilled) {
  RowTable rows({u"a"});
  rows.Add(u"x");
  std::u16string text = u"before";
  EXPECT_EQ(&rows.TextColumn(text, u"a", u""), &text);
  EXPECT_EQ(U8(text), "x");
}

TEST(RowTable, ReadsNumbersHeldTo32Bits) {
  struct Row {
    const char16_t* text;
    std::int32_t value;
  };
  // clang-format off
  constexpr Row kCases[] = {
      {u"0",           0},
      {u"-12",         -12},
      {u"3.0",         3},
      {u"99999999999", 2147483647},
      {u"-99999999999", -2147483647 - 1},
      {u"abc",         0},
      {u"",            0},
  };
  // clang-format on
  for (const Row& row : kCases) {
    RowTable rows({u"n"});
    rows.Add(row.text);
    EXPECT_EQ(rows.IntColumn(u"n", -7), row.value) << U8(row.text);
  }
}

TEST(RowTable, StaysAtItsEnd) {
  RowTable rows({u"a", u"b"});
  rows.Add(u"1");
  rows.Add(u"2");
  EXPECT_FALSE(rows.EndOfRows());
  for (int i = 0; i < 3; ++i) rows.NextRow();
  EXPECT_TRUE(rows.EndOfRows());
  std::u16string text;
  EXPECT_EQ(U8(rows.TextColumn(text, u"a", u"none")), "none");
  EXPECT_EQ(rows.IntColumn(u"a", 5), 5);
}
