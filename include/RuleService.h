// The rule engine as calls in JSON, for programs that speak it anyway: one request in, one answer
// out. A C++ program that needs results, not JSON, uses `MxExpression`.
//
//   ORKBASE::RuleService service;
//   service.Answer(R"({"op":"Connect","server":"sqlite:shop.db"})");
//   service.Answer(R"({"op":"Translate","id":1,"type":4,"expression":"Orders.Amount > 1"})");
//     gives {"id":1,"result":true,"document":"...","translated":"...","a":"...","b":"",
//            "errNumber":0,"errDescription":""}
//   service.Answer(R"({"op":"help"})") tells all operations with their fields.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "OrkExport.h"

namespace ORKBASE {

/// Engines with names, which it owns, behind calls in JSON. `object` in a request names the engine
/// that the call goes to; "main" is there from the start, `new`, `copy` and `drop` make and end
/// others. One object serves one thread at a time; separate objects are independent.
/// `SetThreadLanguage` sets the language of the thread that asks.
class ORKRULE_EXPORT RuleService {
 public:
  RuleService();
  RuleService(const RuleService&) = delete;
  RuleService& operator=(const RuleService&) = delete;
  ~RuleService();

  /// Carries out the call of one JSON object in UTF-8, nested at most 32 levels deep, and returns
  /// its answer as one JSON object in UTF-8, without line feeds; a lone surrogate of the engine's
  /// text becomes U+FFFD. `id` comes back as it was written, `want` lists the fields of the answer
  /// that are needed, unknown fields are ignored. What cannot be carried out answers with the text
  /// `error`, a call that left by an exception with `thrown`. Throws nothing but `std::bad_alloc`.
  std::string Answer(std::string_view request);

 private:
  struct ORKRULE_LOCAL State;
  std::unique_ptr<State> state_;
};

}  // namespace ORKBASE
