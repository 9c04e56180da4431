// Deciding words: constants, postfixes, and fields of tables that are loaded on the way.
#include "MxExpression.h"
#include "MxLexicalAnalyzer.h"
#include "OrkPlatform.h"
#include "dictionary/MxDictionarys.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "ScopedLocale.h"
#include "Utf8.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <random>
#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

class Verification : public testing::Test {
 protected:
  void SetUp() override {
    dictionarys_.Connect(SampleDatabase().Server(), 0, ORKDB::MxProxyInfo(), u"", u"", kSqlServerDs,
                         false, true, u"");
    lexer_.set_dictionarys(&dictionarys_);
  }

  std::vector<MxWord> WordsOf(const std::u16string& text) {
    std::vector<std::u16string> originals;
    std::vector<std::u16string> primaries;
    std::vector<MxWord> words;
    lexer_.GenerateOriginalTokens(text, originals);
    lexer_.GeneratePrimaryTokens(originals, primaries, words);
    return words;
  }

  /// `symbol:type` of each word of the text, or the error.
  std::string Check(const std::u16string& text) {
    std::vector<MxWord> words = WordsOf(text);
    if (!lexer_.LexicalCheck(words)) {
      return std::to_string(lexer_.ErrNumber()) + " " + U8(lexer_.ErrDescription());
    }
    EXPECT_EQ(lexer_.ErrNumber(), 0);
    std::string out;
    for (const MxWord& word : words) {
      if (!out.empty()) out += ' ';
      out += std::to_string(word.symbol) + ":" + std::to_string(word.dataType);
    }
    return out;
  }

  /// One word by itself, past the tokeniser.
  std::string CheckWord(const std::u16string& token) {
    MxWord word;
    word.primary = word.outDesc = word.content = token;
    word.symbol = -1;
    word.dataType = 5;
    std::vector<MxWord> words{word};
    if (!lexer_.LexicalCheck(words)) return U8(lexer_.ErrDescription());
    return std::to_string(words[0].symbol) + ":" + std::to_string(words[0].dataType);
  }

  static std::string Unknown(const std::string& word) {
    return "-1 The word \"" + word + "\" is unknown.";
  }
  static std::string Unpaired(const std::string& word) {
    return "-1 The text " + word +
           " holds a single quote without its partner. Inside a text a quote is written twice.";
  }
  static std::string Unclosed(const std::string& word) {
    return "-1 The text " + word + " has no closing quote.";
  }

  const ScopedLanguage language_{u"en"};
  MxDictionarys dictionarys_;
  MxLexicalAnalyzer lexer_;
  const ScopedLocale locale_{"en_US.UTF-8"};
};

}  // namespace

TEST_F(Verification, EmptyListIsFine) {
  std::vector<MxWord> none;
  EXPECT_TRUE(lexer_.LexicalCheck(none));
  EXPECT_EQ(lexer_.ErrNumber(), 0);
}

TEST_F(Verification, RecognisesNumbers) {
  for (const char16_t* text :
       {u"12",      u"0",        u"1.5",           u"1.5e3", u"1.",   u".5",      u"1E5",  u"inf",
        u"INF",     u"infinity", u"nan",           u"NaN",   u"0x1F", u"0X1f",    u"0x.8", u"0x1p3",
        u"0x1.8P2", u"1e999",    u"1e99999999999", u"007",   u"\t12", u"\v\f\t1", u"\t.5"}) {
    EXPECT_EQ(Check(text), "0:1") << U8(text);
  }
  for (const char16_t* text : {u"1e",
                               u"1e5x",
                               u"1.2.3",
                               u"..5",
                               u".",
                               u"0x",
                               u"0xg",
                               u"0x.",
                               u"infx",
                               u"infin",
                               u"nanx",
                               u"1\t",
                               u"\t",
                               u"１２",
                               u"1_000",
                               u"1d5",
                               u"0b1",
                               u"0x1p",
                               u"1e5.5",
                               u"\x3000"
                               u"1"}) {
    EXPECT_EQ(Check(text), Unknown(U8(text))) << U8(text);
  }
}

TEST_F(Verification, RecognisesSignedAndSpacedNumbersOfCallersWithTokensOfTheirOwn) {
  for (const char16_t* text : {u"+1", u"-1", u" 1", u"\n1", u"-0x1", u"+inf", u"-1e-5", u"1e+5"}) {
    EXPECT_EQ(CheckWord(text), "0:1") << U8(text);
  }
  for (const char16_t* text : {u"+-1", u"--1", u"-", u"+", u"1 ", u" ", u"- 1", u"1e+", u"-+1"}) {
    EXPECT_NE(CheckWord(text), "0:1") << U8(text);
  }
  EXPECT_NE(CheckWord(std::u16string(u"1\0", 2)), "0:1");
  EXPECT_NE(CheckWord(u""), "0:1");
}

TEST_F(Verification, AgreesWithTheCLibraryOnNumbers) {
  constexpr std::string_view kPieces[] = {"0", "1", "9", ".",   "e",   "E", "x",  "X",  "p",  "+",
                                          "-", "a", "f", "inf", "nan", " ", "\t", "00", "e5", "0x"};
  const ScopedLocale c("C");
  std::mt19937 random(5);
  for (int round = 0; round < 50000; ++round) {
    std::string text;
    for (std::size_t count = 1 + random() % 6; count > 0; --count) {
      text += kPieces[random() % std::size(kPieces)];
    }
    char* end = nullptr;
    strtod(text.c_str(), &end);
    ASSERT_EQ(CheckWord(U16(text)) == "0:1", *end == '\0') << text;
  }
}

TEST_F(Verification, NumbersDoNotFollowTheLocale) {
  const ScopedLocale german("de_DE.UTF-8");
  EXPECT_EQ(Check(u"1.5"), "0:1");
}

TEST_F(Verification, RecognisesTexts) {
  struct Case {
    std::u16string text;
    std::string result;
  };
  const Case cases[] = {
      {u"'abc'", "0:2"},
      {u"''", "0:2"},
      {u"''''", "0:2"},
      {u"'a''b'", "0:2"},
      {u"'a'''", "0:2"},
      {u"'客户'", "0:2"},
      {u"'a\nb'", "0:2"},
      {u"'", Unpaired("'")},
      {u"'a", Unclosed("'a")},
      {u"'a'' ", Unclosed("'a'' ")},
      {u"'a''", "0:2"},               // unclosed, but the pair at its end uses the closing quote
      {u"'''a'", Unpaired("'''a'")},  // the search for pairs begins behind the second character
      {u"'''", "0:2"},                // too short to be searched
      {u"'a'b", "0:2 -1:5"},
      {u"'''a", Unclosed("'''a")},
      {u"'[T1].x'", "0:2"},
  };
  for (const Case& c : cases) {
    if (c.text == u"'a'b") {
      EXPECT_EQ(Check(c.text), Unknown("b"));  // two tokens, of which the second is no word
    } else {
      EXPECT_EQ(Check(c.text), c.result) << U8(c.text);
    }
  }
  EXPECT_EQ(Check(u"'a'b'"), Unknown("b'"));
}

TEST_F(Verification, LooksForPairsOfQuotesInWordsOfTheCaller) {
  EXPECT_EQ(CheckWord(u"'a'b'"), Unpaired("'a'b'").substr(3));
  EXPECT_EQ(CheckWord(u"'a''''b'"), "0:2");
  EXPECT_EQ(CheckWord(u"'a'''b'"), Unpaired("'a'''b'").substr(3));
  EXPECT_EQ(CheckWord(u"'ab'c'"), Unpaired("'ab'c'").substr(3));
  EXPECT_EQ(CheckWord(u"''a'"), "0:2");  // a quote at the second character is not looked at
}

TEST_F(Verification, RecognisesDates) {
  for (const char16_t* text :
       {u"'2021-05-06'", u"'2020.1.2'", u"'2020-1-2'", u"'12:00'", u"'5/25/2015'",
        u"'2020-1-2 10:20:30'", u"'January 16'", u"' 2020-01-02 '"}) {
    EXPECT_EQ(Check(text), "0:3") << U8(text);
  }
  for (const char16_t* text : {u"'20200102'", u"'2020'", u"'2021-02-29'", u"'A-1'", u"'24:00'",
                               u"' '", u"'.'", u"'2020-1-2''x'"}) {
    EXPECT_EQ(Check(text), "0:2") << U8(text);
  }
}

TEST_F(Verification, DatesFollowTheLocale) {
  const ScopedLocale german("de_DE.UTF-8");
  EXPECT_EQ(Check(u"'31.12.2020'"), "0:3");
}

TEST_F(Verification, DateConstantKeepsItsQuotedText) {
  for (const char16_t* text : {u"'2020.1.2'", u"' 2020-01-02 '"}) {
    std::vector<MxWord> words = WordsOf(text);
    ASSERT_TRUE(lexer_.LexicalCheck(words));
    EXPECT_EQ(U8(words[0].primary), U8(text));
    EXPECT_EQ(U8(words[0].content), U8(text));
  }
}

TEST_F(Verification, TakesTheTypeOutOfThePostfix) {
  struct Case {
    std::u16string text;
    std::string result;
  };
  const std::string bad =
      " must end with its data type: [S] for text, [N] for number, [D] for date.";
  const Case cases[] = {
      {u"Input.name[S]", "8:2"},
      {u"Input.name[s]", "8:2"},
      {u"Input.name[N]", "8:1"},
      {u"Input.name[D]", "8:3"},
      {u"Input.[S]", "8:2"},
      {u"Input.a[x].b[n]", "8:1"},
      {u"Sms.x[d]", "7:3"},
      {u"Input.a.b", "-1 The word \"Input.a.b\"" + bad},
      {u"input.a[X]", "-1 The word \"input.a[X]\"" + bad},
      {u"Input.", "-1 The word \"Input.\"" + bad},
      {u"Input.a[S]x", "-1 The word \"Input.a[S]x\"" + bad},
      {u"Input.name", Unknown("Input.name")},
  };
  for (const Case& c : cases) EXPECT_EQ(Check(c.text), c.result) << U8(c.text);
}

TEST_F(Verification, PostfixOfACallersWordMayBeShort) {
  for (const char16_t* primary : {u"", u"S", u"S]"}) {
    MxWord word;
    word.primary = primary;
    word.symbol = kInputSymbol;
    word.postfixCheck = 1;
    EXPECT_FALSE(lexer_.VerifyToken(word)) << U8(primary);
    EXPECT_EQ(lexer_.ErrNumber(), -1);
  }
}

TEST_F(Verification, LoadsTheTableOfAPostfix) {
  const auto check = [&](const std::u16string& primary) {
    MxWord word;
    word.primary = primary;
    word.symbol = kInputSymbol;
    word.postfixCheck = 2;
    std::vector<MxWord> words{word};
    return lexer_.LexicalCheck(words);
  };
  EXPECT_TRUE(check(u"x"));  // no bracket, nothing to check
  EXPECT_TRUE(check(u"x[T]"));
  EXPECT_NE(dictionarys_.Find(u"dt:T"), nullptr);
  EXPECT_TRUE(check(u"x[T]"));
  EXPECT_TRUE(check(u"[Orders]"));
  EXPECT_FALSE(check(u"x[NoSuch]"));
  EXPECT_EQ(lexer_.ErrNumber(), 0);  // a refusal without number and text of its own
  EXPECT_EQ(U8(lexer_.ErrDescription()), "");
  EXPECT_EQ(dictionarys_.ErrNumber(), -1);
  EXPECT_FALSE(check(u"x["));
  EXPECT_FALSE(check(u"x[]"));
  lexer_.set_dictionarys(nullptr);
  EXPECT_FALSE(check(u"x[T]"));
  EXPECT_TRUE(check(u"x"));
}

TEST_F(Verification, BindsAFieldOfATableThatItLoads) {
  std::vector<MxWord> words = WordsOf(u"t.A");
  EXPECT_EQ(words.at(0).symbol, -1);
  EXPECT_FALSE(lexer_.LexicalCheck(words));  // tables are asked for as they are written
  words = WordsOf(u"T.A");
  ASSERT_TRUE(lexer_.LexicalCheck(words));
  EXPECT_EQ(words[0].symbol, kDataFieldSymbol);
  EXPECT_EQ(U8(words[0].primary), "T.a");
  EXPECT_EQ(U8(words[0].outDesc), "T.a");
  EXPECT_EQ(U8(words[0].content), "");  // the dictionary's word as a whole
  EXPECT_EQ(U8(words[0].dtName), "T");
  EXPECT_EQ(words[0].fldId, 301);
  words = WordsOf(u"t.A");  // now the primary pass finds it, in any case
  ASSERT_TRUE(lexer_.LexicalCheck(words));
  EXPECT_EQ(U8(words[0].content), "t.A");
}

TEST_F(Verification, KnowsThePseudoColumnsOfEveryTable) {
  for (const char16_t* text :
       {u"T.rcid", u"T.RCID", u"T.LumentaRCID", u"T.lumentarn", u"Orders.RcId"}) {
    std::vector<MxWord> words = WordsOf(text);
    ASSERT_TRUE(lexer_.LexicalCheck(words)) << U8(text);
    EXPECT_EQ(words[0].symbol, kDataFieldSymbol);
    EXPECT_EQ(words[0].dataType, 5);
    EXPECT_EQ(U8(words[0].primary), U8(text));
    EXPECT_EQ(U8(words[0].outDesc), U8(text));
    EXPECT_EQ(U8(words[0].content), U8(text));
    EXPECT_EQ(U8(words[0].dtName), "");
  }
  EXPECT_EQ(Check(u"NoSuch.rcid"), Unknown("NoSuch.rcid"));
  EXPECT_EQ(Check(u"T.rcids"), Unknown("T.rcids"));
}

TEST_F(Verification, RefusesWhatIsNoFieldOfTwoParts) {
  for (const char16_t* text : {u"T.X.Y", u"T.nosuch", u"T", u"T.", u".a", u".", u"T..a",
                               u"nosuch.a", u"客户.无", u"a[", u"]"}) {
    EXPECT_EQ(Check(text), Unknown(U8(text))) << U8(text);
  }
  EXPECT_EQ(Check(u"客户.金额"), "4:1");
  EXPECT_EQ(Check(u"T.rcid."), "4:5");  // nothing stands behind the last dot
}

TEST_F(Verification, StopsAtTheFirstBadWordAndKeepsWhatWasDecided) {
  std::vector<MxWord> words = WordsOf(u"1 bad 2 worse");
  EXPECT_FALSE(lexer_.LexicalCheck(words));
  EXPECT_EQ(U8(lexer_.ErrDescription()), "The word \"bad\" is unknown.");
  EXPECT_EQ(words[0].symbol, 0);
  EXPECT_EQ(words[1].symbol, -1);
  EXPECT_EQ(words[2].symbol, -1);
  words = WordsOf(u"1");
  EXPECT_TRUE(lexer_.LexicalCheck(words));
  EXPECT_EQ(lexer_.ErrNumber(), 0);
  EXPECT_EQ(U8(lexer_.ErrDescription()), "");
}

TEST_F(Verification, QuotesTheContentInItsErrors) {
  MxWord word;
  word.symbol = -1;
  word.primary = word.outDesc = u"primary";
  word.content = u"100%s";
  EXPECT_FALSE(lexer_.VerifyToken(word));
  EXPECT_EQ(U8(lexer_.ErrDescription()), "The word \"100%s\" is unknown.");
}

TEST_F(Verification, FailsItsLoadsWithoutDictionariesOrConnection) {
  lexer_.set_dictionarys(nullptr);
  EXPECT_EQ(Check(u"T.a"), Unknown("T.a"));
  EXPECT_EQ(Check(u"T.rcid"), Unknown("T.rcid"));
  EXPECT_EQ(Check(u"12"), "0:1");
  MxDictionarys unconnected;
  lexer_.set_dictionarys(&unconnected);
  EXPECT_EQ(Check(u"T.a"), Unknown("T.a"));
  EXPECT_EQ(U8(unconnected.ErrDescription()), U8(MessageText(6700)));
}

TEST_F(Verification, SpeaksTheLanguageOfTheThread) {
  SetThreadLanguage(u"zh-CN");
  std::vector<MxWord> words = WordsOf(u"bad");
  EXPECT_FALSE(lexer_.LexicalCheck(words));
  EXPECT_NE(U8(lexer_.ErrDescription()).find("bad"), std::string::npos);
  EXPECT_NE(U8(lexer_.ErrDescription()), "The word \"bad\" is unknown.");
}
