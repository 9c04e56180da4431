// Connecting an engine: what reaches the data access, and when its loads begin.
#include "MxExpression.h"

#include "DataAccess.h"

#include "SampleDatabase.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace ORKBASE;

namespace {

/// What an accessor of the kind `noted:` was told: "L" for the begin of a load, "q" for a query.
std::string calls;

/// Has no rows for any query.
struct NotingAccessor : ORKDB::CDBAccessor {
  std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string&,
                                                        const ORKDB::MxParams&,
                                                        const std::u16string&, std::int32_t,
                                                        std::int32_t) override {
    calls += 'q';
    SetError(-1, u"nothing here");
    return nullptr;
  }
  void BeginLoad() override { calls += 'L'; }
};

class Connecting : public testing::Test {
 protected:
  void SetUp() override {
    calls.clear();
    ORKDB::CDBAccessorCreator::instance()->RegisterKind(
        u"noted:",
        [](const ORKDB::AccessorRequest&) { return std::make_unique<NotingAccessor>(); });
  }
  void TearDown() override { ORKDB::CDBAccessorCreator::instance()->RegisterKind(u"noted:", {}); }
};

}  // namespace

TEST_F(Connecting, EachCallThatMayLoadBeginsALoad) {
  MxExpression rules;
  rules.Connect(u"noted:", 0, u"", u"", u"", kSqlServerDs, false, true, u"");
  EXPECT_EQ(calls, "");
  std::u16string document;
  EXPECT_TRUE(rules.Verify(kNumDataType, u"1 + 2", document));
  EXPECT_EQ(calls, "L");
  EXPECT_FALSE(rules.Verify(kNumDataType, u"T.a + 1", document));
  EXPECT_EQ(calls, "LLq");
  rules.SetDts(u"T");
  EXPECT_EQ(calls, "LLqLq");
  rules.SetRt(u"7");
  EXPECT_EQ(calls, "LLqLqLq");
}
