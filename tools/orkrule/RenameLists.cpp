#include "RenameLists.h"

#include "Output.h"
#include "Text.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ORKTOOL {

std::vector<NewName> ReadNewNames(std::u16string_view list, bool areFields) {
  std::vector<NewName> names;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(u','), list.size());
    const std::u16string_view item = list.substr(0, end);
    const std::size_t colon = item.find(u':');
    const std::u16string_view from = item.substr(0, colon);
    if (colon == item.npos || (areFields && from.find(u'.') == from.npos)) {
      throw Failure{kBadUsage, "'" + ToUtf8(item) + "' is not of the form " +
                                   (areFields ? "TABLE.OLD:NEW" : "OLD:NEW")};
    }
    names.push_back({std::u16string(from), std::u16string(item.substr(colon + 1))});
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

std::u16string ListOf(const std::vector<NewName>& names) {
  std::u16string list;
  for (const NewName& name : names) {
    if (!list.empty()) list += u',';
    list.append(name.from).append(u":").append(name.to);
  }
  return list;
}

std::u16string NewNameOf(std::u16string name, const std::vector<NewName>& tables) {
  for (const NewName& table : tables) {
    if (name == table.from) name = table.to;
  }
  return name;
}

std::vector<NewName> UnderNewTables(std::vector<NewName> fields,
                                    const std::vector<NewName>& tables) {
  std::unordered_set<std::u16string> newNames;
  for (const NewName& table : tables) newNames.insert(table.to);
  for (NewName& field : fields) {
    const std::size_t end = field.from.find(u'.');
    const std::u16string table = field.from.substr(0, end);
    if (newNames.contains(table)) continue;
    field.from.replace(0, end, NewNameOf(table, tables));
  }
  return fields;
}

std::vector<std::u16string> FieldsToday(const std::vector<NewName>& fields,
                                        const std::vector<NewName>& tables) {
  std::unordered_map<std::u16string, std::vector<std::u16string>> olds;
  for (const NewName& table : tables) olds[NewNameOf(table.from, tables)].push_back(table.from);
  std::vector<std::u16string> names;
  for (const NewName& field : fields) {
    const std::size_t end = field.from.find(u'.');
    const auto known = olds.find(field.from.substr(0, end));
    if (known == olds.end()) {
      names.push_back(field.from);
      continue;
    }
    for (const std::u16string& table : known->second) {
      names.push_back(table + field.from.substr(end));
    }
  }
  return names;
}

}  // namespace ORKTOOL
