#include "store/UpkeepFindings.h"

#include "foundation/MessageNumbers.h"
#include "platform/ErrorTexts.h"

#include <algorithm>
#include <array>

namespace ORKBASE {
namespace {

// clang-format off
constexpr std::array<UpkeepState, 7> kWorstFirst = {
    kRefusedState,
    kBrokenState,
    kUnreadableState,
    kNotTranslatableState,
    kChangedState,
    kNoticeState,
    kWellState,
};
// clang-format on

auto RankOf(const UpkeepFinding& finding) noexcept {
  return std::find(kWorstFirst.begin(), kWorstFirst.end(), finding.state);
}

}  // namespace

std::u16string TextOf(std::int32_t message, std::initializer_list<std::u16string_view> texts) {
  return DescriptionOf(MakeError(kRuleCause, message, texts));
}

UpkeepFinding FindingOf(UpkeepState state, std::int32_t message,
                        std::initializer_list<std::u16string_view> texts) {
  UpkeepFinding finding;
  finding.state = state;
  finding.number = message;
  finding.text = TextOf(message, texts);
  return finding;
}

UpkeepFinding FindingOf(UpkeepState state, const MxErrorRecord& error) {
  UpkeepFinding finding;
  finding.state = state;
  finding.number = error.message;
  finding.text = ErrorText(error);
  finding.offset = error.offset;
  finding.length = error.length;
  if (finding.text.empty()) {  // a word with its table behind it is refused without a reason
    finding.number = kMsgUnknownWord;
    finding.text = TextOf(kMsgUnknownWord, {error.word});
  }
  // A word that begins with its full stop names no table that could be missed.
  if (!error.behind.empty() && !error.word.starts_with(u'.')) {
    finding.text.append(u" ").append(ErrorText(error.behind.front()));
  }
  return finding;
}

void SortByState(std::vector<UpkeepFinding>& findings) {
  std::stable_sort(
      findings.begin(), findings.end(),
      [](const UpkeepFinding& a, const UpkeepFinding& b) { return RankOf(a) < RankOf(b); });
}

bool Holds(const std::vector<UpkeepFinding>& findings, UpkeepState state) noexcept {
  return std::any_of(findings.begin(), findings.end(),
                     [state](const UpkeepFinding& finding) { return finding.state == state; });
}

}  // namespace ORKBASE
