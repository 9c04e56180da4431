// The twelve rules: `Verify` and `GetSpec` beside libxml2 and PostgreSQL's parser; what it costs to
// make an engine and a translator; the five dialects. table.py makes ratios of the times.
#include "LibXml2Baseline.h"
#include "PgQueryBench.h"
#include "SampleRules.h"

#include "Mx_Exception.h"
#include "OrkPlatform.h"
#include "dictionary/MxDictionarys.h"
#include "expression/TranslatorChoice.h"

#include <iterator>
#include <memory>

namespace bench {
namespace {

using namespace ORKBASE;

// clang-format off
struct Dialect {
  const char* name;
  ORKDB_DSType_ENUM dsType;
};
constexpr Dialect kDialects[] = {
    {"default",   kSqlServerDs},
    {"oracle",    kOracleDs},
    {"dm",        kDMDs},
    {"kingbase",  kKingbaseDs},
    {"opengauss", kOpenGaussDs},
};
// clang-format on

/// A benchmark called what/rule that runs `step` over and over.
template <class Step>
void Register(const std::string& what, const std::string& rule, Step step) {
  benchmark::RegisterBenchmark((what + "/" + rule).c_str(), [step](benchmark::State& state) {
    for (auto _ : state) step();
  });
}

void RegisterRule(const SampleRule& rule) {
  const auto engine = std::make_shared<Engine>();
  const std::u16string document = engine->Document(rule.type, rule.text);
  const auto tree = std::make_shared<TreeToBuild>(document);
  engine->Translated(document);
  Register("Verify", rule.name, [engine, &rule] { engine->Verify(rule.type, rule.text); });
  Register("XmlBuild", rule.name, [tree] { benchmark::DoNotOptimize(tree->BuildAndDump()); });
  Register("GetSpec", rule.name, [engine, document] { engine->GetSpec(document); });
  Register("XmlParse", rule.name,
           [document] { benchmark::DoNotOptimize(ParseSetAndDump(document)); });
#ifdef ORKRULE_HAVE_PG_QUERY
  if (!PgParseAndDeparse(rule.postgres)) GiveUp("libpg_query refuses " + rule.postgres);
  Register("PgQuery", rule.name, [&rule] { PgParseAndDeparse(rule.postgres); });
#endif
}

bool IsRefused(Engine& engine, const std::u16string& document) {
  try {
    engine.GetSpec(document);
    return false;
  } catch (const Mx_Exception&) {
    return true;
  }
}

/// `Dialect.NAME` of each rule; a rule that one of the five refuses is left out for all.
void RegisterDialects(const SampleRule& rule) {
  const std::u16string document = Engine().Document(rule.type, rule.text);
  std::vector<std::shared_ptr<Engine>> engines;
  for (const Dialect& dialect : kDialects) {
    engines.push_back(std::make_shared<Engine>(dialect.dsType));
    engines.back()->Document(rule.type, rule.text);
    if (IsRefused(*engines.back(), document)) return;
  }
  for (std::size_t i = 0; i < engines.size(); ++i) {
    Register(std::string("Dialect.") + kDialects[i].name, rule.name,
             [engine = engines[i], document] { engine->GetSpec(document); });
  }
}

void RegisterConstruction() {
  MxExpression first;  // the vocabulary is made with the first one of a process
  Register("Construct", "engine", [] {
    MxExpression engine;
    benchmark::DoNotOptimize(&engine);
  });
  static const MxDictionarys dictionaries;
  for (const Dialect& dialect : kDialects) {
    Register("ConstructTranslator", dialect.name, [dsType = dialect.dsType] {
      const auto translator = NewTranslator(dsType, dsType);
      translator->dictionaries = &dictionaries;
      benchmark::DoNotOptimize(translator->InitCaxEnums());
    });
  }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  ORKBASE::SetThreadLanguage(u"en");
  for (const bench::SampleRule& rule : bench::SampleRules()) {
    bench::RegisterRule(rule);
    bench::RegisterDialects(rule);
  }
  bench::RegisterConstruction();
  return bench::RunAll(argc, argv);
}
