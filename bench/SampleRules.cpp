// The twelve rules over the tables of examples/shop.sql.
#include "SampleRules.h"

#include <cstdlib>
#include <iostream>
#include <vector>

#include "OrkPlatform.h"
#include "foundation/Text.h"

namespace bench {
namespace {

using namespace ORKBASE;

std::string Forty(const char* connective, const std::string& left) {
  std::string text;
  for (int i = 1; i <= 40; ++i) {
    if (i > 1) text += connective;
    text += left + std::to_string(i);
  }
  return text;
}

std::vector<SampleRule> MakeRules() {
  // clang-format off
  return {
      {"comparison", kLogicDataType,
       u"Orders.Amount > 1",
       R"(select "Orders"."Amount" > 1)"},
      {"with sum", kLogicDataType,
       u"Orders.Amount > 1 and sum(Orders.Qty) > 2",
       R"(select "Orders"."Amount" > 1 and sum("Orders"."Qty") > 2)"},
      {"arithmetic", kNumDataType,
       u"(Orders.Amount + Orders.Qty * 2) / (Orders.Price - 1)",
       R"(select ("Orders"."Amount" + "Orders"."Qty" * 2) / ("Orders"."Price" - 1))"},
      {"like", kLogicDataType,
       u"Customer.Name like Customer.City & '%'",
       R"(select "Customer"."Name" like "Customer"."City" || '%')"},
      {"thisSet", kLogicDataType,
       u"Orders.State in thisSet(1, 2, 3, 4, 5)",
       R"(select "Orders"."State" in (1, 2, 3, 4, 5))"},
      {"null and not", kLogicDataType,
       u"Orders.ShipDate null and not Orders.Amount > 1",
       R"(select "Orders"."ShipDate" is null and not "Orders"."Amount" > 1)"},
      {"date functions", kLogicDataType,
       u"year(Orders.OrderDate) = 2024 and month(Orders.ShipDate) < 7",
       R"(select date_part('year', "Orders"."OrderDate") = 2024)"
       R"( and date_part('month', "Orders"."ShipDate") < 7)"},
      {"ToText of a date", kStrDataType,
       u"ToText(Orders.OrderDate, 'yyyy-mm-dd')",
       R"(select to_char("Orders"."OrderDate", 'yyyy-mm-dd'))"},
      {"switch", kNumDataType,
       u"switch(Orders.State = 1, Orders.Amount, Orders.State = 2, Orders.Price, "
       u"Orders.State = 3, Orders.Qty, 0)",
       R"(select case when "Orders"."State" = 1 then "Orders"."Amount")"
       R"( when "Orders"."State" = 2 then "Orders"."Price")"
       R"( when "Orders"."State" = 3 then "Orders"."Qty" else 0 end)"},
      {"nested switch", kNumDataType,
       u"switch(Orders.State = 1, Orders.Amount, switch(Orders.State = 2, Orders.Price, "
       u"switch(Orders.State = 3, Orders.Qty, 0)))",
       R"(select case when "Orders"."State" = 1 then "Orders"."Amount" else)"
       R"( case when "Orders"."State" = 2 then "Orders"."Price" else)"
       R"( case when "Orders"."State" = 3 then "Orders"."Qty" else 0 end end end)"},
      {"forty conditions", kLogicDataType,
       Utf8ToWide(Forty(" or ", "Orders.Amount > ")),
       "select " + Forty(" or ", R"("Orders"."Amount" > )")},
      {"eight brackets", kNumDataType,
       u"((((((((1))))))))",
       "select ((((((((1))))))))"},
  };
  // clang-format on
}

std::u16string Server() {
  const char* path = std::getenv("ORKRULE_SAMPLE_DB");
  if (!path) GiveUp("ORKRULE_SAMPLE_DB names no sample database; see bench/run.sh");
  return u"sqlite:" + Utf8ToWide(path);
}

}  // namespace

std::span<const SampleRule> SampleRules() {
  static const std::vector<SampleRule> rules = MakeRules();
  return rules;
}

std::u16string Number(int value) {
  return Decimal(value);
}

Engine::Engine(ORKDB_DSType_ENUM dsType) : dsType_(dsType) {
  rules_.Connect(Server(), 0, u"", u"", u"", dsType, false, true, u"");
}

std::u16string Engine::Document(MXRULE_DATATYPE type, const std::u16string& rule) {
  for (int i = 0; i < 2; ++i) {
    if (!rules_.Verify(type, rule, document_)) {
      GiveUp("refused: " + WideToUtf8(rule) + ": " + WideToUtf8(rules_.errDescription()));
    }
  }
  return document_;
}

std::u16string Engine::Translated(const std::u16string& document) {
  if (!rules_.GetSpec(document, dsType_, translated_, a_, b_, false) || a_.empty()) {
    GiveUp("not translated: " + WideToUtf8(document));
  }
  return translated_;
}

void Engine::Verify(MXRULE_DATATYPE type, const std::u16string& rule) {
  benchmark::DoNotOptimize(rules_.Verify(type, rule, document_));
  benchmark::DoNotOptimize(document_.data());
}

void Engine::GetSpec(const std::u16string& document) {
  benchmark::DoNotOptimize(rules_.GetSpec(document, dsType_, translated_, a_, b_, false));
  benchmark::DoNotOptimize(translated_.data());
  benchmark::DoNotOptimize(a_.data());
}

void GiveUp(const std::string& text) {
  std::cerr << text << '\n';
  std::exit(1);
}

int RunAll(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace bench
