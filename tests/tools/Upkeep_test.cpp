// `orkrule uses`, `strip` and `rename`.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Uses, LooksAtTheText) {
  const ToolResult result =
      RunTool({"uses", "--tables", "T1,T2"}, "t1.a + 1\n[T2].a\na.b.c\nT3.a > (\n");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "yes\nyes\nno\nno\n");
  const auto json = RunTool({"uses", "--json", "--tables", "T1", "T1.a"}).Json().at(0);
  EXPECT_EQ(json.dump(), R"({"expression":"T1.a","uses":true,"differsInCase":[]})");
}

TEST(Strip, CutsTablesOut) {
  const ToolResult result =
      RunTool({"strip", "--db", kSampleDb, "--type", "logic", "--tables", "Orders"},
              "Orders.Amount > 1 and T.a > 2\nOrders.Amount > 1\nT.a > 2\n");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "T.a > 2\n\nT.a > 2\n");
  const ToolResult refused = RunTool({"strip", "--db", kSampleDb, "--tables", "T", "1 + foo"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err, "orkrule: The word \"foo\" is unknown.\n  1 + foo\n      ^~~\n");
}

TEST(Rename, CarriesNamesIntoRules) {
  const ToolResult tables =
      RunTool({"rename", "--tables", "A:B"}, "A.x + 1\nxA.y\nt.A.y\n'select * from [A]'\n");
  EXPECT_EQ(tables.status, 0) << tables.err;
  EXPECT_EQ(tables.out, "B.x + 1\nxA.y\nt.B.y\n'select * from [B]'\n");
  const ToolResult quoted = RunTool({"rename", "--tables", "A:B", "--dialect", "kingbase"},
                                    "'select * from [A]'\n'select * from \"A\"'\n");
  EXPECT_EQ(quoted.out, "'select * from [A]'\n'select * from \"B\"'\n");
  const ToolResult both =
      RunTool({"rename", "--json", "--tables", "A:B", "--fields", "B.x:y", "A.x"});
  EXPECT_EQ(both.Json().at(0).dump(),
            R"({"expression":"B.y","original":"A.x","differsInCase":[]})");
}

TEST(Rename, KeepsARuleThatTheNewNamesMakeTooLong) {
  std::string doubling;
  for (int i = 0; i < 26; ++i) doubling += (i == 0 ? "" : ",") + std::string("x:x][x");
  const std::string reason = "With the new names the text becomes too long.";
  const ToolResult plain = RunTool({"rename", "--tables", doubling}, "'[x]'\nx.a\n");
  EXPECT_EQ(plain.status, 1);
  EXPECT_EQ(plain.out, "\nx][x.a\n");
  EXPECT_EQ(plain.err, "orkrule: standard input:1: " + reason +
                           "\n  '[x]'\norkrule: renamed 1 of 2 rules\n"
                           "orkrule: 1 of 2 rules refused\n");
  const auto json = RunTool({"rename", "--json", "--tables", doubling, "'[x]'"}).Json().at(0);
  EXPECT_EQ(json.dump(), R"({"expression":"'[x]'","original":"'[x]'","differsInCase":[],)"
                         R"("error":{"number":6703,"text":")" +
                             reason + R"(","fixes":[]}})");
  const ToolResult checked =
      RunTool({"rename", "--db", kSampleDb, "--check", "--tables", doubling, "'[x]' = 'a'"});
  EXPECT_EQ(checked.status, 1);
  EXPECT_EQ(checked.err, "orkrule: " + reason + "\n  '[x]' = 'a'\n");
}

TEST(Rename, ChecksTheRenamedRules) {
  const ToolResult value = RunTool({"rename", "--db", kSampleDb, "--check", "--type", "any",
                                    "--tables", "Orders:Sales", "--fields", "Sales.Qty:Pieces"},
                                   "Orders.Amount > Orders.Qty\nT.a + 1\n");
  EXPECT_EQ(value.status, 1);  // `any` is no condition
  const ToolResult either = RunTool({"rename", "--db", kSampleDb, "--check", "--tables",
                                     "Orders:Sales", "--fields", "Sales.Qty:Pieces"},
                                    "Orders.Amount > Orders.Qty\nT.a + 1\n");
  EXPECT_EQ(either.status, 0) << either.err;
  const ToolResult logic = RunTool({"rename", "--db", kSampleDb, "--check", "--type", "logic",
                                    "--tables", "Orders:Sales", "--fields", "Sales.Qty:Pieces"},
                                   "Orders.Amount > Orders.Qty\nT.a > 1\n");
  EXPECT_EQ(logic.status, 0) << logic.err;
  EXPECT_EQ(logic.out, "Sales.Amount > Sales.Pieces\nT.a > 1\n");
  // Two tables that exchange their names.
  const ToolResult exchanged =
      RunTool({"rename", "--db", kSampleDb, "--check", "--tables", "Orders:x,T:Orders,x:T"},
              "Orders.Amount\n");
  EXPECT_EQ(exchanged.out, "T.Amount\n");
  // A rule that names the table in another case is not renamed, and finds no table any more.
  const ToolResult lost = RunTool(
      {"rename", "--db", kSampleDb, "--check", "--tables", "Orders:Sales", "orders.Amount + 1"});
  EXPECT_EQ(lost.status, 1);
  EXPECT_NE(lost.err.find("  orders.Amount + 1\n  ^~~~~~~~~~~~~\n"), lost.err.npos) << lost.err;
}

TEST(Rename, RefusesListsWithBadItems) {
  EXPECT_EQ(RunTool({"rename", "--tables", "A", "A.x"}).status, 2);
  EXPECT_EQ(RunTool({"rename", "--tables", "A:B,C", "A.x"}).status, 2);
  EXPECT_EQ(RunTool({"rename", "--tables", "A:B,,C:D", "A.x"}).status, 2);
  EXPECT_EQ(RunTool({"rename", "--fields", "x:y", "A.x"}).status, 2);
}

}  // namespace
