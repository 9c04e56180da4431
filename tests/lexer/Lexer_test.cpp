// Recognising words: the primary pass.
#include "MxLexicalAnalyzer.h"

#include "OrkPlatform.h"
#include "dictionary/MxDictionarys.h"

#include "Utf8.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

class LexerPrimaryPass : public testing::Test {
 protected:
  void SetUp() override {
    SetThreadLanguage(u"en");
    dictionarys_ = std::make_unique<MxDictionarys>();
    lexer_.set_dictionarys(dictionarys_.get());
  }
  void TearDown() override { SetThreadLanguage(u""); }

  void Enter(const std::u16string& key, const std::u16string& primary,
             const std::u16string& outDesc, std::int32_t symbol) {
    auto dictionary = std::make_shared<MxDictionary>();
    MxWord word;
    word.primary = primary;
    word.outDesc = outDesc;
    word.symbol = symbol;
    word.dataType = 1;
    word.dtName = u"table";
    dictionary->AddEntry(word);
    dictionarys_->Enter(key, dictionary);
  }

  void Run(const std::u16string& text) {
    originals_.clear();
    primaries_.clear();
    words_.clear();
    lexer_.GenerateOriginalTokens(text, originals_);
    lexer_.GeneratePrimaryTokens(originals_, primaries_, words_);
  }

  /// `primary/symbol` of each word.
  std::string Words(const std::u16string& text) {
    Run(text);
    std::string out;
    for (const MxWord& word : words_) {
      if (!out.empty()) out += ' ';
      out += U8(word.primary) + "/" + std::to_string(word.symbol);
    }
    return out;
  }

  std::unique_ptr<MxDictionarys> dictionarys_;
  MxLexicalAnalyzer lexer_;
  std::vector<std::u16string> originals_;
  std::vector<std::u16string> primaries_;
  std::vector<MxWord> words_;
};

}  // namespace

TEST_F(LexerPrimaryPass, GivesNothingForNothing) {
  EXPECT_EQ(Words(u""), "");
  EXPECT_TRUE(primaries_.empty());
}

TEST_F(LexerPrimaryPass, MakesNoWordsOfBlanks) {
  for (const char16_t* text : {u"   ", u"\n", u" \r\n "}) {
    EXPECT_EQ(Words(text), "");
    ASSERT_EQ(primaries_.size(), 1u);
    EXPECT_TRUE(primaries_[0] == text);
  }
}

TEST_F(LexerPrimaryPass, KeepsTheListsInStep) {
  Run(u"SUM( T.a )\n>= 'x''y'");
  ASSERT_EQ(primaries_.size(), originals_.size());
  EXPECT_EQ(U8(lexer_.Compose(originals_)), "SUM( T.a )\n>= 'x''y'");
  EXPECT_EQ(U8(lexer_.Compose(primaries_)), "sum( T.a )\n>= 'x''y'");
  EXPECT_EQ(words_.size(), 6u);
}

TEST_F(LexerPrimaryPass, TakesTheSpellingOfTheDictionaryAndTheContentOfTheUser) {
  Enter(u"dt:T", u"T.Field", u"T.Field", kDataFieldSymbol);
  Run(u"t.FIELD");
  ASSERT_EQ(words_.size(), 1u);
  EXPECT_EQ(U8(primaries_[0]), "T.Field");
  EXPECT_EQ(U8(words_[0].primary), "T.Field");
  EXPECT_EQ(U8(words_[0].outDesc), "T.Field");
  EXPECT_EQ(U8(words_[0].content), "t.FIELD");
  EXPECT_EQ(words_[0].symbol, kDataFieldSymbol);
  EXPECT_EQ(words_[0].dataType, 1);
  EXPECT_EQ(U8(words_[0].dtName), "table");
}

TEST_F(LexerPrimaryPass, CarriesUnknownWordsOn) {
  Run(u"T1.F1 >= 'x''y'");
  ASSERT_EQ(words_.size(), 3u);
  for (const std::size_t i : {0u, 2u}) {
    const std::string token = i == 0 ? "T1.F1" : "'x''y'";
    EXPECT_EQ(U8(words_[i].primary), token);
    EXPECT_EQ(U8(words_[i].outDesc), token);
    EXPECT_EQ(U8(words_[i].content), token);
    EXPECT_EQ(words_[i].symbol, -1);
    EXPECT_EQ(words_[i].dataType, 5);
    EXPECT_EQ(words_[i].postfixCheck, 0);
    EXPECT_EQ(U8(words_[i].dtName), "");
  }
  EXPECT_EQ(words_[1].symbol, kOpRelaSymbol);
}

TEST_F(LexerPrimaryPass, FindsPrefixWords) {
  struct Case {
    std::u16string token;
    std::string words;
  };
  const Case cases[] = {
      {u"Input.name[S]", "Input.name[S]/8"},
      {u"input.a[s]", "Input.a[s]/8"},
      {u"INPUT.[S]", "Input.[S]/8"},  // the part in front of the bracket is a word
      {u"Input.", "Input./8"},
      {u"Input.a.b", "Input.a.b/8"},  // a second dot is enough
      {u"Input.a.", "Input.a./8"},
      {u"Input.name", "Input.name/-1"},  // neither a bracket nor a second dot
      {u"Input[S]", "Input[S]/-1"},
      {u"Sms.x[N]", "Sms.x[N]/7"},
      {u"thisDoc.a.b", "thisDoc.a.b/9"},
      {u"thisDoc.a", "thisDoc.a/-1"},
      {u"a.b.c", "a.b.c/-1"},
      {u".Input.[S]", ".Input.[S]/-1"},
      {u"x.Input.a[S]", "x.Input.a[S]/-1"},
      {u"'Input.a[S]'", "'Input.a[S]'/-1"},  // a text constant is not taken apart
      {u"sum[x]", "sum[x]/27"},
      {u"yy", "yy/14"},
      {u"YY", "yy/14"},
      {u"'yyyy-mm-dd'", "'yyyy-mm-dd'/14"},
      {u"'YYYY-MM-DD'", "'yyyy-mm-dd'/14"},
      {u"not_null", "not_null/26"},
      {u"=*", "=*/22"},
      {u"12", "12/-1"},
  };
  for (const Case& c : cases) EXPECT_EQ(Words(c.token), c.words) << U8(c.token);
  EXPECT_EQ(Words(u"Input.a[S]"), "Input.a[S]/8");
  EXPECT_EQ(U8(primaries_[0]), "Input.a[S]");
  EXPECT_EQ(U8(words_[0].outDesc), "Input.");
  EXPECT_EQ(U8(words_[0].content), "Input.a[S]");
  EXPECT_EQ(words_[0].postfixCheck, 1);
}

TEST_F(LexerPrimaryPass, TriesTheWholeTokenFirstThenTheBracketThenTheDot) {
  Enter(u"dt:1", u"whole", u"a.b[c]", 4);
  Enter(u"dt:2", u"bracket", u"a.b", 4);
  Enter(u"dt:3", u"dot", u"a.", 4);
  EXPECT_EQ(Words(u"a.b[c]"), "whole/4");
  EXPECT_EQ(Words(u"a.b[d]"), "bracket[d]/4");
  EXPECT_EQ(Words(u"a.c[d]"), "dotc[d]/4");
  EXPECT_EQ(Words(u"a.b[c][d]"), "bracket[c][d]/4");
}

TEST_F(LexerPrimaryPass, FirstDictionaryWins) {
  Enter(u"rt:7", u"of the template", u"x", 13);
  Enter(u"dt:T", u"of the table", u"x", 4);
  EXPECT_EQ(Words(u"X"), "of the table/4");
  Enter(u"dt:T", u"of the table", u"sum", 4);
  EXPECT_EQ(Words(u"sum"), "sum/27");
}

TEST_F(LexerPrimaryPass, TakesThePrefixOfTheCurrentRecordOffWhenTold) {
  Enter(u"dt:T", u"T.a", u"T.a", 4);
  Enter(u"rt:7", u"thisReport.R.b", u"thisReport.R.b", 13);
  EXPECT_TRUE(lexer_.get_thiscaseVarOn1RcId());
  EXPECT_EQ(Words(u"thisReport.T.a"), "thisReport.T.a/-1");
  EXPECT_EQ(Words(u"thisReport.R.b"), "thisReport.R.b/13");
  lexer_.set_thiscaseVarOn1RcId(false);
  EXPECT_FALSE(lexer_.get_thiscaseVarOn1RcId());
  EXPECT_EQ(Words(u"thisReport.T.a"), "T.a/4");
  EXPECT_EQ(U8(words_[0].content), "thisReport.T.a");
  EXPECT_EQ(Words(u"thisReport.R.b"), "thisReport.R.b/-1");  // no longer found under its prefix
  EXPECT_EQ(Words(u"THISREPORT.T.a"), "THISREPORT.T.a/-1");  // the prefix heeds case
  EXPECT_EQ(Words(u"thisReport.Input.a[S]"), "thisReport.Input.a[S]/-1");  // later cuts keep it
  EXPECT_EQ(Words(u"thisReport."), "thisReport./-1");
  SetThreadLanguage(u"zh-CN");  // the prefix is read at each call
  EXPECT_EQ(Words(u"本报表.T.a"), "T.a/4");
  EXPECT_EQ(Words(u"thisReport.T.a"), "thisReport.T.a/-1");
}

TEST_F(LexerPrimaryPass, AppendsAndKeepsEmptyTokens) {
  std::vector<std::u16string> primaries{u"before"};
  std::vector<MxWord> words(1);
  lexer_.GeneratePrimaryTokens({u"", u"sum", u""}, primaries, words);
  ASSERT_EQ(primaries.size(), 4u);
  EXPECT_EQ(U8(primaries[1]), "");
  EXPECT_EQ(U8(primaries[2]), "sum");
  EXPECT_EQ(words.size(), 2u);
}

TEST_F(LexerPrimaryPass, FindsNoWordWithoutDictionaries) {
  lexer_.set_dictionarys(nullptr);
  EXPECT_EQ(Words(u"sum(1)"), "sum/-1 (/-1 1/-1 )/-1");
  MxLexicalAnalyzer fresh;
  std::vector<MxWord> words;
  fresh.GeneratePrimaryTokens({u"sum"}, primaries_, words);
  ASSERT_EQ(words.size(), 1u);
  EXPECT_EQ(words[0].symbol, -1);
}

TEST_F(LexerPrimaryPass, CopiesWithAllMembers) {
  lexer_.set_thiscaseVarOn1RcId(false);
  std::vector<MxWord> bad(1);
  bad[0].symbol = -1;
  bad[0].content = u"?";
  EXPECT_FALSE(lexer_.LexicalCheck(bad));
  MxLexicalAnalyzer copy(lexer_);
  EXPECT_FALSE(copy.get_thiscaseVarOn1RcId());
  EXPECT_EQ(copy.ErrNumber(), -1);
  EXPECT_EQ(U8(copy.ErrDescription()), "The word \"?\" is unknown.");
  std::vector<MxWord> words;
  copy.GeneratePrimaryTokens({u"SUM"}, primaries_, words);
  EXPECT_EQ(U8(words.at(0).primary), "sum");
  MxLexicalAnalyzer assigned;
  assigned = copy;
  const MxLexicalAnalyzer& self = assigned;
  assigned = self;
  EXPECT_FALSE(assigned.get_thiscaseVarOn1RcId());
  EXPECT_EQ(assigned.ErrNumber(), -1);
}

TEST_F(LexerPrimaryPass, RulesInTwoLanguagesHaveTheSameWords) {
  const std::string english = Words(u"sum(1) >= length('a') and not 1 = 2");
  SetThreadLanguage(u"zh-CN");
  dictionarys_ = std::make_unique<MxDictionarys>();
  lexer_.set_dictionarys(dictionarys_.get());
  const std::u16string chinese = MessageText(6400) + u"(1) >= " + MessageText(6424) + u"('a') " +
                                 MessageText(6306) + u" " + MessageText(6308) + u" 1 = 2";
  EXPECT_NE(U8(MessageText(6400)), "sum");
  EXPECT_EQ(Words(chinese), english);
}
