// The exported door: one request in, one answer out, whatever the request is.
#include "RuleService.h"

#include "DataAccess.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace ORKBASE {
namespace {

const std::string kPair = R"("errNumber":0,"errDescription":"")";

TEST(RuleService, TranslatesOverADatabase) {
  const ScopedLanguage language(u"en");
  const TempDatabase& database = SampleDatabase();
  RuleService service;
  EXPECT_EQ(service.Answer(R"({"op":"Connect","server":"sqlite:)" + database.Path() + "\"}"),
            "{" + kPair + "}");
  EXPECT_EQ(service.Answer(R"({"op":"Translate","type":4,"want":["a","result"],"twoParts":true,)"
                           R"("expression":"T.a > 1 and sum(T.b) > 2","id":[1, "x"]})"),
            R"x({"id":[1, "x"],"result":true,"a":"(isnull([T].a,0) > 1)",)x" + kPair + "}");
}

TEST(RuleService, AnswersWithWhatIsWanted) {
  struct Row {
    const char* want;
    const char* answer;
  };
  const Row rows[] = {
      // clang-format off
      {R"(["result"])",                          R"({"id":1,"result":0,"errNumber":0,"errDescription":""})"},
      {R"(["b","a","result"])",                  R"({"id":1,"result":0,"a":"1","b":"","errNumber":0,"errDescription":""})"},
      {R"(["a","a","nonsense","A","","中"])",    R"({"id":1,"a":"1","errNumber":0,"errDescription":""})"},
      {"[]",                                     R"({"id":1,"errNumber":0,"errDescription":""})"},
      {"1",                                      R"({"id":1,"error":"the field \"want\" has to be a list of texts"})"},
      {R"("a")",                                 R"({"id":1,"error":"the field \"want\" has to be a list of texts"})"},
      {R"(["a",1])",                             R"({"id":1,"error":"the field \"want\" has to be a list of texts"})"},
      {"null",                                   R"({"id":1,"error":"the field \"want\" has to be a list of texts"})"},
      // clang-format on
  };
  RuleService service;
  for (const Row& row : rows) {
    EXPECT_EQ(service.Answer(R"({"id":1,"op":"Compose","document":"<tag text='1'/>","want":)" +
                             std::string(row.want) + "}"),
              row.answer);
  }
}

TEST(RuleService, AlwaysTellsErrorsAndWhatWasThrown) {
  const std::string bad =
      R"(<dd><tabs><t name='a' dispName='A'><flds><f name='x' dispName='X' dt='99'/></flds></t>)"
      R"(</tabs></dd>)";
  RuleService service;
  service.Answer(R"({"op":"SetThreadLanguage","language":"en"})");
  EXPECT_EQ(service.Answer(R"({"op":"SetCAXDD","type":1,"want":[],"document":")" + bad + "\"}"),
            R"({"thrown":{"type":"text","message":"cax dataType error."},)" + kPair + "}");
  EXPECT_EQ(service.Answer(R"({"op":"Verify","type":1,"want":[],"expression":"foo"})"),
            R"({"errNumber":-1,"errDescription":"The word \"foo\" is unknown."})");
  EXPECT_EQ(service.Answer(R"({"op":"Verify","want":[]})"),
            R"({"error":"the field \"type\" is missing"})");
  service.Answer(R"({"op":"SetThreadLanguage","language":""})");
}

TEST(RuleService, ChecksOverTheConnectionOfNowWhateverWasMissingBefore) {
  RuleService service;
  const std::string verify = R"({"op":"Verify","type":4,"expression":"T.a > 1","want":["result"]})";
  EXPECT_TRUE(service.Answer(verify).starts_with(R"({"result":false)"));
  service.Answer(R"({"op":"Connect","server":"sqlite:)" + SampleDatabase().Path() + "\"}");
  EXPECT_TRUE(service.Answer(R"({"op":"Check","type":4,"expression":"T.a > 1"})")
                  .starts_with(R"({"problems":[],)"));
}

TEST(RuleService, HelpsWithoutAnObject) {
  RuleService service;
  EXPECT_EQ(service.Answer(R"({"op":"drop"})"), "{}");
  const std::string help = service.Answer(R"({"op":"help"})");
  EXPECT_TRUE(help.starts_with(R"({"operations":[{"name":"help","in":[],)"
                               R"("out":[{"name":"operations","type":"records"}]},)"))
      << help;
  EXPECT_NE(help.find(R"({"name":"port","type":"integer","required":false,"default":0})"),
            help.npos);
  EXPECT_NE(help.find(R"({"name":"rtId","type":"text","required":false})"), help.npos);
  EXPECT_TRUE(help.ends_with("]}")) << help;
  EXPECT_EQ(service.Answer(R"({"op":"help","want":[]})"), "{}");
}

TEST(RuleService, KeepsItsEnginesApartFromThoseOfOthers) {
  RuleService one;
  RuleService other;
  one.Answer(R"({"op":"set","rtId":"7"})");
  one.Answer(R"({"op":"copy","object":"b","from":"main"})");
  EXPECT_EQ(one.Answer(R"({"op":"get","object":"b","want":["rtId"]})"),
            R"({"rtId":"7",)" + kPair + "}");
  EXPECT_EQ(other.Answer(R"({"op":"get","want":["rtId"]})"), R"({"rtId":"",)" + kPair + "}");
  EXPECT_EQ(other.Answer(R"({"op":"get","object":"b\n"})"),
            R"({"error":"there is no object \"b\n\""})");
}

/// A data access whose queries throw what `Throw` throws.
template <typename Throw>
class ThrowingAccessor : public ORKDB::CDBAccessor {
 public:
  explicit ThrowingAccessor(Throw action) : action_(action) {}
  std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string&,
                                                        const ORKDB::MxParams&,
                                                        const std::u16string&, std::int32_t,
                                                        std::int32_t) override {
    action_();
    return nullptr;
  }

 private:
  Throw action_;
};

/// The answer to a load over such a data access.
template <typename Throw>
std::string AnswerToALoad(Throw action) {
  ORKDB::CDBAccessorCreator& creator = *ORKDB::CDBAccessorCreator::instance();
  creator.RegisterKind(u"throwing:", [action](const ORKDB::AccessorRequest&) {
    return std::make_unique<ThrowingAccessor<Throw>>(action);
  });
  RuleService service;
  service.Answer(R"({"op":"Connect","server":"throwing:"})");
  std::string answer = service.Answer(R"({"op":"SetDts","list":"T"})");
  creator.RegisterKind(u"throwing:", nullptr);
  return answer;
}

TEST(RuleService, LetsNothingThroughThatADataAccessThrows) {
  EXPECT_EQ(AnswerToALoad([] { throw 1; }), R"({"thrown":{"type":"unknown"},)" + kPair + "}");
  EXPECT_EQ(AnswerToALoad([] { throw std::runtime_error("no\xFF \"line\""); }),
            "{\"thrown\":{\"type\":\"std::exception\",\"message\":\"no\xEF\xBF\xBD "
            "\\\"line\\\"\"}," +
                kPair + "}");
  EXPECT_EQ(AnswerToALoad([] { throw std::out_of_range("x"); }),
            R"({"thrown":{"type":"std::out_of_range"},)" + kPair + "}");
}

}  // namespace
}  // namespace ORKBASE
