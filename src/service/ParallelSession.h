// A session whose calls are answered by several threads where that changes no answer.
//
// The session itself holds the truth. Each thread of the crew has copies of its engines, which
// answer calls that only read. What such a call leaves behind (the error pair, the last
// translation) is gathered in the order of the requests, and left on the engine before a call has
// to see it. A call that changes something is carried out on the session, between all others. That
// a call would load a table shows only on the way: it fails on the copy, which may not ask the
// database, and is carried out on the session; what was answered behind it counts as long as the
// load has changed nothing that could be seen there.
#pragma once

#include "service/Crew.h"
#include "service/Session.h"
#include "service/SideSession.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ORKBASE {

/// One thread at a time.
class ParallelSession {
 public:
  using Take = std::function<void(RuleAnswer answer)>;

  explicit ParallelSession(std::size_t jobs);

  /// Answers requests in their order. What `take` throws ends the work behind the answer that it
  /// was given.
  void Answer(std::span<const std::string_view> requests, const Take& take);

  RuleAnswer Answer(std::string_view request);

 private:
  /// What has changed since the crew began its list.
  struct Change {
    bool ofWords = false;    ///< no answer of the list counts any more
    bool ofEditing = false;  ///< none to a call of an editor
  };

  /// How far the crew came.
  struct Progress {
    std::size_t taken = 0;  ///< requests that are answered
    std::size_t asks = 0;   ///< those of them that asked the database
  };

  /// Lets the crew answer the first of the requests.
  Progress AnswerBeside(std::span<const std::string_view> requests, const Take& take);
  Progress TakeInOrder(std::span<const std::string_view> requests, const Take& take);
  /// How many requests are then better answered without it.
  static std::size_t AloneAfter(const Progress& progress) noexcept;
  std::size_t Work(std::size_t worker, std::size_t item);
  void Deliver(SideAnswer& side, const Take& take);
  /// Carries out a call that asks the database.
  void Ask(std::string_view request, const std::u16string& object, Change& change,
           const Take& take);

  /// The pair of the last call on an object that has set it.
  ErrorPair PairBefore(const std::u16string& object) const;
  void Gather(const std::u16string& object, EngineTrace trace);
  /// Leaves on the engines what calls on their copies have left.
  void Settle();

  Session session_;
  std::map<std::u16string, EngineTrace> traces_;
  std::vector<SideSession> sides_;              ///< one a worker
  std::uint64_t version_ = 1;                   ///< of the session's engines
  std::span<const std::string_view> requests_;  ///< that the crew works at
  std::vector<SideAnswer> answers_;
  Crew crew_;
};

}  // namespace ORKBASE
