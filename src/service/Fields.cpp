#include "service/Fields.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace ORKBASE {
namespace {

struct TypeRow {
  FieldType type;
  std::u16string_view name;
  std::u16string_view wanted;  // how a refusal speaks of it
};

// clang-format off
constexpr TypeRow kTypes[] = {
    {FieldType::kText,     u"text",     u"a text"},
    {FieldType::kInteger,  u"integer",  u"an integer of 32 bits"},
    {FieldType::kBoolean,  u"boolean",  u"true or false"},
    {FieldType::kTexts,    u"texts",    u"a list of texts"},
    {FieldType::kIntegers, u"integers", u"a list of integers of 32 bits"},
    {FieldType::kRecord,   u"record",   u"a record"},
    {FieldType::kRecords,  u"records",  u"a list of records"},
};
// clang-format on

const TypeRow& RowOf(FieldType type) noexcept {
  return kTypes[static_cast<std::size_t>(type)];
}

constexpr bool RowsStandInTheirOrder() {
  std::size_t at = 0;
  for (const TypeRow& row : kTypes) {
    if (row.type != static_cast<FieldType>(at++)) return false;
  }
  return true;
}
static_assert(RowsStandInTheirOrder());

bool IsOf32Bits(std::int64_t number) noexcept {
  using Limits = std::numeric_limits<std::int32_t>;
  return number >= Limits::min() && number <= Limits::max();
}

bool AreIntegers(const Value& value) noexcept {
  // Of an empty list nobody can tell what it is a list of.
  if (const Texts* const texts = std::get_if<Texts>(&value)) return texts->empty();
  const Integers* const numbers = std::get_if<Integers>(&value);
  return numbers != nullptr && std::all_of(numbers->begin(), numbers->end(), IsOf32Bits);
}

bool IsOfType(const Value& value, FieldType type) noexcept {
  switch (type) {
    case FieldType::kText:
      return std::holds_alternative<std::u16string>(value);
    case FieldType::kBoolean:
      return std::holds_alternative<bool>(value);
    case FieldType::kTexts:
      return std::holds_alternative<Texts>(value);
    case FieldType::kIntegers:
      return AreIntegers(value);
    case FieldType::kRecord:
      return std::holds_alternative<Record>(value);
    case FieldType::kRecords:
      return std::holds_alternative<Records>(value);
    case FieldType::kInteger:
      break;
  }
  const std::int64_t* const number = std::get_if<std::int64_t>(&value);
  return number != nullptr && IsOf32Bits(*number);
}

[[noreturn]] void Refuse(const FieldIn& field, std::u16string_view why) {
  std::u16string what = u"the field \"";
  what.append(field.name.begin(), field.name.end()).append(u"\" ").append(why);
  throw BadRequest{std::move(what)};
}

}  // namespace

std::u16string_view NameOf(FieldType type) noexcept {
  return RowOf(type).name;
}

void Add(Record& record, std::string_view name, Value value) {
  record.push_back({name, std::move(value)});
}

Value DefaultOf(const FieldIn& field) {
  struct {
    Value operator()(Required) const { return {}; }
    Value operator()(Optional) const { return {}; }
    Value operator()(EmptyList) const { return Integers{}; }
    Value operator()(bool value) const { return value; }
    Value operator()(std::int32_t value) const { return std::int64_t{value}; }
    Value operator()(std::u16string_view value) const { return std::u16string(value); }
  } const make;
  return std::visit(make, field.otherwise);
}

void Request::Add(std::string name, Value value) {
  given_.push_back({std::move(name), std::move(value)});
}

Value Request::Take(const FieldIn& field) {
  for (auto given = given_.rbegin(); given != given_.rend(); ++given) {
    if (given->name != field.name) continue;
    if (IsOfType(given->value, field.type)) {
      const bool isEmptyList =
          field.type == FieldType::kIntegers && std::holds_alternative<Texts>(given->value);
      return isEmptyList ? Integers{} : std::move(given->value);
    }
    Refuse(field, u"has to be " + std::u16string(RowOf(field.type).wanted));
  }
  if (std::holds_alternative<Required>(field.otherwise)) Refuse(field, u"is missing");
  return DefaultOf(field);
}

}  // namespace ORKBASE
