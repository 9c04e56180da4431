// The typed fields of calls: what a row of the table tells of them, and the values that come in and
// go out. Values know no JSON, so that every door can carry them in its own form.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ORKBASE {

enum class FieldType { kText, kInteger, kBoolean, kTexts, kIntegers, kRecord, kRecords };

/// Name of a type, as `help` tells it.
std::u16string_view NameOf(FieldType type) noexcept;

struct Field;
using Texts = std::vector<std::u16string>;
using Integers = std::vector<std::int64_t>;
using Record = std::vector<Field>;  ///< fields in the order in which they are written
using Records = std::vector<Record>;
/// The first form is what no call takes: null, a fraction, a list of several kinds and their like.
using Value = std::variant<std::monostate, bool, std::int64_t, std::u16string, Texts, Integers,
                           Record, Records>;

struct Field {
  std::string_view name;  ///< lives as long as the process
  Value value;
};

void Add(Record& record, std::string_view name, Value value);

struct Required {};
struct Optional {};
struct EmptyList {};
/// What stands for a field that is not given: nothing may (`Required`), the handler asks whether it
/// was given (`Optional`), or a default; `EmptyList` is one for a list of integers.
using Otherwise =
    std::variant<Required, Optional, EmptyList, bool, std::int32_t, std::u16string_view>;

struct FieldIn {
  std::string_view name;
  FieldType type;
  Otherwise otherwise;
};

/// The default of a field, the first form of `Value` where it has none.
Value DefaultOf(const FieldIn& field);

struct FieldOut {
  std::string_view name;
  FieldType type;
};

/// Thrown for a request that cannot be answered by a call. Nothing has happened then.
struct BadRequest {
  std::u16string what;
};

/// The fields of one request, as a door read them. Of several with one name the last counts.
class Request {
 public:
  void Add(std::string name, Value value);

  /// Takes the value of a field out of the request: the default where it is not given, the first
  /// form of `Value` where it is optional. Throws `BadRequest` for a required field that is missing
  /// and for a value of another type.
  Value Take(const FieldIn& field);

 private:
  struct Given {
    std::string name;
    Value value;
  };
  std::vector<Given> given_;
};

}  // namespace ORKBASE
