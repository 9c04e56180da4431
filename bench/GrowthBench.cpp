// How the cost grows with the rule: chains, nested brackets, nested `switch`, and many `like`. The
// counters say how long the texts are, since what is returned grows by itself, too.
#include "SampleRules.h"

#include "OrkPlatform.h"

#include <memory>

namespace bench {
namespace {

using namespace ORKBASE;

std::u16string Conditions(int count) {
  return Chain(count, u" and ", [](int i) { return u"Orders.Amount > " + Number(i); });
}

std::u16string Equals(int count) {
  return Chain(count, u" and ", [](int i) { return u"Customer.Name = 'A" + Number(i) + u"'"; });
}

std::u16string Likes(int count) {
  return Chain(count, u" and ", [](int i) { return u"Customer.Name like 'A" + Number(i) + u"'"; });
}

/// `(Orders.Amount > 1 and (Orders.Amount > 2 and ... ))`
std::u16string Brackets(int depth) {
  std::u16string text;
  for (int i = 1; i <= depth; ++i) {
    text += (i > 1 ? u" and (" : u"(");
    text += u"Orders.Amount > " + Number(i);
  }
  return text.append(static_cast<std::size_t>(depth), u')');
}

/// `((Orders.Amount > 1))`
std::u16string BareBrackets(int depth) {
  const auto count = static_cast<std::size_t>(depth);
  return std::u16string(count, u'(') + u"Orders.Amount > 1" + std::u16string(count, u')');
}

std::u16string Switches(int depth, std::u16string_view value, std::u16string_view last) {
  std::u16string text;
  for (int i = 1; i <= depth; ++i) {
    text += u"switch(Orders.State = " + Number(i) + u", ";
    text.append(value).append(u", ");
  }
  return text.append(last).append(static_cast<std::size_t>(depth), u')');
}

std::u16string NumberSwitches(int depth) {
  return Switches(depth, u"Orders.Amount", u"0");
}

std::u16string TextSwitches(int depth) {
  return Switches(depth, u"Customer.Name", u"''");
}

struct Family {
  const char* name;
  MXRULE_DATATYPE type;
  std::u16string (*rule)(int);
  std::vector<int> sizes;
};

const std::vector<Family>& Families() {
  static const std::vector<int> deep = {5, 7, 9, 11, 13, 15};
  static const std::vector<int> wide = {10, 20, 50, 100, 200};
  // clang-format off
  static const std::vector<Family> families = {
      {"conditions",     kLogicDataType, Conditions,     {100, 180, 320, 560, 1000}},
      {"brackets",       kLogicDataType, Brackets,       deep},
      {"bare brackets",  kLogicDataType, BareBrackets,   deep},
      {"number switch",  kNumDataType,   NumberSwitches, deep},
      {"text switch",    kStrDataType,   TextSwitches,   deep},
      {"like",           kLogicDataType, Likes,          wide},
      {"equals",         kLogicDataType, Equals,         wide},
  };
  // clang-format on
  return families;
}

template <class Step>
void Register(const char* what, const Family& family, int size, std::size_t length, Step step) {
  const std::string name = std::string(what) + "/" + family.name + "/" + std::to_string(size);
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    for (auto _ : state) step();
    state.counters["length"] = static_cast<double>(length);
  });
}

void RegisterSize(const Family& family, int size) {
  const auto engine = std::make_shared<Engine>();
  const std::u16string rule = family.rule(size);
  const std::u16string document = engine->Document(family.type, rule);
  const std::u16string translated = engine->Translated(document);
  Register("Verify", family, size, document.size(),
           [engine, rule, type = family.type] { engine->Verify(type, rule); });
  Register("GetSpec", family, size, translated.size(),
           [engine, document] { engine->GetSpec(document); });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  ORKBASE::SetThreadLanguage(u"en");
  for (const bench::Family& family : bench::Families()) {
    for (const int size : family.sizes) bench::RegisterSize(family, size);
  }
  return bench::RunAll(argc, argv);
}
