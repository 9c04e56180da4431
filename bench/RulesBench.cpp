// The twelve rules: `Verify` and `GetSpec` beside libxml2 and PostgreSQL's parser; what it costs to
// make an engine and a translator; the dialects. table.py makes ratios of the times.
#include "LibXml2Baseline.h"
#include "PgQueryBench.h"
#include "SampleRules.h"

#include "Mx_Exception.h"
#include "OrkPlatform.h"
#include "dialects/Dialects.h"
#include "dictionary/MxDictionarys.h"
#include "foundation/Text.h"

#include <iterator>
#include <memory>

namespace bench {
namespace {

using namespace ORKBASE;

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

/// `Dialect.NAME` of each rule; a rule that one of them refuses is left out for all.
void RegisterDialects(const SampleRule& rule) {
  const std::u16string document = Engine().Document(rule.type, rule.text);
  std::vector<std::shared_ptr<Engine>> engines;
  for (const RuleDialect& dialect : RuleDialects()) {
    engines.push_back(std::make_shared<Engine>(dialect.number));
    engines.back()->Document(rule.type, rule.text);
    if (IsRefused(*engines.back(), document)) return;
  }
  for (std::size_t i = 0; i < engines.size(); ++i) {
    Register("Dialect." + WideToUtf8(RuleDialects()[i].name), rule.name,
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
  static TagTree tree;
  for (const DialectRow& row : Dialects()) {
    Register("ConstructTranslator", WideToUtf8(row.dialect.name), [&row] {
      const auto translator = row.newTranslator(tree);
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
