// Reads a rule again by its id, within the user's own query, just before it is replaced.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "StoreChanges.h"

namespace ORKDB {

/// The user's query as one of a single rule, `:id`.
std::u16string QueryOfOne(std::u16string_view select);

class RowGuard {
 public:
  /// Tries the query. `watched` are names of values of the update: those that are columns too tell
  /// whether the update was done.
  RowGuard(StoreConnection& connection, const ChangeSettings& settings,
           const std::vector<std::u16string>& watched);

  enum Found : std::int32_t { kNone, kOne, kSeveral };
  /// Reads the row of an id, where there is one.
  Found Read(const StoreValue& id);
  /// Whether the guarded columns of the row are those.
  bool IsAsRead(const StoreRow& before) const noexcept;
  /// A short number for the guarded and watched columns of the row.
  std::uint64_t Hash();

 private:
  void FindColumns(const std::vector<std::u16string>& columns, const ChangeSettings& settings,
                   const std::vector<std::u16string>& watched);

  std::unique_ptr<StoreStatement> query_;
  std::vector<std::size_t> guarded_;
  std::vector<std::size_t> hashed_;
  StoreRow row_;
  StoreRow another_;
  StoreRow id_;
  std::string bytes_;
};

}  // namespace ORKDB
