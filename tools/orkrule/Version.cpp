#include "Version.h"

#include "DidYouMean.h"
#include "Text.h"

#include "OrkPlatform.h"

#include <vector>

namespace ORKTOOL {
namespace {

std::string MessageFileText() {
  std::vector<std::string> tags;
  for (const std::u16string& tag : ORKBASE::MessageLanguages()) tags.push_back(ToUtf8(tag));
  const std::string path = ToUtf8(ORKBASE::MessageFilePath());
  if (tags.empty()) return "none at " + path;
  return path + " (" + Joined(tags, ", ") + ")";
}

}  // namespace

std::string VersionText() {
  const std::vector<ORKBASE::LibraryVersion> versions = ORKBASE::LibraryVersions();
  std::string text = "orkrule " + ToUtf8(versions.front().version) + "\n";
  text.append("messages: ").append(MessageFileText()).append("\nlibraries:");
  for (std::size_t i = 1; i < versions.size(); ++i) {
    text.append(i == 1 ? " " : ", ").append(ToUtf8(versions[i].name));
    text.append(" ").append(ToUtf8(versions[i].version));
  }
  return text;
}

}  // namespace ORKTOOL
