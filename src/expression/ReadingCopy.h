// Copies of an engine that serve calls in other threads as if the engine itself had carried them
// out one after the other: what a call leaves behind on its copy is told, and can be left on the
// engine.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "MxExpression.h"
#include "expression/ExpressionState.h"
#include "foundation/LastError.h"
#include "foundation/RenameList.h"

namespace ORKBASE {

/// What calls that only read leave behind for those that come after them.
struct EngineTrace {
  bool setsPair = false;  ///< whether the error pair was set; else the pair before it stays
  std::int32_t number = 0;
  std::u16string description;
  LastError error;
  std::optional<LastTranslation> last;  ///< none where nothing was translated
  NameQuotes quotes;
};

/// Makes an engine a copy of another that never asks the database: a call that would do so fails,
/// and `asked` becomes true; what it answered then, and left behind, is void.
void MakeReadingCopy(MxExpression& copy, const MxExpression& source, std::shared_ptr<bool> asked);

/// How many calls have set the error pair of an engine.
std::uint64_t VerdictsOf(const MxExpression& engine) noexcept;

/// Begins a call on a copy whose trace will be taken.
void BeginTrace(MxExpression& copy) noexcept;
/// What the call since `BeginTrace` has left; `verdicts`: those that there were then.
EngineTrace TraceOf(const MxExpression& copy, std::uint64_t verdicts);
/// Leaves on an engine what a call has left on its copy.
void LeaveTrace(MxExpression& engine, EngineTrace trace);

/// Tells whether the words of an engine have changed: equal marks mean equal words.
MxDictionarys::Stamp ContentOf(const MxExpression& engine) noexcept;
/// The same, but a table that was asked for in vain counts as well.
MxDictionarys::Stamp StampOf(const MxExpression& engine) noexcept;

}  // namespace ORKBASE
