// The dictionary set: key order decides which word wins.
#include "dictionary/MxDictionarys.h"

#include "OrkPlatform.h"

#include "DictionaryWords.h"

#include <gtest/gtest.h>

using namespace ORKBASE;

namespace {

class MxDictionarysSet : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }

  void Enter(MxDictionarys& set, const std::u16string& key, const MxWord& word) {
    auto dictionary = std::make_shared<MxDictionary>();
    dictionary->AddEntry(word);
    dictionary->name = key;
    set.Enter(key, dictionary);
  }
};

}  // namespace

TEST_F(MxDictionarysSet, SearchesInTheOrderOfItsKeys) {
  MxDictionarys set;
  Enter(set, u"rt:7", WordOf(u"from rt", u"x"));
  EXPECT_EQ(ByDesc(set, u"x"), "from rt");
  Enter(set, u"dt:T", WordOf(u"from dt", u"x"));
  EXPECT_EQ(ByDesc(set, u"x"), "from dt");
  Enter(set, u"dt:S", WordOf(u"from dt:S", u"x"));
  EXPECT_EQ(ByDesc(set, u"x"), "from dt:S");
  Enter(set, u"cax:1", WordOf(u"from cax", u"x"));
  EXPECT_EQ(ByDesc(set, u"X"), "from cax");
  EXPECT_EQ(KeysOf(set), "cax:1 dt:S dt:T rt:7");
  Enter(set, u"cax:1", WordOf(u"SUM", u"sum"));  // the base vocabulary outranks what users name
  EXPECT_EQ(ByDesc(set, u"sum"), "sum");
  EXPECT_EQ(ByPrimary(set, u"SUM"), "sum");
}

TEST_F(MxDictionarysSet, SearchesByDisplayFormOrBySpelling) {
  MxDictionarys set;
  Enter(set, u"dt:T", WordOf(u"T.a", u"Feld"));
  EXPECT_EQ(ByDesc(set, u"feld"), "T.a");
  EXPECT_EQ(ByPrimary(set, u"feld"), "-");
  EXPECT_EQ(ByPrimary(set, u"t.A"), "T.a");
  EXPECT_EQ(ByDesc(set, u"t.A"), "-");
  EXPECT_EQ(ByDesc(set, u"nosuch"), "-");
}

TEST_F(MxDictionarysSet, RemovesAKey) {
  MxDictionarys set;
  Enter(set, u"dt:T", WordOf(u"T.a", u"T.a"));
  EXPECT_NE(set.Find(u"dt:T"), nullptr);
  EXPECT_EQ(set.Find(u"dt:t"), nullptr);  // keys heed case
  set.Remove(u"dt:t");
  EXPECT_EQ(ByDesc(set, u"T.a"), "T.a");
  set.Remove(u"dt:T");
  set.Remove(u"dt:T");
  EXPECT_EQ(ByDesc(set, u"T.a"), "-");
  EXPECT_EQ(set.Find(u"dt:T"), nullptr);
}

TEST_F(MxDictionarysSet, CopySharesDictionariesAndHasKeysOfItsOwn) {
  MxDictionarys set;
  Enter(set, u"dt:T", WordOf(u"T.a", u"T.a"));
  MxDictionarys copy(set);
  EXPECT_EQ(copy.Find(u"dt:T"), set.Find(u"dt:T"));
  copy.Remove(u"dt:T");
  EXPECT_EQ(ByDesc(set, u"T.a"), "T.a");
  set.ReplaceDfNames(u"T.a:b");
  MxDictionarys assigned;
  Enter(assigned, u"dt:U", WordOf(u"U.a", u"U.a"));
  assigned = set;
  EXPECT_EQ(KeysOf(assigned), "dt:T");
  EXPECT_EQ(ByDesc(assigned, u"T.b"), "T.b");
  set.ReplaceDfNames(u"T.b:c");
  EXPECT_EQ(ByDesc(assigned, u"T.b"), "T.b");  // until the copy begins a call
  assigned.BeginCall();
  EXPECT_EQ(ByDesc(assigned, u"T.c"), "T.c");
}

TEST_F(MxDictionarysSet, QuotesNames) {
  MxDictionarys set;
  EXPECT_EQ(U8(set.QuoteName(u"a")), "[a]");
  EXPECT_EQ(U8(set.QuoteName(u"")), "");
  EXPECT_EQ(U8(set.QuoteName(u"[a]")), "[a]");
  EXPECT_EQ(U8(set.QuoteName(u"[")), "[");
  EXPECT_EQ(U8(set.QuoteName(u"a]")), "[a]]");
  EXPECT_EQ(U8(set.QuoteName(u"\"a\"")), "[\"a\"]");
}

TEST_F(MxDictionarysSet, QuotesOfADatabaseOtherThanTheDefaultStay) {
  MxDictionarys set;
  const auto connect = [&](std::int32_t dsType) {
    set.Connect(u"sqlite:nosuch", 0, ORKDB::MxProxyInfo(), u"", u"",
                static_cast<ORKDB_DSType_ENUM>(dsType), false, false, u"");
    return U8(set.QuoteName(u"a"));
  };
  EXPECT_EQ(connect(0), "[a]");
  EXPECT_EQ(connect(3), "\"a\"");
  EXPECT_EQ(U8(set.QuoteName(u"\"a")), "\"a");
  EXPECT_EQ(U8(set.QuoteName(u"[a]")), "\"[a]\"");
  EXPECT_EQ(connect(0), "\"a\"");  // a later 0 does not bring the brackets back
  for (const std::int32_t other : {1, 7, 11, 14, 15, -1}) {
    MxDictionarys fresh;
    fresh.Connect(u"sqlite:nosuch", 0, ORKDB::MxProxyInfo(), u"", u"",
                  static_cast<ORKDB_DSType_ENUM>(other), false, false, u"");
    EXPECT_EQ(U8(fresh.QuoteName(u"a")), "\"a\"") << other;
  }
}
