#include "service/Session.h"

#include "service/AnswerText.h"
#include "service/Calls.h"
#include "service/JsonReader.h"

#include "expression/ReadingCopy.h"

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
Record FieldsOf(const CallRow& row, Call& call) {
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

bool WasThrown(const Record& fields) {
  return !fields.empty() && fields.front().name == "thrown";
}

const MxExpression* FindEngine(const Engines& engines, const std::u16string& name) {
  const auto found = engines.find(name);
  return found == engines.end() ? nullptr : &found->second->rules;
}

}  // namespace

NamedCall NameCall(Request& request, const Engines& engines) {
  const CallRow& row = RowOf(std::get<std::u16string>(request.Take(kOp)));
  std::u16string object = std::get<std::u16string>(request.Take(kObject));
  if (row.reach != Reach::kNoObject) KnownEngine(engines, object);
  return {row, std::move(object), request.Take(kWant)};
}

Reply RunCall(const NamedCall& named, Request& request, Engines& engines) {
  Call call(named.row, request, engines, named.object, std::get_if<Texts>(&named.wanted));
  const MxExpression* const before = FindEngine(engines, named.object);
  const std::uint64_t verdicts = before != nullptr ? VerdictsOf(*before) : 0;
  Reply reply;
  reply.fields = FieldsOf(named.row, call);
  reply.ownPair = call.OwnErrorPair();
  reply.isRefused = call.IsRefused() || reply.ownPair || WasThrown(reply.fields);
  // Only a call that gave the verdict itself counts, not those that tell it once more.
  const MxExpression* const after = FindEngine(engines, named.object);
  if (after != nullptr && VerdictsOf(*after) > verdicts && after->errNumber() != 0) {
    reply.isRefused = true;
  }
  return reply;
}

ErrorPair PairOf(const MxExpression& engine) {
  return {engine.errNumber(), engine.errDescription()};
}

Session::Session() {
  engines_[u"main"] = std::make_unique<NamedEngine>();
}

std::optional<ErrorPair> Session::PairBehind(const NamedCall& named, const Reply& reply) const {
  const MxExpression* const engine = FindEngine(engines_, named.object);
  if (engine == nullptr) return std::nullopt;
  return reply.ownPair ? reply.ownPair : PairOf(*engine);
}

Record Session::Run(Request& request) {
  const NamedCall named = NameCall(request, engines_);
  Reply reply = RunCall(named, request, engines_);
  if (std::optional<ErrorPair> pair = PairBehind(named, reply)) {
    Add(reply.fields, "errNumber", std::int64_t{pair->number});
    Add(reply.fields, "errDescription", std::move(pair->description));
  }
  return std::move(reply.fields);
}

RuleAnswer Session::Answer(std::string_view request) {
  std::string_view id;
  try {
    JsonRequest read = ReadJson(request);
    id = read.id;
    const NamedCall named = NameCall(read.fields, engines_);
    const Reply reply = RunCall(named, read.fields, engines_);
    RuleAnswer answer{BeginAnswer(id, reply.fields),
                      reply.isRefused ? RuleOutcome::kRefused : RuleOutcome::kCarriedOut};
    if (const std::optional<ErrorPair> pair = PairBehind(named, reply)) {
      EndAnswer(answer.json, *pair);
    } else {
      EndAnswer(answer.json);
    }
    return answer;
  } catch (const BadRequest& bad) {
    return {AnswerOf(id, bad), RuleOutcome::kBadRequest};
  }
}

}  // namespace ORKBASE
