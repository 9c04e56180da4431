// The engines that rules of a store are verified by: one for each combination of template, CAD
// document and language, each with its words loaded once.
#pragma once

#include <compare>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "RuleUpkeep.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// Throws `UpkeepOutage` where it is the database that failed, not the rule.
void ThrowIfOutage(const MxErrorRecord& error);

/// Names as they were, or as they are to become.
enum class Names : bool { kToday, kAfter };

/// Two lists for `ReplaceDtOrDfNames`, and the tables that they rename as they are today.
struct EngineRenames {
  std::u16string tables;
  std::u16string fields;
  std::vector<std::u16string> loaded;
};

/// An engine, and what rules are asked of it. Everything here throws `UpkeepOutage`.
class UpkeepEngine {
 public:
  UpkeepEngine(const MxExpression& source, LanguageId language)
      : language_(language), rules_(source) {}

  /// Why its words could not be loaded; of no cause where they could.
  const MxErrorRecord& Fault() const noexcept { return fault_; }

  /// Each is asked in the engine's language.
  EitherVerification Verify(MXRULE_DATATYPE type, const std::u16string& text);
  std::vector<RuleFix> Fixes(MXRULE_DATATYPE type, const std::u16string& text);
  bool Write(const std::u16string& document, std::u16string& text, MxErrorRecord& error);
  std::vector<RuleUse> Uses(const std::u16string& text);
  /// `MxExpression::RemoveDt`.
  void Strip(std::u16string& text, const std::u16string& tables, MXRULE_DATATYPE type);

  /// `MxExpression::TranslateFor`, in the language of the thread.
  bool Translate(ORKDB_DSType_ENUM dialect, const std::u16string& document, std::u16string& sql);
  /// Asks the database whether it is there.
  void Reach();

  MxExpression& Rules() noexcept { return rules_; }
  RuleAuthoring& Authoring() noexcept { return authoring_; }

 private:
  friend class UpkeepEngines;

  template <class Ask>
  auto InItsLanguage(Ask ask);
  void Load(const UpkeepSettings& settings, const std::u16string& reportTemplate,
            const std::optional<std::u16string>& cax);
  bool LoadTemplate(const std::u16string& id);
  bool LoadTables(const std::u16string& tables);
  bool LoadCax(const UpkeepCax& cax);
  bool LoadCaxNamed(const UpkeepSettings& settings, const std::u16string& name);
  void Rename(const EngineRenames& renames);
  bool Keep(MxErrorRecord fault);

  LanguageId language_;
  MxExpression rules_;
  RuleAuthoring authoring_{rules_};
  MxErrorRecord fault_;
};

/// Makes engines at their first use, and ends the ones that were not used for the longest time.
class UpkeepEngines {
 public:
  UpkeepEngines(const UpkeepSettings& settings, EngineRenames renames);

  /// Valid until the next call.
  UpkeepEngine& Of(const StoredRule& rule, Names names);
  /// One that has only its connection.
  UpkeepEngine& Bare(Names names);

 private:
  struct Key {
    Names names;
    LanguageId language;
    std::u16string reportTemplate;
    std::optional<std::u16string> cax;
    friend auto operator<=>(const Key&, const Key&) = default;
  };
  struct Kept {
    std::unique_ptr<UpkeepEngine> engine;
    std::list<Key>::iterator use;
  };

  LanguageId LanguageOf(const std::optional<std::u16string>& tag);
  UpkeepEngine& Bare(Names names, LanguageId language);
  std::unique_ptr<UpkeepEngine> Make(const Key& key);
  void EndOldest();

  const UpkeepSettings& settings_;
  EngineRenames renames_;
  std::map<std::u16string, LanguageId> languages_;
  std::map<std::pair<Names, LanguageId>, std::unique_ptr<UpkeepEngine>> bare_;
  std::map<Key, Kept> kept_;
  std::list<Key> uses_;  ///< the last used first
};

}  // namespace ORKBASE
