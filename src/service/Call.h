// One call on its way: what it was given, the object that it goes to, and what it answers.
#pragma once

#include "service/Fields.h"

#include "MxExpression.h"
#include "RuleAuthoring.h"

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ORKBASE {

struct CallRow;

/// An engine and what an editor asks of it.
struct NamedEngine {
  NamedEngine() = default;
  explicit NamedEngine(const MxExpression& from) : rules(from) {}

  MxExpression rules;
  RuleAuthoring authoring{rules};
};

/// The named engines of a session.
using Engines = std::map<std::u16string, std::unique_ptr<NamedEngine>>;

/// The engine of a name. Throws `BadRequest` where there is none.
NamedEngine& KnownEngine(const Engines& engines, const std::u16string& name);

/// The pair of number and text that ends an answer.
struct ErrorPair {
  std::int32_t number = 0;
  std::u16string description;
};

/// What a handler sees. It lives as long as one call, on one thread.
class Call {
 public:
  /// Takes the fields of the row out of the request. Throws `BadRequest` where they do not fit.
  /// `wanted`: the fields of the answer that are kept, null for all.
  Call(const CallRow& row, Request& request, Engines& engines, const std::u16string& object,
       const Texts* wanted);

  /// Fields by their names in the row. A name or a type that the row does not have is a fault of
  /// the handler: `std::bad_variant_access`.
  const std::u16string& Text(std::string_view name) const;
  std::int32_t Integer(std::string_view name) const;
  bool Boolean(std::string_view name) const;
  const Integers& IntegerList(std::string_view name) const;
  /// Whether an optional field was given.
  bool Has(std::string_view name) const;

  Engines& AllEngines() noexcept { return engines_; }
  const std::u16string& Object() const noexcept { return object_; }
  /// The engine that the call goes to.
  MxExpression& Engine() { return KnownEngine(engines_, object_).rules; }
  RuleAuthoring& Authoring() { return KnownEngine(engines_, object_).authoring; }

  /// Adds a field to the answer, unless it is not wanted.
  void Give(std::string_view name, Value value);
  /// The answer so far; the call has none any more.
  Record TakeAnswer() { return std::move(answer_); }

  /// Has this one answer end with a pair of its own instead of the engine's.
  void set_errorPair(ErrorPair pair) { errorPair_ = std::move(pair); }
  const std::optional<ErrorPair>& OwnErrorPair() const noexcept { return errorPair_; }

  /// Says that the rule was refused, for those who count. Beside an exception and an error that the
  /// call sets, which say so by themselves.
  void set_refused(bool isRefused) noexcept { isRefused_ = isRefused; }
  bool IsRefused() const noexcept { return isRefused_; }

 private:
  const Value& ValueOf(std::string_view name) const;

  std::span<const FieldIn> fields_;
  std::vector<Value> values_;  // one a field
  Engines& engines_;
  const std::u16string& object_;
  const Texts* wanted_;
  Record answer_;
  std::optional<ErrorPair> errorPair_;
  bool isRefused_ = false;
};

}  // namespace ORKBASE
