#include "store/RowGuard.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/ChangeFailure.h"
#include "store/ValueCode.h"

#include <algorithm>

namespace ORKDB {
namespace {

constexpr std::u16string_view kIdName = u"id";

/// `npos` where there is no such column.
std::size_t FindColumn(const std::vector<std::u16string>& columns, std::u16string_view name) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (ORKBASE::EqualsIgnoringCase(columns[i], name)) return i;
  }
  return std::u16string::npos;
}

}  // namespace

std::u16string QueryOfOne(std::u16string_view select) {
  const std::size_t end = select.find_last_not_of(u" \t\r\n\f\v;");
  select = end == select.npos ? std::u16string_view() : select.substr(0, end + 1);
  // The line feed ends a comment behind the query.
  return u"select * from (" + std::u16string(select) + u"\n) orkrule_store where id = :id";
}

RowGuard::RowGuard(StoreConnection& connection, const ChangeSettings& settings,
                   const std::vector<std::u16string>& watched)
    : id_(1) {
  const auto plain = connection.Prepare(settings.select);
  if (!plain->Names().empty()) {
    throw ChangeFailure(ORKBASE::kMsgSelectHasValue, {plain->Names().front()});
  }
  std::vector<std::u16string> columns;
  try {
    query_ = connection.Prepare(QueryOfOne(settings.select));
    const auto rows = query_->Read(id_);
    columns = rows->Columns();
    while (rows->Next(row_)) {
    }
  } catch (const StoreFailure& failure) {
    if (failure.IsOutage() || IsInterference(failure, settings.store.server)) throw;
    throw ChangeFailure(ORKBASE::kMsgSelectNotNested, {failure.Text()});
  }
  FindColumns(columns, settings, watched);
}

void RowGuard::FindColumns(const std::vector<std::u16string>& columns,
                           const ChangeSettings& settings,
                           const std::vector<std::u16string>& watched) {
  for (const std::u16string& name : settings.guarded) {
    const std::size_t column = FindColumn(columns, name);
    if (column == name.npos) throw ChangeFailure(ORKBASE::kMsgNoGuardedColumn, {name});
    guarded_.push_back(column);
  }
  hashed_ = guarded_;
  for (const std::u16string& name : watched) {
    const std::size_t column = FindColumn(columns, name);
    if (column != name.npos && !ORKBASE::EqualsIgnoringCase(name, kIdName)) {
      hashed_.push_back(column);
    }
  }
  std::sort(hashed_.begin(), hashed_.end());
  hashed_.erase(std::unique(hashed_.begin(), hashed_.end()), hashed_.end());
}

RowGuard::Found RowGuard::Read(const StoreValue& id) {
  id_[0] = id;
  const auto rows = query_->Read(id_);
  if (!rows->Next(row_)) return kNone;
  return rows->Next(another_) ? kSeveral : kOne;
}

bool RowGuard::IsAsRead(const StoreRow& before) const noexcept {
  for (std::size_t i = 0; i < guarded_.size(); ++i) {
    if (!IsSame(row_[guarded_[i]], before[i])) return false;
  }
  return true;
}

std::uint64_t RowGuard::Hash() {
  bytes_.clear();
  for (const std::size_t column : hashed_) AppendValue(bytes_, row_[column]);
  return HashOf(bytes_);
}

}  // namespace ORKDB
