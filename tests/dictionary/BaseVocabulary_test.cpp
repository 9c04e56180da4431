// The base vocabulary against a second list of its words, kept apart from the table that the code
// works with: what a rule editor offers and stored rules hold must not change by accident.
#include "dictionary/BaseVocabulary.h"

#include "MxExpression.h"
#include "OrkPlatform.h"
#include "dictionary/MxDictionarys.h"
#include "foundation/Text.h"

#include "DictionaryWords.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

struct ExpectedWord {
  std::u16string_view primary;
  std::int32_t message;  // 0: the word is its own display form
  bool dot;              // with a full stop behind the message
  std::int32_t symbol;
  std::int32_t dataType;
  std::int32_t postfixCheck;
};

// clang-format off
constexpr ExpectedWord kWords[] = {
    {u"and",                                 6306, false, 20, 4, 0},
    {u"or",                                  6307, false, 20, 4, 0},
    {u"not",                                 6308, false, 21, 4, 0},
    {u"in",                                  6309, false, 23, 5, 0},
    {u"not_in",                              6310, false, 23, 5, 0},
    {u"between",                             6304, false, 23, 5, 0},
    {u"not_null",                            6330, false, 26, 5, 0},
    {u"null",                                6331, false, 26, 5, 0},
    {u"&",                                      0, false, 18, 2, 0},
    {u"+",                                      0, false, 16, 1, 0},
    {u"-",                                      0, false, 16, 1, 0},
    {u"*",                                      0, false, 17, 1, 0},
    {u"/",                                      0, false, 17, 1, 0},
    {u"^",                                      0, false, 17, 1, 0},
    {u"%",                                      0, false, 17, 1, 0},
    {u"like",                                6305, false, 19, 2, 0},
    {u"=",                                      0, false, 19, 5, 0},
    {u"<>",                                     0, false, 19, 5, 0},
    {u">",                                      0, false, 19, 5, 0},
    {u">=",                                     0, false, 19, 5, 0},
    {u"<",                                      0, false, 19, 5, 0},
    {u"<=",                                     0, false, 19, 5, 0},
    {u"*=",                                     0, false, 22, 5, 0},
    {u"=*",                                     0, false, 22, 5, 0},
    {u"(",                                      0, false, 24, 0, 0},
    {u")",                                      0, false, 24, 0, 0},
    {u",",                                      0, false, 24, 0, 0},
    {u"yy",                                     0, false, 14, 0, 0},
    {u"qq",                                     0, false, 14, 0, 0},
    {u"mm",                                     0, false, 14, 0, 0},
    {u"dd",                                     0, false, 14, 0, 0},
    {u"ww",                                     0, false, 14, 0, 0},
    {u"hh",                                     0, false, 14, 0, 0},
    {u"mi",                                     0, false, 14, 0, 0},
    {u"ss",                                     0, false, 14, 0, 0},
    {u"'yyyymmdd'",                             0, false, 14, 0, 0},
    {u"'yyyy-mm-dd'",                           0, false, 14, 0, 0},
    {u"'mm-dd-yyyy'",                           0, false, 14, 0, 0},
    {u"'dd-mm-yyyy'",                           0, false, 14, 0, 0},
    {u"'yyyy/mm/dd'",                           0, false, 14, 0, 0},
    {u"'mm/dd/yyyy'",                           0, false, 14, 0, 0},
    {u"'dd/mm/yyyy'",                           0, false, 14, 0, 0},
    {u"'yymmdd'",                               0, false, 14, 0, 0},
    {u"'yy-mm-dd'",                             0, false, 14, 0, 0},
    {u"'mm-dd-yy'",                             0, false, 14, 0, 0},
    {u"'dd-mm-yy'",                             0, false, 14, 0, 0},
    {u"'yy/mm/dd'",                             0, false, 14, 0, 0},
    {u"'mm/dd/yy'",                             0, false, 14, 0, 0},
    {u"'dd/mm/yy'",                             0, false, 14, 0, 0},
    {u"'hh:mm:ss'",                             0, false, 14, 0, 0},
    {u"'hh:mm:ss:mmm'",                         0, false, 14, 0, 0},
    {u"sum",                                 6400, false, 27, 1, 0},
    {u"average",                             6401, false, 27, 1, 0},
    {u"count",                               6402, false, 27, 1, 0},
    {u"max",                                 6403, false, 27, 1, 0},
    {u"min",                                 6404, false, 27, 1, 0},
    {u"year",                                6407, false, 27, 1, 0},
    {u"month",                               6408, false, 27, 1, 0},
    {u"day",                                 6409, false, 27, 1, 0},
    {u"quarter",                             6410, false, 27, 1, 0},
    {u"weekDay",                             6411, false, 27, 1, 0},
    {u"fisYear",                             6513, false, 27, 1, 0},
    {u"fisMonth",                            6516, false, 27, 1, 0},
    {u"fisQuarter",                          6519, false, 27, 1, 0},
    {u"timeInterval",                        6419, false, 27, 1, 0},
    {u"length",                              6424, false, 27, 1, 0},
    {u"log",                                    0, false, 27, 1, 0},
    {u"log10",                                  0, false, 27, 1, 0},
    {u"Exponent",                            6562, false, 27, 1, 0},
    {u"POWER",                               6565, false, 27, 1, 0},
    {u"ROUND",                               6568, false, 27, 1, 0},
    {u"count1",                              6571, false, 27, 1, 0},
    {u"CEILING",                             6140, false, 27, 1, 0},
    {u"FLOOR",                               6143, false, 27, 1, 0},
    {u"ToNumber",                            6341, false, 27, 1, 0},
    {u"hour",                                6585, false, 27, 1, 0},
    {u"minute",                              6588, false, 27, 1, 0},
    {u"substring",                           6423, false, 27, 2, 0},
    {u"toUpper",                             6425, false, 27, 2, 0},
    {u"ToText",                              6412, false, 27, 2, 0},
    {u"ltrim",                               6593, false, 27, 2, 0},
    {u"rtrim",                               6594, false, 27, 2, 0},
    {u"lastDate",                            6405, false, 27, 3, 0},
    {u"firstDate",                           6406, false, 27, 3, 0},
    {u"fstDayOfMonth",                       6522, false, 27, 3, 0},
    {u"lstDayOfMonth",                       6525, false, 27, 3, 0},
    {u"fstDayOfFisMonth",                    6528, false, 27, 3, 0},
    {u"endOfFisMonth",                       6531, false, 27, 3, 0},
    {u"fstDayOfYear",                        6534, false, 27, 3, 0},
    {u"endOfYear",                           6537, false, 27, 3, 0},
    {u"fstDayOfFisYear",                     6540, false, 27, 3, 0},
    {u"endOfFisYear",                        6543, false, 27, 3, 0},
    {u"fstDayOfQuarter",                     6546, false, 27, 3, 0},
    {u"endOfQuarter",                        6549, false, 27, 3, 0},
    {u"fstDayOfFisQuarter",                  6552, false, 27, 3, 0},
    {u"endOfFisQuarter",                     6555, false, 27, 3, 0},
    {u"dateAdd",                             6418, false, 27, 3, 0},
    {u"ToDate",                              6415, false, 27, 3, 0},
    {u"fUnixTimestamp2Datetime",             6186, false, 27, 3, 0},
    {u"thisYear",                            6474, false, 27, 3, 0},
    {u"thisFisYear",                         6477, false, 27, 3, 0},
    {u"lastYear",                            6480, false, 27, 3, 0},
    {u"lastFisYear",                         6483, false, 27, 3, 0},
    {u"thisQuarter",                         6486, false, 27, 3, 0},
    {u"thisFisQuarter",                      6489, false, 27, 3, 0},
    {u"lastQuarter",                         6492, false, 27, 3, 0},
    {u"lastFisQuarter",                      6495, false, 27, 3, 0},
    {u"thisMonth",                           6498, false, 27, 3, 0},
    {u"thisFisMonth",                        6501, false, 27, 3, 0},
    {u"lastMonth",                           6507, false, 27, 3, 0},
    {u"lastFisMonth",                        6510, false, 27, 3, 0},
    {u"switch",                              6450, false, 27, 5, 0},
    {u"IsNull",                              6575, false, 27, 5, 0},
    {u"thisSet",                             6422, false, 27, 5, 0},
    {u"fUnixTimestamp",                      6150, false, 27, 1, 0},
    {u"fHMAC",                               6153, false, 27, 2, 0},
    {u"fBase64Encode",                       6156, false, 27, 2, 0},
    {u"fVarbintohexstr",                     6159, false, 27, 2, 0},
    {u"STRING_AGG",                          6162, false, 27, 2, 0},
    {u"fStringSplit",                        6165, false, 27, 2, 0},
    {u"CHARINDEX",                           6168, false, 27, 1, 0},
    {u"fStringDistinct",                     6171, false, 27, 2, 0},
    {u"RAND",                                6174, false, 27, 1, 0},
    {u"fRandBetween",                        6177, false, 27, 1, 0},
    {u"REPLACE",                             6180, false, 27, 2, 0},
    {u"fSHA256",                             6183, false, 27, 2, 0},
    {u"fHmac2Base64",                        6189, false, 27, 2, 0},
    {u"fMd5",                                6192, false, 27, 2, 0},
    {u"REPLICATE",                           6196, false, 27, 2, 0},
    {u"toLower",                             6101, false, 27, 2, 0},
    {u"fUrlEncode",                          6104, false, 27, 2, 0},
    {u"Input.",                              6311, true,  8, 5, 1},
    {u"Sms.",                                6337, true,  7, 5, 1},
    {u"thisDoc.",                            6340, true,  9, 5, 0},
    {u"CaxEnum.",                            6340, true,  9, 5, 0},
    {u"sysVar.userName",                     6320, false, 11, 2, 0},
    {u"sysVar.userDept",                     6321, false, 11, 2, 0},
    {u"sysVar.userWorkDept",                 6379, false, 11, 2, 0},
    {u"sysVar.CurrentDeptId",                6326, false, 11, 2, 0},
    {u"sysVar.CurrentOrganization",          6332, false, 11, 2, 0},
    {u"sysVar.CurrentLogin",                 6335, false, 11, 2, 0},
    {u"sysVar.userDispName",                 6580, false, 11, 2, 0},
    {u"sysVar.WholeNameOfDeptOfCurrentUser", 6338, false, 11, 2, 0},
    {u"sysVar.WholeNameOfOrgOfCurrentUser",  6339, false, 11, 2, 0},
    {u"sysVar.FillReportDate",               6333, false, 12, 3, 0},
    {u"sysVar.LastUpdatedDate",              6334, false, 12, 3, 0},
    {u"sysVar.RepFillTime",                  6328, false, 12, 3, 0},
    {u"sysVar.RepRevLastTime",               6329, false, 12, 3, 0},
    {u"sysVar.RepState",                     6584, false, 12, 1, 0},
    {u"sysVar.RepLockState",                 6504, false, 12, 1, 0},
    {u"sysVar.currentDate",                  6322, false, 10, 3, 0},
    {u"sysVar.currentDateTime",              6323, false, 10, 3, 0},
    {u"sysVar.CurrentTask",                  6336, false, 10, 2, 0},
    {u"sysVar.currentRcId",                  6395, false, 10, 2, 0},
    {u"sysVar.userMobilePhone",              6591, false, 11, 2, 0},
    {u"sysVar.userAgentName",                6592, false, 11, 2, 0},
    {u"Constant.Null",                       6574, false, 10, 5, 0},
    {u"Constant.Return",                     6578, false, 10, 2, 0},
    {u"WebApi.Body",                            0, false, 10, 2, 0},
};
// clang-format on

std::u16string DisplayOf(const ExpectedWord& word) {
  if (word.message == 0) return std::u16string(word.primary);
  return MessageText(word.message) + (word.dot ? u"." : u"");
}

/// A value as it stands in the text of a node.
std::string Escaped(std::u16string_view value) {
  std::string out;
  for (const char16_t unit : value) {
    if (unit == u'<') {
      out += "&lt;";
    } else if (unit == u'>') {
      out += "&gt;";
    } else if (unit == u'&') {
      out += "&amp;";
    } else if (unit < 0x80) {
      out += static_cast<char>(unit);
    } else {
      char reference[16];
      std::snprintf(reference, sizeof reference, "&#x%X;", static_cast<unsigned>(unit));
      out += reference;
    }
  }
  return out;
}

enum class Doc { kOperators, kFunctions, kSysVar, kNone };

Doc DocOf(std::int32_t symbol) {
  if (symbol == 12) return Doc::kNone;
  if (symbol == 27) return Doc::kFunctions;
  return symbol >= 7 && symbol <= 11 ? Doc::kSysVar : Doc::kOperators;
}

/// The document as it has to be in the language of this thread.
std::string ExpectedDoc(Doc doc) {
  std::map<std::u16string, const ExpectedWord*> sorted;
  for (const ExpectedWord& word : kWords) {
    if (DocOf(word.symbol) == doc) sorted.emplace(ToLower(word.primary), &word);
  }
  std::string out = "<root>\n";
  for (const auto& entry : sorted) {
    const ExpectedWord& word = *entry.second;
    out += "  <item primary=\"" + Escaped(word.primary) + "\" outdesc=\"" +
           Escaped(DisplayOf(word)) + "\" datatype=\"" + std::to_string(word.dataType) +
           "\" symbol=\"" + std::to_string(word.symbol) + "\"/>\n";
  }
  return out + "</root>";
}

class Vocabulary : public testing::TestWithParam<const char16_t*> {
 protected:
  void SetUp() override { SetThreadLanguage(GetParam()); }
  void TearDown() override { SetThreadLanguage(u""); }
};

}  // namespace

TEST_P(Vocabulary, HoldsEveryWordWithAllItsFields) {
  MxDictionarys set;
  for (const ExpectedWord& expected : kWords) {
    const MxWord* found = set.FindByPrimary(expected.primary);
    ASSERT_NE(found, nullptr) << U8(expected.primary);
    const MxWord& word = *found;
    EXPECT_EQ(U8(word.primary), U8(expected.primary));
    EXPECT_EQ(U8(word.outDesc), U8(DisplayOf(expected))) << U8(expected.primary);
    EXPECT_NE(U8(word.outDesc), "") << U8(expected.primary);
    EXPECT_EQ(word.symbol, expected.symbol) << U8(expected.primary);
    EXPECT_EQ(word.dataType, expected.dataType) << U8(expected.primary);
    EXPECT_EQ(word.postfixCheck, expected.postfixCheck) << U8(expected.primary);
    EXPECT_EQ(U8(word.content), "") << U8(expected.primary);
    EXPECT_EQ(word.baseType + word.rttId + word.rtfId + word.dtId + word.fldId, 0);
  }
  EXPECT_EQ(set.Find(u"base")->SortedWords().size(), std::size(kWords));
}

TEST_P(Vocabulary, FindsEveryWordByItsDisplayForm) {
  MxDictionarys set;
  for (const ExpectedWord& expected : kWords) {
    const bool second = expected.primary == u"CaxEnum.";  // shares its display form with the first
    EXPECT_EQ(ByDesc(set, ToUpper(DisplayOf(expected))),
              second ? "thisDoc." : U8(expected.primary));
  }
}

TEST_P(Vocabulary, StandsSortedInThreeDocuments) {
  MxExpression rules;
  EXPECT_EQ(U8(rules.GetDict_operators()), ExpectedDoc(Doc::kOperators));
  EXPECT_EQ(U8(rules.GetDict_funcs()), ExpectedDoc(Doc::kFunctions));
  EXPECT_EQ(U8(rules.GetDict_sysVar()), ExpectedDoc(Doc::kSysVar));
}

INSTANTIATE_TEST_SUITE_P(Languages, Vocabulary, testing::Values(u"en", u"zh-CN"),
                         [](const auto& language) {
                           return std::u16string_view(language.param) == u"en" ? "en" : "zh";
                         });

namespace {

std::size_t At(const std::string& document, const std::string& primary) {
  return document.find("<item primary=\"" + primary + "\"");
}

class English : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }
};
using BaseVocabularyDocuments = English;

}  // namespace

TEST_F(BaseVocabularyDocuments, SortWithoutRegardToCase) {
  MxExpression rules;
  const std::string functions = U8(rules.GetDict_funcs());
  ASSERT_NE(At(functions, "count"), std::string::npos);
  EXPECT_LT(At(functions, "average"), At(functions, "CEILING"));
  EXPECT_LT(At(functions, "CEILING"), At(functions, "count"));
  EXPECT_LT(At(functions, "count"), At(functions, "count1"));  // a shorter text first
}

TEST_F(BaseVocabularyDocuments, LeaveOutVariablesOfTheRecordWhichRulesMayUse) {
  MxExpression rules;
  for (const std::u16string& document :
       {rules.GetDict_sysVar(), rules.GetDict_funcs(), rules.GetDict_operators()}) {
    EXPECT_EQ(At(U8(document), "sysVar.FillReportDate"), std::string::npos);
    EXPECT_EQ(At(U8(document), "sysVar.RepState"), std::string::npos);
  }
  std::u16string document;
  EXPECT_TRUE(rules.Verify(kDateDataType, u"sysVar.FillReportDate", document));
}

TEST_F(BaseVocabularyDocuments, ListDatePartsAndStylesAmongTheOperators) {
  MxExpression rules;
  const std::string operators = U8(rules.GetDict_operators());
  EXPECT_NE(At(operators, "yy"), std::string::npos);
  EXPECT_NE(At(operators, "'hh:mm:ss:mmm'"), std::string::npos);
  EXPECT_NE(At(operators, "&lt;&gt;"), std::string::npos);
  EXPECT_EQ(At(operators, "sum"), std::string::npos);
}

TEST_F(BaseVocabularyDocuments, StayInTheLanguageOfTheConstruction) {
  MxExpression rules;
  const std::string english = U8(rules.GetDict_funcs());
  SetThreadLanguage(u"zh-CN");
  EXPECT_EQ(U8(rules.GetDict_funcs()), english);
  std::u16string document;
  EXPECT_TRUE(rules.Verify(kNumDataType, u"length('a')", document));
  EXPECT_NE(U8(MxExpression().GetDict_funcs()), english);
}

TEST_F(BaseVocabularyDocuments, GettersResetTheError) {
  MxExpression rules;
  std::u16string document;
  for (int i = 0; i < 3; ++i) {
    ASSERT_FALSE(rules.Verify(kNumDataType, u"nosuch", document));
    ASSERT_EQ(rules.errNumber(), -1);
    i == 0 ? rules.GetDict_funcs() : i == 1 ? rules.GetDict_operators() : rules.GetDict_sysVar();
    EXPECT_EQ(rules.errNumber(), 0);
    EXPECT_EQ(U8(rules.errDescription()), "");
  }
}

TEST_F(BaseVocabularyDocuments, IsSharedByAllSetsOfOneLanguage) {
  const MxDictionarys one;
  const MxDictionarys two;
  EXPECT_EQ(one.Find(u"base"), two.Find(u"base"));
  SetThreadLanguage(u"zh-CN");
  EXPECT_NE(MxDictionarys().Find(u"base"), one.Find(u"base"));
}

TEST_F(BaseVocabularyDocuments, FindAPrefixWordInAnyCase) {
  MxDictionarys set;
  EXPECT_EQ(ByPrimary(set, u"THISDOC."), "thisDoc.");
  EXPECT_EQ(ByDesc(set, MessageText(6340) + u"."), "thisDoc.");
  EXPECT_EQ(ByPrimary(set, u"CaxEnum."), "CaxEnum.");
  EXPECT_EQ(ByDesc(set, u"CaxEnum."), "-");
  EXPECT_EQ(ByDesc(set, u""), "-");
  EXPECT_EQ(ByPrimary(set, u""), "-");
}
