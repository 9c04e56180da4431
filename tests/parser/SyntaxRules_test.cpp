// The grammar's table: complete, without a dangling name, and in step with the vocabulary.
#include "parser/SyntaxRules.h"

#include "PlainInterpreter.h"
#include "RuleWords.h"
#include "Utf8.h"
#include "dictionary/VocabularyTables.h"
#include "foundation/Text.h"
#include "parser/CompiledGrammar.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace ORKBASE {
namespace {

using Names = std::vector<std::u16string>;

bool IsTerminal(std::u16string_view item) {
  for (const TerminalSymbol& terminal : kTerminalSymbols) {
    if (terminal.name == item) return true;
  }
  return false;
}

const SyntaxRule* RuleOf(std::u16string_view name) {
  for (const SyntaxRule& rule : kSyntaxRules) {
    if (rule.name == name) return &rule;
  }
  return nullptr;
}

/// The items of a body without its groups' marks.
Names ItemsOf(std::u16string_view body) {
  Names items;
  for (const std::u16string_view alternative : SplitText(body, u"|")) {
    for (const std::u16string& item : PlainItems(std::u16string(alternative))) {
      const bool isGroup = item.front() == u'{' || item.front() == u'[';
      const Names inner = isGroup ? PlainItems(item.substr(1, item.size() - 2)) : Names{item};
      items.insert(items.end(), inner.begin(), inner.end());
    }
  }
  return items;
}

/// The words that the grammar asks for by name, lower-cased.
std::set<std::u16string> Literals() {
  std::set<std::u16string> literals;
  for (const SyntaxRule& rule : kSyntaxRules) {
    for (const std::u16string& item : ItemsOf(rule.body)) {
      if (!RuleOf(item) && !IsTerminal(item)) literals.insert(ToLower(item));
    }
  }
  return literals;
}

TEST(SyntaxRules, AreAllThere) {
  EXPECT_EQ(std::size(kSyntaxRules), 127U);
  EXPECT_EQ(std::size(kStartRules), 7U);
  EXPECT_EQ(std::size(kTerminalSymbols), 10U);
}

TEST(SyntaxRules, CountRowsByTypeAndShape) {
  std::map<std::int32_t, int> byType;
  std::map<std::int32_t, int> bySemantic;
  int checked = 0;
  for (const SyntaxRule& rule : kSyntaxRules) {
    ++byType[rule.dataType];
    ++bySemantic[rule.semanticType];
    checked += rule.checkDataType ? 1 : 0;
  }
  // Numbers: 7 rows of terms, 30 functions and their list, one `switch`; and so on.
  EXPECT_EQ(byType[0], 1);
  EXPECT_EQ(byType[6], 3);
  EXPECT_EQ(byType[7], 1);
  EXPECT_EQ(byType[1], 7 + 30 + 1 + 1);
  EXPECT_EQ(byType[2], 4 + 1 + 20 + 4 + 1 + 1);
  EXPECT_EQ(byType[3], 1 + 19 + 1 + 1);
  EXPECT_EQ(byType[4], 12 + 12 + 1);
  EXPECT_EQ(byType[5], 5);
  EXPECT_EQ(bySemantic[2], 2);
  EXPECT_EQ(bySemantic[3], 1);
  EXPECT_EQ(bySemantic[4], 2);
  EXPECT_EQ(checked, 5);
}

TEST(SyntaxRules, DateExpressionsCarryTheTypeOfTexts) {
  EXPECT_EQ(RuleOf(u"<expr_date>")->dataType, kStrDataType);
  EXPECT_EQ(RuleOf(u"<constant_variant_date>")->dataType, kDateDataType);
}

TEST(SyntaxRules, OnlyTheWordHasWildcardTypes) {
  EXPECT_TRUE(DatatypeCheck(kNumDataType, kNumDataType));
  EXPECT_TRUE(DatatypeCheck(kNumDataType, kVarDataType));
  EXPECT_TRUE(DatatypeCheck(kNumDataType, kNoDataType));
  EXPECT_FALSE(DatatypeCheck(kVarDataType, kNumDataType));
  EXPECT_FALSE(DatatypeCheck(kNoDataType, kNumDataType));
  EXPECT_FALSE(DatatypeCheck(kNumDataType, kStrDataType));
}

TEST(SyntaxRules, StartByType) {
  const std::u16string_view names[] = {u"<expr_num>",   u"<expr_str>", u"<expr_date>",
                                       u"<expr_logic>", u"<expr_var>", u"<expr_pic>",
                                       u"<expr_link>"};
  for (std::size_t i = 0; i < std::size(names); ++i) {
    EXPECT_EQ(kStartRules[i].dataType, static_cast<std::int32_t>(i) + 1);
    EXPECT_EQ(kStartRules[i].name, names[i]);
    EXPECT_TRUE(RuleOf(names[i]));
  }
}

TEST(SyntaxRules, NameKindsOfWords) {
  const std::map<std::string, std::int32_t> expected = {
      {"kConstantSymbol", 0},    {"kDataFieldSymbol", 4},   {"kSmsSymbol", 7},
      {"kInputSymbol", 8},       {"kCAXFieldSymbol", 9},    {"kSysvarSymbol", 10},
      {"kSysvarUserSymbol", 11}, {"kSysvarCaseSymbol", 12}, {"kFormFieldSymbol", 13},
      {"kCAXEnumSymbol", 29}};
  std::map<std::string, std::int32_t> actual;
  for (const TerminalSymbol& terminal : kTerminalSymbols) {
    actual[U8(terminal.name)] = terminal.symbol;
  }
  EXPECT_EQ(actual, expected);
}

/// What looks like a rule's name is one, but for the three operators that begin with "<".
TEST(SyntaxRules, ReferToRulesThatExist) {
  std::set<std::u16string> operators;
  std::set<std::u16string> named;
  for (const SyntaxRule& rule : kSyntaxRules) {
    for (const std::u16string& item : ItemsOf(rule.body)) {
      if (RuleOf(item)) named.insert(item);
      if (item.front() == u'<' && !RuleOf(item)) operators.insert(item);
      const bool namesAKind = item.front() == u'k' && item.ends_with(u"Symbol");
      EXPECT_EQ(IsTerminal(item), namesAKind) << U8(item);
    }
  }
  EXPECT_EQ(operators, (std::set<std::u16string>{u"<", u"<=", u"<>"}));
  for (const StartRule& start : kStartRules) named.insert(std::u16string(start.name));
  for (const SyntaxRule& rule : kSyntaxRules) {
    EXPECT_EQ(named.contains(std::u16string(rule.name)), rule.name != u"<op_like>")
        << U8(rule.name);
  }
}

/// A list names the functions that stand between it and the list before, in their order, leaving
/// out the forms that another of them names.
TEST(SyntaxRules, FunctionListsHoldTheirFunctionsInOrder) {
  const std::set<std::u16string_view> lists = {u"<func_num>", u"<func_str>", u"<func_date>",
                                               u"<func_between>", u"<func_var>"};
  std::vector<const SyntaxRule*> section;
  std::size_t listed = 0;
  for (const SyntaxRule& rule : kSyntaxRules) {
    if (!lists.contains(rule.name)) {
      if (rule.name.starts_with(u"<func_") && rule.name != u"<func_set>") section.push_back(&rule);
      continue;
    }
    std::set<std::u16string> forms;
    for (const SyntaxRule* function : section) {
      if (function->semanticType != kInfixSemantic) continue;
      for (const std::u16string& item : ItemsOf(function->body)) forms.insert(item);
    }
    std::u16string expected;
    for (const SyntaxRule* function : section) {
      if (forms.contains(std::u16string(function->name))) continue;
      expected += u"|" + std::u16string(function->name);
      ++listed;
    }
    EXPECT_EQ(U8(rule.body), U8(expected.substr(1))) << U8(rule.name);
    section.clear();
  }
  EXPECT_TRUE(section.empty());
  EXPECT_EQ(listed, 30U + 20U + 19U + 12U + 2U);
}

TEST(SyntaxRules, EveryWordOfTheGrammarIsInTheVocabulary) {
  for (const std::u16string& literal : Literals()) {
    EXPECT_NE(VocabularyWord(literal).symbol, kUnknownSymbol) << U8(literal);
  }
}

/// All but the prefix words and system variables, which the grammar knows by their kind.
TEST(SyntaxRules, EveryOperatorFunctionAndDateWordIsInTheGrammar) {
  const std::set<std::u16string> literals = Literals();
  std::size_t found = 0;
  const auto check = [&](const VocabularyRow& row) {
    for (const std::u16string_view word : SplitText(row.primary, u"|")) {
      const bool byKind = row.symbol >= kSmsSymbol && row.symbol <= kSysvarCaseSymbol;
      EXPECT_EQ(literals.contains(ToLower(word)), !byKind) << U8(word);
      found += byKind ? 0 : 1;
    }
  };
  for (const VocabularyRow& row : kOperatorRows) check(row);
  for (const VocabularyRow& row : kFunctionRows) check(row);
  for (const VocabularyRow& row : kOtherRows) check(row);
  EXPECT_EQ(literals.size(), found);
}

/// Every function is called in a rule of its own shape and result type, `max` and `min` in three.
TEST(SyntaxRules, CallEachFunctionOfTheVocabulary) {
  for (const VocabularyRow& row : kFunctionRows) {
    int calls = 0;
    for (const SyntaxRule& rule : kSyntaxRules) {
      if (rule.semanticType == kFunctionSemantic && ItemsOf(rule.body).front() == row.primary) {
        ++calls;
      }
    }
    const bool overloaded = row.primary == u"max" || row.primary == u"min";
    EXPECT_EQ(calls, overloaded                 ? 3
                     : row.primary == u"switch" ? 4
                     : row.primary == u"ToText" ? 2
                                                : 1)
        << U8(row.primary);
  }
}

TEST(CutIntoItems, AgreesWithThePlainStateMachine) {
  const auto compare = [](std::u16string_view body) {
    Names cut;
    for (const std::u16string_view item : CutIntoItems(body)) cut.emplace_back(item);
    EXPECT_EQ(cut, PlainItems(std::u16string(body))) << U8(body);
  };
  for (const SyntaxRule& rule : kSyntaxRules) {
    for (const std::u16string_view alternative : SplitText(rule.body, u"|")) compare(alternative);
  }
  for (const char16_t* odd : {u"", u"   ", u"<", u"<=", u"<>", u"a<b>c", u"{a", u"[a,b] c",
                              u"a{b}[c]", u" ( ) , ", u"not<x>", u"a]b}", u"(((", u"- 'a b'"}) {
    compare(odd);
  }
}

}  // namespace
}  // namespace ORKBASE
