// What an editor asks, over dictionaries of many fields: completion beside `Verify` of the words in
// front of the cursor, a rule typed letter by letter beside `Verify` of the whole for each letter,
// and checking beside `Verify`. table.py makes ratios of the times.
#include "SampleRules.h"

#include "OrkPlatform.h"
#include "RuleAuthoring.h"
#include "database/RowTable.h"
#include "foundation/Text.h"

#include <memory>
#include <utility>

namespace bench {
namespace {

using namespace ORKBASE;

constexpr int kFieldsOfTable = 50;

/// Serves tables `Table0`, `Table1`, ... of fifty fields; numbers, texts and dates in turn.
class TablesInMemory : public ORKDB::CDBAccessor {
 public:
  std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string&,
                                                        const ORKDB::MxParams& params,
                                                        const std::u16string&, std::int32_t,
                                                        std::int32_t) override {
    static constexpr const char16_t* kNames[] = {u"Amount", u"CustomerName", u"ShippedOn",
                                                 u"Qty",    u"City",         u"OrderDate"};
    auto rows = std::make_unique<ORKDB::RowTable>(std::vector<std::u16string>{
        u"dtName", u"fldName", u"fldRealName", u"baseType", u"tabRealName", u"state"});
    const std::u16string table = params.Params().front().value;
    for (int i = 0; i < kFieldsOfTable; ++i) {
      const std::u16string name = kNames[i % 6] + Number(i);
      const std::u16string type = Number(i % 3 + 1);
      for (const std::u16string& cell : {table, name, name, type, table, std::u16string(u"1")}) {
        rows->Add(cell);
      }
    }
    return rows;
  }
};

/// An engine with so many tables loaded, and its authoring.
struct Editor {
  explicit Editor(int tables) {
    ORKDB::CDBAccessorCreator::instance()->RegisterKind(
        u"memory:",
        [](const ORKDB::AccessorRequest&) { return std::make_unique<TablesInMemory>(); });
    engine.Connect(u"memory:", 0, u"", u"", u"", kSqlServerDs, false, true, u"");
    engine.SetDts(Chain(tables, u",", [](int i) { return u"Table" + Number(i - 1); }));
  }

  bool Verify(const std::u16string& rule) {
    const bool holds = engine.Verify(kLogicDataType, rule, document);
    benchmark::DoNotOptimize(document.data());
    return holds;
  }
  RuleCompletion Complete(const std::u16string& rule, std::int32_t limit, bool all = false) {
    RuleCompletion completion;
    const auto end = static_cast<std::int32_t>(rule.size());
    if (!authoring.Complete(kLogicDataType, rule, end, limit, all, completion)) {
      GiveUp("no place: " + WideToUtf8(rule));
    }
    return completion;
  }
  void Check(const std::u16string& rule) {
    benchmark::DoNotOptimize(authoring.Check(kLogicDataType, rule));
  }

  MxExpression engine;
  RuleAuthoring authoring{engine};
  std::u16string document;
};

/// `count` words: conditions of three words with "and" between, and one bracket for the rest.
std::u16string Words(int count) {
  return Chain(count / 4, u" and ", [](int i) { return u"Table0.Amount0 > " + Number(i); });
}

template <class Step>
void Register(const std::string& what, const std::string& name, Step step, double candidates = 0) {
  benchmark::RegisterBenchmark((what + "/" + name).c_str(),
                               [step, candidates](benchmark::State& state) {
                                 for (auto _ : state) step();
                                 state.counters["candidates"] = candidates;
                               });
}

struct Typed {
  const char* name;
  std::u16string before;
  const char16_t* typed;
  std::int32_t limit;
};

void RegisterCompletions() {
  const auto editor = std::make_shared<Editor>(100);
  const std::u16string place = u"Table0.Amount0 > ";
  const std::u16string far = Words(96) + u" and " + place;
  const auto candidates = static_cast<double>(editor->Complete(u"", 0, true).items.size());
  const Typed cases[] = {
      {"behind 2 words, nothing typed", place, u"", 100},
      {"behind 2 words, two letters typed", place, u"sh", 100},
      {"behind 2 words, no limit", place, u"", 0},
      {"behind 100 words, nothing typed", far, u"", 100},
      {"behind 100 words, two letters typed", far, u"am", 100},
      {"behind 100 words, a table typed", far, u"Table99.", 100},
  };
  for (const Typed& each : cases) {
    Register("Before", each.name, [editor, each] { editor->Verify(each.before); });
    Register(
        "Complete", each.name,
        [editor, rule = each.before + each.typed, limit = each.limit] {
          benchmark::DoNotOptimize(editor->Complete(rule, limit).items.data());
        },
        candidates);
  }
}

/// A step is the whole rule, from its first letter to its last.
void RegisterTyping() {
  const auto editor = std::make_shared<Editor>(1);
  const std::u16string rule = Words(100);
  if (!editor->Verify(rule)) GiveUp("refused: " + WideToUtf8(rule));
  Register("WholeEachLetter", "100 words", [editor, rule] {
    for (std::size_t i = 0; i < rule.size(); ++i) editor->Verify(rule);
  });
  Register("CompleteEachLetter", "100 words", [editor, rule] {
    for (std::size_t i = 1; i <= rule.size(); ++i) editor->Complete(rule.substr(0, i), 100);
  });
  Register("Typing", "100 words", [editor, rule] {
    for (std::size_t i = 1; i <= rule.size(); ++i) {
      const std::u16string typed = rule.substr(0, i);
      editor->Check(typed);
      editor->Complete(typed, 100);
    }
  });
}

/// The rule with its middle field misspelt.
std::u16string Misspelt(std::u16string rule) {
  const std::u16string_view name = u"Amount0";
  return rule.replace(rule.find(name, rule.size() / 2), name.size(), u"Amuont0");
}

void RegisterChecks() {
  const auto editor = std::make_shared<Editor>(100);
  for (const int count : {100, 1000}) {
    const std::string name = std::to_string(count) + " words";
    const std::u16string rule = Words(count);
    const std::u16string misspelt = Misspelt(rule);
    if (!editor->Verify(rule)) GiveUp("refused: " + WideToUtf8(rule));
    if (editor->Verify(misspelt)) GiveUp("not refused: " + WideToUtf8(misspelt));
    Register("VerifyWhole", name, [editor, rule] { editor->Verify(rule); });
    Register("Check", name, [editor, rule] { editor->Check(rule); });
    Register("CheckRefused", name, [editor, misspelt] { editor->Check(misspelt); });
  }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  ORKBASE::SetThreadLanguage(u"en");
  bench::RegisterCompletions();
  bench::RegisterTyping();
  bench::RegisterChecks();
  return bench::RunAll(argc, argv);
}
