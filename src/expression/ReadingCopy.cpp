#include "expression/ReadingCopy.h"

#include <utility>

namespace ORKBASE {

void MakeReadingCopy(MxExpression& copy, const MxExpression& source, std::shared_ptr<bool> asked) {
  copy = source;
  EngineAccess::Of(copy).dictionaries.ForbidAsking(std::move(asked));
}

std::uint64_t VerdictsOf(const MxExpression& engine) noexcept {
  return EngineAccess::Of(engine).verdicts;
}

void BeginTrace(MxExpression& copy) noexcept {
  EngineAccess::Of(copy).last.reset();
}

EngineTrace TraceOf(const MxExpression& copy, std::uint64_t verdicts) {
  const EngineState& state = EngineAccess::Of(copy);
  EngineTrace trace;
  trace.setsPair = state.verdicts != verdicts;
  if (trace.setsPair) {
    trace.number = copy.errNumber();
    trace.description = copy.errDescription();
    trace.error = state.error;
  }
  trace.last = state.last;
  trace.quotes = state.lexer.quotes;
  return trace;
}

void LeaveTrace(MxExpression& engine, EngineTrace trace) {
  EngineState& state = EngineAccess::Of(engine);
  if (trace.setsPair) {
    EngineAccess::SetErrorPair(engine, trace.number, std::move(trace.description));
    state.error = std::move(trace.error);
  }
  if (trace.last) state.last = std::move(trace.last);
  state.lexer.quotes = trace.quotes;
}

MxDictionarys::Stamp ContentOf(const MxExpression& engine) noexcept {
  return EngineAccess::Of(engine).dictionaries.ContentNow();
}

MxDictionarys::Stamp StampOf(const MxExpression& engine) noexcept {
  return EngineAccess::Of(engine).dictionaries.StampNow();
}

}  // namespace ORKBASE
