#include "service/AnswerText.h"

#include "service/JsonWriter.h"

namespace ORKBASE {

std::string BeginAnswer(std::string_view id, const Record& fields) {
  // The id stands in the answer as the very text that came in.
  std::string json = "{";
  if (!id.empty()) json.append("\"id\":").append(id).append(fields.empty() ? "" : ",");
  AppendMembers(json, fields);
  return json;
}

void EndAnswer(std::string& answer) {
  answer += '}';
}

void EndAnswer(std::string& answer, const ErrorPair& pair) {
  if (answer.size() > 1) answer += ',';
  answer.append("\"errNumber\":").append(std::to_string(pair.number));
  answer += ",\"errDescription\":";
  AppendJson(answer, pair.description);
  EndAnswer(answer);
}

std::string AnswerOf(std::string_view id, const BadRequest& bad) {
  std::string json = BeginAnswer(id, {{"error", bad.what}});
  EndAnswer(json);
  return json;
}

}  // namespace ORKBASE
