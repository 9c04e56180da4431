#include "RuleService.h"

#include "service/JsonReader.h"
#include "service/JsonWriter.h"
#include "service/Session.h"

namespace ORKBASE {

struct RuleService::State {
  Session session;
};

RuleService::RuleService() : state_(std::make_unique<State>()) {}
RuleService::~RuleService() = default;

std::string RuleService::Answer(std::string_view request) {
  std::string_view id;
  Record answer;
  try {
    JsonRequest read = ReadJson(request);
    id = read.id;
    answer = state_->session.Run(read.fields);
  } catch (const BadRequest& bad) {
    answer = {{"error", bad.what}};
  }
  // The id stands in the answer as the very text that came in.
  std::string json = "{";
  if (!id.empty()) json.append("\"id\":").append(id).append(answer.empty() ? "" : ",");
  AppendMembers(json, answer);
  return json += '}';
}

}  // namespace ORKBASE
