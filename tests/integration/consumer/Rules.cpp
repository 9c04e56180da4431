// A caller without any database: rules without fields, the lexer without a dictionary, the parser
// over words of the caller's own, and what the library throws and tells across its edge.
#include "Check.h"

#include <MxExpression.h>
#include <MxLexicalAnalyzer.h>
#include <MxParser.h>
#include <Mx_Exception.h>
#include <OrkPlatform.h>

#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

struct Translation {
  std::u16string document, translated, a, b;
};

Translation Translate(const std::u16string& rule, bool twoParts = false,
                      ORKDB_DSType_ENUM dsType = kSqlServerDs) {
  MxExpression rules;
  Translation t;
  Check(rules.Verify(kLogicDataType, rule, t.document), Ascii(rule).c_str());
  Check(rules.GetSpec(t.document, dsType, t.translated, t.a, t.b, twoParts), "GetSpec");
  Check(rules.errNumber() == 0 && rules.errDescription().empty(), "no error is left");
  return t;
}

void RulesBecomeSql() {
  CheckText(Translate(u"(1 + 2) * 3 > 8 and toUpper('it''s') = 'IT''S'").a,
            u"(1 + 2) * 3 > 8 and upper(N'it''s') = N'IT''S'", "words and constants");
  CheckText(Translate(u"Input.Limit[N] > 5 and sysVar.currentDate > '2020-1-2'").a,
            u"<Limit[N]> > 5 and {vDate} > '2020-1-2'", "placeholders");
  const Translation parts = Translate(u"1 < 2 and sum(3) > 4", true);
  CheckText(parts.a, u"(1 < 2)", "the part for a filter");
  CheckText(parts.b, u"(sum(3) > 4)", "the part for groups");
}

void RefusedRulesAreTold() {
  MxExpression rules;
  std::u16string document = u"untouched";
  Check(!rules.Verify(kNumDataType, u"1 + 2 3", document), "surplus words are refused");
  Check(rules.errNumber() == -1, "the number of a refused rule");
  CheckText(rules.errDescription(), u"The rule is complete here, but more words follow.",
            "the text of a refused rule, out of the installed message file");
  CheckText(document, u"untouched", "the document of a refused rule");
  // Tokens: "1", " ", "+", " ", "2", " ", "3".
  Check(RefusedToken(rules) == 6, "the token that was refused");
}

void RefusedFunctionsThrow() {
  try {
    Translate(u"1 in thisSet(1, 2)", false, kOracleDs);
    Check(false, "thisSet throws on Oracle");
  } catch (const Mx_Exception& refused) {
    CheckText(refused.message, u"This database does not support thisSet.", "what is thrown");
    CheckText(refused.module, u"mx_PLSql_translator", "who throws");
    Check(refused.what() == std::string("This database does not support thisSet."), "its sentence");
  }
}

void LexerNeedsNoDictionary() {
  MxLexicalAnalyzer lexer;
  std::vector<std::u16string> tokens, primaries;
  std::vector<MxWord> words;
  lexer.GenerateOriginalTokens(u"1.5 >=* 'a b'", tokens);
  const std::vector<std::u16string> expected = {u"1.5", u" ", u">=", u"*", u" ", u"'a b'"};
  Check(tokens == expected, "pieces of a text");
  CheckText(lexer.Compose(tokens), u"1.5 >=* 'a b'", "pieces join again");

  lexer.GeneratePrimaryTokens(tokens, primaries, words);
  Check(primaries == tokens && words.size() == 4, "words that nothing knows stay as they are");
  Check(words.size() == 4 && words[1].symbol == kUnknownSymbol, "an operator is unknown too");
  words.erase(words.begin() + 1, words.begin() + 3);
  Check(lexer.LexicalCheck(words), "constants need no dictionary");
  Check(words[0].symbol == kConstantSymbol && words[0].dataType == kNumDataType, "a number");
  Check(words[1].symbol == kConstantSymbol && words[1].dataType == kStrDataType, "a text");

  std::u16string renamed;
  lexer.ChangeExpWithNewDtDfNames(kSqlServerDs, u"A:B", u"B.x:y", u"A.x + xA.y + '[A]'", renamed);
  CheckText(renamed, u"B.y + xA.y + '[B]'", "new names");
}

MxWord Word(const char16_t* text, MXRULE_SYMBOL_TYPE symbol, MXRULE_DATATYPE type) {
  MxWord word;
  word.primary = word.outDesc = word.content = text;
  word.symbol = symbol;
  word.dataType = type;
  return word;
}

void ParserTakesWordsOfTheCaller() {
  std::vector<MxWord> words = {
      Word(u"(", kDelimiterSymbol, kNoDataType),   Word(u"T.x", kDataFieldSymbol, kNumDataType),
      Word(u"+", kOpSumSymbol, kNumDataType),      Word(u"1", kConstantSymbol, kNumDataType),
      Word(u")", kDelimiterSymbol, kNoDataType),   Word(u"*", kOpMultiSymbol, kNumDataType),
      Word(u"T.y", kDataFieldSymbol, kNumDataType)};
  MxParser parser;
  std::u16string document;
  Check(parser.ParseExpr(kNumDataType, &words, document), "words of the caller");
  CheckText(document,
            uR"(<tag primary="*" outDesc="*" symbol="17" dataType="1" content="*" semanticType="0">
  <tag primary="+" outDesc="+" symbol="16" dataType="1" content="+" semanticType="0" inBrackets="1">
    <tag primary="T.x" outDesc="T.x" symbol="4" dataType="1" content="T.x"/>
    <tag primary="1" outDesc="1" symbol="0" dataType="1" content="1"/>
  </tag>
  <tag primary="T.y" outDesc="T.y" symbol="4" dataType="1" content="T.y"/>
</tag>)",
            "the document of words of the caller");

  words.pop_back();
  document = u"untouched";
  Check(!parser.ParseExpr(kNumDataType, &words, document), "an operand is missing");
  Check(parser.ErrNumber() == -1, "the number of a failed parse");
  CheckText(parser.ErrDescription(), MessageText(6294), "the text of a failed parse");
  CheckText(document, u"untouched", "the document of a failed parse");
}

}  // namespace

int main() {
  SetThreadLanguage(u"en");
  RulesBecomeSql();
  RefusedRulesAreTold();
  RefusedFunctionsThrow();
  LexerNeedsNoDictionary();
  ParserTakesWordsOfTheCaller();
  return failures == 0 ? 0 : 1;
}
