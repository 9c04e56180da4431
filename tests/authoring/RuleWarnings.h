// Warnings about rules over the sample database, for the tests of warnings.
#pragma once

#include <string>
#include <vector>

#include "OrkPlatform.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "ScopedLocale.h"
#include "authoring/AuthoringCall.h"
#include "authoring/Warnings.h"

#include <gtest/gtest.h>

namespace ORKBASE {

/// Databases by a letter each: Default, Oracle, dM, Kingbase, openGauss.
inline std::vector<ORKDB_DSType_ENUM> DatabasesOf(const std::string& letters) {
  std::vector<ORKDB_DSType_ENUM> databases;
  for (const char letter : letters) {
    switch (letter) {
      case 'D':
        databases.push_back(kSqlServerDs);
        break;
      case 'O':
        databases.push_back(kOracleDs);
        break;
      case 'M':
        databases.push_back(kDMDs);
        break;
      case 'K':
        databases.push_back(kKingbaseDs);
        break;
      case 'G':
        databases.push_back(kOpenGaussDs);
        break;
    }
  }
  return databases;
}

/// A rule with the edits of a fix.
inline std::u16string Fixed(const std::u16string& rule, const RuleFix& fix) {
  std::u16string text;
  std::size_t at = 0;
  for (const RuleEdit& edit : fix.edits) {
    const auto begin = static_cast<std::size_t>(edit.offset);
    EXPECT_GE(begin, at) << "edits that overlap or stand in another order";
    text.append(rule, at, begin - at).append(edit.text);
    at = begin + static_cast<std::size_t>(edit.length);
  }
  return text.append(rule, at);
}

/// An engine in English and en_US with the tables of the sample database, and its authoring calls.
class RuleWarnings : public testing::Test {
 protected:
  RuleWarnings() { rules_.SetDts(u"Orders,Customer,T,Stock"); }

  bool Verifies(MXRULE_DATATYPE type, const std::u16string& rule) {
    view_.Follow(EngineAccess::Of(rules_), nullptr);
    AuthoringCall call(view_, CurrentLanguage());
    MxErrorRecord refusal;
    return call.Verify(type, rule, document_, refusal);
  }

  std::vector<RuleProblem> Warnings(MXRULE_DATATYPE type, const std::u16string& rule,
                                    const std::string& databases, bool twoParts = false) {
    EXPECT_TRUE(Verifies(type, rule)) << U8(rule);
    AuthoringCall call(view_, CurrentLanguage());
    return WarningsOf(call, type, rule, document_, DatabasesOf(databases), twoParts);
  }

  ScopedLocale locale_{"en_US.UTF-8"};
  ScopedLanguage language_{u"en"};
  SampleExpression rules_;
  AuthoringView view_;
  std::u16string document_;
};

}  // namespace ORKBASE
