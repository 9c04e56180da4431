#include "authoring/Operands.h"

namespace ORKBASE {
namespace {

bool IsValue(const Draft& draft, std::size_t word) {
  if (word >= draft.Size()) return false;
  const std::int32_t symbol = draft.Word(word).symbol;
  if (draft.IsRefused(word)) return true;
  return symbol < kOpSumSymbol || symbol == kFunctionSymbol || symbol == kCAXEnumSymbol;
}

}  // namespace

bool IsBetweenValues(const Draft& draft, std::size_t word) {
  if (word >= draft.Size() || draft.IsRefused(word)) return false;
  const std::int32_t symbol = draft.Word(word).symbol;
  return symbol == kOpSumSymbol || symbol == kOpMultiSymbol || symbol == kOpComposeSymbol;
}

bool IsCall(const Draft& draft, std::size_t word) {
  if (word + 1 >= draft.Size() || !draft.IsSign(word + 1, u"(")) return false;
  return draft.IsRefused(word) || draft.Word(word).symbol == kFunctionSymbol;
}

std::size_t ValueEnd(const Draft& draft, std::size_t first, bool joined) {
  for (std::size_t i = first;; i += 2) {
    while (draft.IsSign(i, u"-")) ++i;
    const std::size_t bracket = IsCall(draft, i) ? i + 1 : i;
    if (draft.IsSign(bracket, u"(")) {
      if (draft.partners[bracket] == Draft::kAlone) return kNoWord;
      i = static_cast<std::size_t>(draft.partners[bracket]);
    } else if (!IsValue(draft, i)) {
      return kNoWord;
    }
    if (!joined || !IsBetweenValues(draft, i + 1)) return i;
  }
}

std::size_t ValueBegin(const Draft& draft, std::size_t last, bool joined) {
  for (std::size_t i = last;; i -= 2) {
    if (draft.IsSign(i, u")")) {
      if (draft.partners[i] == Draft::kAlone) return kNoWord;
      i = static_cast<std::size_t>(draft.partners[i]);
      if (i > 0 && IsCall(draft, i - 1)) --i;
    } else if (!IsValue(draft, i)) {
      return kNoWord;
    }
    if (!joined || i < 2 || !IsBetweenValues(draft, i - 1)) return i;
  }
}

std::vector<std::size_t> CommasOf(const Draft& draft, std::size_t bracket, std::size_t most) {
  std::vector<std::size_t> commas;
  if (draft.partners[bracket] == Draft::kAlone) return commas;
  const auto end = static_cast<std::size_t>(draft.partners[bracket]);
  for (std::size_t i = bracket + 1; i < end && commas.size() < most; ++i) {
    if (draft.IsSign(i, u"(") && draft.partners[i] != Draft::kAlone) {
      i = static_cast<std::size_t>(draft.partners[i]);
    } else if (draft.IsSign(i, u",")) {
      commas.push_back(i);
    }
  }
  return commas;
}

}  // namespace ORKBASE
