// An engine with the tables of the sample database loaded, and the problems of its rules as text.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "RuleAuthoring.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

inline constexpr const char16_t* kLoadedTables = u"Orders,Customer,T,Stock,\u5BA2\u6237";

/// One object for one language; the language is that of the thread while the object lives.
class CheckedRules {
 public:
  explicit CheckedRules(std::u16string_view tag = u"en") : language_(tag), authoring(engine) {
    engine.SetDts(kLoadedTables);
  }

  std::vector<ORKBASE::RuleProblem> Check(ORKBASE::MXRULE_DATATYPE type,
                                          const std::u16string& rule) {
    return authoring.Check(type, rule);
  }
  bool Verifies(ORKBASE::MXRULE_DATATYPE type, const std::u16string& rule) {
    std::u16string document;
    return engine.Verify(type, rule, document);
  }
  std::u16string DocumentOf(ORKBASE::MXRULE_DATATYPE type, const std::u16string& rule) {
    std::u16string document;
    return engine.Verify(type, rule, document) ? document : std::u16string();
  }

 private:
  ScopedLanguage language_;

 public:
  SampleExpression engine;
  ORKBASE::RuleAuthoring authoring;
};

/// The rule with the first fix of one problem applied; the rule itself for a problem without.
inline std::u16string FirstFixApplied(const std::u16string& rule,
                                      const ORKBASE::RuleProblem& problem) {
  return ORKBASE::ApplyFirstFixes(rule, {&problem, 1});
}

inline bool HasErrors(const std::vector<ORKBASE::RuleProblem>& problems) {
  return std::any_of(problems.begin(), problems.end(), [](const ORKBASE::RuleProblem& problem) {
    return problem.severity == ORKBASE::kErrorSeverity;
  });
}

/// `0+12 6260 The word "..." is unknown. [Write x -> y]`, one line a problem.
inline std::string Told(const std::u16string& rule,
                        const std::vector<ORKBASE::RuleProblem>& problems) {
  std::string text;
  for (const ORKBASE::RuleProblem& problem : problems) {
    text += std::to_string(problem.offset) + '+' + std::to_string(problem.length) + ' ' +
            std::to_string(problem.number) + ' ' + U8(problem.text);
    text += " {";
    for (const std::u16string& each : problem.expected) text += U8(each) + "; ";
    text += '}';
    for (const ORKBASE::RuleFix& fix : problem.fixes) {
      ORKBASE::RuleProblem one = problem;
      one.fixes = {fix};
      text += "\n    [" + U8(fix.label) + " -> " + U8(FirstFixApplied(rule, one)) + ']';
    }
    text += '\n';
  }
  return text;
}
