// Failures of writing changes back: those that are told in this library's own words, and those
// after which the same work may be tried again.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "RuleStore.h"

namespace ORKDB {

/// A refusal with a message of the catalogue, filled with texts.
StoreFailure ChangeFailure(std::int32_t message, std::initializer_list<std::u16string_view> texts);

/// What the system says of a number of `errno`.
std::u16string SystemText(int number);

/// Whether another transaction stood in the way and ours was taken back for it, so that the same
/// changes may well go through a moment later.
bool IsInterference(const StoreFailure& failure, std::u16string_view server) noexcept;

}  // namespace ORKDB
