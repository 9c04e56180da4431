// Statements with named values, and what becomes of them.
#include "store/NamedValues.h"

#include "RuleStore.h"
#include "ScopedLanguage.h"
#include "StoreValues.h"
#include "Utf8.h"

#include <gtest/gtest.h>

using ORKDB::NamedStatement;
using ORKDB::ReadNamedValues;

namespace {

struct Row {
  std::string statement;
  std::string text;   ///< with `?`
  std::string names;  ///< each once
  std::string places;
};

// clang-format off
const Row kRows[] = {
    {"select 1",                                "select 1",                    "", ""},
    {"",                                        "",                            "", ""},
    {"update r set e = :expression where id = :id",
     "update r set e = ? where id = ?",         "expression id",               "0 1"},
    {":a",                                      "?",                           "a", "0"},
    {":a:b",                                    "??",                          "a b", "0 1"},
    {":a,:b,:a",                                "?,?,?",                       "a b", "0 1 0"},
    {":a :A",                                   "? ?",                         "a A", "0 1"},
    {":_x1 :x_2y",                              "? ?",                         "_x1 x_2y", "0 1"},
    {"e = :表达式 and :é=1",                     "e = ? and ?=1",               "表达式 é", "0 1"},
    {":😀",                                     "?",                           "😀", "0"},
    {"(:a)+:b;",                                "(?)+?;",                      "a b", "0 1"},
    // No names.
    {"x::date",                                 "x::date",                     "", ""},
    {":a::date",                                "?::date",                     "a", "0"},
    {":::a",                                    ":::a",                        "", ""},
    {"x := 1",                                  "x := 1",                      "", ""},
    {"12:30",                                   "12:30",                       "", ""},
    {": a",                                     ": a",                         "", ""},
    {"a:",                                      "a:",                          "", ""},
    {"::",                                      "::",                          "", ""},
    // Texts.
    {"':a' = :a",                               "':a' = ?",                    "a", "0"},
    {"'it''s :a' = :b",                         "'it''s :a' = ?",              "b", "0"},
    {"'' = :a",                                 "'' = ?",                      "a", "0"},
    {"'''' = :a",                               "'''' = ?",                    "a", "0"},
    {"'\\' = :a",                               "'\\' = ?",                    "a", "0"},
    {"'what?' = :a",                            "'what?' = ?",                 "a", "0"},
    {"E'\\' :a' = :b",                          "E'\\' :a' = ?",               "b", "0"},
    {"e'\\\\' = :b",                            "e'\\\\' = ?",                 "b", "0"},
    {"E'it''s \\':a' = :b",                     "E'it''s \\':a' = ?",          "b", "0"},
    {"date'\\' = :b",                           "date'\\' = ?",                "b", "0"},
    {"N':a' = :b",                              "N':a' = ?",                   "b", "0"},
    {"':a",                                     "':a",                         "", ""},
    {"E'\\",                                    "E'\\",                        "", ""},
    // Quoted names.
    {"\":a\" = :b",                             "\":a\" = ?",                  "b", "0"},
    {"\"a\"\":b\" = :c",                        "\"a\"\":b\" = ?",             "c", "0"},
    {"`:a` = :b",                               "`:a` = ?",                    "b", "0"},
    {"[:a] = :b",                               "[:a] = ?",                    "b", "0"},
    {"[?] = :b",                                "[?] = ?",                     "b", "0"},
    {"[:a",                                     "[:a",                         "", ""},
    {"\"it's\" = :a and 'x' = :b",              "\"it's\" = ? and 'x' = ?",    "a b", "0 1"},
    // Comments.
    {"-- :a\n:b",                               "-- :a\n?",                    "b", "0"},
    {"-- it's\n:b",                             "-- it's\n?",                  "b", "0"},
    {"--",                                      "--",                          "", ""},
    {"1 - -:a",                                 "1 - -?",                      "a", "0"},
    {"/* :a ? */ :b",                           "/* :a ? */ ?",                "b", "0"},
    {"/*/ :a */ :b",                            "/*/ :a */ ?",                 "b", "0"},
    {"/**/:b",                                  "/**/?",                       "b", "0"},
    {"/* :a",                                   "/* :a",                       "", ""},
    {"a / :b * :c",                             "a / ? * ?",                   "b c", "0 1"},
};
// clang-format on

}  // namespace

TEST(NamedValues, AreFoundWhereADatabaseWouldSeeAName) {
  for (const Row& row : kRows) {
    const NamedStatement made = ReadNamedValues(U16(row.statement));
    EXPECT_EQ(U8(made.text), row.text) << row.statement;
    std::string names;
    for (const std::u16string& name : made.names) names += (names.empty() ? "" : " ") + U8(name);
    EXPECT_EQ(names, row.names) << row.statement;
    std::string places;
    for (const std::size_t place : made.places) {
      places += (places.empty() ? "" : " ") + std::to_string(place);
    }
    EXPECT_EQ(places, row.places) << row.statement;
  }
}

TEST(NamedValues, AQuestionMarkIsRefused) {
  const ScopedLanguage language(u"en");
  for (const char16_t* statement : {u"?", u"id = ?", u":a = ?", u"'a' ? 'b'", u"-- ?\n ?"}) {
    EXPECT_EQ(FailureOf([&] { ReadNamedValues(statement); }),
              "refusal A value in a statement is written as a name, such as :id, not as a question "
              "mark.")
        << U8(statement);
  }
}

TEST(NamedValues, LongStatementsAreReadInOneGo) {
  std::u16string statement;
  for (int i = 0; i < 100'000; ++i) statement += u":a,'[\"/*--' ";
  EXPECT_EQ(ReadNamedValues(statement).places.size(), 100'000U);
  for (const char16_t* piece : {u"'", u"\"", u"[", u"/*", u"--", u":", u"E'\\"}) {
    std::u16string many;
    for (int i = 0; i < 200'000; ++i) many += piece;
    EXPECT_TRUE(ReadNamedValues(many).text == many) << U8(piece);
  }
}
