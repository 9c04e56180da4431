// Names that a rule writes in another case: `rename` leaves them, `uses` counts them, both tell.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct CaseRow {
  std::vector<std::string> arguments;
  std::string rule;
  std::string out;
  std::vector<std::string> told;  ///< written, name, written, name...
};

void ExpectTold(const std::string& command, const std::vector<CaseRow>& rows, const char* what) {
  for (const CaseRow& row : rows) {
    std::vector<std::string> arguments = {command};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    arguments.push_back(row.rule);
    std::string err;
    for (std::size_t i = 0; i < row.told.size(); i += 2) {
      err.append("orkrule: \"").append(row.told[i]).append("\" differs from \"");
      err.append(row.told[i + 1]).append("\" only in case and was ").append(what).append("\n");
    }
    const ToolResult result = RunTool(arguments);
    EXPECT_EQ(result.status, 0) << row.rule;
    EXPECT_EQ(result.out, row.out + "\n") << row.rule;
    EXPECT_EQ(result.err, err) << row.rule;
  }
}

const std::vector<std::string> kOrders = {"--tables", "Orders:Sales"};
const std::vector<std::string> kQty = {"--tables", "Orders:Sales", "--fields", "Sales.Qty:Pieces"};

TEST(NameCase, IsToldOfWhereANameIsLeft) {
  ExpectTold(
      "rename",
      {
          // clang-format off
          {kOrders, "Orders.a + 1",            "Sales.a + 1",           {}},
          {kOrders, "orders.a + 1",            "orders.a + 1",          {"orders", "Orders"}},
          {kOrders, "orders.a + ORDERS.b + orders.c + Orders.d", "orders.a + ORDERS.b + orders.c + Sales.d",
           {"orders", "Orders", "ORDERS", "Orders"}},
          {kOrders, "t.orders.a",              "t.orders.a",            {"orders", "Orders"}},
          {kOrders, "'select 1 from [orders]'", "'select 1 from [orders]'", {"orders", "Orders"}},
          {kOrders, "xorders.a + orders + a.orders", "xorders.a + orders + a.orders", {}},
          {kOrders, "'orders' & '[[xorders]'", "'orders' & '[[xorders]'", {}},
          {{"--tables", "Orders:Sales,orders:Old"}, "orders.a", "Old.a", {}},
          {{"--tables", "客户A:B"}, "客户a.x",  "客户a.x",              {"客户a", "客户A"}},
          {{"--tables", "A:B", "--dialect", "kingbase"}, "'x \"a\" [a] \"A\"'", "'x \"a\" [a] \"B\"'", {"a", "A"}},
          // a field behind its table alone is renamed in any case, behind another word it is not
          {kQty, "Orders.qTY",                 "Sales.Pieces",          {}},
          {kQty, "t.Orders.qTY",               "t.Sales.qTY",           {"Orders.qTY", "Orders.Qty"}},
          {kQty, "t.orders.Qty",               "t.orders.Qty",          {"orders", "Orders"}},
          // clang-format on
      },
      "left");
}

TEST(NameCase, DoesNotMatterWhereItIsIgnored) {
  const auto ignoring = [](std::vector<std::string> arguments) {
    arguments.emplace_back("--ignore-case");
    return arguments;
  };
  ExpectTold("rename",
             {
                 // clang-format off
                 {ignoring(kOrders), "orders.a + ORDERS.b", "Sales.a + Sales.b",    {}},
                 {ignoring(kOrders), "'[orders]' & xorders.a", "'[Sales]' & xorders.a", {}},
                 {ignoring(kQty), "t.orders.qTY",           "t.Sales.Pieces",       {}},
                 {ignoring(kQty), "orders.qTY + a",         "Sales.Pieces + a",     {}},
                 // clang-format on
             },
             "left");
}

TEST(NameCase, IsToldOfWhereANameIsCounted) {
  ExpectTold(
      "uses",
      {
          // clang-format off
                 {{"--tables", "Orders"},   "Orders.a",            "yes", {}},
                 {{"--tables", "Orders"},   "orders.a",            "yes", {"orders", "Orders"}},
                 {{"--tables", "Orders"},   "[ORDERS].a",          "yes", {"ORDERS", "Orders"}},
                 {{"--tables", "Orders"},   "orders.a + Orders.b", "yes", {}},  // is found by its name
                 {{"--tables", "Orders,T"}, "orders.a + T.b",      "yes", {"orders", "Orders"}},
                 {{"--tables", "Orders"},   "t.orders.a",          "no",  {}},
                 {{"--tables", "Orders"},   "'[orders]'",          "no",  {}},
          // clang-format on
      },
      "counted");
}

TEST(NameCase, IsToldWithThePlaceAndInRecords) {
  EXPECT_EQ(RunTool({"rename", "--tables", "A:B"}, "A.x\na.x\n").err,
            "orkrule: standard input:2: \"a\" differs from \"A\" only in case and was left\n"
            "orkrule: renamed 1 of 2 rules\n");
  for (const std::string command : {"rename", "uses"}) {
    const std::string tables = command == "rename" ? "A:B" : "A";
    const ToolResult result = RunTool({command, "--json", "--tables", tables, "a.x"});
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.Json().at(0).at("differsInCase").dump(), R"([{"written":"a","name":"A"}])");
  }
}

TEST(NameCase, OfALongRuleTakesNoLonger) {
  std::string rule = "'";
  for (int i = 0; i < 100'000; ++i) rule += i % 2 == 0 ? "[" : "aB].";
  const ToolResult result = RunTool({"rename", "--tables", "Ab:c", "--json"}, rule + "\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.Json().at(0).at("differsInCase").size(), 1u);
}

TEST(Rename, TakesTheNameOfATableOfToday) {
  const auto renamed = [](const char* fields) {
    return RunTool({"rename", "--tables", "Orders:Sales", "--fields", fields,
                    "Orders.Qty + T.Qty + Sales.Qty"})
        .out;
  };
  // the table named Sales that is there already gets the new name of the field too
  EXPECT_EQ(renamed("Orders.Qty:Pieces"), "Sales.Pieces + T.Qty + Sales.Pieces\n");
  EXPECT_EQ(renamed("Sales.Qty:Pieces"), "Sales.Pieces + T.Qty + Sales.Pieces\n");
  EXPECT_EQ(renamed("T.Qty:Pieces"), "Sales.Qty + T.Pieces + Sales.Qty\n");
}

}  // namespace
