// Finds the message file beside the binary that holds this code (the shared library, or a program
// that was linked with the static one), reads it once and keeps it until the process ends.
#include "platform/MessageTexts.h"

#include "OrkPlatform.h"
#include "foundation/Text.h"
#include "platform/MessageFile.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace ORKBASE {
namespace {

constexpr const char* kFileName = "Hearth.resource.dll";

/// Path of the binary with this code, without symbolic links; empty when it cannot be told.
std::string OwnPath() {
  Dl_info info{};
  link_map* loaded = nullptr;
  void* const own = reinterpret_cast<void*>(&OwnPath);
  if (dladdr1(own, &info, reinterpret_cast<void**>(&loaded), RTLD_DL_LINKMAP) == 0) return {};
  // The main program has no name in the list of what is loaded, and its first argument may be any.
  const bool isProgram = loaded == nullptr || loaded->l_name == nullptr || *loaded->l_name == '\0';
  const char* const name = isProgram ? "/proc/self/exe" : loaded->l_name;
  const std::unique_ptr<char, decltype(&std::free)> path(realpath(name, nullptr), &std::free);
  return path ? path.get() : "";
}

using FilePtr = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

/// A regular file, null for anything else of this name.
FilePtr OpenFile(const std::string& path) noexcept {
  // Not blocking, in case that something else than a file has this name.
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat status {};
  const bool regular = file >= 0 && fstat(file, &status) == 0 && S_ISREG(status.st_mode);
  FilePtr opened(regular ? fdopen(file, "rb") : nullptr, &std::fclose);
  if (file >= 0 && !opened) close(file);
  return opened;
}

/// The bytes of a regular file, empty when it cannot be read. Not mapped: a file that is replaced
/// in place must not pull them away. They are never freed, since texts are asked for until the
/// process ends.
std::span<const std::byte> ReadFile(const std::string& path) {
  const FilePtr file = OpenFile(path);
  if (!file) return {};
  std::vector<std::byte> bytes;
  std::array<std::byte, 4096> piece;
  while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), file.get())) {
    bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(size));
  }
  auto* const kept = new std::byte[bytes.size()];
  std::copy(bytes.begin(), bytes.end(), kept);
  return {kept, bytes.size()};
}

/// The message file of this process, and where it lies.
struct OpenedFile {
  std::string path;
  MessageFile file;
};

OpenedFile OpenMessageFile() {
  const std::string own = OwnPath();
  const std::size_t slash = own.rfind('/');
  if (slash == std::string::npos) return {};
  const std::string path = own.substr(0, slash + 1) + kFileName;
  return {path, MessageFile(ReadFile(path))};
}

const OpenedFile& ProcessMessages() {
  static const OpenedFile opened = OpenMessageFile();
  return opened;
}

// Opened when the library is loaded: its path may be relative to a directory that the program
// leaves later.
[[maybe_unused]] const OpenedFile& openedAtLoad = ProcessMessages();

}  // namespace

std::u16string LoadMessage(std::int32_t number, Language language) {
  return ProcessMessages().file.Text(number, language.wished, language.user);
}

std::u16string MessageText(std::int32_t number) {
  return LoadMessage(number);
}

std::u16string MessageFilePath() {
  return Utf8ToWide(ProcessMessages().path);
}

std::vector<std::u16string> MessageLanguages() {
  std::vector<std::u16string> tags;
  for (const LanguageId language : ProcessMessages().file.Languages()) {
    std::u16string tag = TagOfLanguage(language);
    if (!tag.empty()) tags.push_back(std::move(tag));
  }
  return tags;
}

bool HasMessageLanguage(std::u16string_view tag) {
  const LanguageId wished = PrimaryLanguage(LanguageOfTag(tag));
  const std::vector<LanguageId> languages = ProcessMessages().file.Languages();
  return wished != 0 && std::any_of(languages.begin(), languages.end(), [wished](LanguageId each) {
           return PrimaryLanguage(each) == wished;
         });
}

}  // namespace ORKBASE
