// Finds the message file beside the binary that holds this code (the shared library, or a program
// that was linked with the static one), maps it once and keeps it until the process ends.
#include "platform/MessageTexts.h"

#include "OrkPlatform.h"
#include "platform/MessageFile.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

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

/// The bytes of a regular file, empty when it cannot be mapped. They are never unmapped.
std::span<const std::byte> MapFile(const std::string& path) noexcept {
  // Not blocking, in case that something else than a file has this name.
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return {};
  struct stat status {};
  void* bytes = MAP_FAILED;
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
    const auto size = static_cast<std::size_t>(status.st_size);
    bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  }
  close(file);
  if (bytes == MAP_FAILED) return {};
  return {static_cast<const std::byte*>(bytes), static_cast<std::size_t>(status.st_size)};
}

MessageFile OpenMessageFile() {
  const std::string own = OwnPath();
  const std::size_t slash = own.rfind('/');
  if (slash == std::string::npos) return {};
  return MessageFile(MapFile(own.substr(0, slash + 1) + kFileName));
}

const MessageFile& ProcessMessages() {
  static const MessageFile file = OpenMessageFile();
  return file;
}

// Opened when the library is loaded: its path may be relative to a directory that the program
// leaves later.
[[maybe_unused]] const MessageFile& openedAtLoad = ProcessMessages();

}  // namespace

std::u16string LoadMessage(std::int32_t number, Language language) {
  return ProcessMessages().Text(number, language.wished, language.user);
}

std::u16string MessageText(std::int32_t number) {
  return LoadMessage(number);
}

}  // namespace ORKBASE
