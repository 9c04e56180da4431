// Metadata views on a real PostgreSQL server through unixODBC. Without the server's package these
// tests are skipped.
#include "database/OdbcAccessor.h"

#include "AccessorCalls.h"
#include "PostgresSuite.h"
#include "ScopedLanguage.h"
#include "SecondsOf.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

using namespace ORKDB;

namespace {

constexpr const char* kViews = R"sql(
create table tables (dtId int, dtName text, realName text, refName text, state int);
create table fields (fldId int, dtId int, fldName text, realName text, baseType int);
insert into tables values (1, 'Orders', 'Orders', null, 1), (2, '客户', '客户', 'kh', 0),
  (3, 'it''s', 'x', '', 1), (4, '100%', 'x', '', 1), (5, 'Big', 'Big', '', 1), (6, '"q"', 'x', '', 1);
insert into fields values (11, 1, 'Amount', 'amt', 1), (12, 1, 'Memo', null, 8),
  (21, 2, '名称', '名称', 2), (31, 3, 'of it''s', 'x', 1), (41, 4, 'of 100%', 'x', 1),
  (61, 6, 'of "q"', 'x', 1);
insert into fields select 100000 + i, 5, 'f' || i, 'f' || i, 1 from generate_series(1, 5000) as i;
create view mx_v_datafield as select t.dtName, f.fldName, f.realName as fldRealName, f.baseType,
  t.dtId, f.fldId, t.realName as tabRealName, t.refName as tabRefName, t.state
  from tables t join fields f on f.dtId = t.dtId order by f.fldId;
create view Mx_v_Rtts as select 71 as rttId, 7 as rtId, dtName, dtId, realName, refName, 1 as style,
  state from tables where dtId = 1;
create view mx_v_rtfs as select 71 as rttId, 1000 + fldId as rtfId, fldName, realName, baseType,
  fldId from fields where dtId = 1;
create table long_texts (n int, t text);
insert into long_texts select n, repeat('客', n) || 'e' from generate_series(0, 9000, 900) as n;
insert into long_texts values (2047, repeat('a', 2047)), (2048, repeat('b', 2048)),
  (4094, repeat('c', 4094)), (5000, repeat('😀', 5000));
)sql";

std::u16string ConnectionText(std::int32_t port) {
  return U16("odbc:Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" + std::to_string(port) +
             ";Database=postgres");
}

/// A port of 127.0.0.1 that takes connections (or, closed, refuses them) and never answers.
class SilentPort {
 public:
  SilentPort() : handle_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(handle_, any, size), 0);
    EXPECT_EQ(listen(handle_, 8), 0);
    EXPECT_EQ(getsockname(handle_, any, &size), 0);
    port_ = ntohs(address.sin_port);
  }
  SilentPort(const SilentPort&) = delete;
  SilentPort& operator=(const SilentPort&) = delete;
  ~SilentPort() { Close(); }
  void Close() {
    if (handle_ >= 0) close(handle_);
    handle_ = -1;
  }
  std::int32_t Port() const { return port_; }

 private:
  int handle_;
  std::int32_t port_ = 0;
};

class OdbcAccessorServer : public PostgresSuite {
 protected:
  static void SetUpTestSuite() { StartServer(kViews); }

  static std::unique_ptr<CDBAccessor> Connect(
      std::int32_t loadSeconds = ORKBASE::kDefaultLoadSeconds) {
    return MakeAccessor(ConnectionText(server_->Port()), U16(PostgresServer::User()),
                        U16(PostgresServer::Password()), loadSeconds);
  }
};

/// Number and text of an accessor's error.
std::string ErrorOf(const CDBAccessor& accessor) {
  return std::to_string(accessor.errNumber) + " " + U8(accessor.ErrDescription());
}

}  // namespace

TEST_F(OdbcAccessorServer, ValuesAreBoundWhateverTheyHold) {
  const auto accessor = Connect();
  EXPECT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
  EXPECT_EQ(FieldsOf(*accessor, u"客户"), "名称");
  EXPECT_EQ(FieldsOf(*accessor, u"it's"), "of it's");
  EXPECT_EQ(FieldsOf(*accessor, u"\"q\""), "of \"q\"");
  EXPECT_EQ(FieldsOf(*accessor, u"100%"), "of 100%");
  for (const char16_t* name : {u"%", u"", u"' or ''='", u"orders", u"\U0001F600", u"\\"}) {
    EXPECT_EQ(FieldsOf(*accessor, name), "") << U8(name);
    EXPECT_EQ(accessor->errNumber, 0) << U8(accessor->ErrDescription());
  }
}

TEST_F(OdbcAccessorServer, ReadsColumnsByNameAndNullsAsTheDefault) {
  const auto accessor = Connect();
  auto rows = SelectTable(*accessor, u"Orders");
  ASSERT_NE(rows, nullptr) << U8(accessor->ErrDescription());
  std::u16string text;
  EXPECT_EQ(U8(rows->TextColumn(text, u"fldRealName", u"-")), "amt");
  EXPECT_EQ(U8(rows->TextColumn(text, u"TABREFNAME", u"-")), "-");
  EXPECT_EQ(rows->IntColumn(u"baseType", 0), 1);
  EXPECT_EQ(rows->IntColumn(u"state", 0), 1);
  rows->NextRow();
  EXPECT_EQ(U8(rows->TextColumn(text, u"fldRealName", u"-")), "-");
  EXPECT_EQ(rows->IntColumn(u"fldId", 0), 12);
}

TEST_F(OdbcAccessorServer, FindsIntegerIdsByText) {
  const auto accessor = Connect();
  EXPECT_EQ(Column(*accessor, SelectTemplate(*accessor, u"7"), u"fldName"), "Amount,Memo")
      << U8(accessor->ErrDescription());
  EXPECT_EQ(Column(*accessor, SelectTemplate(*accessor, u"8"), u"fldName"), "");
  EXPECT_EQ(accessor->errNumber, 0);
}

TEST_F(OdbcAccessorServer, AMissingViewIsAnErrorAndTheNextQueryWorks) {
  const auto accessor = Connect();
  EXPECT_EQ(accessor->SelectByTable(u"mx_v_nothing", u"a", Equals(u"a", u"x")), nullptr);
  EXPECT_NE(accessor->errNumber, 0);
  EXPECT_NE(U8(accessor->ErrDescription()).find("42P01"), std::string::npos)
      << U8(accessor->ErrDescription());
  EXPECT_NE(U8(accessor->ErrDescription()).find("mx_v_nothing"), std::string::npos);
  EXPECT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo");
  EXPECT_EQ(accessor->errNumber, 0);
  EXPECT_EQ(U8(accessor->ErrDescription()), "");
}

TEST_F(OdbcAccessorServer, OddStatementsFail) {
  const auto accessor = Connect();
  const MxParams none(false);
  for (const char16_t* statement :
       {u"", u"selec", u"select '客户'", u"select * from fields where ?",
        u"select dtName from tables where dtName = ?"}) {
    EXPECT_EQ(accessor->QueryByStatement(statement, none), nullptr) << U8(statement);
    EXPECT_NE(accessor->errNumber, 0);
    EXPECT_NE(U8(accessor->ErrDescription()), "");
  }
  EXPECT_EQ(FieldsOf(*accessor, u"客户"), "名称");
}

TEST_F(OdbcAccessorServer, ReadsATableOfManyFieldsInItsOrder) {
  const auto accessor = Connect();
  const auto rows = SelectTable(*accessor, u"Big");
  ASSERT_NE(rows, nullptr) << U8(accessor->ErrDescription());
  std::int32_t count = 0;
  for (; !rows->EndOfRows(); rows->NextRow()) {
    ASSERT_EQ(rows->IntColumn(u"fldId", 0), 100000 + ++count);
  }
  EXPECT_EQ(count, 5000);
}

// Long texts come in pieces, and a piece may end between the halves of a character.
TEST_F(OdbcAccessorServer, ReadsLongTextsWhole) {
  const auto accessor = Connect();
  const auto rows = accessor->SelectByTable(u"long_texts", u"n, t", Equals(u"1", u"1"));
  ASSERT_NE(rows, nullptr) << U8(accessor->ErrDescription());
  int count = 0;
  for (; !rows->EndOfRows(); rows->NextRow(), ++count) {
    const auto n = static_cast<std::size_t>(rows->IntColumn(u"n", -1));
    std::u16string text;
    rows->TextColumn(text, u"t", u"");
    std::u16string expected = std::u16string(n, u'客') + u"e";
    if (n == 2047) expected = std::u16string(n, u'a');
    if (n == 2048) expected = std::u16string(n, u'b');
    if (n == 4094) expected = std::u16string(n, u'c');
    if (n == 5000) {
      expected.clear();
      for (std::size_t i = 0; i < n; ++i) expected += u"\U0001F600";
    }
    EXPECT_TRUE(text == expected) << n << " read as " << text.size() << " units";
  }
  EXPECT_EQ(count, 15);
}

TEST_F(OdbcAccessorServer, AServerThatWentAwayAndCameBackWorksAgain) {
  const auto accessor = Connect();
  ASSERT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
  server_->Stop();
  ASSERT_TRUE(server_->Start()) << server_->Problem();
  EXPECT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
  EXPECT_EQ(accessor->errNumber, 0);
}

TEST_F(OdbcAccessorServer, AServerThatIsAwayIsAnErrorUntilItIsBack) {
  const auto accessor = Connect();
  ASSERT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
  server_->Stop();
  for (int i = 0; i < 2; ++i) {
    const double seconds = SecondsOf([&] { EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr); });
    EXPECT_LT(seconds, 5);
    EXPECT_NE(accessor->errNumber, 0);
    EXPECT_NE(U8(accessor->ErrDescription()), "");
  }
  ASSERT_TRUE(server_->Start()) << server_->Problem();
  EXPECT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
}

TEST_F(OdbcAccessorServer, AWrongPasswordIsAnErrorThatDoesNotShowIt) {
  const std::u16string wrong = u"wr0ng;{密码}";
  const std::u16string plain = ConnectionText(server_->Port());
  const std::unique_ptr<CDBAccessor> accessors[] = {
      MakeAccessor(plain, U16(PostgresServer::User()), wrong),
      MakeAccessor(plain + u";UID=ork;PWD={wr0ng;{密码}}}"),
      MakeAccessor(plain + u";UID=ork;PWD=wr0ng;Bad={wr0ng"),
      // A user whose name is the password: the server repeats it.
      MakeAccessor(plain, u"wr0ng", u"wr0ng")};
  for (const auto& accessor : accessors) {
    EXPECT_EQ(SelectTable(*accessor, u"Orders"), nullptr);
    EXPECT_NE(accessor->errNumber, 0);
    const std::string text = U8(accessor->ErrDescription());
    EXPECT_NE(text, "");
    EXPECT_EQ(text.find("wr0ng"), std::string::npos) << text;
  }
  EXPECT_NE(U8(accessors[3]->ErrDescription()).find("user \"***\""), std::string::npos)
      << U8(accessors[3]->ErrDescription());
}

TEST_F(OdbcAccessorServer, AHostGoesThroughTheDriverOfItsDatabaseType) {
  const auto accessor = CDBAccessorCreator::instance()->CreateAccessor(
      MxSvrInfo(u"127.0.0.1", server_->Port(), U16(PostgresServer::User()), u""), MxProxyInfo(),
      u"postgres", ORKBASE::kOpenGaussDs, false, true, U16(PostgresServer::Password()), u"");
  EXPECT_EQ(FieldsOf(*accessor, u"客户"), "名称") << U8(accessor->ErrDescription());
  EXPECT_EQ(accessor->QueryByStatement(u"insert into tables values (9)", MxParams(false)), nullptr);
  EXPECT_NE(accessor->errNumber, 0);
}

// The throw-away server has no certificate, so a connection that must be encrypted cannot be had.
TEST_F(OdbcAccessorServer, AnEncryptedConnectionIsNotSilentlyPlain) {
  const auto accessor = CDBAccessorCreator::instance()->CreateAccessor(
      MxSvrInfo(u"127.0.0.1", server_->Port(), U16(PostgresServer::User()), u""), MxProxyInfo(),
      u"postgres", ORKBASE::kOpenGaussDs, true, true, U16(PostgresServer::Password()), u"");
  EXPECT_EQ(SelectTable(*accessor, u"Orders"), nullptr);
  EXPECT_NE(U8(accessor->ErrDescription()).find("SSL"), std::string::npos)
      << U8(accessor->ErrDescription());
}

TEST(OdbcAccessor, AServerThatIsNotThereFailsInTime) {
  SilentPort port;
  const std::u16string silent = ConnectionText(port.Port());
  auto accessor = MakeAccessor(silent, u"ork", u"hidden-word");
  const double seconds = SecondsOf([&] { EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr); });
  EXPECT_LT(seconds, 5);
  EXPECT_NE(accessor->errNumber, 0);
  EXPECT_NE(U8(accessor->ErrDescription()), "");
  port.Close();
  accessor = MakeAccessor(silent, u"ork", u"hidden-word");
  EXPECT_LT(SecondsOf([&] { EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr); }), 2);
  EXPECT_NE(accessor->errNumber, 0);
  EXPECT_EQ(U8(accessor->ErrDescription()).find("hidden-word"), std::string::npos);
}

// The driver's own limit for a login is whole seconds, and two of them at least.
TEST(OdbcAccessor, ASilentServerAtTheConnectEndsWithTheLoad) {
  const ScopedLanguage language(u"en");
  const SilentPort port;
  const auto accessor = MakeAccessor(ConnectionText(port.Port()), u"ork", u"hidden-word", 1);
  for (int load = 0; load < 2; ++load) {
    accessor->BeginLoad();
    const double seconds = SecondsOf([&] {
      for (int i = 0; i < 20; ++i) EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr);
    });
    EXPECT_GT(seconds, 0.9);  // it is asked again in each load,
    EXPECT_LT(seconds, 10);   // and once
    EXPECT_EQ(ErrorOf(*accessor), "-1 The database did not answer in time (limit in seconds: 1).");
  }
}

// One driver manager serves all connections: one that waits must not hold up the others.
TEST_F(OdbcAccessorServer, ASilentServerDoesNotHoldUpAnother) {
  const SilentPort port;
  const auto silent = MakeAccessor(ConnectionText(port.Port()), u"ork", u"", 1);
  EXPECT_EQ(SelectTable(*silent, u"T"), nullptr);  // its driver still waits
  const auto accessor = Connect();
  EXPECT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
}

TEST_F(OdbcAccessorServer, AServerThatFallsSilentEndsWithTheLoad) {
  const ScopedLanguage language(u"en");
  const auto accessor = Connect(2);
  accessor->BeginLoad();
  ASSERT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
  ASSERT_TRUE(server_->Pause());
  for (int load = 0; load < 2; ++load) {  // on the open connection, then at a new one
    accessor->BeginLoad();
    const double seconds = SecondsOf([&] {
      for (int i = 0; i < 20; ++i) EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr);
    });
    EXPECT_GT(seconds, 0.9);
    EXPECT_LT(seconds, 20);
    EXPECT_EQ(ErrorOf(*accessor), "-1 The database did not answer in time (limit in seconds: 2).");
  }
  server_->Resume();
  accessor->BeginLoad();
  EXPECT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
}

TEST_F(OdbcAccessorServer, AnAccessorMayGoWhileItsDriverWaits) {
  auto accessor = Connect(1);
  ASSERT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
  auto idle = Connect();
  ASSERT_EQ(FieldsOf(*idle, u"Orders"), "Amount,Memo") << U8(idle->ErrDescription());
  ASSERT_TRUE(server_->Pause());
  EXPECT_LT(SecondsOf([&] {
              EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr);
              accessor.reset();
              idle.reset();
            }),
            20);
  server_->Resume();
}

TEST_F(OdbcAccessorServer, AQueryWithoutEndIsEndedOnTheServerToo) {
  const ScopedLanguage language(u"en");
  const MxParams none(false);
  for (const std::int32_t limit : {1, 2}) {
    const auto accessor = Connect(limit);
    const double seconds = SecondsOf(
        [&] { EXPECT_EQ(accessor->QueryByStatement(u"select pg_sleep(60)", none), nullptr); });
    EXPECT_LT(seconds, 20);
    EXPECT_EQ(ErrorOf(*accessor), "-1 The database did not answer in time (limit in seconds: " +
                                      std::to_string(limit) + ").");
    EXPECT_EQ(FieldsOf(*accessor, u"Orders"), "Amount,Memo") << U8(accessor->ErrDescription());
    const std::u16string sleepers =
        u"select count(*) as n from pg_stat_activity where state = 'active' and query like "
        u"'select pg_sleep%'";
    std::string left;
    for (int i = 0; i < 50 && left != "0"; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
      left = Column(*accessor, accessor->QueryByStatement(sleepers, none), u"n");
    }
    EXPECT_EQ(left, "0");
  }
}

TEST_F(OdbcAccessorServer, ASlowQueryWithinTheLimitIsRead) {
  const auto accessor = Connect();
  const auto rows = accessor->QueryByStatement(u"select pg_sleep(1.5), 7 as n", MxParams(false));
  EXPECT_EQ(Column(*accessor, rows, u"n"), "7") << U8(accessor->ErrDescription());
}

// What an administrator ends is told as the server tells it.
TEST_F(OdbcAccessorServer, AStatementEndedByTheServerKeepsItsError) {
  const auto accessor = Connect();
  const MxParams none(false);
  EXPECT_NE(
      accessor->QueryByStatement(u"select set_config('statement_timeout', '300', false)", none),
      nullptr);
  EXPECT_EQ(accessor->QueryByStatement(u"select pg_sleep(60)", none), nullptr);
  EXPECT_NE(U8(accessor->ErrDescription()).find("57014"), std::string::npos)
      << U8(accessor->ErrDescription());
}

// A driver without functions for 16-bit text: its connection string goes out as UTF-8.
TEST(OdbcAccessor, ReadsThroughADriverOfNarrowText) {
  std::string folder = (std::filesystem::temp_directory_path() / "orkrule-odbc-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const std::string path = folder + "/商店.db";
  const std::string script = ORKRULE_SOURCE_DIR "/scripts/make_sample_db.sh";
  ASSERT_EQ(std::system((script + " '" + path + "'").c_str()), 0);
  const auto accessor = MakeAccessor(U16("odbc:Driver={SQLite3};Database=" + path + ";NoCreat=1"));
  const std::string fields = FieldsOf(*accessor, u"客户");
  std::filesystem::remove_all(folder);
  if (U8(accessor->ErrDescription()).find("Can't open lib") != std::string::npos) {
    GTEST_SKIP() << "package libsqliteodbc is not installed";
  }
  EXPECT_EQ(fields, "名称,城市,金额,签约日期") << U8(accessor->ErrDescription());
}

TEST(OdbcAccessor, OddConnectionStringsFail) {
  const std::u16string texts[] = {u"odbc:",         u"odbc:;;;",
                                  u"odbc:nonsense", u"odbc:Driver={No Such}",
                                  u"odbc:Driver={", u"odbc:DSN=absent;PWD=hidden-word",
                                  u"odbc:=;=",      u"odbc:\xD800",
                                  u"ODBC:客户",     u"odbc:DSN=" + std::u16string(40000, u'x')};
  for (const std::u16string& text : texts) {
    const auto accessor = MakeAccessor(text);
    EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr) << U8(text.substr(0, 60));
    EXPECT_NE(accessor->errNumber, 0);
    EXPECT_NE(U8(accessor->ErrDescription()), "");
    EXPECT_EQ(U8(accessor->ErrDescription()).find("hidden-word"), std::string::npos);
  }
}

// The driver manager has no number of its own for this; an error is never 0.
TEST(OdbcAccessor, AnErrorWithoutANumberIsMinusOne) {
  const auto accessor = MakeAccessor(u"odbc:Driver={No Such Driver}");
  EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr);
  EXPECT_EQ(accessor->errNumber, -1);
}
