// One dictionary: two maps that go their own ways.
#include "dictionary/MxDictionary.h"

#include "DictionaryWords.h"

#include <gtest/gtest.h>

using namespace ORKBASE;

TEST(MxDictionary, FindsAWordInAnyCaseByBothKeys) {
  MxDictionary dictionary;
  dictionary.AddEntry(WordOf(u"Orders.Amount", u"Betrag.ÄÖ", 4));
  EXPECT_EQ(ByDesc(dictionary, u"Betrag.ÄÖ"), "Orders.Amount");
  EXPECT_EQ(ByDesc(dictionary, u"BETRAG.äö"), "Orders.Amount");
  EXPECT_EQ(ByDesc(dictionary, u"betrag.ÄÖ"), "Orders.Amount");
  EXPECT_EQ(ByPrimary(dictionary, u"ORDERS.amount"), "Orders.Amount");
  EXPECT_EQ(ByDesc(dictionary, u"Orders.Amount"), "-");
  EXPECT_EQ(ByPrimary(dictionary, u"Betrag.ÄÖ"), "-");
  EXPECT_EQ(ByDesc(dictionary, u""), "-");
}

TEST(MxDictionary, KeepsTheFirstWordOfAKeyButLetsTheSecondDisplayFormIn) {
  MxDictionary dictionary;
  dictionary.AddEntry(WordOf(u"T.a", u"first", 4));
  dictionary.AddEntry(WordOf(u"T.A", u"second", 13));
  const MxWord* word = dictionary.FindByPrimary(LookupKey(u"t.a"));
  ASSERT_NE(word, nullptr);
  EXPECT_EQ(word->symbol, 4);
  EXPECT_EQ(U8(word->outDesc), "first");
  const MxWord* second = dictionary.FindByDesc(LookupKey(u"second"));
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(U8(second->outDesc), "first");
  EXPECT_EQ(dictionary.SortedWords().size(), 1u);
}

TEST(MxDictionary, KeepsTheFirstDisplayForm) {
  MxDictionary dictionary;
  dictionary.AddEntry(WordOf(u"thisDoc.", u"doc."));
  dictionary.AddEntry(WordOf(u"CaxEnum.", u"DOC."));
  EXPECT_EQ(ByDesc(dictionary, u"doc."), "thisDoc.");
  EXPECT_EQ(ByPrimary(dictionary, u"caxenum."), "CaxEnum.");
}

TEST(MxDictionary, OneEmptyDisplayFormServesTheFirstWordWithoutText) {
  MxDictionary dictionary;
  dictionary.AddEntry(WordOf(u"sum", u""));
  dictionary.AddEntry(WordOf(u"count", u""));
  EXPECT_EQ(ByDesc(dictionary, u""), "sum");
  EXPECT_EQ(ByPrimary(dictionary, u"count"), "count");
}

TEST(MxDictionary, RemovesAWordFromBothMaps) {
  MxDictionary dictionary;
  dictionary.AddEntry(WordOf(u"T.a", u"x"));
  dictionary.AddEntry(WordOf(u"T.b", u"y"));
  dictionary.RemoveEntry(WordOf(u"t.A", u"X"));
  EXPECT_EQ(ByPrimary(dictionary, u"T.a"), "-");
  EXPECT_EQ(ByDesc(dictionary, u"x"), "-");
  EXPECT_EQ(ByDesc(dictionary, u"y"), "T.b");
  dictionary.RemoveEntry(WordOf(u"T.nosuch", u"nosuch"));
  EXPECT_EQ(dictionary.SortedWords().size(), 1u);
}

TEST(MxDictionary, RemovesTheEntryThatItIsGiven) {
  MxDictionary dictionary;
  dictionary.AddEntry(WordOf(u"T.a", u"x"));
  dictionary.RemoveEntry(*dictionary.FindByPrimary(LookupKey(u"T.a")));
  EXPECT_EQ(ByPrimary(dictionary, u"T.a"), "-");
  EXPECT_EQ(ByDesc(dictionary, u"x"), "-");
}

TEST(MxDictionary, DisplayFormThatLeadsToARemovedWordFindsNothing) {
  MxDictionary dictionary;
  dictionary.AddEntry(WordOf(u"T.a", u"x"));
  dictionary.AddEntry(WordOf(u"T.A", u"y"));
  dictionary.RemoveEntry(WordOf(u"T.a", u"x"));
  EXPECT_EQ(ByDesc(dictionary, u"y"), "-");
}

TEST(MxDictionary, SortsByCodeUnitsOfTheLowerCaseSpelling) {
  MxDictionary dictionary;
  for (const char16_t* primary : {u"b", u"A1", u"客", u"a", u"Z", u"_", u"a.b", u"Ä"}) {
    dictionary.AddEntry(WordOf(primary, primary));
  }
  std::string words;
  for (const MxWord* word : dictionary.SortedWords()) words += U8(word->primary) + " ";
  EXPECT_EQ(words, "_ a a.b A1 b Z Ä 客 ");
}

TEST(MxDictionary, KnowsItsKind) {
  const MxDictionary plain;
  EXPECT_FALSE(plain.isCax());
  EXPECT_EQ(U8(plain.name), "");
  const MxDictionary cax(true);
  EXPECT_TRUE(cax.isCax());
}
