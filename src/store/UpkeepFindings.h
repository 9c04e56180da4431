// What is told of a rule of a store.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "RuleUpkeep.h"

namespace ORKBASE {

/// A message in the language of the thread, filled with texts.
std::u16string TextOf(std::int32_t message, std::initializer_list<std::u16string_view> texts);

UpkeepFinding FindingOf(UpkeepState state, std::int32_t message,
                        std::initializer_list<std::u16string_view> texts = {});
/// The place is that of the refused word.
UpkeepFinding FindingOf(UpkeepState state, const MxErrorRecord& error);

/// The worst first, else in the order in which they were found.
void SortByState(std::vector<UpkeepFinding>& findings);
/// Whether there is one of a state.
bool Holds(const std::vector<UpkeepFinding>& findings, UpkeepState state) noexcept;

}  // namespace ORKBASE
