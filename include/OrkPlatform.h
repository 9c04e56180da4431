// What stands in for the desktop system around the engine: the language of a thread, the message
// texts, and where a rule was refused.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "MxExpression.h"
#include "OrkExport.h"

namespace ORKBASE {

/// Sets the message language of the calling thread by a BCP 47 tag such as u"zh-CN"; an empty tag
/// takes the wish back. Message texts follow at once, the vocabulary of an `MxExpression` is in the
/// language of its construction. Without a wish the thread's POSIX locale decides.
ORKRULE_EXPORT void SetThreadLanguage(std::u16string_view tag);

/// The tag set for the calling thread, else that of its POSIX locale, empty for "C" and "POSIX".
ORKRULE_EXPORT std::u16string ThreadLanguage();

/// Text of a message number in the language of the calling thread, empty where there is none.
ORKRULE_EXPORT std::u16string MessageText(std::int32_t number);

}  // namespace ORKBASE
