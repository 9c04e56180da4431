#include "Calls.h"

#include "Text.h"

namespace ORKTOOL {
namespace {

Json ConnectRequest(const EngineSetup& setup) {
  return {{"op", "Connect"},
          {"server", ToUtf8(setup.server)},
          {"port", setup.options.port},
          {"dbArgA", setup.options.user},
          {"dbArgB", setup.options.databaseName},
          {"dsType", static_cast<std::int32_t>(ORKBASE::kSqlServerDs)},
          {"flagB", true},
          {"dbArgC", ToUtf8(setup.password)}};
}

Json ModesRequest(const EngineOptions& options) {
  Json request = {
      {"op", "set"}, {"formDataIn", options.formDataIn}, {"useIsNull", !options.noIsNull}};
  if (options.rtId) request["rtId"] = *options.rtId;
  return request;
}

/// The setup without what is loaded.
EngineSetup OnlyConnected(EngineSetup setup) {
  setup.options.reportTemplate.clear();
  setup.options.tables.clear();
  setup.cax.clear();
  return setup;
}

}  // namespace

Calls::Calls(const EngineSetup& setup) : probe_(OnlyConnected(setup)) {
  const EngineOptions& options = setup.options;
  if (!setup.server.empty()) Ask(ConnectRequest(setup));
  if (!options.reportTemplate.empty()) {
    Load({{"op", "SetRt"}, {"id_", options.reportTemplate}}, "--rt " + options.reportTemplate);
  }
  if (!options.tables.empty()) {
    Load({{"op", "SetDts"}, {"list", options.tables}}, "--tables " + options.tables);
  }
  for (const EngineSetup::CaxDocument& cax : setup.cax) {
    Load({{"op", "SetCAXDD"}, {"type", cax.type}, {"document", ToUtf8(cax.document)}}, cax.path);
  }
  Ask(ModesRequest(options));
}

Json Calls::Ask(const Json& request) {
  Json answer = Json::parse(service_.Answer(request.dump()));
  if (answer.contains("error")) throw Failure{kBadUsage, answer["error"].get<std::string>()};
  if (answer.contains("thrown")) {
    const Json& thrown = answer["thrown"];
    throw Failure{kInputOutput, thrown.value("message", thrown.value("type", ""))};
  }
  return answer;
}

void Calls::Load(const Json& request, const std::string& what) {
  try {
    CheckAnswered(Ask(request));
  } catch (const Failure& failure) {
    throw Failure{failure.status, what + ": " + failure.message};
  }
}

void CheckAnswered(const Json& answer) {
  if (answer.at("errNumber") == 0) return;
  throw Failure{kInputOutput, answer.at("errDescription").get<std::string>()};
}

}  // namespace ORKTOOL
