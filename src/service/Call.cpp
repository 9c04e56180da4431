#include "service/Call.h"

#include "service/Calls.h"

#include <algorithm>

namespace ORKBASE {

NamedEngine& KnownEngine(const Engines& engines, const std::u16string& name) {
  const auto found = engines.find(name);
  if (found == engines.end()) throw BadRequest{u"there is no object \"" + name + u"\""};
  return *found->second;
}

Call::Call(const CallRow& row, Request& request, Engines& engines, const std::u16string& object,
           const Texts* wanted)
    : fields_(row.in), engines_(engines), object_(object), wanted_(wanted) {
  values_.reserve(fields_.size());
  for (const FieldIn& field : fields_) values_.push_back(request.Take(field));
  answer_.reserve(row.out.size());
}

const std::u16string& Call::Text(std::string_view name) const {
  return std::get<std::u16string>(ValueOf(name));
}

std::int32_t Call::Integer(std::string_view name) const {
  return static_cast<std::int32_t>(std::get<std::int64_t>(ValueOf(name)));
}

bool Call::Boolean(std::string_view name) const {
  return std::get<bool>(ValueOf(name));
}

const Integers& Call::IntegerList(std::string_view name) const {
  return std::get<Integers>(ValueOf(name));
}

bool Call::Has(std::string_view name) const {
  return !std::holds_alternative<std::monostate>(ValueOf(name));
}

void Call::Give(std::string_view name, Value value) {
  const auto is = [name](const std::u16string& wanted) {
    return std::equal(wanted.begin(), wanted.end(), name.begin(), name.end());
  };
  if (wanted_ != nullptr && std::none_of(wanted_->begin(), wanted_->end(), is)) return;
  Add(answer_, name, std::move(value));
}

const Value& Call::ValueOf(std::string_view name) const {
  static const Value none;
  const auto is = [name](const FieldIn& field) { return field.name == name; };
  const auto found = std::find_if(fields_.begin(), fields_.end(), is);
  return found == fields_.end() ? none : values_[static_cast<std::size_t>(found - fields_.begin())];
}

}  // namespace ORKBASE
