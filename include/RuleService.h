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

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "OrkExport.h"

namespace ORKBASE {

/// How a request went, for who counts.
enum class RuleOutcome {
  kCarriedOut,
  /// An exception, an error that the call itself set, `result` false of a call that verifies or
  /// translates, a problem of severity "error" that `Check` found. A call that only repeats the
  /// pair of the call before it is carried out.
  kRefused,
  kBadRequest,  ///< the answer is an `error`
};

struct RuleAnswer {
  std::string json;  ///< as `RuleService::Answer` gives it
  RuleOutcome outcome = RuleOutcome::kCarriedOut;
};

/// The most threads that a service works with.
inline constexpr std::size_t kMostServiceJobs = 256;

/// Engines with names, which it owns, behind calls in JSON. `object` in a request names the engine
/// that the call goes to; "main" is there from the start, `new`, `copy` and `drop` make and end
/// others. One object serves one thread at a time; separate objects are independent.
/// `SetThreadLanguage` sets the language of the thread that asks.
class ORKRULE_EXPORT RuleService {
 public:
  RuleService();
  /// A service that answers lists of requests by so many threads, 0 for as many as there are cores.
  /// The threads live as long as the service, each with copies of the engines that it meets (at
  /// most 16). Throws `std::system_error` where there are no more threads.
  explicit RuleService(std::size_t jobs);
  RuleService(const RuleService&) = delete;
  RuleService& operator=(const RuleService&) = delete;
  ~RuleService();

  /// Carries out the call of one JSON object in UTF-8, nested at most 32 levels deep, and returns
  /// its answer as one JSON object in UTF-8, without line feeds; a lone surrogate of the engine's
  /// text becomes U+FFFD. `id` comes back as it was written, `want` lists the fields of the answer
  /// that are needed, unknown fields are ignored. What cannot be carried out answers with the text
  /// `error`, a call that left by an exception with `thrown`. Throws nothing but `std::bad_alloc`.
  std::string Answer(std::string_view request);

  /// Answers requests one after the other, with the very answers that `Answer` would give; `take`
  /// gets each in its turn, in the thread that asks. Requests that only read are answered by all
  /// threads of the service at once, in the language and the locale of the thread that asks. One
  /// that changes something, and one that has to load a table, waits for those before it and is
  /// waited for. About 4 MiB of answers are made before their turn. What `take` throws ends the
  /// list; no request behind the answer that it was given has changed anything then.
  void AnswerEach(std::span<const std::string_view> requests,
                  const std::function<void(RuleAnswer answer)>& take);

 private:
  struct ORKRULE_LOCAL State;
  std::unique_ptr<State> state_;
};

}  // namespace ORKBASE
