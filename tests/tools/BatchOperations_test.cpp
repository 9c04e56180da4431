// Every operation of the batch protocol: the fields of its answer, and what they hold.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;

/// The answer to the last of some lines.
Json LastAnswer(const std::vector<std::string>& lines) {
  const std::vector<Json> answers = RunBatch(lines);
  return answers.empty() ? Json() : answers.back();
}

TEST(BatchOperations, AnswerWithTheirFields) {
  struct Row {
    const char* line;
    std::set<std::string> fields;  // beside the error pair
  };
  const Row rows[] = {
      // clang-format off
      {R"({"op":"new"})", {}},
      {R"({"op":"copy","object":"c","from":"main"})", {}},
      {R"({"op":"SetThreadLanguage","language":"en"})", {}},
      {R"({"op":"Connect","server":"s","port":1,"proxy":"","dbArgA":"a","dbArgB":"b","dsType":11,"flagA":true,"flagB":true,"dbArgC":"c"})", {}},
      {R"({"op":"SetRt","id_":"7"})", {"result"}},
      {R"({"op":"SetDts","list":"T"})", {"result"}},
      {R"({"op":"SetCAXDD","type":1,"document":"<x/>"})", {"result"}},
      {R"({"op":"set"})", {}},
      {R"({"op":"get"})", {"formDataIn", "useIsNull", "rtId", "thiscaseVarOn1RcId"}},
      {R"({"op":"Verify","type":5,"expression":"1"})", {"result", "document"}},
      {R"({"op":"GetSpec","document":"<tag/>"})", {"result", "translated", "a", "b"}},
      {R"({"op":"GetSpec","document":"<tag/>","dsType":3,"twoParts":true})", {"result", "translated", "a", "b"}},
      {R"({"op":"Compose","document":"<tag/>"})", {"result", "a", "b"}},
      {R"({"op":"AddIsNull","type":1,"expression":"x"})", {"expression"}},
      {R"({"op":"RemoveDt","expression":"1","tables":"T","type":5})", {"expression"}},
      {R"({"op":"IsDtsInExp","tables":"T","expression":"T.a"})", {"result"}},
      {R"({"op":"ReplaceDtOrDfNames","tableRenames":"","fieldRenames":""})", {"result"}},
      {R"({"op":"ChangeExpWithNewDtDfNames","tableRenames":"","fieldRenames":"","expression":"1"})", {"expression"}},
      {R"({"op":"GetDict","which":"operators"})", {"document"}},
      {R"({"op":"GetSysTabName","symbol":9,"text":"x"})", {"name"}},
      {R"({"op":"Translate","type":5,"expression":"1"})", {"result", "document", "translated", "a", "b"}},
      {R"({"op":"Check","type":5,"expression":"1"})", {"problems"}},
      {R"({"op":"Complete","type":5,"expression":"1","offset":0})", {"offset", "length", "items", "more", "unsure", "constants"}},
      {R"({"op":"Signature","expression":"ROUND(","offset":6})", {"name", "text", "parameters", "active", "offset"}},
      {R"({"op":"Signature","expression":"1","offset":0})", {}},
      {R"({"op":"Explain","expression":"1","offset":0})", {"offset", "length", "kind", "name", "dataType", "text", "sql"}},
      {R"({"op":"Uses","expression":"1"})", {"uses"}},
      {R"({"op":"Write","document":"<tag/>"})", {"result", "expression"}},
      {R"({"op":"Format","expression":"1"})", {"expression"}},
      {R"({"op":"Capabilities"})", {"functions"}},
      {R"({"op":"Tables"})", {"tables", "more"}},
      {R"({"op":"Fields","table":"T"})", {"fields"}},
      // clang-format on
  };
  for (const Row& row : rows) {
    std::set<std::string> expected = row.fields;
    expected.insert({"errNumber", "errDescription"});
    std::set<std::string> found;
    const Json answer = LastAnswer({row.line});
    for (const auto& member : answer.items()) found.insert(member.key());
    EXPECT_EQ(found, expected) << row.line;
  }
}

TEST(BatchOperations, TranslateTheExample) {
  const Json answer = LastAnswer({
      ConnectLine(),
      R"({"op":"Translate","id":1,"type":4,"expression":"T.a > 1 and sum(T.b) > 2","twoParts":true})",
  });
  EXPECT_EQ(answer.at("id"), 1);
  EXPECT_EQ(answer.at("result"), true);
  EXPECT_EQ(answer.at("a"), "(isnull([T].a,0) > 1)");
  EXPECT_EQ(answer.at("b"), "(sum(isnull([T].b,0)) > 2)");
  EXPECT_NE(answer.at("document"), "");
  EXPECT_NE(answer.at("translated"), answer.at("document"));
  EXPECT_EQ(answer.at("errNumber"), 0);
}

TEST(BatchOperations, TranslateAsVerifyAndGetSpecDo) {
  const Json verified =
      LastAnswer({ConnectLine(), R"({"op":"Verify","type":4,"expression":"T.a = 1"})"});
  const Json one = LastAnswer({
      ConnectLine(),
      R"({"op":"SetDts","list":"T"})",
      Json{{"op", "GetSpec"}, {"document", verified.at("document")}}.dump(),
  });
  const Json both =
      LastAnswer({ConnectLine(), R"({"op":"Translate","type":4,"expression":"T.a = 1"})"});
  EXPECT_EQ(one.at("a"), "isnull([T].a,0) = 1");
  EXPECT_EQ(one.at("b"), "");
  EXPECT_EQ(both.at("document"), verified.at("document"));
  EXPECT_EQ(both.at("translated"), one.at("translated"));
  EXPECT_EQ(both.at("a"), one.at("a"));
}

TEST(BatchOperations, LeaveFieldsEmptyThatWereNotReached) {
  const Json refused = LastAnswer({R"({"op":"Translate","type":1,"expression":"foo"})"});
  EXPECT_EQ(refused.dump(),
            R"({"result":false,"document":"","translated":"","a":"","b":"","errNumber":-1,)"
            R"("errDescription":"The word \"foo\" is unknown."})");
  const Json verify = LastAnswer({R"({"op":"Verify","type":1,"expression":"1 +"})"});
  EXPECT_EQ(verify.dump(), R"({"result":false,"document":"","errNumber":-1,"errDescription":)"
                           R"("The rule ends too early, something is missing at its end."})");
  const Json one = LastAnswer({R"({"op":"GetSpec","document":"x"})"});
  EXPECT_EQ(one.dump(),
            R"({"result":false,"translated":"","a":"","b":"","errNumber":-1,"errDescription":)"
            R"("exprParsedXml: not a readable document of a parsed rule."})");
}

TEST(BatchOperations, Load) {
  EXPECT_EQ(LastAnswer({ConnectLine(), R"({"op":"SetDts","list":"T,Orders"})"}).dump(),
            R"({"result":false,"errNumber":0,"errDescription":""})");
  EXPECT_EQ(LastAnswer({ConnectLine(), R"({"op":"SetRt","id_":"7","id":"x"})"}).dump(),
            R"({"id":"x","result":false,"errNumber":0,"errDescription":""})");
  EXPECT_EQ(LastAnswer({R"({"op":"SetRt","id_":"7"})", R"({"op":"get"})"}).at("rtId"), "7");
  EXPECT_EQ(LastAnswer({R"({"op":"SetDts","list":"T"})"}).dump(),
            R"({"result":false,"errNumber":-1,"errDescription":)"
            R"("Nothing can be loaded without a database connection."})");
  const std::string bad =
      R"(<dd><tabs><t name='a' dispName='A'><flds><f name='x' dispName='X' dt='99'/></flds></t>)"
      R"(</tabs></dd>)";
  EXPECT_EQ(LastAnswer({Json{{"op", "SetCAXDD"}, {"type", 1}, {"document", bad}}.dump()}).dump(),
            R"({"thrown":{"type":"text","message":"cax dataType error."},"errNumber":0,)"
            R"("errDescription":""})");
}

TEST(BatchOperations, Compose) {
  const std::string document =
      R"(<tag symbol='16' semanticType='0' text='+'><tag semanticType='4' text='1'/>)"
      R"(<tag semanticType='4' text='2'/></tag>)";
  const Json one = LastAnswer({Json{{"op", "Compose"}, {"document", document}}.dump()});
  EXPECT_EQ(one.dump(), R"({"result":0,"a":"1 + 2","b":"","errNumber":0,"errDescription":""})");
  const Json two =
      LastAnswer({Json{{"op", "Compose"}, {"document", document}, {"twoParts", true}}.dump()});
  EXPECT_EQ(two.at("a"), "(1 + 2)");
  EXPECT_EQ(two.at("b"), "");
}

TEST(BatchOperations, KeepRulesInStep) {
  const auto answers = RunBatch({
      ConnectLine(),
      R"({"op":"SetDts","list":"T,Orders"})",
      R"({"op":"RemoveDt","type":4,"tables":"Orders","expression":"Orders.Amount > 1 and T.a > 2"})",
      R"({"op":"IsDtsInExp","tables":"T,Orders","expression":"[orders].Amount"})",
      R"({"op":"IsDtsInExp","tables":"T","expression":"Orders.Amount"})",
      R"({"op":"ReplaceDtOrDfNames","tableRenames":"T:U","fieldRenames":"U.a:z"})",
      R"({"op":"Translate","type":1,"expression":"U.z + 1"})",
      R"({"op":"ChangeExpWithNewDtDfNames","tableRenames":"T:U","fieldRenames":"U.a:z","expression":"T.a + T.b"})",
  });
  EXPECT_EQ(answers.at(2).at("expression"), "T.a > 2");
  EXPECT_EQ(answers.at(3).at("result"), true);
  EXPECT_EQ(answers.at(4).at("result"), false);
  EXPECT_EQ(answers.at(5).at("result"), 0);
  EXPECT_EQ(answers.at(6).at("result"), true);
  // A renamed field takes the quoted new name as its column.
  EXPECT_EQ(answers.at(6).at("a"), "isnull([U].[z],0) + 1");
  EXPECT_EQ(answers.at(7).at("expression"), "U.z + U.b");
}

TEST(BatchOperations, NameTemporaryTables) {
  const auto answers = RunBatch({
      R"({"op":"set","rtId":"a.b"})",
      R"({"op":"GetSysTabName","symbol":9,"text":"x"})",
      R"({"op":"GetSysTabName","symbol":12,"text":""})",
      R"({"op":"GetSysTabName","symbol":13,"text":"5"})",
  });
  EXPECT_EQ(answers.at(1).at("name"), "#t_CAX_x");
  EXPECT_EQ(answers.at(2).at("name"), "t_sysVar_Case");
  EXPECT_EQ(answers.at(3).at("name"), "t_a_b_thisCaseVar_5");
}

TEST(BatchOperations, WriteTheIsNullForm) {
  const auto answers = RunBatch({
      R"({"op":"AddIsNull","type":1,"expression":"x"})",
      R"({"op":"AddIsNull","type":8,"expression":"x"})",
      R"({"op":"AddIsNull","type":2,"expression":"t.rcid"})",
      R"({"op":"AddIsNull","type":3,"expression":"x"})",
  });
  EXPECT_EQ(answers.at(0).at("expression"), "isnull(x,0)");
  EXPECT_EQ(answers.at(1).at("expression"), "isnull(x,'')");
  EXPECT_EQ(answers.at(2).at("expression"), "t.rcid");
  EXPECT_EQ(answers.at(3).at("expression"), "x");
}

TEST(BatchOperations, GiveTheThreeVocabularies) {
  const auto answers = RunBatch({
      R"({"op":"GetDict","which":"funcs"})",
      R"({"op":"GetDict","which":"operators"})",
      R"({"op":"GetDict","which":"sysVar"})",
  });
  const char* const held[] = {"primary=\"sum\"", "primary=\"like\"", "primary=\"sysVar.userName\""};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) {
      const std::string document = answers.at(i).at("document");
      EXPECT_EQ(document.find(held[k]) != document.npos, i == k) << i << " " << held[k];
    }
  }
}

}  // namespace
