// A set whose words change their language is the set that was built and loaded in that language.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DictionaryWords.h"
#include "OrkPlatform.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "expression/ExpressionState.h"
#include "platform/ThreadLanguage.h"

using namespace ORKBASE;

namespace {

constexpr const char16_t* kDrawing =
    u"<dd>"
    u"<tabs><t name='part' dispName='Part'><flds>"
    u"<f name='w' dispName='Weight' dt='1'/><f name='n' dispName='Name' dt='5'/>"
    u"<f name='again' dispName='weight' dt='5'/></flds></t></tabs>"
    u"<enums><e name='c' dispName='Colour'><v name='r' dispName='Red' val='1'/></e></enums>"
    u"</dd>";

// Everything that a set knows by its display forms: which word each leads to.
std::string WordsByDisplay(const MxDictionarys& set) {
  std::string out;
  for (const auto& [key, dictionary] : set.dictionaries()) {
    out += U8(key) + " (" + U8(dictionary->name) + ")\n";
    for (const MxWord* word : dictionary->SortedWords()) {
      const MxWord* found = dictionary->FindByDesc(LookupKey(word->outDesc));
      out += U8(word->primary) + " = " + U8(word->outDesc) + " -> " +
             (found ? U8(found->primary) : "-") + "\n";
    }
  }
  return out;
}

// An engine that was built and loaded in a language.
struct LoadedIn {
  explicit LoadedIn(std::u16string_view tag) {
    const ScopedLanguage language(tag);
    engine = std::make_unique<SampleExpression>();
    engine->SetRt(u"7");
    engine->SetCAXDD(1, kDrawing);
    engine->SetCAXDD(9, kDrawing);
  }
  const MxDictionarys& Words() const { return EngineAccess::Of(*engine).dictionaries; }

  std::unique_ptr<SampleExpression> engine;
};

std::string Spoken(const MxDictionarys& set, std::u16string_view tag) {
  MxDictionarys copy = set;
  copy.SpeakLanguage(LanguageNamed(tag));
  return WordsByDisplay(copy);
}

TEST(WordsInLanguage, AreThoseOfASetThatWasLoadedInIt) {
  const LoadedIn english(u"en");
  const LoadedIn chinese(u"zh-CN");
  ASSERT_NE(WordsByDisplay(english.Words()), WordsByDisplay(chinese.Words()));
  EXPECT_EQ(Spoken(english.Words(), u"zh-CN"), WordsByDisplay(chinese.Words()));
  EXPECT_EQ(Spoken(chinese.Words(), u"en"), WordsByDisplay(english.Words()));
  EXPECT_EQ(Spoken(english.Words(), u"en"), WordsByDisplay(english.Words()));
}

TEST(WordsInLanguage, KeepNamesThatWereChanged) {
  const LoadedIn english(u"en");
  const LoadedIn chinese(u"zh-CN");
  for (const LoadedIn* loaded : {&english, &chinese}) {
    loaded->engine->ReplaceDtOrDfNames(u"Header:Top,Lines:Rows", u"Top.Title:Heading");
  }
  EXPECT_EQ(Spoken(english.Words(), u"zh-CN"), WordsByDisplay(chinese.Words()));
}

TEST(WordsInLanguage, LeaveTheSetAloneThatWasCopied) {
  const LoadedIn english(u"en");
  const std::string before = WordsByDisplay(english.Words());
  Spoken(english.Words(), u"zh-CN");
  EXPECT_EQ(WordsByDisplay(english.Words()), before);
}

// What tells an observer that a set is no longer the one that it was.
TEST(StampOfASet, ChangesWithWhatTheSetKnows) {
  SampleExpression engine;
  const MxDictionarys& set = EngineAccess::Of(engine).dictionaries;
  std::vector<MxDictionarys::Stamp> stamps = {set.StampNow()};
  const auto changes = [&](const char* what) {
    EXPECT_NE(set.StampNow(), stamps.back()) << what;
    stamps.push_back(set.StampNow());
  };
  engine.SetDts(u"T");
  changes("a load");
  engine.SetDts(u"Nowhere");
  changes("a load that fails");
  std::u16string document;
  engine.Verify(kNumDataType, u"Orders.Amount", document);
  changes("a rule that loads its table");
  engine.ReplaceDtOrDfNames(u"T:U", u"");
  changes("a rename");
  engine.Refresh();
  changes("reading anew");
  engine.SetCAXDD(1, kDrawing);
  changes("a CAD document");
  ConnectTo(engine, SampleDatabase());
  changes("a connection");
  MxExpression copy(engine);
  copy.ReplaceDtOrDfNames(u"U:V", u"");
  changes("a rename through a copy");

  engine.Verify(kNumDataType, u"Orders.Amount", document);
  EXPECT_EQ(set.StampNow(), stamps.back()) << "a rule over loaded tables";
  EXPECT_EQ(EngineAccess::Of(MxExpression(engine)).dictionaries.StampNow(), stamps.back());
}

}  // namespace
