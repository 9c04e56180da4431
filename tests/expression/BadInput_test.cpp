// Input that nobody wrote by hand: an error pair or an empty result, never a crash, in bounded
// time.
#include "MxExpression.h"
#include "OrkPlatform.h"

#include "CpuSeconds.h"
#include "SampleDatabase.h"
#include "SmallThread.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

using namespace ORKBASE;

namespace {

constexpr double kFewSeconds = 20;  // of a debug build under sanitizers

class BadInput : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }

  /// "" for a rule that verifies, else the error.
  static std::string Refusal(const std::u16string& rule, MXRULE_DATATYPE type = kNumDataType) {
    SampleExpression rules;
    std::u16string document;
    if (rules.Verify(type, rule, document)) return "";
    EXPECT_EQ(rules.errNumber(), -1);
    return U8(rules.errDescription());
  }
};

std::u16string Times(std::size_t count, std::u16string_view text) {
  std::u16string out;
  out.reserve(count * text.size());
  while (count-- > 0) out += text;
  return out;
}

std::u16string Nested(std::size_t depth, std::u16string_view open, std::u16string_view inside,
                      std::u16string_view close) {
  return Times(depth, open) + std::u16string(inside) + Times(depth, close);
}

constexpr const char* kTooDeep = "The rule is nested too deeply.";

}  // namespace

// --- nesting -------------------------------------------------------------------------------------

namespace {

struct NestCase {
  const char* name;
  MXRULE_DATATYPE type;
  std::u16string_view open, inside, close;
};

constexpr NestCase kNestCases[] = {
    {"brackets of numbers", kNumDataType, u"(", u"1", u")"},
    {"brackets of conditions", kLogicDataType, u"(", u"1=1", u")"},
    {"brackets of texts", kStrDataType, u"(", u"'a'&'b'", u")"},
    {"calls", kNumDataType, u"FLOOR(", u"1", u")"},
    {"minus signs", kNumDataType, u"-", u"1", u""},
    {"not", kLogicDataType, u"not ", u"1=1", u""},
};

}  // namespace

TEST_F(BadInput, AThousandNestingsAreTakenAndOneMoreIsRefused) {
  for (const NestCase& c : kNestCases) {
    EXPECT_EQ(Refusal(Nested(1000, c.open, c.inside, c.close), c.type), "") << c.name;
    EXPECT_EQ(Refusal(Nested(1001, c.open, c.inside, c.close), c.type), kTooDeep) << c.name;
  }
}

TEST_F(BadInput, NestingsOfAllKindsCountTogether) {
  const auto rule = [](std::size_t brackets) {
    return Times(250, u"not ") + Times(brackets, u"(") + Times(250, u"FLOOR(") + Times(250, u"-") +
           u"1" + Times(250, u")") + u" > 0" + Times(brackets, u")");
  };
  EXPECT_EQ(Refusal(rule(250), kLogicDataType), "");
  EXPECT_EQ(Refusal(rule(251), kLogicDataType), kTooDeep);
}

TEST_F(BadInput, OnlyWhatIsOpenAtOnceCounts) {
  const std::u16string term = Nested(600, u"(", u"1", u")");
  EXPECT_EQ(Refusal(term + u"+" + term + u"+" + term), "");
  EXPECT_EQ(
      Refusal(u"(" + term + u")>FLOOR(" + term + u") and not " + term + u"=-1", kLogicDataType),
      "");
}

TEST_F(BadInput, DepthHoldsOnAThreadOfOneMebibyte) {
  for (const NestCase& c : kNestCases) {
    std::string sql;
    bool refused = false;
    OnSmallThread([&] {
      SetThreadLanguage(u"en");
      SampleExpression rules;
      std::u16string document, translated, a, b;
      if (rules.Verify(c.type, Nested(1000, c.open, c.inside, c.close), document) &&
          rules.GetSpec(document, kSqlServerDs, translated, a, b, true)) {
        sql = U8(a);
      }
      refused = !rules.Verify(c.type, Nested(100000, c.open, c.inside, c.close), document) &&
                U8(rules.errDescription()) == kTooDeep;
    });
    EXPECT_NE(sql, "") << c.name;
    EXPECT_TRUE(refused) << c.name;
  }
}

TEST_F(BadInput, TooDeepEndsTheWholeParseAtItsWord) {
  SampleExpression rules;
  std::u16string document;
  EXPECT_FALSE(rules.Verify(kLogicDataType, Times(1001, u"("), document));
  EXPECT_EQ(RefusedToken(rules), 1000);
  EXPECT_FALSE(rules.Verify(kLogicDataType, Times(1000, u"("), document));
  EXPECT_EQ(U8(rules.errDescription()),
            "The rule ends too early, something is missing at its end.");
}

// --- texts ---------------------------------------------------------------------------------------

TEST_F(BadInput, OddTextsAreAnswered) {
  const std::u16string zero(1, u'\0');
  const std::u16string lead(1, char16_t{0xD800});
  const std::u16string trail(1, char16_t{0xDC00});
  EXPECT_NE(Refusal(zero), "");
  EXPECT_NE(Refusal(zero + zero + u"1"), "");
  EXPECT_NE(Refusal(u"1" + zero), "");
  EXPECT_NE(Refusal(lead), "");
  EXPECT_NE(Refusal(u"T." + trail), "");
  EXPECT_NE(Refusal(lead + u".a"), "");
  EXPECT_NE(Refusal(u"\xFFFE"), "");
  EXPECT_EQ(Refusal(u"'" + lead + u"'", kStrDataType), "");
  EXPECT_EQ(Refusal(u"'a" + zero + u"b'", kStrDataType), "");
  EXPECT_EQ(Refusal(u"Input." + trail + u"[N]"), "");
}

TEST_F(BadInput, OddTextConstantsReachTheDocumentRepaired) {
  MxExpression rules;
  std::u16string document, translated, a, b;
  ASSERT_TRUE(rules.Verify(kStrDataType, std::u16string(u"'a\0b'", 5), document));
  EXPECT_EQ(U8(document),
            "<tag primary=\"'a\" outDesc=\"'a\" symbol=\"0\" dataType=\"2\" content=\"'a\"/>");
  ASSERT_TRUE(rules.Verify(kStrDataType, std::u16string(u"'") + char16_t{0xD800} + u"'", document));
  EXPECT_NE(U8(document).find("primary=\"'&#xFFFD;'\""), std::string::npos);
  EXPECT_TRUE(rules.GetSpec(document, kSqlServerDs, translated, a, b, false));
  EXPECT_EQ(U8(a), "N'\xEF\xBF\xBD'");
}

TEST_F(BadInput, HugeTextsAreAnsweredInAFewSeconds) {
  constexpr std::size_t kMebi = std::size_t{1} << 20;
  struct Case {
    const char* name;
    std::u16string rule;
    MXRULE_DATATYPE type;
    bool verifies;
  };
  const Case cases[] = {
      {"opening brackets", std::u16string(kMebi, u'('), kLogicDataType, false},
      {"closing brackets", std::u16string(kMebi, u')'), kLogicDataType, false},
      {"square brackets", std::u16string(kMebi, u'['), kLogicDataType, false},
      {"digits", std::u16string(kMebi, u'7'), kNumDataType, true},
      {"hexadecimal digits", u"0x" + std::u16string(kMebi, u'f'), kNumDataType, true},
      {"quotes", std::u16string(kMebi, u'\''), kStrDataType, true},
      {"an odd number of quotes", std::u16string(kMebi + 1, u'\''), kStrDataType, true},
      {"a long text", u"'" + std::u16string(kMebi, u'x') + u"'", kStrDataType, true},
      {"a long text of digits", u"'" + std::u16string(kMebi, u'1') + u"'", kStrDataType, true},
      {"a long text of signs", u"'" + std::u16string(kMebi, u'-') + u"'", kStrDataType, true},
      {"a long text of dots", u"'" + std::u16string(kMebi, u'.') + u"'", kStrDataType, true},
      {"blanks", std::u16string(kMebi, u' '), kNumDataType, false},
      {"zeros", std::u16string(kMebi, u'\0'), kNumDataType, false},
      {"dots", std::u16string(kMebi, u'.'), kNumDataType, false},
      {"a long word", std::u16string(kMebi, u'x'), kNumDataType, false},
      {"a long field", u"T." + std::u16string(kMebi, u'x'), kNumDataType, false},
      {"a long table", std::u16string(kMebi, u'x') + u".a", kNumDataType, false},
      {"plus signs", std::u16string(kMebi, u'+'), kNumDataType, false},
      {"minus signs", std::u16string(kMebi, u'-'), kNumDataType, false},
      {"commas", std::u16string(kMebi, u','), kNumDataType, false},
      {"not", Times(kMebi / 4, u"not "), kLogicDataType, false},
      {"a long parameter", u"Input." + std::u16string(kMebi, u'x') + u"[N]", kNumDataType, true},
  };
  for (const Case& c : cases) {
    const CpuSeconds time;
    EXPECT_EQ(Refusal(c.rule, c.type) == "", c.verifies) << c.name;
    EXPECT_LT(time.Used(), kFewSeconds) << c.name;
  }
}

TEST_F(BadInput, LongChainsVerifyTranslateAndCompose) {
  const CpuSeconds time;
  constexpr std::size_t kCount = 100000;
  SampleExpression rules;
  std::u16string document, translated, a, b, one;
  ASSERT_TRUE(rules.Verify(kLogicDataType, u"1=1" + Times(kCount - 1, u" and 1=1"), document));
  ASSERT_TRUE(rules.GetSpec(document, kSqlServerDs, translated, a, b, true));
  EXPECT_EQ(a.size(), kCount * std::size(u"1 = 1 and") - std::size(u" and ") + 2 + 1);
  EXPECT_EQ(U8(b), "");
  EXPECT_EQ(rules.Compose(translated, one), 0);
  EXPECT_EQ(one.size() + 2, a.size());
  EXPECT_LT(time.Used(), 3 * kFewSeconds);
}

TEST_F(BadInput, LongChainsHoldOnAThreadOfOneMebibyte) {
  std::string answer;
  OnSmallThread([&] {
    SetThreadLanguage(u"en");
    SampleExpression rules;
    rules.SetDts(u"T,Orders");
    std::u16string rule = u"T.a > 1" + Times(10000, u" and Orders.Qty > 2");
    std::u16string document, translated, a, b;
    if (!rules.Verify(kLogicDataType, rule, document)) answer = "not verified";
    if (!rules.GetSpec(document, kSqlServerDs, translated, a, b, true)) answer = "not translated";
    rules.RemoveDt(rule, u"Orders", kLogicDataType);
    answer += U8(rule);
  });
  EXPECT_EQ(answer, "T.a > 1");
}

// --- documents -----------------------------------------------------------------------------------

TEST_F(BadInput, DocumentsOfAnotherFormAreTranslatedAsFarAsTheyGo) {
  struct Case {
    std::u16string document;
    std::string sql;
  };
  const Case cases[] = {
      {u"<tag/>", ""},
      {u"<other primary='x'/>", "x"},
      {u"<tag primary='1' symbol='0' dataType='1'/>", "1"},
      {u"<tag primary='x' symbol='nonsense' semanticType='nonsense'><tag primary='1'/></tag>", "1"},
      {u"<a primary='+' symbol='16' semanticType='0'><b primary='1'/><!-- c --><c "
       u"primary='2'/></a>",
       "1 + 2"},
      {u"<tag primary='+' symbol='16' semanticType='0'><tag primary='1'/></tag>", "1"},
      {u"<tag semanticType='1'/>", "()"},
      {u"<tag semanticType='2'/>", ""},
  };
  for (const Case& c : cases) {
    MxExpression rules;
    std::u16string translated, a, b;
    EXPECT_TRUE(rules.GetSpec(c.document, kSqlServerDs, translated, a, b, false));
    EXPECT_EQ(U8(a), c.sql) << U8(c.document);
    EXPECT_TRUE(rules.GetSpec(c.document, kSqlServerDs, translated, a, b, true));
  }
}

TEST_F(BadInput, DocumentThatIsCutAnywhereIsRefused) {
  SampleExpression rules;
  std::u16string document, translated, a, b;
  ASSERT_TRUE(rules.Verify(kLogicDataType, u"T.a > 1 and not (sum(T.b) > 2)", document));
  for (std::size_t size = 0; size < document.size(); ++size) {
    ASSERT_FALSE(rules.GetSpec(document.substr(0, size), kSqlServerDs, translated, a, b, true));
    ASSERT_EQ(rules.errNumber(), -1);
    ASSERT_EQ(rules.Compose(document.substr(0, size), a), 0);
    ASSERT_EQ(U8(a), "");
  }
  EXPECT_TRUE(rules.GetSpec(document, kSqlServerDs, translated, a, b, true));
}

TEST_F(BadInput, DeepDocumentsHoldOnAThreadOfOneMebibyte) {
  constexpr std::size_t kDepth = 100000;
  struct Case {
    std::u16string_view element;
    std::size_t size;  // of the text
  };
  const Case cases[] = {
      {u"<tag primary='+' symbol='16' semanticType='0'>", 0},  // an operator prints its operands
      {u"<tag primary='-' symbol='16' semanticType='2'>", 2 * kDepth},
      {u"<tag primary='f' symbol='27' semanticType='1'>", 3 * kDepth},
      {u"<tag primary='x' symbol='26' semanticType='3' inBrackets='1'>", 4 * kDepth},
  };
  for (const Case& c : cases) {
    std::size_t one = 0, two = 0;
    double used = 0;
    OnSmallThread([&] {
      const CpuSeconds time;
      MxExpression rules;
      const std::u16string document =
          Nested(kDepth, c.element, u"<tag primary='y' symbol='16'/>", u"</tag>");
      std::u16string translated, a, b, again;
      if (rules.GetSpec(document, kSqlServerDs, translated, a, b, false)) one = a.size();
      rules.Compose(translated, again);
      a.clear();
      if (again.size() == one && rules.GetSpec(document, kSqlServerDs, translated, a, b, true)) {
        two = a.size();
      }
      used = time.Used();
    });
    EXPECT_EQ(one, c.size + 1) << U8(c.element);
    EXPECT_EQ(two, c.size + 3) << U8(c.element);
    EXPECT_LT(used, kFewSeconds);
  }
}
