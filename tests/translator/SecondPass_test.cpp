// The one walk of the second pass against the plain way, over generated rules.
#include "MxExpression.h"
#include "Mx_Exception.h"
#include "PlainComposer.h"
#include "PlainSecondPass.h"
#include "RuleDialects.h"
#include "RuleGenerator.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "ScopedLocale.h"
#include "dictionary/MxDictionarys.h"
#include "document/TagReader.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace ORKBASE;

namespace {

class SecondPass : public testing::Test {
 protected:
  SecondPass() : locale_("en_US.UTF-8") {
    dictionaries_.Connect(SampleDatabase().Server(), 0, {}, u"", u"", kSqlServerDs, false, true,
                          u"");
    dictionaries_.LoadDataTables(u"Orders,Customer,T");
    dictionaries_.LoadReportTemplate(u"7");
    dictionaries_.LoadCax(1, kCaxWordsDocument);
    rules_.SetDts(u"Orders,Customer,T");
    rules_.SetRt(u"7");
    rules_.SetCAXDD(1, kCaxWordsDocument);
    modes_.dictionaries = &dictionaries_;
    modes_.rtId = u"7";
  }

  /// The translated document, or what was thrown.
  static std::string Outcome(std::u16string (*translate)(ORKDB_DSType_ENUM, const TranslatorModes&,
                                                         const std::u16string&),
                             ORKDB_DSType_ENUM dsType, const TranslatorModes& modes,
                             const std::u16string& document, std::u16string& translated) {
    try {
      translated = translate(dsType, modes, document);
      return WithoutWhiteSpace(translated);
    } catch (const Mx_Exception& refusal) {
      return "refused " + U8(refusal.function) + " " + std::to_string(refusal.location);
    } catch (const std::out_of_range&) {
      return "out of range";
    }
  }

  static bool HasHandledNode(const std::u16string& translated) {
    TagTree tree;
    if (!ReadTagTree(translated, tree)) return true;
    for (Tag tag = tree.Root(); tag; tag = tag.NextInDocument(tree.Root())) {
      if (tag.Get(Attr::kTransType) == u"2") return true;
    }
    return false;
  }

  /// Both ways agree on a rule in all databases: document, one text, two texts.
  void Compare(const GeneratedRule& rule) {
    SCOPED_TRACE(U8(rule.text));
    std::u16string document;
    ASSERT_TRUE(rules_.Verify(rule.type, rule.text, document)) << U8(rules_.errDescription());
    for (const auto& [dsType, name, otherNames] : RuleDialects()) {
      SCOPED_TRACE(U8(name));
      std::u16string plain;
      std::u16string came;
      ASSERT_EQ(Outcome(&TranslatePlainly, dsType, modes_, document, plain),
                Outcome(&TranslateByEngine, dsType, modes_, document, came));
      if (came.empty()) continue;
      ++translated_;
      ASSERT_FALSE(HasHandledNode(came));
      CompareTexts(plain, came);
    }
  }

  void CompareTexts(const std::u16string& plain, const std::u16string& came) {
    TagTree tree;
    ASSERT_TRUE(ReadTagTree(plain, tree));
    std::u16string text;
    rules_.Compose(came, text);
    ASSERT_EQ(U8(PlainExpSpec1(tree.Root(), false)), U8(text));
    std::u16string a;
    std::u16string b;
    std::u16string plainA;
    std::u16string plainB;
    rules_.Compose(came, a, b);
    PlainCompose(tree.Root(), plainA, plainB);
    ASSERT_EQ(U8(plainA), U8(a));
    ASSERT_EQ(U8(plainB), U8(b));
  }

  ScopedLocale locale_;
  ScopedLanguage language_{u"en"};
  MxDictionarys dictionaries_;
  SampleExpression rules_;
  TranslatorModes modes_;
  std::size_t translated_ = 0;
};

constexpr MXRULE_DATATYPE kTypes[] = {kNumDataType, kStrDataType, kDateDataType, kLogicDataType,
                                      kLogicDataType};

TEST_F(SecondPass, AgreesWithThePlainWayOnGeneratedRules) {
  RuleGenerator generator(11, AllRuleWords());
  for (int i = 0; i < 800 && !HasFatalFailure(); ++i) {
    modes_.useIsNull = i % 2 == 0;
    modes_.formDataIn = i % 3 == 0 ? 1 : 0;
    Compare(generator.Make(kTypes[static_cast<std::size_t>(i) % std::size(kTypes)], 4 + i % 9));
  }
  EXPECT_GT(translated_, 2500u);
}

TEST_F(SecondPass, AgreesWithThePlainWayInEveryRowOfTheGrammar) {
  RuleGenerator generator(12, AllRuleWords());
  for (int round = 0; round < 4; ++round) {
    for (const std::u16string_view row : generator.Rows()) {
      const GeneratedRule rule = generator.MakeThrough(row, 3 + 2 * round);
      if (!rule.text.empty()) Compare(rule);
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_GT(translated_, 1200u);
}

/// Without what Oracle refuses, so that its handlers meet each other. Conversions to dates stand
/// in front: there a handler may return an argument that is a handled function itself.
TEST_F(SecondPass, AgreesWithThePlainWayWhereNothingIsRefused) {
  RuleGenerator generator(13, AllRuleWords());
  for (const std::u16string_view row :
       {u"<func_fisYear>", u"<func_fisMonth>", u"<func_fisQuarter>", u"<func_timeInterval>",
        u"<func_fstDayOfFisMonth>", u"<func_endOfFisMonth>", u"<func_fstDayOfFisYear>",
        u"<func_endOfFisYear>", u"<func_fstDayOfFisQuarter>", u"<func_endOfFisQuarter>",
        u"<func_thisFisYear>", u"<func_lastFisYear>", u"<func_thisFisQuarter>",
        u"<func_lastFisQuarter>", u"<func_thisFisMonth>", u"<func_lastFisMonth>", u"<func_set>"}) {
    generator.Avoid(row);
  }
  constexpr int kRules = 500;
  for (int i = 0; i < kRules && !HasFatalFailure(); ++i) {
    Compare(i % 2 == 0 ? generator.Make(kDateDataType, 5 + i % 9)
                       : generator.MakeThrough(u"<func_ToDate>", 5 + i % 9));
  }
  EXPECT_EQ(translated_, kRules * RuleDialects().size());
}

struct NestedRow {
  MXRULE_DATATYPE type;
  const char16_t* rule;
};

// clang-format off
constexpr NestedRow kNested[] = {
    {kDateDataType,  u"ToDate(ToDate(ToDate(T.s)))"},
    {kDateDataType,  u"ToDate(ToDate(dateAdd(dd, quarter(ToDate(T.d)), ToDate(T.d))))"},
    {kDateDataType,  u"ToDate(fstDayOfYear(year(ToDate(endOfQuarter(2020, quarter(T.d))))))"},
    {kStrDataType,   u"ToText(ToDate(lstDayOfMonth(year(T.d), month(T.d))),'yyyymmdd')"},
    {kLogicDataType, u"ToDate(T.d) between lastQuarter(year(ToDate(T.d)), quarter(ToDate(T.d)))"},
    {kLogicDataType, u"T.d between lastYear(ToNumber(ToText(quarter(T.d)), day(T.d)))"},
    {kLogicDataType, u"T.s like switch(T.s like 'a', ToText(day(T.d)), ToText(ToNumber(T.s)))"},
    {kNumDataType,   u"count1(switch(T.d between thisMonth(1, log10(2)), hour(ToDate(T.d)), 1))"},
    {kNumDataType,   u"switch(T.d between thisYear(switch(T.d between thisYear(1), 1, 2)), 1, 2)"},
    {kLogicDataType, u"T.a in thisSet(switch(T.a in thisSet(day(T.d)), ToNumber(T.s), T.b), T.a)"},
    {kLogicDataType, u"T.s in thisSet(T.s & ToText(Orders.Amount), thisReport.Lines.Item & 'x')"},
};
// clang-format on

TEST_F(SecondPass, AgreesWithThePlainWayOnNestedFunctions) {
  for (const NestedRow& row : kNested) {
    GeneratedRule rule;
    rule.type = row.type;
    rule.text = row.rule;
    Compare(rule);
  }
}

}  // namespace
