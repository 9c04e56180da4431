// A sixth dialect takes one file: the worked example of CONTRIBUTING.md is this file, and works.
#include "ExampleTranslator.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

#include "document/Composer.h"

namespace {

using namespace ORKBASE;

struct Case {
  const char* rule;
  const char* sql;
};

constexpr Case kCases[] = {
    {"'a' & 'b'", "'a' || 'b'"},
    {"length('a')", "char_length('a')"},
    {"CHARINDEX('a', 'b')", "position('a','b')"},
    {"RAND() + quarter('2020-1-2')", "random() + Datepart(quarter,'2020-1-2')"},
};

TEST(ExampleDialect, DiffersInItsFieldsAndWordsAlone) {
  const ScopedLanguage language(u"en");
  MxExpression engine;
  for (const Case& row : kCases) {
    std::u16string document, translated;
    ASSERT_TRUE(engine.Verify(kVarDataType, U16(row.rule), document)) << row.rule;
    TagTree tree;
    ExampleTranslator translator(tree);
    ASSERT_EQ(translator.Translate(document, translated), 0);
    EXPECT_EQ(U8(ExpSpec1(translator.TranslatedRoot(), WordsOf::kSql)), row.sql) << row.rule;
  }
}

TEST(ExampleDialect, StandsInContributing) {
  const std::string code = SourceText("tests/dialects/ExampleTranslator.h");
  const std::string guide = SourceText("CONTRIBUTING.md");
  EXPECT_NE(guide.find("```cpp\n" + code + "```\n"), guide.npos);
}

}  // namespace
