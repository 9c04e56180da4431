// What stands in for the desktop system around the engine: the language of a thread, the message
// texts, and the versions of the libraries at work.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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

/// Where the message file was looked for; read once, when the library was loaded. Empty where the
/// library cannot tell where it lies itself.
ORKRULE_EXPORT std::u16string MessageFilePath();

/// BCP 47 tags of the languages of the message file, such as u"zh-CN", in its order; none where
/// there is no such file.
ORKRULE_EXPORT std::vector<std::u16string> MessageLanguages();

/// Whether the message file has texts in the language of a tag, be it that of another country.
ORKRULE_EXPORT bool HasMessageLanguage(std::u16string_view tag);

/// A library and its version.
struct LibraryVersion {
  std::u16string_view name;  ///< lives as long as the process
  std::u16string version;    ///< empty where the library does not tell it
};

/// This library, then those that it works with, as they are loaded.
ORKRULE_EXPORT std::vector<LibraryVersion> LibraryVersions();

}  // namespace ORKBASE
