// What completion asks of the database, and that the engine does not see it.
#include "RuleAuthoring.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"
#include "expression/ExpressionState.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace ORKBASE {
namespace {

/// Notes which tables are asked for.
struct NotingAccessor : ORKDB::CDBAccessor {
  explicit NotingAccessor(std::unique_ptr<ORKDB::CDBAccessor> real) : inner(std::move(real)) {}
  std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                        const ORKDB::MxParams& params,
                                                        const std::u16string& /*reservedA*/,
                                                        std::int32_t /*reservedB*/,
                                                        std::int32_t /*reservedC*/) override {
    for (const ORKDB::MxParam& param : params.Params()) asked += U8(param.value) + " ";
    auto rows = inner->QueryByStatement(statement, params);
    SetError(inner->errNumber, inner->ErrDescription());
    return rows;
  }
  std::unique_ptr<ORKDB::CDBAccessor> inner;
  static inline std::string asked;
};

class CompletionTrace : public testing::Test {
 protected:
  CompletionTrace() : authoring_(engine_) {
    Creator().RegisterKind(u"noting:", [](const ORKDB::AccessorRequest& request) {
      const ORKDB::MxSvrInfo server(u"sqlite:" + request.location, 0, u"", u"");
      return std::make_unique<NotingAccessor>(Creator().CreateAccessor(
          server, request.proxy, u"", request.dsType, false, true, u"", u""));
    });
    engine_.Connect(U16("noting:" + SampleDatabase().Path()), 0, u"", u"", u"", kSqlServerDs, false,
                    true, u"");
    engine_.SetDts(u"T");
    NotingAccessor::asked.clear();
  }
  ~CompletionTrace() override { Creator().RegisterKind(u"noting:", {}); }

  static ORKDB::CDBAccessorCreator& Creator() { return *ORKDB::CDBAccessorCreator::instance(); }

  /// The names of the items at the end of a rule, and the tables that were asked for.
  std::string Asked(const std::u16string& rule) {
    NotingAccessor::asked.clear();
    RuleCompletion completion;
    const auto end = static_cast<std::int32_t>(rule.size());
    EXPECT_TRUE(authoring_.Complete(kLogicDataType, rule, end, 0, false, completion));
    return NotingAccessor::asked;
  }

  const ScopedLanguage english_{u"en"};
  MxExpression engine_;
  RuleAuthoring authoring_;
};

TEST_F(CompletionTrace, AsksForEachTableOnce) {
  EXPECT_EQ(Asked(u"T.a > Orders.Amount + Orders.Qty + Orders."), "Orders ");
  EXPECT_EQ(Asked(u"T.a > Orders.Amount + Orders.Qty + Orders."), "");
}

TEST_F(CompletionTrace, RemembersMissingTablesUntilTheEngineLoads) {
  EXPECT_EQ(Asked(u"No.x > No.y and No."), "No ");
  EXPECT_EQ(Asked(u"No.x > No.y and No."), "");
  engine_.SetDts(u"Customer");
  EXPECT_EQ(Asked(u"No.x > No.y and No."), "No ");
}

TEST_F(CompletionTrace, AsksForNothingWithoutATable) {
  EXPECT_EQ(Asked(u"T.a > 1.5"), "");
  EXPECT_EQ(Asked(u"T.a > sum"), "");
  EXPECT_EQ(Asked(u"T.a > '1.5"), "");
  EXPECT_EQ(Asked(u"T.a > ."), "");
}

TEST_F(CompletionTrace, LeavesNoneOnTheEngine) {
  const MxDictionarys& dictionaries = EngineAccess::Of(engine_).dictionaries;
  std::u16string document;
  EXPECT_FALSE(engine_.Verify(kNumDataType, u"T.a +", document));
  const MxErrorRecord error = engine_.errRecord();
  const auto stamp = dictionaries.StampNow();
  const auto keys = dictionaries.dictionaries().size();
  Asked(u"Orders.Amount > Stock.Count + No.x + Customer.");
  EXPECT_EQ(dictionaries.dictionaries().size(), keys);
  EXPECT_EQ(dictionaries.StampNow(), stamp);
  EXPECT_EQ(engine_.errRecord().message, error.message);
  EXPECT_EQ(engine_.errRecord().offset, error.offset);
  NotingAccessor::asked.clear();
  EXPECT_TRUE(engine_.Verify(kNumDataType, u"Orders.Amount", document));
  EXPECT_EQ(NotingAccessor::asked, "Orders ");
}

TEST_F(CompletionTrace, FollowsWhatTheEngineLoadsAndRenames) {
  const auto fields = [&](const std::u16string& rule) {
    RuleCompletion completion;
    const auto end = static_cast<std::int32_t>(rule.size());
    authoring_.Complete(kNumDataType, rule, end, 0, false, completion);
    std::string texts;
    for (const RuleItem& item : completion.items) {
      if (item.kind == u"field" && item.text != u"thisDoc.") texts += U8(item.text) + " ";
    }
    return texts;
  };
  EXPECT_EQ(fields(u""), "T.a T.b ");
  engine_.SetDts(u"Stock");
  EXPECT_EQ(fields(u""), "Stock.Count T.a T.b ");
  engine_.ReplaceDtOrDfNames(u"T:Tee", u"Tee.a:first");
  EXPECT_EQ(fields(u""), "Stock.Count Tee.b Tee.first ");
}

}  // namespace
}  // namespace ORKBASE
