// What several dialects have in common and the default dialect has not.
#pragma once

#include <string>
#include <string_view>

#include "translator/ReplacementMap.h"

namespace ORKBASE {

// clang-format off
/// The user functions of the business database, without the schema of the default dialect.
inline constexpr ReplacementRow kBareUserFunctions[] = {
    {u"fRandBetween",            u"fRandBetween"},
    {u"fUnixTimestamp",          u"fUnixTimestamp"},
    {u"fUnixTimestamp2Datetime", u"fUnixTimestamp2Datetime"},
    {u"fHMAC",                   u"fHMAC"},
    {u"fBase64Encode",           u"fBase64Encode"},
    {u"fVarbintohexstr",         u"fVarbintohexstr"},
    {u"fStringSplit",            u"fStringSplit"},
    {u"fStringDistinct",         u"fStringDistinct"},
    {u"fSHA256",                 u"fSHA256"},
    {u"fHmac2Base64",            u"fHmac2Base64"},
    {u"fMd5",                    u"fMd5"},
    {u"fUrlEncode",              u"fUrlEncode"},
};
// clang-format on

/// The name between double quotes; an empty one, and one that begins with a quote, stays.
inline std::u16string DoubleQuoted(std::u16string_view name) {
  if (name.empty() || name.front() == u'"') return std::u16string(name);
  return std::u16string(u"\"").append(name).append(u"\"");
}

}  // namespace ORKBASE
