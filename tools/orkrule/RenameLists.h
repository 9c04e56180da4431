// The lists in which new names are given: `OLD:NEW,...` for tables, `TABLE.OLD:NEW,...` for fields.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ORKTOOL {

struct NewName {
  std::u16string from;
  std::u16string to;
};

/// The pairs of a list. Throws `Failure` (bad usage) for an item without an old and a new name, or
/// of fields one without a table.
std::vector<NewName> ReadNewNames(std::u16string_view list, bool areFields);

/// The list of pairs as the engine takes it.
std::u16string ListOf(const std::vector<NewName>& names);

/// A name under new names, which are given to it one after the other.
std::u16string NewNameOf(std::u16string name, const std::vector<NewName>& tables);

/// The engine wants a field's table by its new name. Here it may be named as it is today: a table
/// that gets a new name, and whose own is no new name, is one of today.
std::vector<NewName> UnderNewTables(std::vector<NewName> fields,
                                    const std::vector<NewName>& tables);

/// The fields by the names that their tables have today.
std::vector<std::u16string> FieldsToday(const std::vector<NewName>& fields,
                                        const std::vector<NewName>& tables);

}  // namespace ORKTOOL
