// What changes pass through on their way: values as bytes and texts, the file that they wait in.
#include "store/ChangeSpool.h"
#include "store/LedgerFile.h"
#include "store/RowGuard.h"
#include "store/ValueCode.h"

#include "ScopedLanguage.h"
#include "StoreValues.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <limits>

using namespace ORKDB;

namespace {

struct IdRow {
  StoreValue id;
  std::string text;
};
// clang-format off
const IdRow kIds[] = {
    {std::monostate(),                                "null"},
    {std::int64_t{0},                                 "0"},
    {std::int64_t{-17},                               "-17"},
    {std::numeric_limits<std::int64_t>::min(),        "-9223372036854775808"},
    {1.0,                                             "1.0"},
    {0.1,                                             "0.1"},
    {-1e300,                                          "-1e+300"},
    {std::u16string(),                                "\"\""},
    {std::u16string(u"1"),                            "\"1\""},
    {std::u16string(u"a-z 9/{}%_'"),                  "\"a-z 9/{}%_'\""},
    {std::u16string(u"aA"),                           "\"a\\u0041\""},  // also where case does not count
    {std::u16string(u"\"\\\n\0", 4),                  "\"\\u0022\\u005c\\u000a\\u0000\""},
    {std::u16string(u"é客\xD800"),                    "\"\\u00e9\\u5ba2\\ud800\""},
    {StoreBytes(),                                    "{\"bytes\":\"\"}"},
    {StoreBytes{std::byte{0}, std::byte{0xAF}},       "{\"bytes\":\"00af\"}"},
};
// clang-format on

TEST(ValueCode, WritesIdsAsJsonThatReadsBack) {
  for (const IdRow& row : kIds) {
    EXPECT_EQ(IdText(row.id), row.text);
    EXPECT_EQ(ShortIdText(row.id), row.text);
    StoreValue read = std::u16string(u"another");
    EXPECT_TRUE(ReadIdText(row.text, read)) << row.text;
    EXPECT_TRUE(IsSame(read, row.id)) << row.text;
  }
}

TEST(ValueCode, ShortensIdsThatDoNotFitTheLedger) {
  const auto ofSize = [](std::size_t size) { return StoreValue(std::u16string(size, u'x')); };
  EXPECT_LE(ShortIdText(ofSize(300)).size(), 250U);
  EXPECT_NE(ShortIdText(ofSize(300)), ShortIdText(ofSize(301)));
  EXPECT_EQ(ShortIdText(ofSize(248)), IdText(ofSize(248)));
  EXPECT_NE(ShortIdText(ofSize(249)), IdText(ofSize(249)));
}

TEST(ValueCode, RefusesTextsThatAreNoIds) {
  StoreValue id;
  for (const char* text : {"", "\"", "nul", "1x", "--1", "\"\\x\"", "\"\\u00\"", "\"\\u00g0\"",
                           "{\"bytes\":\"0\"}", "{\"bytes\":\"\"", "99999999999999999999x"}) {
    EXPECT_FALSE(ReadIdText(text, id)) << text;
  }
}

// The published values of this hash.
TEST(ValueCode, HashesAsFnv1a) {
  EXPECT_EQ(HexOf(HashOf("")), "cbf29ce484222325");
  EXPECT_EQ(HexOf(HashOf("a")), "af63dc4c8601ec8c");
  EXPECT_EQ(HexOf(HashOf("foobar")), "85944171f73967e8");
}

TEST(ValueCode, KeepsValuesAsBytes) {
  std::string bytes;
  for (const IdRow& row : kIds) AppendValue(bytes, row.id);
  ValueReader reader(bytes);
  for (const IdRow& row : kIds) EXPECT_TRUE(IsSame(reader.Next(), row.id)) << row.text;
  EXPECT_TRUE(reader.IsAtEnd());
  EXPECT_FALSE(reader.HasFailed());
}

TEST(ValueCode, NoticesMissingBytes) {
  for (const IdRow& row : kIds) {
    std::string bytes;
    AppendValue(bytes, row.id);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      ValueReader reader(std::string_view(bytes).substr(0, size));
      reader.Next();
      EXPECT_TRUE(reader.HasFailed()) << row.text << " " << size;
    }
  }
}

TEST(RowGuard, PutsTheQueryIntoOne) {
  const struct {
    const char16_t* select;
    const char16_t* query;
  } kRows[] = {
      {u"select 1", u"select * from (select 1\n) orkrule_store where id = :id"},
      {u"select 1 ; \n;", u"select * from (select 1\n) orkrule_store where id = :id"},
      {u"select 1 -- one", u"select * from (select 1 -- one\n) orkrule_store where id = :id"},
      {u" ; ", u"select * from (\n) orkrule_store where id = :id"},
  };
  for (const auto& row : kRows) EXPECT_EQ(U8(QueryOfOne(row.select)), U8(row.query));
}

StoreChange ChangeOf(std::int64_t number, std::size_t size) {
  return {number, {std::u16string(size, u'a')}, {std::u16string(size, u'b'), number}};
}

bool IsSameChange(const StoreChange& one, const StoreChange& other) {
  const auto isSameRow = [](const StoreRow& a, const StoreRow& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), IsSame);
  };
  return IsSame(one.id, other.id) && isSameRow(one.before, other.before) &&
         isSameRow(one.values, other.values);
}

// Sizes around that of the pieces in which the file is read and written.
TEST(ChangeSpool, GivesBackWhatItGot) {
  const std::size_t kSizes[] = {0, 1, 100, 8'000, 16'384, 40'000, 1'000'000, 3, 16'360, 16'370, 0};
  ChangeSpool spool;
  std::int64_t number = 0;
  for (const std::size_t size : kSizes) spool.Add(ChangeOf(++number, size));
  EXPECT_EQ(spool.Count(), 11);
  StoreChange change;
  ChangeSpool::Place third;
  for (int round = 0; round < 2; ++round) {
    spool.ReturnTo({});
    number = 0;
    for (const std::size_t size : kSizes) {
      if (number == 2) third = spool.Here();
      EXPECT_FALSE(spool.IsAtEnd());
      spool.Read(change);
      EXPECT_TRUE(IsSameChange(change, ChangeOf(++number, size))) << size;
    }
    EXPECT_TRUE(spool.IsAtEnd());
  }
  spool.ReturnTo(third);
  spool.Read(change);
  EXPECT_TRUE(IsSameChange(change, ChangeOf(3, 100)));
  spool.Add({std::monostate(), {}, {}});
  spool.ReturnTo({spool.Here().offset, spool.Here().index});
  spool.Read(change);
  EXPECT_TRUE(IsSameChange(change, ChangeOf(4, 8'000)));
}

std::int64_t ResidentBytes() {
  std::ifstream file("/proc/self/statm");
  std::int64_t total = 0;
  std::int64_t resident = 0;
  file >> total >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kKeepsWhatWasFreed = true;
#else
constexpr bool kKeepsWhatWasFreed = false;
#endif

TEST(ChangeSpool, NeedsNoMoreMemoryForAMillionChanges) {
  ChangeSpool spool;
  spool.Add(ChangeOf(0, 30));
  const std::int64_t before = ResidentBytes();
  for (std::int64_t i = 1; i < 1'000'000; ++i) spool.Add(ChangeOf(i, 30));
  StoreChange change;
  std::int64_t sum = 0;
  while (!spool.IsAtEnd()) {
    spool.Read(change);
    sum += std::get<std::int64_t>(change.id);
  }
  EXPECT_EQ(sum, std::int64_t{999'999} * 1'000'000 / 2);
  if (!kKeepsWhatWasFreed) {
    EXPECT_LT(ResidentBytes() - before, std::int64_t{4} << 20);
  }
}

// In a process of its own, since files cannot grow in it.
TEST(ChangeSpool, TellsThatADiskIsFull) {
  const pid_t process = fork();
  if (process == 0) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {std::size_t{1} << 20, std::size_t{1} << 20};
    setrlimit(RLIMIT_FSIZE, &limit);
    ChangeSpool spool;
    const std::string failure = FailureOf([&] {
      for (std::int64_t i = 0; i < 100; ++i) spool.Add(ChangeOf(i, 10'000));
    });
    _exit(failure.starts_with("refusal ") ? 0 : 1);
  }
  int status = -1;
  waitpid(process, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST(ChangeSpool, NamesAFolderThatTakesNoFiles) {
  const ScopedLanguage english(u"en");
  const char* const old = std::getenv("TMPDIR");
  const std::string folder = old != nullptr ? old : "";
  setenv("TMPDIR", "/no/such/folder", 1);
  const std::string failure = FailureOf([] { const ChangeSpool spool; });
  EXPECT_TRUE(failure.starts_with(
      "refusal The changes cannot be kept in the folder /no/such/folder until they are written: "))
      << failure;
  if (old != nullptr) {
    setenv("TMPDIR", folder.c_str(), 1);
  } else {
    unsetenv("TMPDIR");
  }
}

TEST(LedgerLine, ReadsJustWhatItWrites) {
  const std::string_view run = "0123456789abcdef";
  const std::string kLines[] = {
      TextOf({LedgerLine::kWrote, run, "17", 1, 0xFFFFFFFFFFFFFFFF}),
      TextOf({LedgerLine::kLeft, run, "\"a\\u0022\""}),
      TextOf({LedgerLine::kPrepared, run}),
      TextOf({LedgerLine::kCommitted, run}),
      TextOf({LedgerLine::kWithdrawn, run}),
      TextOf({LedgerLine::kFinished, run}),
      TextOf({LedgerLine::kForgotten, run}),
  };
  EXPECT_EQ(
      kLines[0],
      R"({"run":"0123456789abcdef","id":17,"was":"0000000000000001","is":"ffffffffffffffff"})");
  EXPECT_EQ(kLines[1], R"({"run":"0123456789abcdef","left":"a\u0022"})");
  EXPECT_EQ(kLines[2], R"({"run":"0123456789abcdef","state":"prepared"})");
  for (const std::string& text : kLines) {
    LedgerLine line;
    EXPECT_TRUE(ReadLedgerLine(text, line)) << text;
    EXPECT_EQ(TextOf(line), text);
    for (std::size_t size = 0; size < text.size(); ++size) {
      EXPECT_FALSE(ReadLedgerLine(text.substr(0, size), line)) << text.substr(0, size);
    }
  }
}

}  // namespace
