#include "authoring/RefusalWords.h"

#include "authoring/CallForms.h"
#include "authoring/Operands.h"
#include "authoring/WordKinds.h"
#include "expression/ExpressionState.h"
#include "foundation/MessageNumbers.h"

#include <algorithm>

namespace ORKBASE {
namespace {

constexpr MXRULE_DATATYPE kValueTypes[] = {kNumDataType, kStrDataType, kDateDataType, kPicDataType,
                                           kLinkDataType};

bool Parses(Workbench& bench, const Draft& draft, MXRULE_DATATYPE type) {
  std::u16string document;
  MxErrorRecord error;
  std::int32_t refused = -1;
  return bench.call.Engine().parser.ParseExpr(type, draft.reading.words, document, error, refused);
}

/// An open bracket around a place, and how many commas stand between.
struct OpenCall {
  std::size_t bracket = kNoWord;
  std::size_t commas = 0;
};

OpenCall CallAround(const Draft& draft, std::size_t word) {
  OpenCall call;
  for (std::size_t i = word; i-- > 0;) {
    if (draft.IsSign(i, u")") && draft.partners[i] != Draft::kAlone) {
      i = static_cast<std::size_t>(draft.partners[i]);
    } else if (draft.IsSign(i, u"(")) {
      call.bracket = i;
      return call;
    } else if (draft.IsSign(i, u",")) {
      ++call.commas;
    }
  }
  return call;
}

/// The call that a rule is refused in, at one of its commas or at its end.
struct RefusedCall {
  std::size_t function = kNoWord;
  std::size_t given = 0;                   ///< arguments
  bool takesMore = false;                  ///< there is a form with more of them
  const FormParameter* missing = nullptr;  ///< the next that has to stand there
};

RefusedCall FindCall(const Draft& draft, std::size_t refused) {
  RefusedCall found;
  const OpenCall call = CallAround(draft, refused);
  if (call.bracket == kNoWord || call.bracket == 0) return found;
  const std::size_t function = call.bracket - 1;
  if (draft.IsRefused(function) || draft.Word(function).symbol != kFunctionSymbol) return found;
  found.function = function;
  found.given = refused == call.bracket + 1 ? 0 : call.commas + 1;
  for (const CallForm& form : FormsOf(draft.Word(function).primary)) {
    const auto& parameters = form.parameters;
    const bool isLonger = parameters.size() > found.given;
    found.takesMore =
        found.takesMore || isLonger || (!parameters.empty() && parameters.back().repeats);
    if (isLonger && !found.missing && !parameters[found.given].optional) {
      found.missing = &parameters[found.given];
    }
  }
  return found;
}

constexpr std::int32_t kNeeds[] = {kMsgNeedsFirst, kMsgNeedsSecond, kMsgNeedsThird};

}  // namespace

std::u16string MixUpText(Workbench& bench, const Draft& draft) {
  const auto told = [&](std::int32_t is, std::int32_t expected) {
    return bench.call.Text(kMsgOtherTypeExpected,
                           {bench.call.Text(PhraseOf(is)), bench.call.Text(PhraseOf(expected))});
  };
  const auto& refusals = draft.reading.refusals;
  const auto isRefused = [](const MxErrorRecord& error) { return error.cause != kNoCause; };
  if (draft.Size() == 0 || std::any_of(refusals.begin(), refusals.end(), isRefused)) return {};
  if (bench.type != kLogicDataType) {
    return Parses(bench, draft, kLogicDataType) ? told(kLogicDataType, bench.type)
                                                : std::u16string();
  }
  for (const MXRULE_DATATYPE type : kValueTypes) {
    if (Parses(bench, draft, type)) return told(type, kLogicDataType);
  }
  return {};
}

bool LacksArgument(const Draft& draft, std::size_t refused) {
  return draft.IsSign(refused, u")") && FindCall(draft, refused).missing != nullptr;
}

void TellOfArguments(Workbench& bench, const Draft& draft, std::size_t refused) {
  if (!draft.IsSign(refused, u")") && !draft.IsSign(refused, u",")) return;
  const RefusedCall call = FindCall(draft, refused);
  if (call.function == kNoWord) return;
  const std::u16string_view name = draft.Word(call.function).outDesc;
  const std::int32_t from = draft.Offset(call.function);
  const std::int32_t length = draft.End(call.function) - from;
  if (draft.IsSign(refused, u",")) {
    if (!call.takesMore) bench.Tell(from, length, kMsgTooManyArguments, {name}, {});
  } else if (call.missing) {
    const std::int32_t number =
        call.given < std::size(kNeeds) ? kNeeds[call.given] : kMsgNeedsAnother;
    bench.Tell(from, length, number,
               {name, ParameterTypeName(*call.missing, bench.call.TextLanguage())}, {});
  }
}

}  // namespace ORKBASE
