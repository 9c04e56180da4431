#include "store/FileBytes.h"

#include <unistd.h>

#include <cerrno>

namespace ORKDB {

int WriteAt(int file, std::string_view bytes, std::int64_t offset) noexcept {
  while (!bytes.empty()) {
    const ssize_t count = pwrite(file, bytes.data(), bytes.size(), offset);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) return ENOSPC;
    bytes.remove_prefix(static_cast<std::size_t>(count));
    offset += count;
  }
  return 0;
}

int ReadAt(int file, std::string& bytes, std::int64_t offset, std::size_t& got) noexcept {
  got = 0;
  while (got < bytes.size()) {
    const ssize_t count = pread(file, bytes.data() + got, bytes.size() - got,
                                offset + static_cast<std::int64_t>(got));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) break;
    got += static_cast<std::size_t>(count);
  }
  return 0;
}

int SyncFile(int file) noexcept {
  while (fsync(file) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace ORKDB
