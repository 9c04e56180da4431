// The message texts of this process: what the rest of the engine knows of the message file.
#pragma once

#include <cstdint>
#include <string>

#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// Text of a message number (see foundation/MessageNumbers.h) in a language, empty where there is
/// none. Read anew at each call, since threads differ in language and may change it. Never fails:
/// without a message file every text is empty.
std::u16string LoadMessage(std::int32_t number, Language language = CurrentLanguage());

}  // namespace ORKBASE
