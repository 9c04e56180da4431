// A record is its size in 8 bytes, the number of guarded values, the id, those values, and the
// values of the update.
#include "store/ChangeSpool.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/ChangeFailure.h"
#include "store/FileBytes.h"
#include "store/ValueCode.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace ORKDB {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 16;
constexpr std::size_t kSizeBytes = sizeof(std::uint64_t);

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

int OpenUnnamed(const std::string& folder) {
  const int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_EXCL | O_CLOEXEC, 0600);
  if (file >= 0) return file;
  std::string name = folder + "/orkrule-XXXXXX";  // not every file system has files without names
  const int named = mkostemp(name.data(), O_CLOEXEC);
  if (named >= 0) unlink(name.c_str());
  return named;
}

}  // namespace

ChangeSpool::ChangeSpool() : folder_(TemporaryFolder()), file_(OpenUnnamed(folder_)) {
  if (file_ < 0) Fail(errno);
}

ChangeSpool::~ChangeSpool() {
  if (file_ >= 0) close(file_);
}

void ChangeSpool::Add(const StoreChange& change) {
  record_.clear();
  AppendValue(record_, static_cast<std::int64_t>(change.before.size()));
  AppendValue(record_, change.id);
  for (const StoreValue& value : change.before) AppendValue(record_, value);
  for (const StoreValue& value : change.values) AppendValue(record_, value);
  const std::uint64_t size = record_.size();
  char raw[kSizeBytes];
  std::memcpy(raw, &size, kSizeBytes);
  unwritten_.append(raw, kSizeBytes);
  unwritten_ += record_;
  ++count_;
  if (unwritten_.size() >= kPiece) WriteOut();
}

void ChangeSpool::WriteOut() {
  if (const int problem = WriteAt(file_, unwritten_, written_)) Fail(problem);
  written_ += static_cast<std::int64_t>(unwritten_.size());
  unwritten_.clear();
}

void ChangeSpool::Read(StoreChange& change) {
  if (!unwritten_.empty()) WriteOut();
  Fill(kSizeBytes);
  const char* at = read_.data() + (place_.offset - readAt_);
  std::uint64_t size = 0;
  std::memcpy(&size, at, kSizeBytes);
  Fill(kSizeBytes + size);
  at = read_.data() + (place_.offset - readAt_) + kSizeBytes;
  ValueReader reader(std::string_view(at, size));
  const StoreValue before = reader.Next();
  change.id = reader.Next();
  change.before.clear();
  change.values.clear();
  const auto* guarded = std::get_if<std::int64_t>(&before);
  for (std::int64_t i = 0; guarded != nullptr && i < *guarded && !reader.HasFailed(); ++i) {
    change.before.push_back(reader.Next());
  }
  while (!reader.IsAtEnd() && !reader.HasFailed()) change.values.push_back(reader.Next());
  if (guarded == nullptr || reader.HasFailed()) Fail(EIO);
  place_.offset += static_cast<std::int64_t>(kSizeBytes + size);
  ++place_.index;
}

/// Has `read_` hold so many bytes from the place on.
void ChangeSpool::Fill(std::size_t size) {
  const std::int64_t end = place_.offset + static_cast<std::int64_t>(size);
  if (end > written_) Fail(EIO);
  if (place_.offset >= readAt_ && end <= readAt_ + static_cast<std::int64_t>(read_.size())) return;
  read_.resize(size < kPiece ? kPiece : size);
  readAt_ = place_.offset;
  std::size_t got = 0;
  if (const int problem = ReadAt(file_, read_, readAt_, got)) Fail(problem);
  read_.resize(got);
  if (got < size) Fail(EIO);
}

void ChangeSpool::Fail(int number) const {
  throw ChangeFailure(ORKBASE::kMsgChangesNotKept,
                      {ORKBASE::Utf8ToWide(folder_), SystemText(number)});
}

}  // namespace ORKDB
