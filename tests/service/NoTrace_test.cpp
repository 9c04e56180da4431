// Runs of requests with the calls of an editor strewn in, against the same runs without them: all
// other calls answer the same.
#include "RuleService.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace ORKBASE {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kRules[] = {
    "T.a > 1",
    "Orders.Amount + T.b",
    "Sales.Amount > 2 and sum(Sales.Qty) > 3",
    "U.z + 1",
    "Nowhere.x = 1",
    "Customer.Name & Input.suffix[S]",
    "[Stock].Count > 5 or T.a < 2",
    "客户.金额 * 2",
    "thisReport.Header.Total + 1",
    "thisReport.Lines.Qty > 1",
    "Sms.x & 'a'",
    "foo",
    "1 +",
    "",
    "求和(T.a) > 1",
    "Orders.OrderDate between thisMonth(2024, 5)",
};
constexpr const char* kTables[] = {"T",       "Orders", "Sales", "U", "Stock,Customer",
                                   "Nowhere", "客户"};
constexpr const char* kLanguages[] = {"", "en", "zh-CN"};
constexpr const char* kObjects[] = {"main", "other"};

/// Makes requests, the same ones for the same seed.
class Requests {
 public:
  explicit Requests(std::uint32_t seed) : engine_(seed) {}

  /// A call of the facade.
  Json Facade() {
    switch (Below(14)) {
      case 0:
        return With("SetDts", {{"list", Any(kTables)}});
      case 1:
        return With("SetRt", {{"id_", Below(2) == 0 ? "7" : "8"}});
      case 2:
        return With("ReplaceDtOrDfNames", Renames());
      case 3:
        return With("ChangeExpWithNewDtDfNames", With(Renames(), {{"expression", Any(kRules)}}));
      case 4:
        return With("RemoveDt",
                    {{"type", Type()}, {"tables", Any(kTables)}, {"expression", Any(kRules)}});
      case 5:
        return With("IsDtsInExp", {{"tables", Any(kTables)}, {"expression", Any(kRules)}});
      case 6:
        return With("set", {{"thiscaseVarOn1RcId", Below(2) == 0}, {"useIsNull", Below(2) == 0}});
      case 7:
        return With("get", Json::object());
      case 8:
        return With("GetSysTabName", {{"symbol", 13}, {"text", "5"}});
      case 9:
        return {{"op", "copy"}, {"object", "other"}, {"from", Any(kObjects)}};
      default:
        return With("Translate",
                    {{"type", Type()}, {"expression", Any(kRules)}, {"twoParts", Below(2) == 0}});
    }
  }

  /// A call of an editor.
  Json Authoring() {
    const std::string rule = Any(kRules);
    const int end = static_cast<int>(rule.size());
    const int offset = rule.empty() ? 0 : Below(end);  // in a Chinese rule behind its end, at times
    switch (Below(10)) {
      case 0:
        return Spoken("Check", {{"type", Type()}, {"expression", rule}, {"dsTypes", {0, 3, 15}}});
      case 1:
        return Spoken("Complete", {{"type", Type()}, {"expression", rule}, {"offset", offset}});
      case 2:
        return Spoken("Signature", {{"expression", rule}, {"offset", offset}});
      case 3:
        return Spoken("Explain", {{"expression", rule}, {"offset", offset}});
      case 4:
        return Spoken("Uses", {{"expression", rule}});
      case 5:
        return Spoken("Write", {{"document", Below(2) == 0 ? kDocument : "<x/>"}});
      case 6:
        return Spoken("Format", {{"expression", rule}, {"width", Below(40)}});
      case 7:
        return Spoken("Capabilities", Json::object());
      case 8:
        return Spoken("Tables", {{"like", ""}});
      default:
        return Spoken("Fields", {{"table", Any(kTables)}});
    }
  }

  int Below(int bound) { return static_cast<int>(engine_() % static_cast<unsigned>(bound)); }

 private:
  static constexpr const char* kDocument =
      R"(<tag primary="Stock.Count" outDesc="Stock.Count" symbol="4" dataType="1" content=""/>)";

  template <std::size_t N>
  std::string Any(const char* const (&texts)[N]) {
    return texts[Below(static_cast<int>(N))];
  }
  int Type() { return Below(2) == 0 ? 5 : 4; }

  static Json With(Json request, const Json& fields) {
    request.update(fields);
    return request;
  }
  Json With(const char* op, const Json& fields) {
    return With(Json{{"op", op}, {"object", Any(kObjects)}}, fields);
  }
  Json Spoken(const char* op, const Json& fields) {
    return With(With(op, fields), {{"language", Any(kLanguages)}});
  }
  Json Renames() {
    return Below(2) == 0 ? Json{{"tableRenames", "T:U"}, {"fieldRenames", "U.a:z"}}
                         : Json{{"tableRenames", "Orders:Sales"}, {"fieldRenames", ""}};
  }

  std::mt19937 engine_;
};

/// The answers to calls of the facade, with so many calls of an editor before each.
std::vector<std::string> AnswersOf(std::uint32_t seed, bool strewn) {
  constexpr int kSteps = 60;
  RuleService service;
  service.Answer(R"({"op":"Connect","server":"sqlite:)" + SampleDatabase().Path() + "\"}");
  service.Answer(R"({"op":"copy","object":"other","from":"main"})");
  Requests facade(seed);
  Requests authoring(seed + 1);
  std::vector<std::string> answers;
  for (int step = 0; step < kSteps; ++step) {
    for (int i = strewn ? authoring.Below(4) : 0; i > 0; --i) {
      const std::string request = authoring.Authoring().dump();
      const Json answer = Json::parse(service.Answer(request));
      EXPECT_FALSE(answer.contains("thrown")) << request << answer;
    }
    const std::string request = facade.Facade().dump();
    answers.push_back(request + "\n" + service.Answer(request));
  }
  return answers;
}

TEST(NoTrace, IsLeftByCallsOfAnEditor) {
  const ScopedLanguage language(u"en");
  for (std::uint32_t seed = 0; seed < 15; ++seed) {
    ASSERT_EQ(AnswersOf(seed, true), AnswersOf(seed, false)) << seed;
  }
}

}  // namespace
}  // namespace ORKBASE
