// What the calls of an editor answer in JSON: the shape of each answer, what cannot be asked, and
// that the engine beside them is left as it is.
#include "RuleService.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace ORKBASE {
namespace {

using Json = nlohmann::ordered_json;

/// A service over the sample database, in English.
class AuthoringAnswers : public testing::Test {
 protected:
  AuthoringAnswers() { Ask({{"op", "Connect"}, {"server", "sqlite:" + SampleDatabase().Path()}}); }

  Json Ask(const Json& request) { return Json::parse(service_.Answer(request.dump())); }

 private:
  ScopedLanguage language_{u"en"};
  RuleService service_;
};

/// The form of a value: `text`, `int`, `bool`, lists by their first item, objects by their members.
std::string ShapeOf(const Json& value) {
  if (value.is_string()) return "text";
  if (value.is_number_integer()) return "int";
  if (value.is_boolean()) return "bool";
  if (value.is_array()) return "[" + (value.empty() ? "" : ShapeOf(value.front())) + "]";
  std::string shape;
  for (const auto& [name, member] : value.items()) {
    if (name.starts_with("err")) continue;  // of every answer
    shape.append(shape.empty() ? "" : " ").append(name).append(":").append(ShapeOf(member));
  }
  return "{" + shape + "}";
}

TEST_F(AuthoringAnswers, HaveTheirShapes) {
  struct Row {
    const char* request;
    const char* shape;
  };
  const Row rows[] = {
      // clang-format off
      {R"({"op":"Check","type":4,"expression":"Orders.Amount > 1"})",
       "{problems:[]}"},
      {R"({"op":"Check","type":4,"expression":"Orders.Amout > 1"})",
       "{problems:[{offset:int length:int severity:text number:int text:text expected:[text] "
       "fixes:[{label:text edits:[{offset:int length:int text:text}]}]}]}"},
      {R"({"op":"Complete","type":4,"expression":"T.a > Orders.Q","offset":14})",
       "{offset:int length:int items:[{text:text kind:text dataType:text signature:text info:text "
       "fits:bool}] more:bool unsure:bool constants:[text]}"},
      {R"({"op":"Complete","type":1,"expression":"ROUN","offset":4})",
       "{offset:int length:int items:[{text:text kind:text dataType:text signature:text info:text "
       "fits:bool snippet:text}] more:bool unsure:bool constants:[text]}"},
      {R"({"op":"Complete","type":1,"expression":"toUpp","offset":5,"all":true})",
       "{offset:int length:int items:[{text:text kind:text dataType:text signature:text info:text "
       "fits:bool snippet:text reason:text}] more:bool unsure:bool constants:[text]}"},
      {R"x({"op":"Signature","expression":"ROUND(1, 2)","offset":6})x",
       "{name:text text:text parameters:[{label:text dataType:text optional:bool repeats:bool "
       "info:text}] active:int offset:int}"},
      {R"({"op":"Signature","expression":"1 + 2","offset":1})",
       "{}"},
      {R"({"op":"Explain","expression":"ROUND","offset":0})",
       "{offset:int length:int kind:text name:text dataType:text text:text sql:{default:text "
       "oracle:text dm:text kingbase:text opengauss:text}}"},
      {R"({"op":"Explain","expression":"12","offset":0})",
       "{offset:int length:int kind:text name:text dataType:text text:text sql:{}}"},
      {R"({"op":"Uses","expression":"Orders.Amount"})",
       "{uses:[{kind:text name:text table:text field:text offset:int length:int}]}"},
      {R"({"op":"Uses","expression":"1"})",
       "{uses:[]}"},
      {R"({"op":"Write","document":"x"})",
       "{result:bool expression:text}"},
      {R"({"op":"Format","expression":"1+2"})",
       "{expression:text}"},
      {R"({"op":"Tables"})",
       "{tables:[text] more:bool}"},
      {R"({"op":"Fields","table":"Orders"})",
       "{fields:[{name:text dataType:text realName:text}]}"},
      // clang-format on
  };
  for (const Row& row : rows) EXPECT_EQ(ShapeOf(Ask(Json::parse(row.request))), row.shape);
}

TEST_F(AuthoringAnswers, TellOfAFunctionWhatADatabaseMakesOfIt) {
  const Json answer = Ask({{"op", "Capabilities"}});
  std::set<std::string> shapes;
  std::set<std::string> states;
  for (const Json& function : answer.at("functions")) {
    for (const auto& [dialect, support] : function.at("databases").items()) {
      const std::string state = support.at("state");
      states.insert(state);
      shapes.insert((state == "native" || state == "bare" ? "own" : state) + ShapeOf(support));
    }
  }
  EXPECT_EQ(states, (std::set<std::string>{"native", "user", "bare", "refused"}));
  EXPECT_EQ(shapes, (std::set<std::string>{"own{state:text sql:text}",
                                           "user{state:text needs:[text] sql:text}",
                                           "refused{state:text text:text}"}));
  Json first = answer.at("functions").at(0);
  EXPECT_EQ(first.at("databases").size(), 5u);
  first.erase("databases");
  EXPECT_EQ(ShapeOf(first), "{name:text dataType:text signature:text info:text sample:text}");
}

TEST_F(AuthoringAnswers, NameTheSeverity) {
  struct Row {
    const char* rule;
    const char* severity;
  };
  const Row rows[] = {
      {"T.a > 1 or T.b > 2 and T.a < 9", "warning"},
      {"T.d not_in thisSet(Orders.OrderDate)", "information"},
      {"T.a > ", "error"},
  };
  for (const Row& row : rows) {
    const Json answer = Ask({{"op", "Check"}, {"type", 4}, {"expression", row.rule}});
    ASSERT_FALSE(answer.at("problems").empty()) << row.rule;
    EXPECT_EQ(answer.at("problems").at(0).at("severity"), row.severity) << row.rule;
  }
}

TEST_F(AuthoringAnswers, RefuseAPlaceThatIsNone) {
  const std::string error = "The place lies outside the text or inside a character.";
  for (const char* op : {"Complete", "Signature", "Explain"}) {
    const auto answer = [&](const char* rule, std::int32_t offset) {
      return Ask({{"op", op}, {"id", 1}, {"type", 1}, {"expression", rule}, {"offset", offset}});
    };
    const Json refused = {{"id", 1}, {"error", error}};
    EXPECT_EQ(answer("1 + 2", -1), refused) << op;
    EXPECT_EQ(answer("1 + 2", 6), refused) << op;
    EXPECT_EQ(answer("'\xF0\xA0\x80\x8B'", 2), refused) << op;
    EXPECT_FALSE(answer("1 + 2", 5).contains("error")) << op;
    EXPECT_FALSE(answer("'\xF0\xA0\x80\x8B'", 3).contains("error")) << op;
  }
}

TEST_F(AuthoringAnswers, RefuseAListThatHoldsMoreThanIntegers) {
  for (const char* list : {"3", R"(["3"])", "[3.0]", "[true]", "[3,null]", "[2147483648]", "{}"}) {
    Json request = {{"op", "Check"}, {"type", 1}, {"expression", "1"}};
    request["dsTypes"] = Json::parse(list);
    EXPECT_EQ(Ask(request),
              (Json{{"error", "the field \"dsTypes\" has to be a list of integers of 32 bits"}}))
        << list;
  }
}

// What cannot be written or read is told in that one answer, and nowhere behind it.
TEST_F(AuthoringAnswers, KeepTheirErrorsToThemselves) {
  Ask({{"op", "Verify"}, {"type", 1}, {"expression", "foo"}});
  const Json before = Ask({{"op", "get"}, {"want", Json::array()}});
  EXPECT_EQ(before, (Json{{"errNumber", -1}, {"errDescription", "The word \"foo\" is unknown."}}));

  EXPECT_EQ(Ask({{"op", "Write"}, {"document", "<x/>"}}),
            (Json{{"result", false},
                  {"expression", ""},
                  {"errNumber", -1},
                  {"errDescription", "No rule gives this document."}}));
  EXPECT_EQ(Ask({{"op", "get"}, {"want", Json::array()}}), before);

  const Json fields = Ask({{"op", "Fields"}, {"table", "Nowhere"}});
  EXPECT_EQ(fields.at("fields"), Json::array());
  EXPECT_EQ(fields.at("errDescription"),
            "The data table \"Nowhere\" does not exist or has no fields.");
  EXPECT_EQ(Ask({{"op", "get"}, {"want", Json::array()}}), before);

  Ask({{"op", "new"}, {"object", "alone"}});
  EXPECT_EQ(Ask({{"op", "Tables"}, {"object", "alone"}}),
            (Json{{"tables", Json::array()},
                  {"more", false},
                  {"errNumber", -1},
                  {"errDescription", "Nothing can be loaded without a database connection."}}));
  EXPECT_EQ(Ask({{"op", "get"}, {"object", "alone"}}).at("errNumber"), 0);
}

TEST_F(AuthoringAnswers, CarryTheEnginesPairOtherwise) {
  Ask({{"op", "Verify"}, {"type", 1}, {"expression", "foo"}});
  const Json answers[] = {
      Ask({{"op", "Check"}, {"type", 1}, {"expression", "1"}}),
      Ask({{"op", "Complete"}, {"type", 1}, {"expression", ""}, {"offset", 0}}),
      Ask({{"op", "Signature"}, {"expression", ""}, {"offset", 0}}),
      Ask({{"op", "Explain"}, {"expression", ""}, {"offset", 0}}),
      Ask({{"op", "Uses"}, {"expression", "bar"}}),
      Ask({{"op", "Format"}, {"expression", "bar"}}),
      Ask({{"op", "Capabilities"}}),
      Ask({{"op", "Tables"}}),
      Ask({{"op", "Fields"}, {"table", "T"}}),
  };
  for (const Json& answer : answers) {
    EXPECT_EQ(answer.at("errNumber"), -1);
    EXPECT_EQ(answer.at("errDescription"), "The word \"foo\" is unknown.");
  }
}

TEST_F(AuthoringAnswers, AreInTheLanguageAskedForAndNoOther) {
  const std::string document =
      Ask({{"op", "Verify"}, {"type", 4}, {"expression", "T.a > 1 and sum(T.b) > 2"}})
          .at("document");
  const auto written = [&](const char* language) {
    return Ask({{"op", "Write"}, {"document", document}, {"language", language}}).at("expression");
  };
  EXPECT_EQ(written("zh-CN"), "T.a > 1 且 求和(T.b) > 2");
  EXPECT_EQ(written(""), "T.a > 1 and sum(T.b) > 2");
  EXPECT_EQ(written("en"), "T.a > 1 and sum(T.b) > 2");
}

TEST_F(AuthoringAnswers, GiveWhatIsWanted) {
  EXPECT_EQ(Ask({{"op", "Tables"}, {"like", "ord"}, {"want", {"tables"}}, {"id", 7}}),
            (Json{{"id", 7}, {"tables", {"Orders"}}, {"errNumber", 0}, {"errDescription", ""}}));
  EXPECT_EQ(ShapeOf(Ask({{"op", "Explain"},
                         {"expression", "ROUND"},
                         {"offset", 0},
                         {"want", {"sql", "kind", "nonsense"}}})),
            "{kind:text sql:{default:text oracle:text dm:text kingbase:text opengauss:text}}");
}

TEST_F(AuthoringAnswers, ComeFromTheObjectThatIsNamed) {
  const auto firstUse = [this](const char* object) {
    return Ask({{"op", "Uses"}, {"object", object}, {"expression", "sALES.amount"}})
        .at("uses")
        .at(0)
        .at("name");
  };
  Ask({{"op", "SetDts"}, {"list", "Orders"}});
  Ask({{"op", "ReplaceDtOrDfNames"}, {"tableRenames", "Orders:Sales"}, {"fieldRenames", ""}});
  Ask({{"op", "copy"}, {"object", "other"}, {"from", "main"}});
  EXPECT_EQ(firstUse("main"), "Sales.Amount");
  EXPECT_EQ(firstUse("other"), "Sales.Amount");
  Ask({{"op", "drop"}});
  EXPECT_EQ(Ask({{"op", "Uses"}, {"expression", "1"}}),
            (Json{{"error", "there is no object \"main\""}}));
  EXPECT_EQ(firstUse("other"), "Sales.Amount");
  Ask({{"op", "new"}});
  EXPECT_EQ(firstUse("main"), "sALES.amount");  // knows no table: as it was typed
  EXPECT_EQ(firstUse("other"), "Sales.Amount");
  Ask({{"op", "copy"}, {"object", "other"}, {"from", "main"}});
  EXPECT_EQ(firstUse("other"), "sALES.amount");
}

}  // namespace
}  // namespace ORKBASE
