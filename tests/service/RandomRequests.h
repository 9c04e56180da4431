// Requests of all kinds, the same ones for the same seed.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <random>
#include <string>
#include <utility>

namespace ORKBASE {

class RandomRequests {
 public:
  using Json = nlohmann::ordered_json;

  /// `changes`: how many of a thousand requests change something; `editing`: how many ask what an
  /// editor asks.
  RandomRequests(std::uint32_t seed, std::string server, int changes, int editing)
      : engine_(seed), server_(std::move(server)), changes_(changes), editing_(editing) {}

  std::string Next() {
    const int kind = Below(1000);
    if (Below(40) == 0) return Any(kBad);
    Json request = kind < changes_              ? Changing()
                   : kind < changes_ + editing_ ? Editing()
                                                : Reading();
    if (Below(3) == 0) request["object"] = Any(kObjects);
    if (Below(2) == 0) request["id"] = ++id_;
    if (Below(20) == 0) request["want"] = {"result", "document"};
    return request.dump();
  }

 private:
  static constexpr const char* kObjects[] = {"main", "main", "main", "other", "third"};
  static constexpr const char* kRules[] = {
      "T.a > 1",
      "Orders.Amount + T.b",
      "Sales.Amount > 2 and sum(Sales.Qty) > 3",
      "U.z + 1",
      "Nowhere.x = 1",
      "Ordrs.Amount > T.a",
      "Customer.Name & Input.suffix[S]",
      "[Stock].Count > 5 or T.a < 2",
      "客户.金额 * 2",
      "thisReport.Header.Total + 1",
      "thisReport.Lines.Qty > 1",
      "Sms.x & 'a'",
      "foo",
      "1 +",
      "",
      "1 + 2 > 2",
      "length('a') = RAND(1)",
      "求和(T.a) > 1",
      "Orders.OrderDate between thisMonth(2024, 5)",
      "thisSet(T.a = 1, T.rcid)",
      "charIndex('a', Customer.Name) > 0",
  };
  static constexpr const char* kTables[] = {
      "T", "Orders", "Sales", "U", "Stock,Customer", "Nowhere", "客户", "", "T,Nowhere,Orders"};
  static constexpr const char* kDocuments[] = {
      R"(<tag primary="Stock.Count" outDesc="Stock.Count" symbol="4" dataType="1" content=""/>)",
      R"(<tag primary="T.a" outDesc="T.a" symbol="4" dataType="1" content=""/>)",
      R"(<tag text='1'/>)",
      "<x/>",
      "no document",
      "",
  };
  static constexpr const char* kCax[] = {
      R"(<dd><tabs><t name='p' dispName='P'><flds><f name='w' dispName='W' dt='1'/></flds></t></tabs></dd>)",
      R"(<dd><tabs><t name='p' dispName='P'><flds><f name='w' dispName='W' dt='99'/></flds></t></tabs></dd>)",
      "no document",
  };
  static constexpr const char* kLanguages[] = {"", "en", "zh-CN", "de"};
  static constexpr const char* kBad[] = {"{\"op\":",
                                         "[]",
                                         "{}",
                                         R"({"op":"nothing"})",
                                         R"({"op":"get","object":"nobody"})",
                                         R"({"op":"Verify","id":7})"};

  int Below(int bound) { return static_cast<int>(engine_() % static_cast<unsigned>(bound)); }
  template <std::size_t N>
  std::string Any(const char* const (&texts)[N]) {
    return texts[Below(static_cast<int>(N))];
  }
  int Type() { return Below(2) == 0 ? 5 : Below(6); }

  Json Renames() {
    return Below(2) == 0
               ? Json{{"tableRenames", "T:U"}, {"fieldRenames", "U.a:z"}}
               : Json{{"tableRenames", "Orders:Sales,Sales:Orders"}, {"fieldRenames", ""}};
  }
  static Json With(Json request, const Json& fields) {
    request.update(fields);
    return request;
  }

  Json Changing() {
    switch (Below(14)) {
      case 0:
        return {{"op", "new"}};
      case 1:
        return {{"op", "copy"}, {"from", Any(kObjects)}};
      case 2:
        return {{"op", "drop"}, {"object", Below(2) == 0 ? "other" : "third"}};
      case 3:
        return {{"op", "SetThreadLanguage"}, {"language", Any(kLanguages)}};
      case 4:
      case 5:
        return {{"op", "Connect"},
                {"server", Below(4) == 0 ? "sqlite:/nowhere/at.all" : server_},
                {"dsType", Below(2) == 0 ? 0 : 11}};
      case 6:
        return {{"op", "SetRt"}, {"id_", Below(3) == 0 ? "none" : "7"}};
      case 7:
        return {{"op", "SetDts"}, {"list", Any(kTables)}};
      case 8:
        return {{"op", "SetCAXDD"}, {"type", Below(3)}, {"document", Any(kCax)}};
      case 9:
        return {{"op", "set"}, {"useIsNull", Below(2) == 0}, {"rtId", "7"}};
      case 10:
        return With({{"op", "ReplaceDtOrDfNames"}}, Renames());
      case 11:
        return {{"op", Below(2) == 0 ? "Tables" : "help"}, {"want", {"more"}}};
      case 12:
        return {{"op", "Fields"}, {"table", Any(kTables)}};
      default:
        return {{"op", "GetSysTabName"}, {"symbol", Below(20)}, {"text", "5"}};
    }
  }

  Json Reading() {
    const Json rule = {{"type", Type()}, {"expression", Any(kRules)}};
    switch (Below(14)) {
      case 0:
        return {{"op", "get"}};
      case 1:
        return {{"op", "GetDict"}, {"which", "operators"}, {"want", Json::array()}};
      case 2:
        return With({{"op", "AddIsNull"}}, rule);
      case 3:
        return With({{"op", "RemoveDt"}, {"tables", Any(kTables)}}, rule);
      case 4:
        return With({{"op", "IsDtsInExp"}, {"tables", Any(kTables)}}, rule);
      case 5:
        return With(With({{"op", "ChangeExpWithNewDtDfNames"}}, Renames()), rule);
      case 6:
        return {{"op", "Compose"}, {"document", Any(kDocuments)}, {"twoParts", Below(2) == 0}};
      case 7:
        return {{"op", "GetSpec"}, {"document", Any(kDocuments)}, {"dsType", Below(2) * 3}};
      case 8:
      case 9:
        return With({{"op", "Verify"}}, rule);
      default:
        return With({{"op", "Translate"}, {"twoParts", Below(2) == 0}, {"dsType", Below(2) * 3}},
                    rule);
    }
  }

  Json Editing() {
    const std::string rule = Any(kRules);
    Json request = {{"expression", rule}, {"language", Any(kLanguages)}};
    const int offset = Below(static_cast<int>(rule.size()) + 1);
    switch (Below(8)) {
      case 0:
      case 1:
        return With({{"op", "Check"}, {"type", Type()}, {"dsTypes", {0, 3}}}, request);
      case 2:
        return With({{"op", "Complete"}, {"type", Type()}, {"offset", offset}}, request);
      case 3:
        return With({{"op", "Signature"}, {"offset", offset}}, request);
      case 4:
        return With({{"op", "Explain"}, {"offset", offset}}, request);
      case 5:
        return With({{"op", "Uses"}}, request);
      case 6:
        return With({{"op", "Format"}, {"width", Below(40)}}, request);
      default:
        return {{"op", "Write"}, {"document", Any(kDocuments)}};
    }
  }

  std::mt19937 engine_;
  std::string server_;
  int changes_;
  int editing_;
  int id_ = 0;
};

}  // namespace ORKBASE
