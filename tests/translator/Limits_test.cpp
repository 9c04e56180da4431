// Translating what is very deep or very large.
#include "CpuSeconds.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "SmallThread.h"
#include "Translating.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace ORKBASE {
namespace {

class TranslationLimits : public testing::Test {
 protected:
  std::u16string Verified(MXRULE_DATATYPE type, const std::u16string& rule) {
    std::u16string document;
    EXPECT_TRUE(rules_.Verify(type, rule, document)) << U8(rules_.errDescription());
    return document;
  }

  ScopedLanguage language_{u"en"};
  SampleExpression rules_;
};

// --- size

/// A period in a switch in a period: each level stands in both bounds of the one around it.
std::u16string NestedPeriods(int depth) {
  std::u16string year = u"2020";
  for (int i = 1; i < depth; ++i) {
    year = u"switch(T.d between thisYear(" + year + u"), 1, 0)";
  }
  return u"T.d between thisYear(" + year + u")";
}

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST_F(TranslationLimits, ThatGrowTooLargeEndBeforeTheMemoryDoes) {
  const std::u16string small = Verified(kLogicDataType, NestedPeriods(8));
  EXPECT_TRUE(Translate(rules_, small).done);
  const std::u16string large = Verified(kLogicDataType, NestedPeriods(60));
  const long before = PeakKilobytes();
  const Result result = Translate(rules_, large);
  EXPECT_FALSE(result.done);
  EXPECT_EQ(rules_.errNumber(), -1);
  EXPECT_EQ(U8(rules_.errDescription()), "The translated rule becomes too large.");
  EXPECT_EQ(U8(result.translated + result.a + result.b), "tab");
  EXPECT_LT(PeakKilobytes() - before, 1'500'000);
  EXPECT_TRUE(Translate(rules_, small).done);
  EXPECT_EQ(rules_.errNumber(), 0);
}

std::u16string Flat(std::size_t nodes) {
  std::u16string document = u"<a primary='f' semanticType='1'>";
  for (std::size_t i = 1; i < nodes; ++i) document += u"<b/>";
  return document + u"</a>";
}

TEST_F(TranslationLimits, OfAMillionNodesAreTheLargest) {
  EXPECT_TRUE(Translate(rules_, Flat(1'000'000)).done);
  EXPECT_FALSE(Translate(rules_, Flat(1'000'001)).done);
  EXPECT_EQ(U8(rules_.errDescription()), "The translated rule becomes too large.");
}

// --- depth

std::u16string Repeated(const std::u16string& text, int count) {
  std::u16string out;
  for (int i = 0; i < count; ++i) out += text;
  return out;
}

TEST_F(TranslationLimits, AHundredThousandDeep) {
  constexpr int kDepth = 100'000;
  const std::u16string document =
      Repeated(u"<tag primary='not' symbol='21' semanticType='2'>", kDepth) +
      u"<tag primary='1'/>" + Repeated(u"</tag>", kDepth);
  OnSmallThread([&] {
    MxExpression rules;
    EXPECT_TRUE(Sql(rules, document) == U8(Repeated(u"not ", kDepth)) + "1");
    std::u16string translated;
    std::u16string a;
    std::u16string b;
    EXPECT_TRUE(rules.GetSpec(document, kSqlServerDs, translated, a, b, true));
    EXPECT_TRUE(U8(a) == "(" + U8(Repeated(u"not ", kDepth)) + "1)");
  });
}

TEST_F(TranslationLimits, HandledFunctionsAHundredThousandDeep) {
  constexpr int kDepth = 100'000;
  const std::u16string document =
      Repeated(u"<tag primary='count1' symbol='27' semanticType='1'>", kDepth) +
      u"<tag primary='1'/>" + Repeated(u"</tag>", kDepth);
  OnSmallThread([&] {
    MxExpression rules;
    EXPECT_TRUE(Sql(rules, document) ==
                U8(Repeated(u"count(distinct  ", kDepth)) + "1" + U8(Repeated(u")", kDepth)));
  });
}

// Handlers that look at all that stands below them do not look there again and again.
TEST_F(TranslationLimits, SearchesBelowNodesAHundredThousandDeep) {
  constexpr int kDepth = 100'000;
  struct Row {
    const char16_t* open;
    const char16_t* last;
    const char16_t* close;
    std::string sql;
  };
  const auto times = [](const char16_t* text) { return U8(Repeated(text, kDepth)); };
  const Row rows[] = {
      {u"<tag primary='like' symbol='19' semanticType='0'><tag primary='a'/>",
       u"<tag primary='b'/>", u"</tag>", times(u"a  like  ('%' + ") + "b" + times(u" + '%')")},
      {u"<tag primary='like' symbol='19' semanticType='0'><tag primary='a'/>",
       u"<tag primary='%'/>", u"</tag>", times(u"a  like  ") + "%"},
      {u"<tag primary='switch' symbol='27' semanticType='1'>", u"<tag primary='b'/>", u"</tag>",
       times(u"case  else  ") + "b" + times(u"  end ")},
  };
  for (const Row& row : rows) {
    const std::u16string document =
        Repeated(row.open, kDepth) + row.last + Repeated(row.close, kDepth);
    OnSmallThread([&] {
      const CpuSeconds time;
      MxExpression rules;
      const std::string sql = Sql(rules, document);
      EXPECT_TRUE(sql == row.sql) << sql.substr(0, 200);
      EXPECT_LT(time.Used(), 30);
    });
  }
}

TEST_F(TranslationLimits, CallsOfTenThousandArguments) {
  const CpuSeconds time;
  const std::u16string branches = Repeated(u"T.a > 1, 2, ", 10'000);
  EXPECT_TRUE(Sql(rules_, Verified(kNumDataType, u"switch(" + branches + u"3)")) ==
              "case" + U8(Repeated(u"  when  isnull([T].a,0) > 1  then  2", 10'000)) +
                  "  else  3  end ");
  const std::u16string members = Repeated(u"T.a + 1, ", 10'000);
  EXPECT_NE(Sql(rules_, Verified(kLogicDataType, u"T.a in thisSet(" + members + u"2)")), "");
  const std::u16string terms = Repeated(u"T.a + ", 30'000);
  EXPECT_NE(Sql(rules_, Verified(kLogicDataType, u"T.a in thisSet(" + terms + u"2)")), "");
  EXPECT_LT(time.Used(), 30);
}

TEST_F(TranslationLimits, ArgumentsThatAreCopiedAHundredThousandDeep) {
  constexpr int kDepth = 100'000;
  const std::u16string document =
      u"<tag primary='thisYear' symbol='27' semanticType='1'>" +
      Repeated(u"<tag primary='-' symbol='16' semanticType='2'>", kDepth) + u"<tag primary='1'/>" +
      Repeated(u"</tag>", kDepth) + u"</tag>";
  OnSmallThread([&] {
    MxExpression rules;
    const std::string year = U8(Repeated(u"- ", kDepth)) + "1";
    EXPECT_TRUE(Sql(rules, document) == "dbo.fStartTime('yy'," + year +
                                            ",0,0,0)  and  dbo.fEndTime('yy'," + year + ",0,0,0)");
  });
}

TEST_F(TranslationLimits, AChainOfAHundredThousandConditions) {
  constexpr int kCount = 100'000;
  const std::u16string document =
      Repeated(u"<tag primary='and' symbol='20' semanticType='0'>", kCount) +
      u"<tag primary='c'/>" + Repeated(u"<tag primary='c'/></tag>", kCount);
  OnSmallThread([&] {
    MxExpression rules;
    const std::string expected = "c" + U8(Repeated(u" and c", kCount));
    EXPECT_TRUE(Sql(rules, document) == expected);
    std::u16string translated;
    std::u16string a;
    std::u16string b;
    EXPECT_TRUE(rules.GetSpec(document, kSqlServerDs, translated, a, b, true));
    EXPECT_TRUE(U8(a) == "(" + expected + ")");
    EXPECT_TRUE(b.empty());
  });
}

}  // namespace
}  // namespace ORKBASE
