// Renaming tables and fields in loaded dictionaries.
#include "dictionary/MxDictionarys.h"

#include "DictionaryWords.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

using namespace ORKBASE;

namespace {

class DictionaryRenames : public testing::Test {
 protected:
  /// A data table with the fields "x" and "y".
  void EnterTable(const std::u16string& name) {
    Enter(u"dt:" + name, {name + u".x", name + u".y"});
  }

  void Enter(const std::u16string& key, std::initializer_list<std::u16string> primaries) {
    auto dictionary = std::make_shared<MxDictionary>();
    dictionary->name = key;
    for (const std::u16string& primary : primaries) {
      MxWord word = WordOf(primary, primary);
      word.dtName = word.tabRealName = word.tabRefName = u"table";
      word.fldName = word.fldRealName = u"field";
      dictionary->AddEntry(word);
    }
    set_.Enter(key, dictionary);
  }

  MxWord Word(std::u16string_view primary) const { return ::Word(set_, primary); }

  const ScopedLanguage language_{u"en"};
  MxDictionarys set_;
};

}  // namespace

TEST_F(DictionaryRenames, TableIsFoundUnderItsNewNameOnly) {
  EnterTable(u"A");
  EXPECT_EQ(set_.ReplaceDtNames(u"A:B"), 0);
  EXPECT_EQ(KeysOf(set_), "dt:B");
  EXPECT_EQ(WordsOf(set_, u"dt:B"), "B.x B.y");
  EXPECT_EQ(ByDesc(set_, u"A.x"), "-");
  EXPECT_EQ(ByPrimary(set_, u"A.x"), "-");
  EXPECT_EQ(ByDesc(set_, u"b.X"), "B.x");
  const MxWord word = Word(u"B.x");
  EXPECT_EQ(U8(word.dtName), "B");
  EXPECT_EQ(U8(word.tabRealName), "B");
  EXPECT_EQ(U8(word.tabRefName), "B");
  EXPECT_EQ(U8(word.fldName), "field");
  EXPECT_EQ(U8(word.fldRealName), "field");
}

TEST_F(DictionaryRenames, TablesSwapChainAndRepeat) {
  struct Case {
    std::u16string list;
    std::string keys;
    std::string words;  // of each key
  };
  const Case cases[] = {
      {u"A:N", "dt:B dt:C dt:N", "B.x B.y;C.x C.y;N.x N.y;"},
      // each word is renamed as far as the list goes
      {u"A:M,M:N", "dt:B dt:C dt:N", "B.x B.y;C.x C.y;N.x N.y;"},
      // what was renamed onto another table is renamed along with it
      {u"A:B,B:D", "dt:C dt:D", "C.x C.y;D.x D.y;"},
      {u"B:D,A:B", "dt:B dt:C dt:D", "B.x B.y;C.x C.y;D.x D.y;"},
      {u"A:tmp,B:A,tmp:B", "dt:A dt:B dt:C", "A.x A.y;B.x B.y;C.x C.y;"},
      {u"A:A", "dt:A dt:B dt:C", "A.x A.y;B.x B.y;C.x C.y;"},
      {u"A:N,A:M", "dt:B dt:C dt:N", "B.x B.y;C.x C.y;N.x N.y;"},
      {u"A:N,,B:M", "dt:C dt:M dt:N", "C.x C.y;M.x M.y;N.x N.y;"},
      {u"", "dt:A dt:B dt:C", "A.x A.y;B.x B.y;C.x C.y;"},
      {u",", "dt:A dt:B dt:C", "A.x A.y;B.x B.y;C.x C.y;"},
      {u"a:N", "dt:A dt:B dt:C", "A.x A.y;B.x B.y;C.x C.y;"},  // heeds case
      {u"nosuch:N", "dt:A dt:B dt:C", "A.x A.y;B.x B.y;C.x C.y;"},
      {u"A", "dt: dt:B dt:C", ".x .y;B.x B.y;C.x C.y;"},  // no new name reads as the empty one
      {u"A:客户", "dt:B dt:C dt:客户", "B.x B.y;C.x C.y;客户.x 客户.y;"},
  };
  for (const Case& c : cases) {
    set_ = MxDictionarys();
    for (const char16_t* name : {u"A", u"B", u"C"}) EnterTable(name);
    EXPECT_EQ(set_.ReplaceDtNames(c.list), 0);
    EXPECT_EQ(KeysOf(set_), c.keys) << U8(c.list);
    std::string words;
    for (const auto& entry : set_.dictionaries()) {
      if (entry.first != u"base") words += WordsOf(set_, entry.first) + ";";
    }
    EXPECT_EQ(words, c.words) << U8(c.list);
  }
}

TEST_F(DictionaryRenames, RenameOntoALoadedTableReplacesIt) {
  EnterTable(u"A");
  Enter(u"dt:B", {u"B.old"});
  EXPECT_EQ(set_.ReplaceDtNames(u"A:B"), 0);
  EXPECT_EQ(KeysOf(set_), "dt:B");
  EXPECT_EQ(WordsOf(set_, u"dt:B"), "B.x B.y");
  EXPECT_EQ(ByPrimary(set_, u"B.old"), "-");
}

TEST_F(DictionaryRenames, WordsOfATemplateChangeBetweenTheDots) {
  Enter(u"rt:7", {u"thisReport.A.x", u"thisReport.B.x", u"thisReport.xA.y"});
  EXPECT_EQ(set_.ReplaceDtNames(u"A:N"), 0);
  EXPECT_EQ(KeysOf(set_), "rt:7");
  EXPECT_EQ(WordsOf(set_, u"rt:7"), "thisReport.B.x thisReport.N.x thisReport.xA.y");
  EXPECT_EQ(ByDesc(set_, u"thisReport.A.x"), "-");
  EXPECT_EQ(ByDesc(set_, u"thisReport.N.x"), "thisReport.N.x");
  EXPECT_EQ(U8(Word(u"thisReport.N.x").dtName), "N");
  EXPECT_EQ(U8(Word(u"thisReport.N.x").tabRealName), "N");
  EXPECT_EQ(U8(Word(u"thisReport.B.x").tabRealName), "table");
}

TEST_F(DictionaryRenames, EveryOccurrenceInATemplatesWordChanges) {
  Enter(u"rt:7", {u"thisReport.A.A.A.x"});
  set_.ReplaceDtNames(u"A:N");
  EXPECT_EQ(WordsOf(set_, u"rt:7"), "thisReport.N.A.N.x");  // a dot serves one occurrence only
}

TEST_F(DictionaryRenames, HeadOfADisplayFormIsNotCompared) {
  auto dictionary = std::make_shared<MxDictionary>();
  dictionary->name = u"dt:A";
  dictionary->AddEntry(WordOf(u"A.x", u"??Feld"));
  dictionary->AddEntry(WordOf(u"A.y", u"?"));
  set_.Enter(u"dt:A", dictionary);
  set_.ReplaceDtNames(u"A:New");
  EXPECT_EQ(WordsOf(set_, u"dt:New"), "New.x=New.Feld New.y=New.");
}

TEST_F(DictionaryRenames, TableWhoseNameHoldsTheMarkOfATemplateCountsAsOne) {
  EnterTable(u"xrt:y");
  Enter(u"dt:xrt:z", {u"thisReport.A.x"});
  set_.ReplaceDtNames(u"xrt:y");  // an item is cut at its first two pieces: "xrt" becomes "y"
  EXPECT_EQ(KeysOf(set_), "dt:xrt:y dt:xrt:z");
  set_.ReplaceDtNames(u"A:B");
  EXPECT_EQ(WordsOf(set_, u"dt:xrt:z"), "thisReport.B.x");
  EXPECT_EQ(KeysOf(set_), "dt:xrt:y dt:xrt:z");  // no key of a template changes
  set_.ReplaceDfNames(u"B.x:n");
  EXPECT_EQ(WordsOf(set_, u"dt:xrt:z"), "thisReport.B.n");
}

TEST_F(DictionaryRenames, LeaveTheVocabularyAndCaxDictionariesAlone) {
  auto cax = std::make_shared<MxDictionary>(true);
  cax->AddEntry(WordOf(u"thisDoc.A.x", u"thisDoc.A.x"));
  set_.Enter(u"cax:1", cax);
  set_.ReplaceDtNames(u"A:B,sysVar:other,Input:other");
  set_.ReplaceDfNames(u"A.x:n,sysVar.userName:n");
  EXPECT_EQ(WordsOf(set_, u"cax:1"), "thisDoc.A.x");
  EXPECT_EQ(ByPrimary(set_, u"sysVar.userName"), "sysVar.userName");
}

TEST_F(DictionaryRenames, FieldOfADataTableMatchesInAnyCase) {
  EnterTable(u"A");
  EXPECT_EQ(set_.ReplaceDfNames(u"a.X:New"), 0);
  EXPECT_EQ(KeysOf(set_), "dt:A");
  EXPECT_EQ(WordsOf(set_, u"dt:A"), "a.New A.y");  // the table as the list spells it
  EXPECT_EQ(ByDesc(set_, u"A.x"), "-");
  EXPECT_EQ(ByDesc(set_, u"A.new"), "a.New");
  EXPECT_EQ(U8(Word(u"a.New").fldName), "New");
  EXPECT_EQ(U8(Word(u"a.New").fldRealName), "[New]");
  EXPECT_EQ(U8(Word(u"a.New").dtName), "table");
}

TEST_F(DictionaryRenames, FieldOfATemplateHeedsCase) {
  Enter(u"rt:7", {u"thisReport.A.x", u"thisReport.A.xy", u"thisReport.A.x.A.x"});
  set_.ReplaceDfNames(u"a.x:n,A.X:n");
  EXPECT_EQ(WordsOf(set_, u"rt:7"), "thisReport.A.x thisReport.A.x.A.x thisReport.A.xy");
  set_.ReplaceDfNames(u"A.x:n");  // only where the first occurrence ends the word
  EXPECT_EQ(WordsOf(set_, u"rt:7"), "thisReport.A.n thisReport.A.x.A.x thisReport.A.xy");
  EXPECT_EQ(ByDesc(set_, u"thisReport.A.n"), "thisReport.A.n");
  EXPECT_EQ(U8(Word(u"thisReport.A.n").fldRealName), "[n]");
}

TEST_F(DictionaryRenames, TailOfATemplatesDisplayFormIsNotCompared) {
  auto dictionary = std::make_shared<MxDictionary>();
  dictionary->name = u"rt:7";
  dictionary->AddEntry(WordOf(u"thisReport.A.x", u"Bericht....."));
  dictionary->AddEntry(WordOf(u"thisReport.A.y", u"?"));
  set_.Enter(u"rt:7", dictionary);
  set_.ReplaceDfNames(u"A.x:n,A.y:m");
  EXPECT_EQ(WordsOf(set_, u"rt:7"), "thisReport.A.m=.A.m thisReport.A.n=Bericht..A.n");
}

TEST_F(DictionaryRenames, FieldsChainSwapAndCollide) {
  struct Case {
    std::u16string list;
    std::string words;
  };
  const Case cases[] = {
      {u"A.x:n", "A.n A.y"},
      {u"A.x:t,A.t:n", "A.n A.y"},
      {u"A.x:t,A.y:x,A.t:y", "A.x A.y"},
      {u"A.x:x", "A.x A.y"},
      {u"A.x:y", "A.y"},  // the field that is there already stays
      {u"A.x:n,,A.y:m", "A.m A.n"},
      {u"A.x", "A. A.y"},
      {u"A:n", "A.x A.y"},
      {u"x:n", "A.x A.y"},
      {u"A.x.z:n", "A.n A.y"},  // the first two pieces only
      {u"", "A.x A.y"},
      {u"B.x:n", "A.x A.y"},
  };
  for (const Case& c : cases) {
    set_ = MxDictionarys();
    EnterTable(u"A");
    EXPECT_EQ(set_.ReplaceDfNames(c.list), 0);
    EXPECT_EQ(WordsOf(set_, u"dt:A"), c.words) << U8(c.list);
  }
}

TEST_F(DictionaryRenames, FieldsAreQuotedAsTheDatabaseQuotes) {
  set_.Connect(u"sqlite:nosuch", 0, ORKDB::MxProxyInfo(), u"", u"", kOracleDs, false, false, u"");
  EnterTable(u"A");
  set_.ReplaceDfNames(u"A.x:n,A.y:\"m\"");
  EXPECT_EQ(U8(Word(u"A.n").fldRealName), "\"n\"");
  EXPECT_EQ(U8(Word(u"A.\"m\"").fldRealName), "\"m\"");
  set_.ReplaceDfNames(u"A.n:");
  EXPECT_EQ(U8(Word(u"A.").fldRealName), "");
}

TEST_F(DictionaryRenames, InACopyTheWordsChangeForTheSourceButItsKeysDoNot) {
  EnterTable(u"A");
  MxDictionarys copy(set_);
  copy.ReplaceDtNames(u"A:B");
  EXPECT_EQ(WordsOf(copy, u"dt:B"), "B.x B.y");
  EXPECT_EQ(copy.Find(u"dt:A"), nullptr);
  set_.BeginCall();
  EXPECT_EQ(WordsOf(set_, u"dt:A"), "B.x B.y");
  EXPECT_EQ(set_.Find(u"dt:B"), nullptr);
  EXPECT_EQ(ByDesc(set_, u"B.x"), "B.x");
  set_.ReplaceDtNames(u"B:C");  // the source can go on from there
  EXPECT_EQ(WordsOf(set_, u"dt:C"), "C.x C.y");
  copy.BeginCall();
  EXPECT_EQ(WordsOf(copy, u"dt:B"), "C.x C.y");
}

TEST_F(DictionaryRenames, RenamedTableIsNotReadAgain) {
  set_.Connect(SampleDatabase().Server(), 0, ORKDB::MxProxyInfo(), u"", u"", kSqlServerDs, false,
               true, u"");
  ASSERT_EQ(set_.LoadDataTable(u"T"), 0);
  set_.ReplaceDtNames(u"T:U");
  EXPECT_EQ(set_.LoadDataTable(u"U"), 0);  // no such table in the database
  EXPECT_EQ(WordsOf(set_, u"dt:U"), "U.a U.b U.d U.s");
  EXPECT_EQ(set_.LoadDataTable(u"T"), 0);
  EXPECT_EQ(KeysOf(set_), "dt:T dt:U");
}
