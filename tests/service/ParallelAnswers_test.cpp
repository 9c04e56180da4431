// Lists of requests answered by several threads: the answers, what the database is asked, and what
// is left behind are those of one thread.
#include "RuleService.h"

#include "DataAccess.h"
#include "OrkPlatform.h"
#include "RandomRequests.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ORKBASE {
namespace {

using Lines = std::vector<std::string>;

Lines AnswersOf(RuleService& service, const Lines& requests) {
  const std::vector<std::string_view> views(requests.begin(), requests.end());
  Lines answers;
  service.AnswerEach(views, [&](RuleAnswer answer) { answers.push_back(std::move(answer.json)); });
  return answers;
}

Lines AnswersOf(std::size_t jobs, const Lines& requests) {
  RuleService service(jobs);
  Lines answers = AnswersOf(service, requests);
  SetThreadLanguage(u"en");  // a request may have set another
  return answers;
}

/// The first request whose answers differ, with both answers.
std::string FirstDifference(const Lines& requests, const Lines& one, const Lines& many) {
  for (std::size_t i = 0; i < requests.size() && i < one.size() && i < many.size(); ++i) {
    if (one[i] != many[i]) return requests[i] + "\n" + one[i] + "\n" + many[i];
  }
  return one.size() == many.size() ? "" : "another number of answers";
}

std::string ConnectTo(const std::string& server) {
  return R"({"op":"Connect","server":")" + server + "\"}";
}

struct Mixture {
  int changes;
  int editing;
};

class ParallelAnswers : public testing::TestWithParam<Mixture> {};

TEST_P(ParallelAnswers, AreThoseOfOneThread) {
  constexpr std::size_t kRequests = 400;
  const ScopedLanguage language(u"en");
  const std::string server = "sqlite:" + SampleDatabase().Path();
  for (std::uint32_t seed = 0; seed < 3; ++seed) {
    RandomRequests random(seed, server, GetParam().changes, GetParam().editing);
    Lines requests{ConnectTo(server)};
    while (requests.size() < kRequests) requests.push_back(random.Next());
    const Lines one = AnswersOf(1, requests);
    ASSERT_EQ(one.size(), kRequests);
    for (const std::size_t jobs : {2u, 3u, 8u}) {
      ASSERT_EQ(FirstDifference(requests, one, AnswersOf(jobs, requests)), "") << seed;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Mixtures, ParallelAnswers,
                         testing::Values(Mixture{0, 0}, Mixture{4, 0}, Mixture{20, 100},
                                         Mixture{100, 300}, Mixture{400, 50}));

/// Notes what it is asked, and fails each seventh time.
struct UnsteadyAccessor : ORKDB::CDBAccessor {
  explicit UnsteadyAccessor(std::unique_ptr<ORKDB::CDBAccessor> real) : inner(std::move(real)) {}
  std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                        const ORKDB::MxParams& params,
                                                        const std::u16string& /*reservedA*/,
                                                        std::int32_t /*reservedB*/,
                                                        std::int32_t /*reservedC*/) override {
    for (const ORKDB::MxParam& param : params.Params()) asked += U8(param.value) + " ";
    if (++count % 7 == 0) {
      SetError(1234, u"the server went away");
      return nullptr;
    }
    auto rows = inner->QueryByStatement(statement, params);
    SetError(inner->errNumber, inner->ErrDescription());
    return rows;
  }

  std::unique_ptr<ORKDB::CDBAccessor> inner;
  int count = 0;
  static inline std::string asked;
};

TEST(ParallelAnswersOverADatabase, AskItInTheOrderOfTheRequests) {
  auto& creator = *ORKDB::CDBAccessorCreator::instance();
  creator.RegisterKind(u"unsteady:", [&creator](const ORKDB::AccessorRequest& request) {
    return std::make_unique<UnsteadyAccessor>(
        creator.CreateAccessor(ORKDB::MxSvrInfo(u"sqlite:" + request.location, 0, u"", u""),
                               request.proxy, u"", request.dsType, false, true, u"", u""));
  });
  const ScopedLanguage language(u"en");
  const std::string server = "unsteady:" + SampleDatabase().Path();
  for (std::uint32_t seed = 10; seed < 13; ++seed) {
    RandomRequests random(seed, server, 30, 100);
    Lines requests{ConnectTo(server)};
    while (requests.size() < 400) requests.push_back(random.Next());
    UnsteadyAccessor::asked.clear();
    const Lines one = AnswersOf(1, requests);
    const std::string asked = std::exchange(UnsteadyAccessor::asked, "");
    EXPECT_NE(asked, "");
    ASSERT_EQ(FirstDifference(requests, one, AnswersOf(3, requests)), "") << seed;
    EXPECT_EQ(UnsteadyAccessor::asked, asked);
  }
  creator.RegisterKind(u"unsteady:", {});
}

/// So many requests of one kind, for a list that is long enough for all threads.
Lines Repeated(const std::string& request, std::size_t count) {
  return Lines(count, request);
}

TEST(ParallelAnswersOverADatabase, LeaveBehindWhatTheLastCallsHaveLeft) {
  struct Row {
    const char* left;  // by a call in the middle of a list
    const char* asked;
    const char* answer;
  };
  const Row rows[] = {
      // clang-format off
      {R"({"op":"Verify","type":1,"expression":"foo"})", R"({"op":"get","want":[]})",
       R"({"errNumber":-1,"errDescription":"The word \"foo\" is unknown."})"},
      {R"({"op":"Verify","type":1,"expression":"foo"})", R"({"op":"copy","from":"main"})",
       R"({"errNumber":-1,"errDescription":"The word \"foo\" is unknown."})"},
      {R"({"op":"Translate","type":1,"expression":"1","dsType":3})", R"({"op":"GetSysTabName","symbol":13,"text":"5"})",
       R"({"name":"t_thisCaseVar_5","errNumber":0,"errDescription":""})"},
      // clang-format on
  };
  const ScopedLanguage language(u"en");
  for (const Row& row : rows) {
    std::string answers[2];
    for (const std::size_t jobs : {1u, 2u}) {
      RuleService service(jobs);
      Lines requests = Repeated(R"({"op":"Compose","document":""})", 40);
      requests[20] = row.left;
      requests.emplace_back(row.asked);
      answers[jobs - 1] = AnswersOf(service, requests).back();
      EXPECT_EQ(service.Answer(row.asked), answers[jobs - 1]);
    }
    EXPECT_EQ(answers[1], answers[0]);
    if (std::string_view(row.asked).find("GetSysTabName") == std::string_view::npos) {
      EXPECT_EQ(answers[0], row.answer);
    }
  }
}

TEST(ParallelAnswersOverADatabase, SpeakTheLanguageOfTheAsker) {
  const std::string refused = R"({"op":"Verify","type":1,"expression":"foo","want":[]})";
  for (const std::size_t jobs : {1u, 2u}) {
    RuleService service(jobs);
    for (const char16_t* tag : {u"zh-CN", u"en"}) {
      const ScopedLanguage language(tag);
      const bool isEnglish = std::u16string_view(tag) == u"en";
      for (const std::string& answer : AnswersOf(service, Repeated(refused, 100))) {
        EXPECT_EQ(answer.find("is unknown") != answer.npos, isEnglish) << answer;
      }
    }
  }
}

TEST(ParallelAnswersOverADatabase, EndWhereTheTakerThrows) {
  struct Enough {};
  for (const std::size_t jobs : {1u, 3u}) {
    RuleService service(jobs);
    Lines requests = Repeated(R"({"op":"get"})", 200);
    requests[120] = R"({"op":"set","formDataIn":1})";
    const std::vector<std::string_view> views(requests.begin(), requests.end());
    std::size_t taken = 0;
    const auto take = [&taken](const RuleAnswer& /*answer*/) {
      if (++taken == 100) throw Enough();
    };
    EXPECT_THROW(service.AnswerEach(views, take), Enough);
    EXPECT_EQ(taken, 100u);
    EXPECT_NE(service.Answer(R"({"op":"get"})").find("\"formDataIn\":0"), std::string::npos);
  }
}

TEST(ParallelAnswersOverADatabase, TellHowEachRequestWent) {
  using enum RuleOutcome;
  struct Row {
    const char* request;
    RuleOutcome outcome;
  };
  const Row rows[] = {
      // clang-format off
      {R"({"op":"get"})",                                                     kCarriedOut},
      {R"({"op":"Verify","type":1,"expression":"1"})",                        kCarriedOut},
      {R"({"op":"Verify","type":1,"expression":"foo"})",                      kRefused},
      {R"({"op":"get"})",                                                     kCarriedOut},  // its pair is that of the call before
      {R"({"op":"Compose","document":""})",                                   kCarriedOut},
      {R"({"op":"Translate","type":1,"expression":"foo"})",                   kRefused},
      {R"({"op":"GetSpec","document":""})",                                   kRefused},
      {R"({"op":"RemoveDt","type":1,"expression":"foo","tables":"T"})",       kRefused},
      {R"({"op":"IsDtsInExp","expression":"foo","tables":"T"})",              kCarriedOut},  // its result is false
      {R"({"op":"SetDts","list":""})",                                        kCarriedOut},  // and so is this
      {R"({"op":"SetDts","list":"T"})",                                       kRefused},     // there is no connection
      {R"({"op":"Check","type":1,"expression":"1"})",                         kCarriedOut},
      {R"({"op":"Check","type":1,"expression":"1 +"})",                       kRefused},
      {R"({"op":"Check","type":1,"expression":"1 +","want":[]})",             kRefused},
      {R"({"op":"Write","document":"<x/>"})",                                 kRefused},
      {R"x({"op":"Translate","type":1,"expression":"fisYear('2024-05-01')","dsType":3})x",    kRefused},
      {R"({"op":"Complete","type":1,"expression":"1","offset":9})",           kBadRequest},
      {R"({"op":"nothing"})",                                                 kBadRequest},
      {"{",                                                                   kBadRequest},
      {R"({"op":"drop"})",                                                    kCarriedOut},
      // clang-format on
  };
  std::vector<std::string_view> requests;
  for (const Row& row : rows) requests.emplace_back(row.request);
  for (const std::size_t jobs : {1u, 2u}) {
    RuleService service(jobs);
    std::size_t at = 0;
    service.AnswerEach(requests, [&](const RuleAnswer& answer) {
      EXPECT_EQ(answer.outcome, rows[at].outcome) << rows[at].request << answer.json;
      ++at;
    });
    EXPECT_EQ(at, std::size(rows));
  }
}

TEST(ParallelAnswersOverADatabase, TakesAnyNumberOfThreadsAndRequests) {
  for (const std::size_t jobs : {0u, 1u, 5u}) {
    RuleService service(jobs);
    for (const std::size_t count : {0u, 1u, 15u, 16u, 17u, 2047u, 2049u, 5000u}) {
      const Lines answers = AnswersOf(service, Repeated(R"({"op":"get","want":[]})", count));
      ASSERT_EQ(answers, Repeated(R"({"errNumber":0,"errDescription":""})", count));
    }
  }
}

}  // namespace
}  // namespace ORKBASE
