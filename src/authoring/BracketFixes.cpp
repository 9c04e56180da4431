#include "authoring/BracketFixes.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

namespace ORKBASE {
namespace {

constexpr int kMostSought = 4;  // brackets whose end is looked for; the others close at the end

std::int32_t LastPlace(const Draft& draft) {
  return draft.Size() == 0 ? 0 : draft.End(draft.Size() - 1);
}

Remedy Closing(std::int32_t place) {
  return {kMsgFixAddMissing, u")", {{place, 0, u")"}}};
}

bool IsAlone(const Draft& draft, std::size_t word, std::u16string_view bracket) {
  return draft.IsSign(word, bracket) && draft.partners[word] == Draft::kAlone;
}

void TellOfSurplus(Workbench& bench) {
  const Draft& draft = bench.Now();
  for (std::size_t i = 0; i < draft.Size(); ++i) {
    if (!IsAlone(draft, i, u")")) continue;
    bench.Tell(draft.Offset(i), 1, kMsgSurplusBracket, {},
               {{kMsgFixTakeOutSurplus, u")", {{draft.Offset(i), 1, {}}}}});
  }
  bench.Mend();
}

/// The last open bracket, closed where the rule gets on best: in front of the word that cannot
/// stand, or at the end.
bool CloseLast(Workbench& bench) {
  const Draft& draft = bench.Now();
  std::size_t bracket = draft.Size();
  while (bracket > 0 && !IsAlone(draft, bracket - 1, u"(")) --bracket;
  if (bracket-- == 0) return false;
  const Outcome outcome = bench.Judge(draft);
  const std::size_t refused = draft.WordFrom(outcome.reach);
  std::vector<Remedy> remedies;
  if (outcome.kind == Outcome::kRefusedWord && refused > bracket && refused < draft.Size()) {
    remedies.push_back(Closing(draft.End(refused - 1)));
  }
  remedies.push_back(Closing(LastPlace(draft)));
  bench.Rank(remedies, false);
  remedies.resize(1);
  bench.Tell(draft.Offset(bracket), 1, kMsgOpenBracket, {}, remedies);
  bench.Mend();
  return true;
}

}  // namespace

void FindLoneBrackets(Workbench& bench) {
  TellOfSurplus(bench);
  for (int i = 0; i < kMostSought; ++i) {
    if (!CloseLast(bench)) return;
  }
  const Draft& draft = bench.Now();
  for (std::size_t i = 0; i < draft.Size(); ++i) {
    if (!IsAlone(draft, i, u"(")) continue;
    bench.Tell(draft.Offset(i), 1, kMsgOpenBracket, {}, {Closing(LastPlace(draft))});
  }
  bench.Mend();
}

}  // namespace ORKBASE
