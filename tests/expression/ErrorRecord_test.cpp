// Errors as records: what a program learns beside the pair of number and text.
#include "MxErrorRecord.h"

#include "MxExpression.h"
#include "OrkPlatform.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>

using namespace ORKBASE;

namespace {

class ErrorRecords : public testing::Test {
 protected:
  const MxErrorRecord& Refused(const std::u16string& rule, MXRULE_DATATYPE type = kLogicDataType) {
    std::u16string document;
    EXPECT_FALSE(rules_.Verify(type, rule, document)) << U8(rule);
    return rules_.errRecord();
  }

  ScopedLanguage language_{u"en"};
  SampleExpression rules_;
};

}  // namespace

TEST_F(ErrorRecords, TellMessageAndPlaceOfARefusedWord) {
  struct Row {
    const char16_t* rule;
    std::int32_t message, offset, length;
    const char* word;
  };
  // clang-format off
  const Row rows[] = {
      {u"1 > bad",                 6260, 4, 3, "bad"},
      {u"T.a > 1 and 'x",          6263, 12, 2, "'x"},
      {u"'中文' = \U0001F600 + 1", 6260, 7, 2, "\xF0\x9F\x98\x80"},
      {u"Input.x > 1",             6260, 0, 7, "Input.x"},
      {u"T.a > T.s",               6264, 6, 3, "T.s"},
      {u"T.a >\n> 1",              6295, 6, 1, ">"},
      {u"(1 > 2 and",              6294, 10, 0, ""},
      {u"",                        6294, 0, 0, ""},
      {u"1 > 2 3",                 6222, 6, 1, "3"},
  };
  // clang-format on
  for (const Row& row : rows) {
    const MxErrorRecord& error = Refused(row.rule);
    EXPECT_EQ(error.cause, kRuleCause) << U8(row.rule);
    EXPECT_EQ(error.number, -1);
    EXPECT_EQ(error.message, row.message) << U8(row.rule);
    EXPECT_EQ(error.offset, row.offset) << U8(row.rule);
    EXPECT_EQ(error.length, row.length) << U8(row.rule);
    EXPECT_EQ(U8(error.word), row.word);
  }
}

TEST_F(ErrorRecords, MakeThePairOfNumberAndText) {
  for (const char16_t* rule : {u"1 > bad", u"1 >", u"1 2", u"X.y > 1", u"'a' > 1"}) {
    const MxErrorRecord& error = Refused(rule);
    EXPECT_EQ(error.number, rules_.errNumber());
    EXPECT_EQ(U8(ErrorText(error)), U8(rules_.errDescription())) << U8(rule);
  }
  std::u16string document;
  EXPECT_TRUE(rules_.Verify(kLogicDataType, u"1 > 2", document));
  EXPECT_EQ(rules_.errRecord().cause, kNoCause);
  EXPECT_EQ(rules_.errRecord().offset, -1);
}

// The rule itself loads the table of the word, which so has no spelling of the user's own.
TEST_F(ErrorRecords, NameTheWordAsItStandsInTheRule) {
  const MxErrorRecord error = Refused(u"Orders.Amount > Customer.NAME");
  EXPECT_EQ(U8(rules_.errDescription()).find("Customer.NAME"), std::string::npos);
  EXPECT_EQ(U8(error.word), "Customer.NAME");
  EXPECT_EQ(U8(ErrorText(error)).find("The word \"Customer.NAME\""), 0u);
}

TEST_F(ErrorRecords, TellWhatMightHaveStoodThere) {
  const MxErrorRecord type = Refused(u"T.a > T.s");
  ASSERT_EQ(type.expected.size(), 1u);
  EXPECT_EQ(type.expected[0].kind, MxErrorArgument::kDataType);
  EXPECT_EQ(type.expected[0].number, kNumDataType);
  const MxErrorRecord literal = Refused(u"ROUND(1 2)", kNumDataType);
  ASSERT_EQ(literal.expected.size(), 1u);
  EXPECT_EQ(literal.expected[0].kind, MxErrorArgument::kText);
}

TEST_F(ErrorRecords, AreWordedInTheLanguageOfTheReader) {
  const MxErrorRecord error = Refused(u"T.a > T.s");
  const std::u16string english = ErrorText(error);
  SetThreadLanguage(u"zh-CN");
  EXPECT_NE(ErrorText(error), english);
  EXPECT_NE(ErrorText(error).find(u"T.s"), std::u16string::npos);
}

TEST_F(ErrorRecords, TellWhyTheTableOfAWordIsNotThere) {
  const MxErrorRecord missing = Refused(u"X.y > 1");
  EXPECT_EQ(missing.cause, kRuleCause);
  EXPECT_EQ(missing.message, 6260);
  ASSERT_EQ(missing.behind.size(), 1u);
  EXPECT_EQ(missing.behind[0].cause, kRequestCause);
  EXPECT_EQ(missing.behind[0].message, 6259);

  MxExpression unconnected;
  std::u16string document;
  EXPECT_FALSE(unconnected.Verify(kLogicDataType, u"X.y > 1", document));
  ASSERT_EQ(unconnected.errRecord().behind.size(), 1u);
  EXPECT_EQ(unconnected.errRecord().behind[0].message, 6700);
  // A field that a loaded table does not have is the rule's own fault alone.
  EXPECT_TRUE(Refused(u"T.nothing > 1").behind.empty());
}

TEST_F(ErrorRecords, KeepAnOutageApartFromAnUnknownWord) {
  MxExpression rules;
  rules.Connect(u"sqlite:/nowhere/at/all.db", 0, u"", u"", u"", kSqlServerDs, false, true, u"");
  std::u16string document;
  EXPECT_FALSE(rules.Verify(kLogicDataType, u"T.a > 1", document));
  const MxErrorRecord& error = rules.errRecord();
  EXPECT_EQ(error.cause, kDatabaseCause);
  EXPECT_EQ(U8(rules.errDescription()), "The word \"T.a\" is unknown.");
  ASSERT_EQ(error.behind.size(), 1u);
  EXPECT_EQ(error.behind[0].cause, kDatabaseCause);
  EXPECT_NE(error.behind[0].number, -1);
  EXPECT_EQ(ErrorText(error), error.behind[0].text);

  rules.SetDts(u"T");
  EXPECT_EQ(rules.errRecord().cause, kDatabaseCause);
  EXPECT_EQ(rules.errRecord().number, rules.errNumber());
  EXPECT_EQ(rules.errRecord().text, rules.errDescription());
}

TEST_F(ErrorRecords, TellOfLoadsAndDocuments) {
  rules_.SetDts(u"Nowhere");
  EXPECT_EQ(rules_.errRecord().cause, kRequestCause);
  EXPECT_EQ(rules_.errRecord().message, 6259);
  rules_.SetCAXDD(1, u"no document");
  EXPECT_EQ(rules_.errRecord().cause, kDocumentCause);
  EXPECT_EQ(rules_.errRecord().number, 1);
  std::u16string translated, a, b;
  EXPECT_FALSE(rules_.GetSpec(u"no document", kSqlServerDs, translated, a, b, false));
  EXPECT_EQ(rules_.errRecord().cause, kDocumentCause);
  EXPECT_EQ(rules_.errRecord().message, 6297);
  EXPECT_EQ(rules_.errRecord().offset, -1);
  EXPECT_EQ(U8(rules_.errDescription()).find("exprParsedXml"), 0u);
}

TEST_F(ErrorRecords, GoAlongWithACopy) {
  Refused(u"1 > bad");
  const MxExpression copy(rules_);
  EXPECT_EQ(copy.errRecord().offset, 4);
  EXPECT_EQ(RefusedToken(copy), 4);
}
