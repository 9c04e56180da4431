#include "authoring/MetadataNames.h"

#include "authoring/AuthoringCall.h"
#include "authoring/WordKinds.h"
#include "foundation/Text.h"

#include <algorithm>
#include <utility>

namespace ORKBASE {
namespace {

constexpr std::size_t kMostTables = 1'000;

/// A name in the form by which names are searched and sorted, then as it is.
using Sortable = std::pair<std::u16string, std::u16string>;

}  // namespace

bool TablesLike(AuthoringCall& call, std::u16string_view like, RuleTables& tables,
                MxErrorRecord& error) {
  std::vector<std::u16string> names;
  if (!call.Dictionaries().ReadTableNames(names)) {
    error = call.Dictionaries().Error();
    return false;
  }
  // Databases differ in what they hold for the same letter, so the names are searched here.
  const std::u16string sought = ToLower(like);
  std::vector<Sortable> found;
  for (std::u16string& name : names) {
    std::u16string lower = ToLower(name);
    const bool isFound = !name.empty() && lower.find(sought) != lower.npos;
    if (isFound) found.emplace_back(std::move(lower), std::move(name));
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  tables.more = found.size() > kMostTables;
  found.resize(std::min(found.size(), kMostTables));
  for (Sortable& name : found) tables.tables.push_back(std::move(name.second));
  return true;
}

bool FieldsOf(AuthoringCall& call, std::u16string_view table, std::vector<RuleField>& fields,
              MxErrorRecord& error) {
  std::vector<MxWord> words;
  if (!call.Dictionaries().ReadFields(table, words)) {
    error = call.Dictionaries().Error();
    return false;
  }
  for (MxWord& word : words) {
    fields.push_back(
        {std::move(word.fldName), TypeNameOf(word.dataType), std::move(word.fldRealName)});
  }
  return true;
}

}  // namespace ORKBASE
