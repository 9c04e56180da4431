#include "service/Session.h"

#include "service/Calls.h"

#include "foundation/Text.h"

#include "Mx_Exception.h"

#include <stdexcept>
#include <utility>

namespace ORKBASE {
namespace {

// What every request may hold beside the fields of its call.
// clang-format off
constexpr FieldIn kOp     = {"op",     FieldType::kText,  Required()};
constexpr FieldIn kObject = {"object", FieldType::kText,  u"main"};
constexpr FieldIn kWant   = {"want",   FieldType::kTexts, Optional()};
// clang-format on

const CallRow& RowOf(const std::u16string& name) {
  const CallRow* const row = FindCall(name);
  if (row == nullptr) throw BadRequest{u"there is no operation \"" + name + u"\""};
  return *row;
}

Record Thrown(std::u16string_view type) {
  return {{"type", std::u16string(type)}};
}

Record Thrown(std::u16string_view type, std::u16string message) {
  return {{"type", std::u16string(type)}, {"message", std::move(message)}};
}

Record Thrown(const Mx_Exception& refused) {
  return {{"type", u"Mx_Exception"},
          {"message", refused.message},
          {"module", refused.module},
          {"function", refused.function},
          {"location", std::int64_t{refused.location}}};
}

/// Of a call that leaves by an exception only that is answered.
Record AnswerOf(const CallRow& row, Call& call) {
  Record thrown;
  try {
    row.run(call);
    return call.TakeAnswer();
  } catch (const BadRequest&) {
    throw;
  } catch (const Mx_Exception& refused) {
    thrown = Thrown(refused);
  } catch (const char16_t* text) {
    thrown = Thrown(u"text", text);
  } catch (const std::out_of_range&) {
    thrown = Thrown(u"std::out_of_range");
  } catch (const std::exception& other) {
    thrown = Thrown(u"std::exception", Utf8ToWide(other.what()));
  } catch (...) {  // a data access that a program brought along may throw anything
    thrown = Thrown(u"unknown");
  }
  return {{"thrown", std::move(thrown)}};
}

void AddErrorPair(Record& answer, ErrorPair pair) {
  Add(answer, "errNumber", std::int64_t{pair.number});
  Add(answer, "errDescription", std::move(pair.description));
}

ErrorPair PairOf(const MxExpression& engine) {
  return {engine.errNumber(), engine.errDescription()};
}

}  // namespace

Session::Session() {
  engines_[u"main"] = std::make_unique<NamedEngine>();
}

Record Session::Run(Request& request) {
  const CallRow& row = RowOf(std::get<std::u16string>(request.Take(kOp)));
  const std::u16string object = std::get<std::u16string>(request.Take(kObject));
  if (row.reach != Reach::kNoObject) KnownEngine(engines_, object);
  const Value wanted = request.Take(kWant);
  Call call(row, request, engines_, object, std::get_if<Texts>(&wanted));
  Record answer = AnswerOf(row, call);
  const auto after = engines_.find(object);
  if (after == engines_.end()) return answer;
  AddErrorPair(answer, call.OwnErrorPair().value_or(PairOf(after->second->rules)));
  return answer;
}

}  // namespace ORKBASE
