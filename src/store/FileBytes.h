// Bytes at a place of an open file: a short read or write, or one that a signal broke off, goes on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ORKDB {

/// 0, or the number of `errno`.
int WriteAt(int file, std::string_view bytes, std::int64_t offset) noexcept;
/// Fills `bytes` as far as the file has any; `got` is how many it had.
int ReadAt(int file, std::string& bytes, std::int64_t offset, std::size_t& got) noexcept;
/// Waits until what was written is on the disk.
int SyncFile(int file) noexcept;

}  // namespace ORKDB
