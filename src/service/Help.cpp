// `help`: the table of calls as an answer.
#include "service/Calls.h"
#include "service/Handlers.h"

#include <utility>

namespace ORKBASE {
namespace {

std::u16string Widened(std::string_view name) {
  return {name.begin(), name.end()};
}

Record Told(const FieldIn& field) {
  Record told = {{"name", Widened(field.name)},
                 {"type", std::u16string(NameOf(field.type))},
                 {"required", std::holds_alternative<Required>(field.otherwise)}};
  Value otherwise = DefaultOf(field);
  const bool hasDefault = !std::holds_alternative<std::monostate>(otherwise);
  if (hasDefault) Add(told, "default", std::move(otherwise));
  return told;
}

Record Told(const FieldOut& field) {
  return {{"name", Widened(field.name)}, {"type", std::u16string(NameOf(field.type))}};
}

Record Told(const CallRow& row);

template <typename Rows>
Records ToldEach(const Rows& rows) {
  Records told;
  for (const auto& row : rows) told.push_back(Told(row));
  return told;
}

Record Told(const CallRow& row) {
  return {{"name", Widened(row.name)}, {"in", ToldEach(row.in)}, {"out", ToldEach(row.out)}};
}

}  // namespace

void RunHelp(Call& call) {
  call.Give("operations", ToldEach(AllCalls()));
}

}  // namespace ORKBASE
