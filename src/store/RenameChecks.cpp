#include "store/RenameChecks.h"

#include "MxLexicalAnalyzer.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/UpkeepFindings.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ORKBASE {
namespace {

/// What cuts a name where a rule or a list holds it.
constexpr std::u16string_view kNoPartOfName = u".,:'\"[]\t\v\f";

/// Whether their names must differ: those of tables, and of fields of one table.
bool AreInOnePlace(const ListedRename& one, const ListedRename& other) {
  return one.isField == other.isField && (!one.isField || one.today == other.today);
}

class RenameChecker {
 public:
  RenameChecker(UpkeepEngine& engine, const std::vector<ListedRename>& renames)
      : engine_(engine), renames_(renames) {}

  std::vector<UpkeepFinding> Run() {
    for (std::size_t i = 0; i < renames_.size(); ++i) Check(i);
    SortByState(findings_);
    return std::move(findings_);
  }

 private:
  using Names = std::vector<std::u16string>;

  void Check(std::size_t index) {
    const ListedRename& rename = renames_[index];
    if (!IsLegal(rename)) {
      Tell(kBrokenState, kMsgUpkeepIllegalName, rename);
    } else if (IsTaken(rename)) {
      Tell(kBrokenState, kMsgUpkeepNameTaken, rename);
    } else if (IsGivenBefore(index)) {
      Tell(kBrokenState, kMsgUpkeepNameTwice, rename);
    } else if (!rename.isField && IsInVocabulary(rename.newName)) {
      Tell(kNoticeState, kMsgUpkeepNameIsWord, rename);
    }
    if (!IsKnown(index) && isConnected_) Tell(kNoticeState, kMsgUpkeepNameUnknown, rename);
  }

  /// The message names the pair as it is called today.
  void Tell(UpkeepState state, std::int32_t message, const ListedRename& rename) {
    std::u16string old = rename.oldName;
    if (rename.isField) old = std::u16string(rename.today).append(1, u'.').append(old);
    findings_.push_back(FindingOf(state, message, {old, rename.newName}));
  }

  /// Whether a rule could hold the new name as it is.
  bool IsLegal(const ListedRename& rename) {
    const std::u16string& name = rename.newName;
    if (name.empty() || name.find_first_of(kNoPartOfName) != name.npos) return false;
    const std::u16string word = rename.isField ? u"T." + name : name + u".a";
    std::vector<std::u16string> tokens;
    MxLexicalAnalyzer().GenerateOriginalTokens(word, tokens);
    return tokens.size() == 1 &&
           (rename.isField || KindOf(word) == u"unknown" || KindOf(word) == u"field");
  }

  /// Whether it is a word already; a rule knows it by the full stop behind it then.
  bool IsInVocabulary(const std::u16string& name) { return KindOf(name) != u"unknown"; }

  std::u16string_view KindOf(const std::u16string& word) {
    RuleExplanation explanation;
    engine_.Authoring().Explain(word, 0, explanation);
    return explanation.kind;
  }

  // --- what the metadata have

  /// The fields of a table; nothing where there is no such table.
  const std::optional<Names>& FieldsOf(const std::u16string& table) {
    const auto [found, isNew] = fields_.try_emplace(table);
    if (!isNew) return found->second;
    std::vector<RuleField> fields;
    RuleAuthoring& authoring = engine_.Authoring();
    if (!authoring.Fields(table, fields)) {
      ThrowIfOutage(authoring.errRecord());
      isConnected_ = authoring.errRecord().message != kMsgNoConnection;
      return found->second;
    }
    Names& names = found->second.emplace();
    for (RuleField& field : fields) names.push_back(std::move(field.name));
    return found->second;
  }

  bool HasField(const std::u16string& table, const std::u16string& name) {
    const std::optional<Names>& fields = FieldsOf(table);
    return fields && std::any_of(fields->begin(), fields->end(), [&](const std::u16string& field) {
             return EqualsIgnoringCase(field, name);
           });
  }

  /// Whether something that is not renamed away has the new name. Words of a rule are found in any
  /// case, so a name is taken in any case, too.
  bool IsTaken(const ListedRename& rename) {
    if (IsRenamedAway(rename, rename.newName)) return false;
    return rename.isField ? HasField(rename.today, rename.newName)
                          : FieldsOf(rename.newName).has_value();
  }

  bool IsRenamedAway(const ListedRename& rename, const std::u16string& name) const {
    return std::any_of(renames_.begin(), renames_.end(), [&](const ListedRename& other) {
      return AreInOnePlace(other, rename) && EqualsIgnoringCase(other.oldName, name);
    });
  }

  bool IsGivenBefore(std::size_t index) const {
    const ListedRename& rename = renames_[index];
    const auto end = renames_.begin() + static_cast<std::ptrdiff_t>(index);
    return std::any_of(renames_.begin(), end, [&](const ListedRename& other) {
      return AreInOnePlace(other, rename) && EqualsIgnoringCase(other.newName, rename.newName);
    });
  }

  /// Whether the metadata have the old name, or a pair in front of this one gave it.
  bool IsKnown(std::size_t index) {
    const ListedRename& rename = renames_[index];
    if (rename.isField) return HasField(rename.today, rename.oldName);
    const auto end = renames_.begin() + static_cast<std::ptrdiff_t>(index);
    const bool isGiven = std::any_of(renames_.begin(), end, [&](const ListedRename& other) {
      return !other.isField && other.newName == rename.oldName;
    });
    return isGiven || FieldsOf(rename.oldName).has_value();
  }

  UpkeepEngine& engine_;
  const std::vector<ListedRename>& renames_;
  std::map<std::u16string, std::optional<Names>> fields_;
  std::vector<UpkeepFinding> findings_;
  bool isConnected_ = true;
};

}  // namespace

std::vector<UpkeepFinding> CheckRenames(UpkeepEngine& engine,
                                        const std::vector<ListedRename>& renames) {
  return RenameChecker(engine, renames).Run();
}

}  // namespace ORKBASE
