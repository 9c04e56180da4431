// Values of a store as bytes in a file, as short numbers to compare them by, and as texts that name
// a rule in a ledger.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "RuleStore.h"

namespace ORKDB {

/// 64-bit FNV-1a.
inline constexpr std::uint64_t kHashBasis = 0xcbf29ce484222325ULL;
std::uint64_t HashOf(std::string_view bytes, std::uint64_t basis = kHashBasis) noexcept;
/// Sixteen digits.
std::string HexOf(std::uint64_t number);

/// Adds a value to bytes; no two values have the same bytes.
void AppendValue(std::string& bytes, const StoreValue& value);

/// Reads what `AppendValue` wrote. Where bytes are missing it has failed, and gives NULL.
class ValueReader {
 public:
  explicit ValueReader(std::string_view bytes) noexcept : bytes_(bytes) {}
  StoreValue Next();
  bool IsAtEnd() const noexcept { return bytes_.empty(); }
  bool HasFailed() const noexcept { return failed_; }

 private:
  std::string_view Take(std::uint64_t size) noexcept;
  std::uint64_t TakeNumber() noexcept;

  std::string_view bytes_;
  bool failed_ = false;
};

/// A value as JSON in ASCII, for which every collation of a database tells two values apart:
/// capitals too are written as `\u0041`. Bytes are `{"bytes":"00ff"}`.
std::string IdText(const StoreValue& id);
/// The same where it fits a column of the ledger, else its length and two hashes.
std::string ShortIdText(const StoreValue& id);
/// The value of an `IdText`. False for anything else.
bool ReadIdText(std::string_view text, StoreValue& id);

}  // namespace ORKDB
