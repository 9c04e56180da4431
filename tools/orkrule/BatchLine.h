// One line of a batch: a JSON object, its fields read by name and kind.
#pragma once

#include "Output.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace ORKTOOL {

/// Thrown for a line that cannot be answered by a call.
struct BadLine {
  std::string what;
};

/// The fields of a line. A field that is asked for without a default has to be there; one that is
/// there has to be of the kind that is asked for. Else `BadLine` is thrown.
class BatchLine {
 public:
  /// Throws `BadLine` for what is not a JSON object.
  void Read(const std::string& line);

  /// The value of the field `id` as its text stood in the line, empty where there is none.
  const std::string& Id() const noexcept { return id_; }

  bool Has(const char* name) const { return fields_.contains(name); }
  std::u16string Text(const char* name) const;
  std::u16string Text(const char* name, const char16_t* otherwise) const;
  /// As it came in, in UTF-8.
  std::string Name(const char* name, const char* otherwise) const;
  /// A number without fraction and exponent, of 32 bits.
  std::int32_t Integer(const char* name) const;
  std::int32_t Integer(const char* name, std::int32_t otherwise) const;
  bool Boolean(const char* name) const;
  bool Boolean(const char* name, bool otherwise) const;

 private:
  const nlohmann::json& Field(const char* name) const;

  nlohmann::json fields_ = nlohmann::json::object();
  std::string id_;
};

}  // namespace ORKTOOL
