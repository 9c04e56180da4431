#include "store/SqliteValues.h"

#include "foundation/MessageNumbers.h"
#include "store/StoreRefusal.h"

#include <new>
#include <string_view>

namespace ORKDB {
namespace {

void ReadText(sqlite3_stmt* statement, int column, StoreValue& value) {
  const void* text = sqlite3_column_text16(statement, column);
  if (text == nullptr) throw std::bad_alloc();
  const auto bytes = static_cast<std::size_t>(sqlite3_column_bytes16(statement, column));
  const std::u16string_view units(static_cast<const char16_t*>(text), bytes / sizeof(char16_t));
  // A row that is used again keeps its memory.
  if (auto* const held = std::get_if<std::u16string>(&value)) {
    held->assign(units);
  } else {
    value.emplace<std::u16string>(units);
  }
}

void ReadBytes(sqlite3_stmt* statement, int column, StoreValue& value) {
  const auto* const bytes = static_cast<const std::byte*>(sqlite3_column_blob(statement, column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
  if (bytes == nullptr && size > 0) throw std::bad_alloc();
  value.emplace<StoreBytes>(bytes, bytes + size);
}

/// Binds a value by its kind.
class Binder {
 public:
  Binder(sqlite3_stmt* statement, int index, bool isWide)
      : statement_(statement), index_(index), isWide_(isWide) {}

  int operator()(std::monostate) const { return sqlite3_bind_null(statement_, index_); }
  int operator()(std::int64_t value) const { return sqlite3_bind_int64(statement_, index_, value); }
  int operator()(double value) const { return sqlite3_bind_double(statement_, index_, value); }

  int operator()(const std::u16string& text) const {
    if (!isWide_ && HasHalfCharacter(text)) Refuse(ORKBASE::kMsgStoreHalfCharacter);
    // SQLite takes a byte order mark off, and turns round what follows a mark that is turned.
    if (text.starts_with(u'\xFEFF') || text.starts_with(u'\xFFFE')) return Bind(u'\xFEFF' + text);
    return Bind(text);
  }

  int operator()(const StoreBytes& bytes) const {
    // A null pointer would be a NULL.
    if (bytes.empty()) return sqlite3_bind_zeroblob(statement_, index_, 0);
    return sqlite3_bind_blob64(statement_, index_, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
  }

 private:
  int Bind(std::u16string_view text) const {
    return sqlite3_bind_text64(statement_, index_, reinterpret_cast<const char*>(text.data()),
                               text.size() * sizeof(char16_t), SQLITE_TRANSIENT, SQLITE_UTF16);
  }

  sqlite3_stmt* statement_;
  int index_;
  bool isWide_;
};

}  // namespace

void ReadColumn(sqlite3_stmt* statement, int column, StoreValue& value) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
      value = static_cast<std::int64_t>(sqlite3_column_int64(statement, column));
      break;
    case SQLITE_FLOAT:
      value = sqlite3_column_double(statement, column);
      break;
    case SQLITE_TEXT:
      ReadText(statement, column, value);
      break;
    case SQLITE_BLOB:
      ReadBytes(statement, column, value);
      break;
    default:
      value = std::monostate();
  }
}

bool BindValue(sqlite3_stmt* statement, int index, const StoreValue& value, bool isWide) {
  return std::visit(Binder(statement, index, isWide), value) == SQLITE_OK;
}

}  // namespace ORKDB
