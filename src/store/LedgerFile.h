// The file of a ledger: lines that are added at its end, and reach the disk when that matters.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace ORKDB {

/// A line of a ledger.
struct LedgerLine {
  enum Kind : std::int32_t {
    kWrote,      ///< a change of the batch that is being told
    kLeft,       ///< a rule that it leaves alone
    kPrepared,   ///< the batch is told, its commit comes
    kCommitted,  ///< it is committed
    kWithdrawn,  ///< it was not
    kFinished,   ///< the run came to its end
    kForgotten,  ///< all that stands before is void
  };
  Kind kind = kWrote;
  std::string_view run = {};  ///< sixteen digits
  std::string_view id = {};   ///< as `IdText` has it
  std::uint64_t was = 0;
  std::uint64_t is = 0;
};

/// Without line feed.
std::string TextOf(const LedgerLine& line);
/// False for what `TextOf` does not make.
bool ReadLedgerLine(std::string_view text, LedgerLine& line);

/// Throws `StoreFailure`.
class LedgerFile {
 public:
  /// Opens the file or makes it, and keeps others out of it for the time of the object.
  explicit LedgerFile(std::u16string_view path);
  LedgerFile(const LedgerFile&) = delete;
  LedgerFile& operator=(const LedgerFile&) = delete;
  ~LedgerFile();

  using Reader = std::function<void(const LedgerLine& line, std::int64_t offset)>;
  /// Reads all lines, and cuts off what an interrupted run left unfinished at the end.
  void ReadAll(const Reader& reader);
  std::string LineAt(std::int64_t offset);

  std::int64_t End() const noexcept;
  void Append(const LedgerLine& line);
  /// What was appended is written, and with `sync` on the disk.
  void Flush(bool sync);
  /// Takes back what was appended behind a place. False where the system refuses.
  bool CutAt(std::int64_t end) noexcept;

 private:
  class Lines;
  void Open();
  void SyncFolder() const;
  [[noreturn]] void FailAsDamaged(std::int64_t count) const;
  [[noreturn]] void Fail(int number) const;

  std::u16string path_;
  std::string name_;
  int file_ = -1;
  std::int64_t written_ = 0;
  std::string unwritten_;
};

}  // namespace ORKDB
