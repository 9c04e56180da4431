// What completion offers at a cursor: how the typed part, the order, the tables and the texts of
// items come about. Which words are offered at all is held against the plain interpreter elsewhere.
#include "RuleAuthoring.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <sstream>

namespace ORKBASE {
namespace {

struct Cursor {
  std::u16string text;
  std::int32_t offset;
};

/// A rule with "|" where the cursor is.
Cursor At(std::string_view marked) {
  std::u16string text = U16(marked);
  const std::size_t bar = text.find(u'|');
  text.erase(bar, 1);
  return {text, static_cast<std::int32_t>(bar)};
}

std::string TextsOf(const RuleCompletion& completion) {
  std::string texts;
  for (const RuleItem& item : completion.items)
    texts += (texts.empty() ? "" : "  ") + U8(item.text);
  return texts;
}

class Completion : public testing::Test {
 protected:
  Completion() : authoring_(engine_) { engine_.SetDts(u"Orders,Customer,T"); }

  RuleCompletion Complete(MXRULE_DATATYPE type, std::string_view marked, std::int32_t limit = 100,
                          bool all = false) {
    const Cursor cursor = At(marked);
    RuleCompletion completion;
    EXPECT_TRUE(authoring_.Complete(type, cursor.text, cursor.offset, limit, all, completion));
    return completion;
  }

  std::optional<RuleItem> Item(MXRULE_DATATYPE type, std::string_view marked, std::string_view text,
                               bool all = false) {
    for (const RuleItem& item : Complete(type, marked, 0, all).items) {
      if (U8(item.text) == text) return item;
    }
    return std::nullopt;
  }

  const ScopedLanguage english_{u"en"};
  SampleExpression engine_;
  RuleAuthoring authoring_;
};

// --- places --------------------------------------------------------------------------------------

struct PlaceCase {
  const char16_t* text;
  std::int32_t offset;
  bool isPlace;
};

// clang-format off
constexpr PlaceCase kPlaces[] = {
    {u"",                  0,  true},
    {u"",                  1,  false},
    {u"",                  -1, false},
    {u"T.a",               3,  true},
    {u"T.a",               4,  false},
    {u"T.a",               -1, false},
    {u"T.a",               2147483647, false},
    {u"\U0001D11E",        0,  true},
    {u"\U0001D11E",        1,  false},
    {u"\U0001D11E",        2,  true},
    {u"a\xD834",           2,  true},   // half a character at the end
    {u"\xDD1E\xDD1E",      1,  true},   // two second halves
    {u"客户.金额",          3,  true},
    {u"T.a\n+\r\n",        4,  true},
    {u"T.a\n+\r\n",        7,  true},
};
// clang-format on

TEST_F(Completion, IsAskedForAPlaceBetweenCharacters) {
  for (const PlaceCase& each : kPlaces) {
    RuleCompletion completion;
    completion.more = true;
    EXPECT_EQ(authoring_.Complete(kNumDataType, each.text, each.offset, 0, false, completion),
              each.isPlace)
        << U8(each.text) << " " << each.offset;
    EXPECT_FALSE(completion.more);
    EXPECT_EQ(authoring_.errRecord().cause, each.isPlace ? kNoCause : kRequestCause);
  }
}

// --- the typed part ------------------------------------------------------------------------------

struct TypedCase {
  MXRULE_DATATYPE type;
  const char* marked;
  std::int32_t offset;
  std::int32_t length;
  const char* items;  ///< those that contain what is typed, of the fields alone
};

// clang-format off
constexpr TypedCase kTyped[] = {
    {kNumDataType,   "Orders.Qt|",             0,  9,  "Orders.Qty"},
    {kNumDataType,   "Orders.Qt|zzz + 1",      0,  12, "Orders.Qty"},
    {kNumDataType,   "1 + Orders.Qt|",         4,  9,  "Orders.Qty"},
    {kNumDataType,   "1+Orders.Qt|*2",         2,  9,  "Orders.Qty"},
    {kNumDataType,   "(Orders.Qt|)",           1,  9,  "Orders.Qty"},
    {kNumDataType,   "1 +\nOrders.Qt|\n",      4,  9,  "Orders.Qty"},
    {kNumDataType,   "ORDERS.QT|",             0,  9,  "Orders.Qty"},
    {kNumDataType,   "Ｏｒｄｅｒｓ．Ｑｔ|",  0,  9,  "Orders.Qty"},
    {kNumDataType,   "客户.金|",               0,  4,  "客户.金额"},
    {kNumDataType,   "客户.|金额",             0,  5,  "客户.金额"},
    // Nothing is typed: the word that begins at the cursor is replaced.
    {kNumDataType,   "|T.a + 1",               0,  3,  "Orders.Amount  Orders.Discount  Orders.Price  Orders.Qty  Orders.State  T.a  T.b"},
    {kNumDataType,   "1 +| T.a",               3,  0,  "Orders.Amount  Orders.Discount  Orders.Price  Orders.Qty  Orders.State  T.a  T.b"},
    {kDateDataType,  "|",                      0,  0,  "Orders.OrderDate  Orders.ShipDate  T.d"},
    // A bracket or an operator is no such word.
    {kNumDataType,   "year(|)",                5,  0,  "Orders.OrderDate  Orders.ShipDate  T.d"},
    {kNumDataType,   "year(  |  )",            7,  0,  "Orders.OrderDate  Orders.ShipDate  T.d"},
    {kLogicDataType, "T.d |= T.d",             4,  0,  ""},
    {kLogicDataType, "T.d >|= T.d",            5,  0,  "Customer.City  Customer.Code  Customer.Name  Orders.Memo  Orders.OrderDate  Orders.ShipDate  T.d  T.s"},
};
// clang-format on

TEST_F(Completion, ReplacesTheWordAtTheCursor) {
  for (const TypedCase& each : kTyped) {
    const RuleCompletion completion = Complete(each.type, each.marked, 0);
    EXPECT_EQ(completion.offset, each.offset) << each.marked;
    EXPECT_EQ(completion.length, each.length) << each.marked;
    std::vector<std::string> fields;
    for (const RuleItem& item : completion.items) {
      if (item.kind == u"field" && item.text != u"thisDoc.") fields.push_back(U8(item.text));
    }
    std::vector<std::string> expected;
    std::istringstream names(each.items);
    for (std::string name; names >> name;) expected.push_back(name);
    std::sort(fields.begin(), fields.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(fields, expected) << each.marked;
  }
}

struct ConstantCase {
  MXRULE_DATATYPE type;
  const char* marked;
  std::int32_t offset;
  std::int32_t length;
};

// clang-format off
constexpr ConstantCase kInsideConstants[] = {
    {kNumDataType, "12|",          0, 2},
    {kNumDataType, "1|2",          0, 2},
    {kNumDataType, "1 + 0.5|",     4, 3},
    {kNumDataType, ".|5",          0, 2},
    {kNumDataType, "1.|",          0, 2},
    {kStrDataType, "'|",           0, 1},
    {kStrDataType, "'ab|",         0, 3},
    {kStrDataType, "'a|b'",        0, 4},
    {kStrDataType, "'|'",          0, 2},
    {kStrDataType, "'it''|s'",     0, 7},
    {kStrDataType, "'it''|",       0, 5},
    {kStrDataType, "T.s & 'a (, |", 6, 6},
    {kStrDataType, "'a\n|b'",      0, 5},
};
// clang-format on

TEST_F(Completion, OffersNothingInsideConstants) {
  for (const ConstantCase& each : kInsideConstants) {
    const RuleCompletion completion = Complete(each.type, each.marked, 0, true);
    EXPECT_EQ(TextsOf(completion), "") << each.marked;
    EXPECT_TRUE(completion.constants.empty()) << each.marked;
    EXPECT_FALSE(completion.unsure) << each.marked;
    EXPECT_EQ(completion.offset, each.offset) << each.marked;
    EXPECT_EQ(completion.length, each.length) << each.marked;
  }
}

// --- order and limit -----------------------------------------------------------------------------

struct RankCase {
  MXRULE_DATATYPE type;
  const char* marked;
  const char* items;
};

// clang-format off
constexpr RankCase kRanks[] = {
    // A beginning before letters in order.
    {kNumDataType,   "or|",                         "Orders.Amount  Orders.Discount  Orders.Price  Orders.Qty  Orders.State  FLOOR  hour  POWER  ToNumber"},
    // Behind a point, and a capital behind a small letter; before letters in order.
    {kStrDataType,   "T.s & Dis|",                  "fStringDistinct  sysVar.userDispName"},
    {kDateDataType,  "last|",                       "lastDate  sysVar.LastUpdatedDate  sysVar.RepRevLastTime"},
    // Fields, functions, variables within one rank.
    {kDateDataType,  "date|",                       "dateAdd  Orders.OrderDate  Orders.ShipDate  firstDate  lastDate  ToDate  sysVar.currentDate  sysVar.currentDateTime  sysVar.FillReportDate  sysVar.LastUpdatedDate  endOfFisQuarter  endOfQuarter  fstDayOfFisQuarter  fstDayOfQuarter  fUnixTimestamp2Datetime"},
    // Operators and brackets by alphabet.
    {kNumDataType,   "(T.a |",                      "%  )  *  +  -  /  ^"},
    {kNumDataType,   "(1 + 2 |",                    "%  )  *  +  -  /  ^"},
    {kLogicDataType, "T.a > 1 |",                   "%  *  +  -  /  ^  and  or"},
    {kLogicDataType, "T.a > 1 o|",                  "or"},
    {kNumDataType,   "timeInterval(|",              "dd  hh  mi  mm  qq  ss  ww  yy"},
    {kDateDataType,  "dateAdd(|",                   "dd  hh  mi  mm  qq  ss  ww  yy"},
    {kStrDataType,   "ToText(T.d, 'dd/mm/yy'|",     "'dd/mm/yy'  'dd/mm/yyyy'"},
    {kLogicDataType, "T.a in |",                    "thisSet"},
    {kLogicDataType, "T.d between lastM|",          "lastMonth  lastFisMonth"},
    {kLogicDataType, "T.a not|",                    "not_in  not_null"},
    {kLogicDataType, "T.a *= Cus|",                 "Customer.City  Customer.Code  Customer.Name"},
    // Nothing may follow.
    {kDateDataType,  "T.d |",                       ""},
    {kLinkDataType,  "Orders.|",                    "Orders.File"},
    {kPicDataType,   "Orders.|",                    "Orders.Photo"},
};
// clang-format on

TEST_F(Completion, OrdersByMatchKindAndAlphabet) {
  for (const RankCase& each : kRanks) {
    EXPECT_EQ(TextsOf(Complete(each.type, each.marked, 0)), each.items) << each.marked;
  }
}

TEST_F(Completion, ListsNumbersWhereANumberIsCompared) {
  const RuleCompletion completion = Complete(kLogicDataType, "Orders.Amount > Or|");
  EXPECT_EQ(TextsOf(completion),
            "Orders.Amount  Orders.Discount  Orders.Price  Orders.Qty  Orders.State  FLOOR  hour  "
            "POWER  ToNumber");
  EXPECT_EQ(completion.offset, 16);
  EXPECT_EQ(completion.length, 2);
  EXPECT_FALSE(completion.unsure);
  EXPECT_FALSE(completion.more);
  EXPECT_EQ(completion.constants, std::vector<std::u16string_view>{u"number"});
}

TEST_F(Completion, CutsTheListAtItsLimit) {
  const std::string all = TextsOf(Complete(kNumDataType, "Orders.|", 0));
  EXPECT_EQ(all, "Orders.Amount  Orders.Discount  Orders.Price  Orders.Qty  Orders.State");
  EXPECT_EQ(TextsOf(Complete(kNumDataType, "Orders.|", 5)), all);
  EXPECT_FALSE(Complete(kNumDataType, "Orders.|", 5).more);
  EXPECT_EQ(TextsOf(Complete(kNumDataType, "Orders.|", 2)), "Orders.Amount  Orders.Discount");
  EXPECT_TRUE(Complete(kNumDataType, "Orders.|", 2).more);
  EXPECT_EQ(TextsOf(Complete(kNumDataType, "Orders.|", -1)), all);
  EXPECT_FALSE(Complete(kNumDataType, "Orders.|", -1).more);
}

// --- tables --------------------------------------------------------------------------------------

std::vector<std::string> TextsOfKind(const RuleCompletion& completion, std::u16string_view kind) {
  std::vector<std::string> texts;
  for (const RuleItem& item : completion.items) {
    if (item.kind == kind) texts.push_back(U8(item.text));
  }
  return texts;
}

using Names = std::vector<std::string>;

TEST_F(Completion, ShowsTablesInPlaceOfManyFields) {
  // Orders, Customer and T have 17 fields, Stock has three more.
  engine_.SetDts(u"Stock");
  RuleCompletion completion = Complete(kVarDataType, "|");
  EXPECT_EQ(TextsOfKind(completion, u"table"), Names{});
  EXPECT_EQ(TextsOfKind(completion, u"field").size(), 21u);  // with `thisDoc.`, which is no field

  engine_.SetDts(u"客户");
  completion = Complete(kVarDataType, "|");
  EXPECT_EQ(TextsOfKind(completion, u"table"),
            (Names{"Customer.", "Orders.", "Stock.", "T.", "客户."}));
  EXPECT_EQ(TextsOfKind(completion, u"field"), Names{"thisDoc."});
  EXPECT_EQ(U8(completion.items.front().text), "Customer.");
  EXPECT_EQ(completion.items.front().dataType, u"");

  // Not without a limit, not behind a point, and only where fields that fit are so many.
  EXPECT_EQ(TextsOfKind(Complete(kVarDataType, "|", 0), u"table"), Names{});
  EXPECT_EQ(TextsOfKind(Complete(kVarDataType, ".|"), u"table"), Names{});
  EXPECT_EQ(TextsOfKind(Complete(kNumDataType, "|"), u"table"), Names{});
  EXPECT_EQ(TextsOfKind(Complete(kVarDataType, "Cus|"), u"table"), Names{});
}

TEST_F(Completion, ShowsFieldsOfFormsByTheirTablesToo) {
  engine_.SetRt(u"7");
  const RuleCompletion completion = Complete(kVarDataType, "|");
  EXPECT_EQ(TextsOfKind(completion, u"table"),
            (Names{"Customer.", "Header.", "Lines.", "Orders.", "T.", "thisReport.Header.",
                   "thisReport.Lines."}));
  EXPECT_EQ(TextsOfKind(Complete(kVarDataType, "thisReport.Lines.|"), u"formField"),
            (Names{"thisReport.Lines.Due", "thisReport.Lines.Item", "thisReport.Lines.Price",
                   "thisReport.Lines.Qty"}));
}

TEST_F(Completion, CountsTablesThatTheRuleNamesForItAlone) {
  EXPECT_EQ(TextsOf(Complete(kNumDataType, "Stock.|")), "Stock.Count");
  EXPECT_EQ(TextsOf(Complete(kNumDataType, "Stock.Count + sto|")), "Stock.Count");
  EXPECT_EQ(TextsOfKind(Complete(kNumDataType, "sto|"), u"field"), Names{});
  EXPECT_EQ(TextsOf(Complete(kNumDataType, "Nowhere.|")), "");
}

// --- what an item tells --------------------------------------------------------------------------

struct ItemCase {
  MXRULE_DATATYPE type;
  const char* marked;
  const char* text;
  const char* kind;
  const char* dataType;
  const char* signature;
  const char* snippet;
};

// clang-format off
constexpr ItemCase kItems[] = {
    {kNumDataType,   "|",                "T.a",             "field",     "number",  "", ""},
    {kStrDataType,   "|",                "Orders.Photo",    "field",     "picture", "", ""},
    {kStrDataType,   "|",                "Orders.File",     "field",     "link",    "", ""},
    {kStrDataType,   "|",                "Orders.Memo",     "field",     "text",    "", ""},
    {kStrDataType,   "|",                "sysVar.userName", "variable",  "text",    "", ""},
    {kStrDataType,   "|",                "Constant.Null",   "variable",  "any",     "", ""},
    {kNumDataType,   "T.a |",            "+",               "operator",  "number",  "", ""},
    {kNumDataType,   "(T.a |",           ")",               "bracket",   "",        "", ""},
    {kNumDataType,   "timeInterval(|",   "dd",              "part",      "",        "", ""},
    {kNumDataType,   "|",                "ROUND",           "function",  "number",  "ROUND(number, number)",              "ROUND(${1:value}, ${2:places})"},
    {kNumDataType,   "|",                "ToNumber",        "function",  "number",  "ToNumber(text[, number][, number])", "ToNumber(${1:text})"},
    {kNumDataType,   "|",                "RAND",            "function",  "number",  "RAND()",                             "RAND()"},
    {kLogicDataType, "T.a in |",         "thisSet",         "function",  "any",     "thisSet(any{, any})",    "thisSet(${1:value})"},
    // Of several forms the one whose result the place takes.
    {kNumDataType,   "|",                "max",             "function",  "number",  "max(number)", "max(${1:value})"},
    {kDateDataType,  "|",                "max",             "function",  "date",    "max(date)",   "max(${1:value})"},
    {kLogicDataType, "T.s like |",       "max",             "function",  "text",    "max(text)",   "max(${1:value})"},
    {kDateDataType,  "|",                "switch",          "function",  "date",    "switch(condition, date{, condition, date}[, date])", "switch(${1:condition}, ${2:value})"},
    {kPicDataType,   "|",                "switch",          "function",  "picture", "switch(condition, picture{, condition, picture}[, picture])", "switch(${1:condition}, ${2:value})"},
    // A parameter needs its name and its type behind it.
    {kNumDataType,   "|",                "Input.",          "parameter", "number",  "", "Input.${1:name}[N]"},
    {kDateDataType,  "|",                "Sms.",            "parameter", "date",    "", "Sms.${1:name}[D]"},
    {kLogicDataType, "T.s like |",       "Input.",          "parameter", "text",    "", "Input.${1:name}[S]"},
    {kVarDataType,   "|",                "Input.",          "parameter", "any",     "", "Input.${1:name}[N]"},
    {kNumDataType,   "|",                "thisDoc.",        "field",     "any",     "", "thisDoc.${1:table}.${2:field}"},
};
// clang-format on

TEST_F(Completion, TellsKindTypeSignatureAndSnippet) {
  for (const ItemCase& each : kItems) {
    const std::optional<RuleItem> item = Item(each.type, each.marked, each.text);
    ASSERT_TRUE(item) << each.marked << " " << each.text;
    EXPECT_EQ(U8(item->kind), each.kind) << each.text;
    EXPECT_EQ(U8(item->dataType), each.dataType) << each.text;
    EXPECT_EQ(U8(item->signature), each.signature) << each.text;
    EXPECT_EQ(U8(item->snippet), each.snippet) << each.text;
    EXPECT_TRUE(item->fits);
    EXPECT_EQ(U8(item->reason), "");
  }
  EXPECT_EQ(U8(Item(kNumDataType, "|", "FLOOR")->info),
            "The largest whole number that is not above the value.");
  EXPECT_EQ(U8(Item(kNumDataType, "|", "T.a")->info), "");
}

TEST_F(Completion, TellsFieldsAndValuesOfACadDocument) {
  engine_.SetCAXDD(1, U16(SourceText("tests/golden/cax.xml")));
  EXPECT_EQ(Item(kNumDataType, "|", "thisDoc.TitleBlock.Scale")->kind, u"field");
  EXPECT_EQ(Item(kNumDataType, "|", "thisDoc.TitleBlock.Scale")->dataType, u"number");
  EXPECT_EQ(Item(kNumDataType, "|", "AutoCADEnum.Unit.inch")->kind, u"variable");
  EXPECT_FALSE(Item(kNumDataType, "|", "thisDoc.TitleBlock.MadeOn"));
}

struct ReasonCase {
  MXRULE_DATATYPE type;
  const char* marked;
  const char* text;
  const char* reason;
};

// clang-format off
constexpr ReasonCase kReasons[] = {
    {kNumDataType,   "|",                  "T.s",             "text, a number is expected"},
    {kNumDataType,   "|",                  "T.d",             "date, a number is expected"},
    {kNumDataType,   "|",                  "sysVar.userName", "text, a number is expected"},
    {kNumDataType,   "|",                  "toUpper",         "text, a number is expected"},
    {kDateDataType,  "|",                  "T.a",             "number, a date is expected"},
    {kDateDataType,  "|",                  "thisYear",        "period, a date is expected"},
    {kStrDataType,   "|",                  "and",             "operator, a value is expected"},
    {kStrDataType,   "|",                  ")",               "closing bracket, a value is expected"},
    {kStrDataType,   "|",                  "yy",              "unit of time, a value is expected"},
    {kLogicDataType, "T.a |",              "T.b",             "number, operator is expected"},
    {kLogicDataType, "T.a > 1 |",          "T.b",             "number, operator is expected"},
    {kLogicDataType, "T.a *= |",           "sysVar.RepState", "system variable of the current record, field is expected"},
    {kLogicDataType, "T.a in |",           "T.a",             "number, thisSet is expected"},
    {kLogicDataType, "T.d between |",      "T.d",             "date, period is expected"},
    {kNumDataType,   "timeInterval(|",     "T.d",             "date, unit of time is expected"},
    {kStrDataType,   "ToText(T.d, |",      "T.d",             "date, date style is expected"},
    {kNumDataType,   "sum |",              "T.a",             "number, opening bracket is expected"},
    {kNumDataType,   "timeInterval(dd |",  "T.d",             "date, comma is expected"},
    {kNumDataType,   "year(T.d |",         "T.a",             "number, closing bracket is expected"},
    {kDateDataType,  "T.d |",              "+",               "operator, end of the rule is expected"},
};
// clang-format on

TEST_F(Completion, TellsWhyAWordDoesNotFit) {
  for (const ReasonCase& each : kReasons) {
    EXPECT_FALSE(Item(each.type, each.marked, each.text)) << each.marked << " " << each.text;
    const std::optional<RuleItem> item = Item(each.type, each.marked, each.text, true);
    ASSERT_TRUE(item) << each.marked << " " << each.text;
    EXPECT_FALSE(item->fits);
    EXPECT_EQ(U8(item->reason), each.reason) << each.marked;
  }
}

TEST_F(Completion, ListsWhatDoesNotFitBehindWhatFits) {
  const RuleCompletion completion = Complete(kNumDataType, "T.|", 0, true);
  EXPECT_EQ(TextsOf(completion).substr(0, 8), "T.a  T.b");
  const auto unfit = std::find_if(completion.items.begin(), completion.items.end(),
                                  [](const RuleItem& item) { return !item.fits; });
  ASSERT_NE(unfit, completion.items.end());
  EXPECT_EQ(U8(unfit->text), "T.d");
  EXPECT_TRUE(
      std::none_of(unfit, completion.items.end(), [](const RuleItem& item) { return item.fits; }));
}

// --- words that join, rules that are none --------------------------------------------------------

TEST_F(Completion, ParesAWordFromWhatItWouldJoin) {
  EXPECT_TRUE(Item(kLogicDataType, "T.a >|", " =", true));
  EXPECT_FALSE(Item(kLogicDataType, "T.a >|", "=", true));
  EXPECT_TRUE(Item(kLogicDataType, "T.a > |", "=", true));
  EXPECT_TRUE(Item(kLogicDataType, "T.a >|", "+", true));
  EXPECT_TRUE(Item(kLogicDataType, "T.a >|", ">", true));
  EXPECT_TRUE(Item(kLogicDataType, "T.a <|", " >", true));
  EXPECT_TRUE(Item(kNumDataType, "1 *|", " =", true));
  EXPECT_TRUE(Item(kNumDataType, "1 *|", " =*", true));
}

struct UnsureCase {
  MXRULE_DATATYPE type;
  const char* marked;
  bool isUnsure;
};

// clang-format off
constexpr UnsureCase kUnsure[] = {
    {kNumDataType,   "|",               false},
    {kNumDataType,   "T.a |",           false},
    {kDateDataType,  "T.d |",           false},  // whole, and nothing may follow
    {kNumDataType,   "Nonsense |",      true},   // the lexer refuses it
    {kNumDataType,   "Nonsense|",       false},  // still being typed
    {kNumDataType,   "T.a T.b |",       true},
    {kNumDataType,   "T.a | T.b",       false},  // words behind play no part
    {kNumDataType,   "Input.x |",       true},
    {kLogicDataType, "T.a > and |",     true},
    {kDateDataType,  "T.a |",           true},
    {kNoDataType,    "|",               true},   // no rule begins so
    {kMemoDataType,  "T.a |",           false},
};
// clang-format on

TEST_F(Completion, IsUnsureWhereTheWordsAreNoBeginning) {
  for (const UnsureCase& each : kUnsure) {
    EXPECT_EQ(Complete(each.type, each.marked).unsure, each.isUnsure) << each.marked;
  }
  const std::size_t all = Complete(kNumDataType, "|", 0, true).items.size();
  const RuleCompletion unsure = Complete(kNumDataType, "Nonsense |", 0);
  EXPECT_EQ(unsure.items.size(), all);
  EXPECT_TRUE(unsure.items.back().fits);
  EXPECT_EQ(unsure.constants.size(), 3u);
  EXPECT_EQ(TextsOf(Complete(kNumDataType, "Nonsense T.|", 4)), "T.a  T.b  T.d  T.s");
}

// --- languages -----------------------------------------------------------------------------------

TEST_F(Completion, SpeaksTheLanguageOfTheCall) {
  authoring_.set_language(u"zh-CN");
  const RuleItem item = *Item(kNumDataType, "|", "求和");
  EXPECT_EQ(U8(item.signature), "求和(数字)");
  EXPECT_FALSE(Item(kNumDataType, "|", "sum"));
  EXPECT_EQ(TextsOf(Complete(kLogicDataType, "T.a 属|")), "属于  不属于");
  EXPECT_EQ(U8(Item(kNumDataType, "|", "T.s", true)->reason), "文本，此处应为数字");
  EXPECT_EQ(U8(Item(kNumDataType, "|", "输入.")->snippet), "输入.${1:名称}[N]");
  authoring_.set_language(u"");
  EXPECT_TRUE(Item(kNumDataType, "|", "sum"));
}

// --- long texts ----------------------------------------------------------------------------------

TEST_F(Completion, TakesTextsOfAnyLength) {
  for (const std::string& piece : {std::string(100'000, '('), std::string(100'000, '\''),
                                   std::string(100'000, 'x'), std::string(100'000, '-')}) {
    EXPECT_LE(Complete(kNumDataType, piece + "|").items.size(), 100u);
    Complete(kNumDataType, "|" + piece);
  }
}

}  // namespace
}  // namespace ORKBASE
