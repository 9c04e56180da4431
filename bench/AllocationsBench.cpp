// How often `Verify` and `GetSpec` go to the heap, once warm. The program brings its own malloc,
// calloc and realloc, which the libraries below it reach as well, so libxml2 counts too; glibc's
// do the work.
#include "SampleRules.h"

#include "OrkPlatform.h"

#include <algorithm>
#include <cstddef>

namespace {

thread_local std::size_t allocations = 0;

}  // namespace

extern "C" {

void* __libc_malloc(std::size_t size) noexcept;
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;
void* __libc_realloc(void* old, std::size_t size) noexcept;
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept;

[[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept {
  ++allocations;
  return __libc_malloc(size);
}
[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) noexcept {
  ++allocations;
  return __libc_calloc(count, size);
}
[[gnu::visibility("default")]] void* realloc(void* old, std::size_t size) noexcept {
  ++allocations;
  return __libc_realloc(old, size);
}
[[gnu::visibility("default")]] void* aligned_alloc(std::size_t alignment,
                                                   std::size_t size) noexcept {
  ++allocations;
  return __libc_memalign(alignment, size);
}

}  // extern "C"

namespace bench {
namespace {

constexpr std::size_t kNodes = 20;

const SampleRule& TwentyNodes() {
  static const SampleRule rule{"20 nodes", ORKBASE::kLogicDataType,
                               u"Orders.Amount > 1 and Orders.Qty < 2 and Customer.Name like 'A%' "
                               u"and not Orders.State = 4 and Orders.Price > 5",
                               ""};
  return rule;
}

std::size_t CountElements(const std::u16string& document) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = document.find(u"<tag", at)) != document.npos; ++at) ++count;
  return count;
}

template <class Step>
void Register(const char* name, Step step) {
  benchmark::RegisterBenchmark(name, [step](benchmark::State& state) {
    step();
    std::size_t rounds = 0;
    const std::size_t before = allocations;
    for (auto _ : state) {
      step();
      ++rounds;
    }
    const std::size_t counted = allocations - before;
    state.counters["allocations"] =
        static_cast<double>(counted) / static_cast<double>(std::max<std::size_t>(rounds, 1));
  });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  using namespace bench;
  ORKBASE::SetThreadLanguage(u"en");
  Engine engine;
  const SampleRule& rule = TwentyNodes();
  const std::u16string document = engine.Document(rule.type, rule.text);
  if (CountElements(document) != kNodes) GiveUp("the rule has not twenty nodes");
  engine.Translated(document);
  Register("Allocations/Verify", [&] { engine.Verify(rule.type, rule.text); });
  Register("Allocations/GetSpec", [&] { engine.GetSpec(document); });
  return RunAll(argc, argv);
}
