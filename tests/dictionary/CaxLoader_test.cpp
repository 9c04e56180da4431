// Fields and enumerations of an attached CAD document.
#include "MxExpression.h"
#include "OrkPlatform.h"
#include "dictionary/MxDictionarys.h"

#include "CpuSeconds.h"
#include "DictionaryWords.h"

#include <gtest/gtest.h>

#include <string>

using namespace ORKBASE;

namespace {

constexpr const char16_t* kDocument =
    u"<dd><tabs>"
    u"<tab name='Part' dispName='Teil'><flds>"
    u"<f name='Len' dispName='Länge' dt='1'/><f name='Made' dispName='Datum' dt='4'/>"
    u"<f name='Note' dispName='Text' dt='5'/></flds></tab>"
    u"<x name='Bom' dispName='Stückliste'><flds><y name='Pic' dispName='Bild' dt='9'/></flds></x>"
    u"</tabs><enums>"
    u"<e name='Color' dispName='Farbe'><v name='Red' dispName='Rot' val='1'/>"
    u"<v name='Blue' dispName='Blau' val=''/></e>"
    u"</enums></dd>";

class CaxLoader : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }
};

std::u16string WithType(const std::u16string& dt) {
  return u"<dd><tabs><t name='T' dispName='T'><flds><f name='a' dispName='a'" + dt +
         u"/></flds></t></tabs></dd>";
}

}  // namespace

TEST_F(CaxLoader, MakesTheWordOfAField) {
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(1, kDocument), 0);
  const MxWord word = Word(set, u"thisDoc.Part.Len");
  EXPECT_EQ(U8(word.primary), "thisDoc.Part.Len");
  EXPECT_EQ(U8(word.outDesc), "thisDoc.Teil.Länge");
  EXPECT_EQ(word.symbol, kCAXFieldSymbol);
  EXPECT_EQ(word.dataType, 1);
  EXPECT_EQ(word.baseType, 1);
  EXPECT_EQ(word.postfixCheck, 0);
  EXPECT_EQ(U8(word.dtName), "Teil");
  EXPECT_EQ(U8(word.tabRealName), "Part");
  EXPECT_EQ(U8(word.fldName), "Länge");
  EXPECT_EQ(U8(word.fldRealName), "Len");
  EXPECT_EQ(U8(word.content), "");
  EXPECT_EQ(U8(word.tabRefName), "");
  EXPECT_EQ(word.rttId + word.rtfId + word.dtId + word.fldId, 0);
  EXPECT_FALSE(word.detailTable);
  EXPECT_FALSE(word.created);
  EXPECT_EQ(ByDesc(set, u"thisdoc.stückliste.BILD"), "thisDoc.Bom.Pic");
}

TEST_F(CaxLoader, MakesTheWordOfAnEnumerationValue) {
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(1, kDocument), 0);
  const MxWord word = Word(set, u"AutoCADEnum.Color.Red");
  EXPECT_EQ(U8(word.outDesc), "AutoCADEnum.Farbe.Rot");
  EXPECT_EQ(word.symbol, kCAXEnumSymbol);
  EXPECT_EQ(word.dataType, 1);
  EXPECT_EQ(word.baseType, 0);
  EXPECT_EQ(U8(word.dtName), "");
  EXPECT_EQ(ByPrimary(set, u"AutoCADEnum.Color.Blue"), "AutoCADEnum.Color.Blue");
}

TEST_F(CaxLoader, ShowsWordsInTheLanguageOfTheLoad) {
  SetThreadLanguage(u"zh-CN");
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(2, kDocument), 0);
  EXPECT_EQ(U8(Word(set, u"thisDoc.Part.Len").outDesc), "本文档.Teil.Länge");
  EXPECT_EQ(U8(Word(set, u"ProEEnum.Color.Red").outDesc), "ProE枚举.Farbe.Rot");
}

TEST_F(CaxLoader, KnowsTheProgramsByTheirNumbers) {
  struct Case {
    std::int32_t type;
    std::u16string key;
    std::u16string word;
  };
  const Case cases[] = {
      {1, u"cax:1", u"AutoCADEnum.Color.Red"},    {2, u"cax:2", u"ProEEnum.Color.Red"},
      {3, u"cax:3", u"SolidWorksEnum.Color.Red"}, {0, u"cax:0", u"UnknownEnum.Color.Red"},
      {7, u"cax:7", u"UnknownEnum.Color.Red"},    {-4, u"cax:-4", u"UnknownEnum.Color.Red"},
  };
  for (const Case& c : cases) {
    MxDictionarys set;
    ASSERT_EQ(set.LoadCax(c.type, kDocument), 0);
    EXPECT_EQ(KeysOf(set), U8(c.key) + "()");  // the name stays empty
    EXPECT_EQ(ByPrimary(set, c.word), U8(c.word));
    const MxDictionary* dictionary = set.Find(c.key);
    ASSERT_NE(dictionary, nullptr);
    EXPECT_TRUE(dictionary->isCax());
  }
}

TEST_F(CaxLoader, MapsTheFieldTypes) {
  constexpr std::int32_t kTypes[] = {1, 1, 1, 3, 2, 1, 5, 1, 6};  // of dt 1 to 9
  for (std::int32_t dt = 1; dt <= 9; ++dt) {
    MxDictionarys set;
    ASSERT_EQ(set.LoadCax(1, WithType(u" dt='" + U16(std::to_string(dt)) + u"'")), 0);
    EXPECT_EQ(Word(set, u"thisDoc.T.a").dataType, kTypes[dt - 1]) << dt;
    EXPECT_EQ(Word(set, u"thisDoc.T.a").baseType, kTypes[dt - 1]) << dt;
  }
}

TEST_F(CaxLoader, ThrowsATextForAnUnknownFieldType) {
  for (const char16_t* dt : {u"", u" dt=''", u" dt='0'", u" dt='10'", u" dt='-1'", u" dt='x'"}) {
    MxDictionarys set;
    try {
      set.LoadCax(1, WithType(dt));
      ADD_FAILURE() << U8(dt);
    } catch (const char16_t* text) {
      EXPECT_EQ(U8(text), "cax dataType error.");
    }
    EXPECT_NE(set.Find(u"cax:1"), nullptr) << U8(dt);
  }
}

TEST_F(CaxLoader, ReadsTheFieldTypeAsEveryNumberInAnAttribute) {
  MxDictionarys set;
  EXPECT_EQ(set.LoadCax(1, WithType(u" dt=' 4'")), 0);
  EXPECT_EQ(Word(set, u"thisDoc.T.a").dataType, 3);
  EXPECT_EQ(set.LoadCax(1, WithType(u" dt='05x'")), 0);
  EXPECT_EQ(Word(set, u"thisDoc.T.a").dataType, 2);
}

TEST_F(CaxLoader, KeepsWhatItReadBeforeTheText) {
  const std::u16string document =
      u"<dd><tabs><t name='T' dispName='T'><flds><f name='a' dispName='a' dt='1'/>"
      u"<f name='b' dispName='b' dt='99'/><f name='c' dispName='c' dt='1'/></flds></t></tabs>"
      u"<enums><e name='E' dispName='E'><v name='V' dispName='V' val='5'/></e></enums></dd>";
  MxDictionarys set;
  EXPECT_THROW(set.LoadCax(1, document), const char16_t*);
  EXPECT_EQ(WordsOf(set, u"cax:1"), "thisDoc.T.a");
  MxExpression rules;
  EXPECT_THROW(rules.SetCAXDD(1, document), const char16_t*);
  EXPECT_EQ(rules.errNumber(), 0);
  std::u16string parsed;
  EXPECT_TRUE(rules.Verify(kNumDataType, u"thisDoc.T.a", parsed));
  EXPECT_FALSE(rules.Verify(kNumDataType, u"AutoCADEnum.E.V", parsed));
}

TEST_F(CaxLoader, SecondLoadReplacesItsTypeOnly) {
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(1, kDocument), 0);
  ASSERT_EQ(set.LoadCax(2, kDocument), 0);
  ASSERT_EQ(set.LoadCax(1, WithType(u" dt='1'")), 0);
  EXPECT_EQ(WordsOf(set, u"cax:1"), "thisDoc.T.a");
  EXPECT_EQ(ByPrimary(set, u"AutoCADEnum.Color.Red"), "-");
  EXPECT_EQ(ByPrimary(set, u"ProEEnum.Color.Red"), "ProEEnum.Color.Red");
}

TEST_F(CaxLoader, TextThatIsNoDocumentLeavesTheEarlierDictionary) {
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(1, kDocument), 0);
  for (const char16_t* text :
       {u"", u"no document", u"<dd>", u"<dd>&e;</dd>",
        u"<!DOCTYPE dd [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><dd>&e;</dd>"}) {
    EXPECT_EQ(set.LoadCax(1, text), 1) << U8(text);
    EXPECT_EQ(set.ErrNumber(), 1);
    EXPECT_EQ(U8(set.ErrDescription()), "Document not parsed successfully. \n");
    EXPECT_EQ(ByPrimary(set, u"thisDoc.Part.Len"), "thisDoc.Part.Len");
  }
}

TEST_F(CaxLoader, DocumentsWithoutTheElementsGiveAnEmptyDictionary) {
  for (const char16_t* text :
       {u"<dd/>", u"<x/>", u"<dd><tabs/></dd>", u"<dd><enums/></dd>", u"<tabs/>",
        u"<dd><tabs><t name='T'/></tabs></dd>", u"<dd><tabs><t><flds/></t></tabs></dd>",
        u"<dd><tabs><t><other><f dt='77'/></other></t></tabs></dd>",
        u"<dd><enums><e name='E'/></enums></dd>", u"<dd><x><tabs><t/></tabs></x></dd>",
        u"<dd><!-- c --><tabs>text</tabs></dd>"}) {
    MxDictionarys set;
    EXPECT_EQ(set.LoadCax(1, text), 0) << U8(text);
    EXPECT_EQ(WordsOf(set, u"cax:1"), "") << U8(text);
  }
}

TEST_F(CaxLoader, FindsTheElementsAtAnyDepthAndTakesTheFirst) {
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(1,
                        u"<r><dd><tabs><t name='A' dispName='A'><flds>"
                        u"<f name='a' dispName='a' dt='1'/></flds></t></tabs>"
                        u"<tabs><t name='B' dispName='B'><flds><f name='b' dispName='b' dt='1'/>"
                        u"</flds></t></tabs></dd></r>"),
            0);
  EXPECT_EQ(WordsOf(set, u"cax:1"), "thisDoc.A.a");
}

TEST_F(CaxLoader, ReadsMissingNamesAsEmpty) {
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(1,
                        u"<dd><tabs><t><flds><f dt='1'/></flds></t></tabs>"
                        u"<enums><e><v/></e></enums></dd>"),
            0);
  EXPECT_EQ(WordsOf(set, u"cax:1"), "AutoCADEnum.. thisDoc..");
}

TEST_F(CaxLoader, TakesAPercentSignInAFieldAsADirective) {
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(1,
                        u"<dd><tabs><t name='T' dispName='100%%'><flds>"
                        u"<f name='a' dispName='a' dt='1'/></flds></t>"
                        u"<t name='U' dispName='50%'><flds><f name='b' dispName='b' dt='1'/></flds>"
                        u"</t></tabs><enums><e name='E' dispName='5%'>"
                        u"<v name='V' dispName='%s'/></e></enums></dd>"),
            0);
  EXPECT_EQ(U8(Word(set, u"thisDoc.T.a").outDesc), "thisDoc.100%.a");
  EXPECT_EQ(U8(Word(set, u"thisDoc.U.b").outDesc), "");
  EXPECT_EQ(U8(Word(set, u"AutoCADEnum.E.V").outDesc), "AutoCADEnum.5%.%s");
}

TEST_F(CaxLoader, SetterAlwaysReturnsFalse) {
  MxExpression rules;
  EXPECT_FALSE(rules.SetCAXDD(1, kDocument));
  EXPECT_EQ(rules.errNumber(), 0);
  EXPECT_FALSE(rules.SetCAXDD(1, u"x"));
  EXPECT_EQ(rules.errNumber(), 1);
  EXPECT_EQ(U8(rules.errDescription()), "Document not parsed successfully. \n");
  EXPECT_FALSE(rules.SetCAXDD(3, kDocument));
  EXPECT_EQ(rules.errNumber(), 0);
  EXPECT_EQ(U8(rules.errDescription()), "");
}

TEST_F(CaxLoader, HoldsALargeDocument) {
  std::u16string document = u"<dd><tabs><t name='T' dispName='T'><flds>";
  for (int i = 0; document.size() < 10 * 1024 * 1024; ++i) {
    const std::u16string n = U16(std::to_string(i));
    document += u"<f name='field" + n + u"' dispName='field" + n + u"' dt='1'/>";
  }
  document += u"</flds></t></tabs></dd>";
  const CpuSeconds time;
  MxDictionarys set;
  ASSERT_EQ(set.LoadCax(1, document), 0);
  EXPECT_EQ(ByDesc(set, u"thisDoc.T.field77"), "thisDoc.T.field77");
  EXPECT_LT(time.Used(), 20);
}

TEST_F(CaxLoader, ExpandsAndReadsNoEntities) {
  std::u16string bomb = u"<!DOCTYPE dd [<!ENTITY a 'aaaaaaaaaaaaaaaaaaaa'>";
  for (char16_t c = u'b'; c <= u'z'; ++c) {
    bomb += std::u16string(u"<!ENTITY ") + c + u" '";
    for (int i = 0; i < 20; ++i) bomb += std::u16string(u"&") + static_cast<char16_t>(c - 1) + u";";
    bomb += u"'>";
  }
  bomb += u"]>";
  MxDictionarys set;
  const CpuSeconds time;
  EXPECT_EQ(set.LoadCax(1, bomb + u"<dd>&z;</dd>"), 1);
  EXPECT_EQ(set.LoadCax(1, bomb + u"<dd><tabs><t name='&z;'/></tabs></dd>"), 1);
  EXPECT_EQ(set.LoadCax(1, bomb + kDocument), 0);
  EXPECT_LT(time.Used(), 5);
}
