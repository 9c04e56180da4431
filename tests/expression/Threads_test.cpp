// Copies of one engine in threads of their own. The tests hold what each thread is to see; that no
// two of them meet in memory is ThreadSanitizer's to tell, for which these tests are run by it.
#include "MxExpression.h"

#include "DataAccess.h"
#include "OrkPlatform.h"

#include "SampleDatabase.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

using namespace ORKBASE;

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 100;
constexpr const char16_t* kRule = u"T.a > 1 and Orders.Qty + 1 < T.b and Customer.Name like 'A%'";
constexpr const char* kSql =
    "isnull([T].a,0) > 1 and isnull([Orders].Qty,0) + 1 < isnull([T].b,0) and "
    "isnull([Customer].Name,'')  like  N'A%'";

bool Verifies(MxExpression& rules, const std::u16string& rule) {
  std::u16string document;
  return rules.Verify(kLogicDataType, rule, document);
}

/// The SQL of a rule, or the error.
std::string Sql(MxExpression& rules, const std::u16string& rule) {
  std::u16string document, translated, a, b;
  if (!rules.Verify(kLogicDataType, rule, document)) return U8(rules.errDescription());
  rules.GetSpec(document, kSqlServerDs, translated, a, b, false);
  return U8(a);
}

/// Runs `work(engine, index)` in threads, each with a copy of the source that it makes first.
void RunWithCopies(const MxExpression& source, int threads,
                   const std::function<void(MxExpression&, int)>& work) {
  std::vector<MxExpression> copies(static_cast<std::size_t>(threads), source);
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) {
    running.emplace_back([&work, &copy = copies[static_cast<std::size_t>(i)], i] {
      SetThreadLanguage(u"en");
      work(copy, i);
    });
  }
  for (std::thread& thread : running) thread.join();
}

class ExpressionThreads : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }
};

}  // namespace

TEST_F(ExpressionThreads, VerifyAndTranslateWithCopies) {
  SampleExpression source;
  source.SetRt(u"7");
  source.SetDts(u"T,Orders,Customer");
  RunWithCopies(source, kThreads, [](MxExpression& rules, int) {
    for (int i = 0; i < kRounds; ++i) ASSERT_EQ(Sql(rules, kRule), kSql);
  });
  EXPECT_EQ(Sql(source, kRule), kSql);
}

TEST_F(ExpressionThreads, VerifyAndTranslateWithCopiesOfAnEngineThatHasTranslated) {
  SampleExpression source;
  ASSERT_EQ(Sql(source, kRule), kSql);
  RunWithCopies(source, kThreads, [](MxExpression& rules, int) {
    for (int i = 0; i < kRounds; ++i) {
      ASSERT_EQ(U8(rules.GetSysTabName(kFormFieldSymbol, u"")), "t__thisCaseVar");
      ASSERT_EQ(Sql(rules, kRule), kSql);
    }
  });
}

TEST_F(ExpressionThreads, RenameWhileTheSourceVerifies) {
  SampleExpression source;
  source.SetDts(u"T,Orders");
  MxExpression copy(source);
  std::atomic<bool> isDone = false;
  std::thread renaming([&] {
    SetThreadLanguage(u"en");
    for (int i = 0; i < kRounds; ++i) {
      EXPECT_EQ(copy.ReplaceDtOrDfNames(u"T:N", u"N.a:first"), 0);
      EXPECT_EQ(copy.ReplaceDtOrDfNames(u"N:T", u"T.first:a"), 0);
    }
    isDone = true;
  });
  int seen = 0;
  while (!isDone || seen == 0) {
    // A call sees one state of the names, whole: with both new names or with both old ones.
    EXPECT_FALSE(Verifies(source, u"T.first > 1"));
    EXPECT_FALSE(Verifies(source, u"N.a > 1"));
    seen += Verifies(source, u"T.a > Orders.Qty") || Verifies(source, u"N.first > Orders.Qty");
  }
  renaming.join();
  EXPECT_TRUE(Verifies(source, u"T.a > Orders.Qty"));
}

TEST_F(ExpressionThreads, RenameInAllCopiesAtOnce) {
  SampleExpression source;
  source.SetDts(u"T,Orders");
  const char16_t* const fields[] = {u"Orders.Qty", u"Orders.Price", u"Orders.Amount", u"T.a"};
  RunWithCopies(source, kThreads, [&](MxExpression& rules, int thread) {
    const std::u16string field = fields[thread];
    const std::u16string table = field.substr(0, field.find(u'.'));
    std::u16string last = field;
    for (int i = 0; i < kRounds; ++i) {
      const std::u16string name =
          u"f" + U16(std::to_string(thread)) + u"_" + U16(std::to_string(i));
      ASSERT_EQ(rules.ReplaceDtOrDfNames(u"", last + u":" + name), 0);
      last = table + u"." + name;
      ASSERT_TRUE(Verifies(rules, last + u" > 1"));
    }
  });
  // No rename of one copy has undone that of another.
  EXPECT_TRUE(Verifies(source, u"Orders.f0_99 > Orders.f1_99 and Orders.f2_99 > T.f3_99"));
}

TEST_F(ExpressionThreads, LoadTablesFromOneDatabaseAtOnce) {
  const SampleExpression source;
  const char16_t* const rules[] = {u"T.a > 1", u"Orders.Qty > 1", u"Customer.Name = 'x'",
                                   u"Stock.Count > 1"};
  RunWithCopies(source, kThreads, [&](MxExpression& engine, int thread) {
    for (int i = 0; i < kRounds / 10; ++i) {
      MxExpression fresh(engine);
      ASSERT_TRUE(Verifies(fresh, rules[thread])) << U8(fresh.errDescription());
      ASSERT_FALSE(Verifies(fresh, u"NoSuch.a > 1"));
      ASSERT_EQ(fresh.errRecord().behind.at(0).cause, kRequestCause);
      fresh.SetRt(u"7");
      ASSERT_EQ(fresh.errNumber(), 0);
      ASSERT_TRUE(Verifies(fresh, u"thisReport.Header.Total > 1"));
    }
  });
}

TEST_F(ExpressionThreads, LoadTheSameTableAtOnce) {
  const SampleExpression source;
  RunWithCopies(source, kThreads, [](MxExpression& rules, int) {
    rules.SetDts(u"T,Orders,Customer");
    ASSERT_EQ(rules.errNumber(), 0);
    ASSERT_EQ(Sql(rules, kRule), kSql);
  });
}

TEST_F(ExpressionThreads, AttachDocumentsAndTemplatesToCopies) {
  SampleExpression source;
  source.SetRt(u"7");
  RunWithCopies(source, kThreads, [](MxExpression& rules, int thread) {
    const std::u16string name = u"v" + U16(std::to_string(thread));
    const std::string sql = std::to_string(thread) + " < isnull(<F1604>,0)";
    for (int i = 0; i < kRounds / 10; ++i) {
      rules.SetCAXDD(1, u"<dd><enums><e name='E' dispName='E'><v name='" + name + u"' dispName='" +
                            name + u"' val='" + name.substr(1) + u"'/></e></enums></dd>");
      rules.SetRt(u"7");
      ASSERT_EQ(Sql(rules, u"AutoCADEnum.E." + name + u" < thisReport.Header.Total"), sql);
    }
  });
  EXPECT_FALSE(Verifies(source, u"AutoCADEnum.E.v0 > 1"));
}

TEST_F(ExpressionThreads, ReadAnewWhileOthersVerifyAndRename) {
  SampleExpression source;
  source.SetRt(u"7");
  source.SetDts(u"T,Orders,Customer");
  RunWithCopies(source, kThreads, [](MxExpression& rules, int thread) {
    for (int i = 0; i < kRounds / 5; ++i) {
      switch (thread) {
        case 0:
          ASSERT_TRUE(rules.Refresh()) << U8(rules.errDescription());
          break;
        case 1:
          ASSERT_EQ(rules.ReplaceDtOrDfNames(u"", u"T.s:t"), 0);
          break;
        default:
          ASSERT_EQ(Sql(rules, kRule), kSql);
      }
    }
  });
  EXPECT_TRUE(source.Refresh());
  EXPECT_TRUE(Verifies(source, u"T.s = 'x'"));
}

TEST_F(ExpressionThreads, DestroyEnginesWhileOthersWork) {
  auto source = std::make_unique<SampleExpression>();
  source->SetDts(u"T,Orders,Customer");
  RunWithCopies(*source, kThreads, [&](MxExpression& rules, int thread) {
    if (thread == 0) source.reset();
    for (int i = 0; i < kRounds / 5; ++i) {
      auto copy = std::make_unique<MxExpression>(rules);
      ASSERT_EQ(Sql(*copy, kRule), kSql);
      ASSERT_TRUE(Verifies(*copy, u"Stock.Count > 1"));
      copy->ReplaceDtOrDfNames(u"Stock:S", u"");
    }
  });
}

namespace {

/// A database that answers only when it is told to.
class Silence {
 public:
  void Wait() {
    std::unique_lock lock(mutex_);
    isAsked_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return isOver_; });
  }
  void WaitUntilAsked() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isAsked_; });
  }
  void End() {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isAsked_ = false;
  bool isOver_ = false;
};

struct SilentAccessor : ORKDB::CDBAccessor {
  explicit SilentAccessor(Silence& its) : silence(its) {}
  std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string& /*statement*/,
                                                        const ORKDB::MxParams& /*params*/,
                                                        const std::u16string& /*reservedA*/,
                                                        std::int32_t /*reservedB*/,
                                                        std::int32_t /*reservedC*/) override {
    silence.Wait();
    SetError(5, u"silent");
    return nullptr;
  }
  Silence& silence;
};

}  // namespace

TEST_F(ExpressionThreads, WorkWhileTheDatabaseKeepsACopyWaiting) {
  Silence silence;
  ORKDB::CDBAccessorCreator::instance()->RegisterKind(
      u"silent:", [&](const ORKDB::AccessorRequest& /*request*/) {
        return std::make_unique<SilentAccessor>(silence);
      });
  SampleExpression source;
  source.SetDts(u"T,Orders,Customer");
  source.Connect(u"silent:", 0, u"", u"", u"", kSqlServerDs, false, true, u"");
  MxExpression waiting(source);
  std::thread thread([&] {
    EXPECT_FALSE(Verifies(waiting, u"NoSuch.a > 1"));
    EXPECT_EQ(waiting.errRecord().cause, kDatabaseCause);
  });
  silence.WaitUntilAsked();
  EXPECT_EQ(Sql(source, kRule), kSql);
  MxExpression copy(source);
  EXPECT_EQ(copy.ReplaceDtOrDfNames(u"T:N", u""), 0);
  EXPECT_TRUE(Verifies(source, u"N.a > Orders.Qty"));
  silence.End();
  thread.join();
  ORKDB::CDBAccessorCreator::instance()->RegisterKind(u"silent:", {});
}
