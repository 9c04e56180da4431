// One object of JSON Lines, whose members go out as they came in: digits of numbers, what is
// nested, their order. Only what a command has an answer to is replaced or added.
#pragma once

#include "Output.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ORKTOOL {

class JsonRecord {
 public:
  /// Nothing where the text is no JSON object. Of members with the same name the last one counts,
  /// in the place of the first.
  static std::optional<JsonRecord> Read(const std::string& text);

  /// The value of a member as it was written, null where there is none.
  const std::string* Find(const std::string& name) const;
  /// Puts a member behind the others; its value is JSON.
  void Add(const std::string& name, std::string value);
  /// Takes a member out.
  void Remove(const std::string& name);

  /// The object on one line: each of the `own` members in the place of the one with its name, those
  /// without one behind the others.
  std::string With(const Json& own) const;

 private:
  struct Member {
    std::string name;
    std::string written;  ///< the name with its quotes; empty: the member was taken out
    std::string value;
  };

  void Put(Member member);

  std::vector<Member> members_;
  std::unordered_map<std::string, std::size_t> places_;  // of the names
};

}  // namespace ORKTOOL
