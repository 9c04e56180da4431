#include "store/LedgerFile.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/ChangeFailure.h"
#include "store/FileBytes.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace ORKDB {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 16;
constexpr std::size_t kShortPiece = 256;  // most lines are shorter
constexpr std::string_view kBegin = R"({"run":")";

bool MayBeginLedger(std::string_view text) {
  const std::size_t size = std::min(kBegin.size(), text.size());
  return text.substr(0, size) == kBegin.substr(0, size);
}

}  // namespace

/// Walks over the lines of a file.
class LedgerFile::Lines {
 public:
  Lines(const LedgerFile& file, std::int64_t begin, std::size_t piece)
      : file_(file), piece_(piece), next_(begin), readAt_(begin) {}

  /// False at the end. What stands behind the last line feed is a line too, without `IsWhole`.
  bool Next() {
    begin_ = next_;
    std::size_t searched = 0;
    for (;;) {
      const std::string_view rest = Rest();
      const std::size_t end = rest.find('\n', searched);
      isWhole_ = end != rest.npos;
      if (isWhole_ || !ReadOn()) {
        const std::size_t size = isWhole_ ? end : rest.size();
        text_ = Rest().substr(0, size);
        next_ = begin_ + static_cast<std::int64_t>(size + (isWhole_ ? 1 : 0));
        return next_ > begin_;
      }
      searched = rest.size();
    }
  }

  std::int64_t Begin() const noexcept { return begin_; }
  std::string_view Text() const noexcept { return text_; }
  bool IsWhole() const noexcept { return isWhole_; }

 private:
  std::string_view Rest() const {
    return std::string_view(bytes_).substr(static_cast<std::size_t>(begin_ - readAt_));
  }

  /// Reads the next piece of the file; what was walked over goes.
  bool ReadOn() {
    bytes_.erase(0, static_cast<std::size_t>(begin_ - readAt_));
    readAt_ = begin_;
    std::string piece(std::max(piece_, bytes_.size()), '\0');
    std::size_t got = 0;
    const std::int64_t from = readAt_ + static_cast<std::int64_t>(bytes_.size());
    if (const int problem = ReadAt(file_.file_, piece, from, got)) file_.Fail(problem);
    bytes_.append(piece, 0, got);
    return got > 0;
  }

  const LedgerFile& file_;
  const std::size_t piece_;
  std::int64_t begin_ = 0;
  std::int64_t next_;
  std::string_view text_;
  bool isWhole_ = false;
  std::string bytes_;
  std::int64_t readAt_;
};

LedgerFile::LedgerFile(std::u16string_view path) : path_(path), name_(ORKBASE::WideToUtf8(path)) {
  try {
    Open();
  } catch (...) {
    if (file_ >= 0) close(file_);
    throw;
  }
}

LedgerFile::~LedgerFile() {
  close(file_);
}

void LedgerFile::Open() {
  file_ = open(name_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
  if (file_ < 0) Fail(errno);
  struct stat status = {};
  if (fstat(file_, &status) != 0) Fail(errno);
  if (!S_ISREG(status.st_mode)) Fail(EINVAL);
  if (flock(file_, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK) Fail(errno);
    throw ChangeFailure(ORKBASE::kMsgLedgerInUse, {path_});
  }
  SyncFolder();
}

/// A file that was just made is kept by its folder.
void LedgerFile::SyncFolder() const {
  const std::string folder = std::filesystem::path(name_).parent_path().string();
  const int file = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;  // a folder that nobody may list; the file itself is there
  SyncFile(file);
  close(file);
}

void LedgerFile::ReadAll(const Reader& reader) {
  Lines lines(*this, 0, kPiece);
  std::int64_t count = 0;
  std::int64_t bad = -1;  // where the first line begins that cannot be read
  std::int64_t badCount = 0;
  while (lines.Next()) {
    ++count;
    LedgerLine line;
    const bool isGood = lines.IsWhole() && ReadLedgerLine(lines.Text(), line);
    if (isGood && bad < 0) {
      reader(line, lines.Begin());
    } else if (bad < 0) {
      bad = lines.Begin();
      badCount = count;
      if (bad == 0 && !MayBeginLedger(lines.Text())) FailAsDamaged(badCount);
    } else if (isGood && line.kind == LedgerLine::kPrepared) {
      FailAsDamaged(badCount);  // what is before this was on the disk
    }
  }
  if (!CutAt(bad >= 0 ? bad : lines.Begin())) Fail(errno);
}

std::string LedgerFile::LineAt(std::int64_t offset) {
  Flush(false);
  Lines lines(*this, offset, kShortPiece);
  lines.Next();
  return std::string(lines.Text());
}

std::int64_t LedgerFile::End() const noexcept {
  return written_ + static_cast<std::int64_t>(unwritten_.size());
}

void LedgerFile::Append(const LedgerLine& line) {
  unwritten_ += TextOf(line);
  unwritten_ += '\n';
  if (unwritten_.size() >= kPiece) Flush(false);
}

void LedgerFile::Flush(bool sync) {
  if (const int problem = WriteAt(file_, unwritten_, written_)) Fail(problem);
  written_ += static_cast<std::int64_t>(unwritten_.size());
  unwritten_.clear();
  if (!sync) return;
  if (const int problem = SyncFile(file_)) Fail(problem);
}

bool LedgerFile::CutAt(std::int64_t end) noexcept {
  unwritten_.clear();
  written_ = end;
  return ftruncate(file_, end) == 0;
}

void LedgerFile::FailAsDamaged(std::int64_t count) const {
  throw ChangeFailure(ORKBASE::kMsgLedgerDamaged, {path_, ORKBASE::Decimal(count)});
}

void LedgerFile::Fail(int number) const {
  throw ChangeFailure(ORKBASE::kMsgLedgerUnusable, {path_, SystemText(number)});
}

}  // namespace ORKDB
