// From error records to the texts that people read, and the short ways to make records.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "MxErrorRecord.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// The number of nearly every error of this library; what counts is the text.
inline constexpr std::int32_t kOwnError = -1;

/// A record with the number -1 and a message of the catalogue, filled with texts.
MxErrorRecord MakeError(MXRULE_ERROR_CAUSE cause, std::int32_t message,
                        std::initializer_list<std::u16string_view> texts = {});

/// The record's own text, and behind it its message filled with its arguments.
std::u16string DescriptionOf(const MxErrorRecord& error, Language language = CurrentLanguage());

/// The same, with the word as it stands in the rule, and with what is behind the error where that
/// is the database.
std::u16string ErrorTextIn(const MxErrorRecord& error, Language language);

}  // namespace ORKBASE
