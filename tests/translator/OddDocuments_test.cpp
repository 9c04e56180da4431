// Translating documents that no parser made: damaged, foreign, incomplete.
#include "Mx_Exception.h"
#include "OrkPlatform.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Translating.h"
#include "dialects/Dialects.h"
#include "dialects/MxSql92Translator.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace ORKBASE {
namespace {

class OddDocuments : public testing::Test {
 protected:
  std::u16string Verified(MXRULE_DATATYPE type, const std::u16string& rule) {
    std::u16string document;
    EXPECT_TRUE(rules_.Verify(type, rule, document)) << U8(rules_.errDescription());
    return document;
  }

  ScopedLanguage language_{u"en"};
  SampleExpression rules_;
};

// --- what does not parse

TEST_F(OddDocuments, ThatDoNotParseAreRefused) {
  for (const std::u16string& document :
       {std::u16string(), std::u16string(u" "), std::u16string(u"T.a = 1"),
        std::u16string(u"<!-- no root -->"), std::u16string(u"<?xml version=\"1.0\"?>"),
        std::u16string(u"<tag>"), std::u16string(u"<tag/><tag/>"),
        std::u16string(u"<tag primary='1' primary='2'/>"),
        std::u16string(u"<tag primary='\u0001'/>"), std::u16string(u"<tag primary='&bomb;'/>"),
        std::u16string(1, u'\0') + u"<tag/>"}) {
    const Result result = Translate(rules_, document);
    EXPECT_FALSE(result.done) << U8(document);
    EXPECT_EQ(rules_.errNumber(), -1);
    EXPECT_EQ(U8(rules_.errDescription()),
              "exprParsedXml: not a readable document of a parsed rule.");
    EXPECT_EQ(U8(result.translated + result.a + result.b), "tab");
  }
  SetThreadLanguage(u"zh-CN");
  Translate(rules_, u"<");
  EXPECT_EQ(U8(rules_.errDescription()), "exprParsedXml" + U8(MessageText(6297)));
  EXPECT_TRUE(Translate(rules_, u"<tag/>").done);
  EXPECT_EQ(rules_.errNumber(), 0);
}

TEST_F(OddDocuments, EndAtTheirFirstZero) {
  EXPECT_EQ(Sql(rules_, std::u16string(u"<tag primary='1'/>") + u'\0' + u"<"), "1");
}

TEST_F(OddDocuments, OfTextsWithControlCharactersAreRefused) {
  const std::u16string document = Verified(kStrDataType, u"'a\u0002b'");
  EXPECT_FALSE(Translate(rules_, document).done);
  EXPECT_EQ(U8(rules_.errDescription()),
            "exprParsedXml: not a readable document of a parsed rule.");
}

TEST_F(OddDocuments, CutAnywhereAreRefusedOrTranslate) {
  const std::u16string document =
      Verified(kLogicDataType, u"T.s like 'x' and quarter(T.d) in thisSet(T.a)");
  for (std::size_t length = 0; length < document.size(); ++length) {
    const Result result = Translate(rules_, document.substr(0, length));
    // Only white space may be missing at the end of a whole document.
    const bool whole = document.find_first_not_of(u" \n", length) == document.npos;
    ASSERT_EQ(result.done, whole) << length;
  }
}

// --- other forms

struct OddRow {
  const char16_t* document;
  const char* sql;
};

// clang-format off
constexpr OddRow kOddForms[] = {
    {u"<tag/>",                                                                       ""},
    {u"<x primary='1' symbol='0' dataType='1'/>",                                     "1"},
    {u"<tag primary='x'/>",                                                           "x"},
    {u"<tag primary=\"'x'\" symbol='0' dataType='2'/>",                               "N'x'"},
    {u"<tag primary=\"'x'\" dataType='2'/>",                                          "N'x'"},
    {u"<tag primary=\"'x'\" symbol=' 0x' dataType=' 2.5'/>",                          "N'x'"},
    {u"<tag primary='+' semanticType=''><tag primary='1'/><tag primary='2'/></tag>",  "1 + 2"},
    {u"<tag primary='&amp;' semanticType='0'><a primary='1'/><b primary='2'/></tag>", "1 + 2"},
    // the map goes before everything, whatever the symbol
    {u"<tag primary='CONSTANT.NULL' symbol='4' dataType='1'/>",                       "NULL"},
    {u"<tag primary=\"'YYYY-mm-dd'\" symbol='0' dataType='2'/>",                      "120"},
    {u"<tag primary='AVERAGE' symbol='27' semanticType='1'/>",                        "avg()"},
    // text, comments and white space between
    {u"<!-- c --><f primary='f' semanticType='1'>t<a primary='1'/><!-- d --> <b primary='2'/></f>",
                                                                                      "f(1,2)"},
    // a namespace leaves the local names
    {u"<n:tag xmlns:n='u' primary='f' semanticType='1'><n:tag primary='1'/></n:tag>", "f(1)"},
    // a text that is there already is written anew
    {u"<tag primary='1' text='old'/>",                                                "1"},
    {u"<tag text='old'/>",                                                            ""},
};
// clang-format on

TEST_F(OddDocuments, OfOtherForms) {
  for (const OddRow& row : kOddForms) {
    EXPECT_EQ(Sql(rules_, row.document), row.sql) << U8(row.document);
  }
}

// --- handled functions

// clang-format off
/// A date column that needs neither a dictionary nor a cast.
#define ORK_DATE "<tag primary='x.rcid' symbol='4' dataType='3'/>"
#define ORK_CALL(name, arguments) \
  u"<tag primary='" name "' symbol='27' semanticType='1' inBrackets='1'>" arguments u"</tag>"

constexpr OddRow kOddCalls[] = {
    // a style that the table does not know becomes 100, as wide as it is between its quotes
    {ORK_CALL("ToText", ORK_DATE "<tag primary=\"'abc'\" content=\"'abc'\" dataType='2'/>"),
                                                       "(convert( nvarchar(3) ,x.rcid,100))"},
    {ORK_CALL("ToText", ORK_DATE "<tag primary='x' content=''/>"),
                                                       "(convert( nvarchar(-2) ,x.rcid,100))"},
    {ORK_CALL("ToText", ORK_DATE "<tag primary='7' content='7777'/>"),
                                                       "(convert( nvarchar(2) ,x.rcid,7))"},
    {ORK_CALL("ToText", ORK_DATE "<tag primary='7x' content='7777'/>"),
                                                       "(convert( nvarchar(2) ,x.rcid,100))"},
    // arguments too many are dropped
    {ORK_CALL("ToText", ORK_DATE "<tag primary='7' content='77'/><tag primary='z'/>"),
                                                       "(convert( nvarchar(0) ,x.rcid,7))"},
    {ORK_CALL("ToDate", "<tag primary='x'/><tag primary='y'/>"),
                                                       "(cast(x  as   datetime ))"},
    {ORK_CALL("quarter", "<tag primary='x'/><tag primary='y'/>"),
                                                       "(Datepart(quarter,x))"},
    {ORK_CALL("fisYear", "<tag primary='x'/><tag primary='y'/>"),
                                                       "(dbo.fDatePart_acct('yy',x))"},
    {ORK_CALL("count1", "<tag primary='x'/><tag primary='y'/>"),
                                                       "(count(distinct  x))"},
    {ORK_CALL("ToNumber", "<tag primary='x'/><tag primary='4'/><tag primary='9'/><tag primary='z'/>"),
                                                       "(convert(decimal(9,4),x))"},
    {ORK_CALL("endOfYear", "<tag primary='x'/><tag primary='y'/>"),
                                                       "(dbo.fEndTime('yy',x,0,0,0))"},
    // a switch without its brackets: one argument, and two
    {ORK_CALL("switch", "<tag primary='x'/>"),         "case  else  x  end "},
    {ORK_CALL("switch", "<tag primary='x'/><tag primary='y'/>"),
                                                       "case  when  x  then  y  end "},
    // a set always has them
    {u"<tag primary='thisSet'><tag primary='x'/></tag>", "(select  x)"},
};
// clang-format on

TEST_F(OddDocuments, WithOddCalls) {
  for (const OddRow& row : kOddCalls) {
    EXPECT_EQ(Sql(rules_, row.document), row.sql) << U8(row.document);
  }
  ConnectTo(rules_, SampleDatabase(), kDMDs);
  EXPECT_EQ(Sql(rules_, kOddCalls[0].document), "(to_char(x.rcid,'abc'))");
}

/// The words with a handler in a class, by the table of the maps.
std::vector<std::string> HandledWords(std::size_t column) {
  std::vector<std::string> words;
  std::istringstream file(SourceText("tests/dialects/Maps.golden"));
  for (std::string line; std::getline(file, line);) {
    if (line.front() == '#') continue;
    std::istringstream cells(line);
    std::string word;
    std::string cell;
    cells >> word;
    std::size_t at = 0;
    for (std::string part; cells >> part;) {
      if (part == ";") {
        ++at;
        continue;
      }
      if (at == column && part.starts_with("Trans")) words.push_back(word);
    }
  }
  return words;
}

std::size_t HandlersOf(const ReplacementMap& map) {
  const auto isHandled = [](const auto& row) {
    return row.second.transType() == TransType::kHandler &&
           !std::holds_alternative<OwnWord>(row.second.what);
  };
  return static_cast<std::size_t>(std::count_if(map.begin(), map.end(), isHandled));
}

/// A handled function without arguments keeps its word, except that Oracle refuses what it refuses.
TEST_F(OddDocuments, WithFunctionsWithoutArguments) {
  for (std::size_t i = 0; i < Dialects().size(); ++i) {
    const ORKDB_DSType_ENUM dsType = Dialects()[i].dialect.number;
    ConnectTo(rules_, SampleDatabase(), dsType);
    const std::vector<std::string> words = HandledWords(i + 1);
    EXPECT_EQ(words.size(), HandlersOf(Dialects()[i].map()));
    for (const std::string& word : words) {
      const bool refused =
          dsType == kOracleDs &&
          (word == "thisSet" || word.find("Fis") != word.npos || word.starts_with("fis"));
      const std::u16string document = U16("<tag primary='not' semanticType='2'><tag primary='" +
                                          word + "' symbol='27' semanticType='1'/></tag>");
      if (refused) {
        EXPECT_THROW(Translate(rules_, document), Mx_Exception) << word;
      } else {
        EXPECT_EQ(Sql(rules_, document), "not " + word + "()") << word << " " << dsType;
      }
    }
  }
}

/// With too few arguments, and with too many, every handler ends; no node keeps its mark.
TEST_F(OddDocuments, WithFunctionsOfAnyNumberOfArguments) {
  for (std::size_t i = 0; i < Dialects().size(); ++i) {
    const ORKDB_DSType_ENUM dsType = Dialects()[i].dialect.number;
    ConnectTo(rules_, SampleDatabase(), dsType);
    for (const std::string& word : HandledWords(i + 1)) {
      std::string arguments;
      for (int count = 1; count <= 5; ++count) {
        arguments += "<tag primary='quarter' symbol='27' semanticType='1'><tag primary='1'/></tag>";
        const std::u16string document =
            U16("<tag primary='" + word + "' symbol='27' semanticType='1'>" + arguments + "</tag>");
        try {
          EXPECT_TRUE(Translate(rules_, document).done) << word << count;
        } catch (const Mx_Exception&) {
          EXPECT_EQ(dsType, kOracleDs) << word;
        }
      }
    }
  }
}

/// The document of `dateAdd(dd, quarter(T.d), T.d)` with a part that there is not.
TEST_F(OddDocuments, WithAForeignDatePart) {
  std::u16string document = Verified(kDateDataType, u"dateAdd(dd, quarter(T.d), T.d)");
  const std::size_t at = document.find(u"primary=\"dd\"");
  ASSERT_NE(at, document.npos);
  document.replace(at, 12, u"primary=\"xx\"");
  EXPECT_EQ(Sql(rules_, document, kOracleDs), "dateAdd(xx,to_char(T.d,'q'),T.d)");
  ConnectTo(rules_, SampleDatabase(), kKingbaseDs);
  EXPECT_EQ(Sql(rules_, document), "dateAdd(xx,date_part('Q',\"T\".d),\"T\".d)");
  ConnectTo(rules_, SampleDatabase(), kSqlServerDs);
  EXPECT_EQ(Sql(rules_, document), "dateAdd(xx,Datepart(quarter,[T].d),[T].d)");
}

TEST_F(OddDocuments, WithAForeignPartOfADifference) {
  std::u16string document = Verified(kNumDataType, u"timeInterval(dd, T.d, T.d)");
  const std::size_t at = document.find(u"primary=\"dd\"");
  ASSERT_NE(at, document.npos);
  document.replace(at, 12, u"primary=\"xx\"");
  EXPECT_EQ(Sql(rules_, document, kOracleDs), "timeInterval(xx,T.d,T.d)");
}

/// A mark on a word that has no handler: the walk goes on with the children.
TEST_F(OddDocuments, WithAMarkThatMeansNothing) {
  const std::u16string document =
      u"<tag primary='zzz' symbol='27' semanticType='1' transType='2'>"
      u"<tag primary='quarter' symbol='27' semanticType='1'><tag primary='1' transType='2'/></tag>"
      u"<tag primary='and' transType='2'/></tag>";
  EXPECT_EQ(Sql(rules_, document), "zzz(Datepart(quarter,1),and)");
  // A mark is only read behind the first pass, which writes that of the words of the map.
  EXPECT_EQ(Sql(rules_, u"<tag primary='null' transType='2'/>"), "is null");
}

/// A `like` in capitals finds its handler, an aggregate in capitals finds no mark.
TEST_F(OddDocuments, InCapitals) {
  std::u16string document = Verified(kLogicDataType, u"sum(T.a) > 1");
  const std::size_t at = document.find(u"primary=\"sum\"");
  ASSERT_NE(at, document.npos);
  document.replace(at, 13, u"primary=\"SUM\"");
  std::u16string translated;
  std::u16string a;
  std::u16string b;
  rules_.set_useIsNull(false);
  ASSERT_TRUE(rules_.GetSpec(document, kSqlServerDs, translated, a, b, true));
  EXPECT_EQ(U8(a), "(SUM([T].a) > 1)");
  EXPECT_EQ(U8(b), "");
  EXPECT_EQ(Sql(rules_,
                u"<tag primary='LIKE' symbol='19' semanticType='0'><tag primary='x'/>"
                u"<tag primary='y%'/></tag>"),
            "x  like  y%");
}

struct MarkRow {
  const char16_t* node;
  bool isAggregate;
};

// clang-format off
constexpr MarkRow kMarks[] = {
    {u"primary='sum' symbol='27'",          true},
    {u"primary='STRING_AGG' symbol='27'",   true},
    {u"primary='firstDate' symbol='27'",    true},
    {u"primary='count1' symbol='27'",       true},
    {u"primary='string_agg' symbol='27'",   false},
    {u"primary='su' symbol='27'",           false},
    {u"primary='' symbol='27'",             false},
    {u"symbol='27'",                        false},
    {u"primary='sum' symbol='26'",          false},
    {u"primary='sum'",                      false},
    // the list is searched as a text, the symbol compared as a number
    {u"primary='sum|average' symbol='27'",  true},
    {u"primary='sum|count' symbol='27'",    false},
    {u"primary='sum' symbol=' 27 '",        true},
    {u"primary='sum' symbol='27.0'",        true},
    {u"primary='sum' symbol='027'",         true},
    {u"primary='sum' symbol='27.'",         true},
    {u"primary='sum' symbol='27e0'",        true},
    {u"primary='sum' symbol='270e-1'",      true},
    {u"primary='sum' symbol='.27E+2'",      true},
    {u"primary='sum' symbol='27e'",         true},
    {u"primary='sum' symbol='27e1'",        false},
    {u"primary='sum' symbol='27e0x'",       false},
    {u"primary='sum' symbol='-27'",         false},
    {u"primary='sum' symbol='0x1B'",        false},
    {u"primary='sum' symbol='27.5'",        false},
    {u"primary='sum' symbol='+27'",         false},
    {u"primary='sum' symbol='27x'",         false},
    {u"primary='sum' symbol=''",            false},
    // only plain attributes are searched
    {u"xmlns:x='u' x:primary='sum' primary='q' symbol='27'", false},
    {u"xmlns:x='u' x:primary='q' primary='sum' symbol='27'", true},
    {u"xmlns:x='u' primary='sum' x:symbol='27'",             false},
};
// clang-format on

TEST_F(OddDocuments, OfAggregatesAreMarked) {
  for (const MarkRow& row : kMarks) {
    const std::u16string node = u"<tag " + std::u16string(row.node) + u" semanticType='1'/>";
    const Result result =
        Translate(rules_, u"<tag primary='f' semanticType='1'>" + node + u"</tag>");
    EXPECT_EQ(result.translated.find(u"ifgrpby=\"1\"") != result.translated.npos, row.isAggregate)
        << U8(row.node);
  }
}

// --- translated documents as documents

TEST_F(OddDocuments, TranslatedOnceMore) {
  rules_.set_useIsNull(false);
  const std::u16string plain =
      Translate(rules_, Verified(kLogicDataType, u"T.a > 1 and T.s null")).translated;
  EXPECT_EQ(Sql(rules_, plain), "[T].a > 1 and [T].s is null");
  // Built nodes have no word: their text is lost, and with it that of the part.
  const std::u16string built =
      Translate(rules_, Verified(kNumDataType, u"quarter(T.d)")).translated;
  EXPECT_EQ(Sql(rules_, built), "([T].d)");
}

TEST_F(OddDocuments, TranslatedTwiceByOneTranslator) {
  TagTree tree;
  MxSql92Translator translator(tree);
  const std::u16string document = Verified(kNumDataType, u"quarter('2020-1-2') + 1");
  std::u16string first;
  std::u16string second;
  EXPECT_EQ(translator.Translate(document, first), 0);
  EXPECT_EQ(translator.Translate(document, second), 0);
  EXPECT_EQ(U8(first), U8(second));
  EXPECT_EQ(translator.Translate(u"<", second), -1);
  EXPECT_EQ(U8(first), U8(second));
  EXPECT_EQ(translator.error.number, -1);
}

TEST_F(OddDocuments, ComposeToWhatGetSpecComposed) {
  const Result result = Translate(rules_, Verified(kLogicDataType, u"T.s like 'x' & T.s"));
  std::u16string text;
  rules_.Compose(result.translated, text);
  EXPECT_EQ(U8(text), U8(result.a));
}

// --- which translator

TEST_F(OddDocuments, GoToTheTranslatorOfTheConnection) {
  const std::u16string document = Verified(kStrDataType, u"'x'");
  struct Row {
    int stored;
    int requested;
    const char* sql;
  };
  for (const Row& row : {Row{0, 11, "N'x'"}, Row{0, 14, "N'x'"}, Row{7, 0, "N'x'"},
                         Row{7, 15, "N'x'"}, Row{11, 0, "'x'"}, Row{14, 11, "'x'"},
                         Row{0, 3, "'x'"}, Row{3, 0, "'x'"}, Row{-1, -1, "N'x'"}}) {
    ConnectTo(rules_, SampleDatabase(), static_cast<ORKDB_DSType_ENUM>(row.stored));
    EXPECT_EQ(Sql(rules_, document, static_cast<ORKDB_DSType_ENUM>(row.requested)), row.sql)
        << row.stored << " " << row.requested;
  }
  const std::u16string joined = Verified(kStrDataType, u"'x' & 'y'");
  ConnectTo(rules_, SampleDatabase(), kDMDs);
  EXPECT_EQ(Sql(rules_, joined), "'x' + 'y'");
  EXPECT_EQ(Sql(rules_, joined, kOracleDs), "'x' || 'y'");
}

TEST_F(OddDocuments, InOneTextLeaveTheSecondText) {
  const Result result = Translate(rules_, u"<tag primary='1'/>");
  EXPECT_EQ(U8(result.a + u" " + result.b), "1 b");
}

// --- names with control characters

/// No document can hold such a name. Where a function was rebuilt the document is lost; else it is
/// handed out, but nothing can be composed of it.
TEST_F(OddDocuments, OfNamesWithControlCharacters) {
  const TempDatabase database(SourceText("examples/shop.sql") +
                              "insert into data_fields values (399, 3, 'ctl', 'c' || char(1), 1);");
  MxExpression rules;
  ConnectTo(rules, database);
  rules.set_useIsNull(false);
  std::u16string document;
  ASSERT_TRUE(rules.Verify(kLogicDataType, u"T.ctl > 1", document));
  Result result = Translate(rules, document);
  EXPECT_TRUE(result.done);
  EXPECT_NE(result.translated.find(u"[T].c\u0001"), result.translated.npos);
  EXPECT_EQ(U8(result.a), "");
  ASSERT_TRUE(rules.Verify(kLogicDataType, u"T.ctl > quarter(T.d)", document));
  result = Translate(rules, document);
  EXPECT_TRUE(result.done);
  EXPECT_EQ(U8(result.translated), "");
  EXPECT_EQ(U8(result.a), "");
}

}  // namespace
}  // namespace ORKBASE
