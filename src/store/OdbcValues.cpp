#include "store/OdbcValues.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/StoreRefusal.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <string_view>

namespace ORKDB {
namespace {

// The first piece holds almost every value, the following ones are large.
constexpr std::size_t kPieceUnits = 2048;
constexpr std::size_t kLargePieceUnits = 65536;
// Beyond it some databases take a text, or bytes, as a large object only.
constexpr std::size_t kLongestShortBytes = 4000;

/// What a column of whole numbers holds, if it is just how a number of 64 bits is written: unsigned
/// numbers may be larger, and a database without strict types may hold anything.
void ReadWhole(StoreValue& value) {
  const auto* const text = std::get_if<std::u16string>(&value);
  if (text == nullptr || text->size() > 20) return;
  char digits[20];
  std::transform(text->begin(), text->end(), digits,
                 [](char16_t unit) { return unit < 0x80 ? static_cast<char>(unit) : 'x'; });
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(digits, digits + text->size(), number);
  if (error == std::errc() && end == digits + text->size() && ORKBASE::Decimal(number) == *text) {
    value = number;
  }
}

/// Drivers write what ODBC calls a GUID in capital letters. A database whose type is named `uuid`
/// writes small ones; one that calls it otherwise is believed.
bool IsUuid(SQLHANDLE statement, SQLUSMALLINT column) {
  char16_t name[32] = {};
  const SQLRETURN result =
      SQLColAttributeW(statement, column, SQL_DESC_TYPE_NAME, name, sizeof(name), nullptr, nullptr);
  name[std::size(name) - 1] = 0;
  return SQL_SUCCEEDED(result) && ORKBASE::EqualsIgnoringCase(name, u"uuid");
}

void MakeSmall(StoreValue& value) {
  if (auto* const text = std::get_if<std::u16string>(&value)) *text = ORKBASE::ToLower(*text);
}

struct Binding {
  SQLSMALLINT shortType;
  SQLSMALLINT longType;
  std::size_t unit;
};

Binding BindingOf(SQLSMALLINT form) {
  switch (form) {
    case SQL_C_SBIGINT:
      return {SQL_BIGINT, SQL_BIGINT, 1};
    case SQL_C_DOUBLE:
      return {SQL_DOUBLE, SQL_DOUBLE, 1};
    case SQL_C_BINARY:
      return {SQL_VARBINARY, SQL_LONGVARBINARY, 1};
    default:
      return {SQL_WVARCHAR, SQL_WLONGVARCHAR, sizeof(char16_t)};
  }
}

}  // namespace

OdbcColumnKind KindOfColumn(SQLHANDLE statement, SQLUSMALLINT column, SQLSMALLINT type) {
  switch (type) {
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return OdbcColumnKind::kWhole;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return OdbcColumnKind::kFraction;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
      return OdbcColumnKind::kBytes;
    case SQL_GUID:
      return IsUuid(statement, column) ? OdbcColumnKind::kUuid : OdbcColumnKind::kText;
    default:
      return OdbcColumnKind::kText;
  }
}

OdbcReader::OdbcReader() : units_(kPieceUnits), bytes_(kPieceUnits) {}

bool OdbcReader::Read(SQLHANDLE statement, SQLUSMALLINT column, OdbcColumnKind kind,
                      StoreValue& value) {
  switch (kind) {
    case OdbcColumnKind::kFraction: {
      double fraction = 0;
      SQLLEN length = 0;
      const SQLRETURN result =
          SQLGetData(statement, column, SQL_C_DOUBLE, &fraction, sizeof(fraction), &length);
      if (!SQL_SUCCEEDED(result)) return false;
      if (length == SQL_NULL_DATA) {
        value = std::monostate();
      } else {
        value = fraction;
      }
      return true;
    }
    case OdbcColumnKind::kBytes:
      return ReadBytes(statement, column, value);
    case OdbcColumnKind::kWhole:
      if (!ReadText(statement, column, value)) return false;
      ReadWhole(value);
      return true;
    case OdbcColumnKind::kUuid:
      if (!ReadText(statement, column, value)) return false;
      MakeSmall(value);
      return true;
    default:
      return ReadText(statement, column, value);
  }
}

bool OdbcReader::ReadText(SQLHANDLE statement, SQLUSMALLINT column, StoreValue& value) {
  std::u16string text;
  for (std::size_t pieceUnits = kPieceUnits;; pieceUnits = kLargePieceUnits) {
    if (units_.size() < pieceUnits) units_.resize(pieceUnits);
    std::fill_n(units_.begin(), pieceUnits, u'\0');
    SQLLEN length = 0;
    const SQLRETURN result =
        SQLGetData(statement, column, SQL_C_WCHAR, units_.data(),
                   static_cast<SQLLEN>(pieceUnits * sizeof(char16_t)), &length);
    if (result == SQL_NO_DATA) break;
    if (!SQL_SUCCEEDED(result)) return false;
    if (length == SQL_NULL_DATA) {
      value = std::monostate();
      return true;
    }
    const bool isLast =
        length >= 0 && static_cast<std::size_t>(length) < pieceUnits * sizeof(char16_t);
    if (isLast) {
      text.append(units_.data(), static_cast<std::size_t>(length) / sizeof(char16_t));
      break;
    }
    // A driver does not cut a character in two, so a piece may end earlier than it might.
    std::size_t filled = pieceUnits - 1;
    while (filled > 0 && units_[filled - 1] == u'\0') --filled;
    text.append(units_.data(), filled);
    if (result == SQL_SUCCESS || filled == 0) break;
  }
  value = std::move(text);
  return true;
}

bool OdbcReader::ReadBytes(SQLHANDLE statement, SQLUSMALLINT column, StoreValue& value) {
  StoreBytes bytes;
  for (;;) {
    SQLLEN length = 0;
    const SQLRETURN result = SQLGetData(statement, column, SQL_C_BINARY, bytes_.data(),
                                        static_cast<SQLLEN>(bytes_.size()), &length);
    if (result == SQL_NO_DATA) break;
    if (!SQL_SUCCEEDED(result)) return false;
    if (length == SQL_NULL_DATA) {
      value = std::monostate();
      return true;
    }
    const bool isLast = length >= 0 && static_cast<std::size_t>(length) <= bytes_.size();
    const std::size_t filled = isLast ? static_cast<std::size_t>(length) : bytes_.size();
    bytes.insert(bytes.end(), bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(filled));
    if (isLast || result == SQL_SUCCESS) break;
    bytes_.resize(kLargePieceUnits);
  }
  value = std::move(bytes);
  return true;
}

bool OdbcParameter::Set(SQLHANDLE statement, SQLUSMALLINT index, const StoreValue& value) {
  if (const auto* const whole = std::get_if<std::int64_t>(&value)) {
    return Hold(statement, index, SQL_C_SBIGINT, whole, sizeof(*whole));
  }
  if (const auto* const fraction = std::get_if<double>(&value)) {
    return Hold(statement, index, SQL_C_DOUBLE, fraction, sizeof(*fraction));
  }
  if (const auto* const bytes = std::get_if<StoreBytes>(&value)) {
    return Hold(statement, index, SQL_C_BINARY, bytes->data(), bytes->size());
  }
  if (const auto* const text = std::get_if<std::u16string>(&value)) {
    if (HasHalfCharacter(*text)) Refuse(ORKBASE::kMsgStoreHalfCharacter);
    // Drivers take it for the end, and would keep the text without its rest.
    if (text->find(u'\0') != text->npos) Refuse(ORKBASE::kMsgStoreZeroInText);
    return Hold(statement, index, SQL_C_WCHAR, text->data(), text->size() * sizeof(char16_t));
  }
  // A NULL has no kind of its own: whatever is bound stays.
  if (form_ == 0 && !Hold(statement, index, SQL_C_WCHAR, u"", 0)) return false;
  length_ = SQL_NULL_DATA;
  return true;
}

bool OdbcParameter::Hold(SQLHANDLE statement, SQLUSMALLINT index, SQLSMALLINT form,
                         const void* data, std::size_t size) {
  length_ = static_cast<SQLLEN>(size);
  if (form == form_ && size <= held_.size()) {
    if (size > 0) std::memcpy(held_.data(), data, size);
    return true;
  }
  const Binding binding = BindingOf(form);
  held_.resize(std::max({size, held_.size(), sizeof(std::int64_t)}));
  if (size > held_.size() / 2 && size > sizeof(std::int64_t)) held_.resize(size * 2);
  if (size > 0) std::memcpy(held_.data(), data, size);
  form_ = 0;
  const bool isShort = held_.size() <= kLongestShortBytes;
  const SQLRETURN result = SQLBindParameter(
      statement, index, SQL_PARAM_INPUT, form, isShort ? binding.shortType : binding.longType,
      held_.size() / binding.unit, 0, held_.data(), static_cast<SQLLEN>(held_.size()), &length_);
  if (!SQL_SUCCEEDED(result)) return false;
  form_ = form;
  return true;
}

}  // namespace ORKDB
