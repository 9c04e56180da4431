// Rules of a store for tests of upkeep, and what is told of them in short.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MxExpression.h"
#include "RuleUpkeep.h"
#include "SampleDatabase.h"
#include "Utf8.h"

namespace store_test {

inline ORKBASE::ConnectionSettings ConnectionTo(const TempDatabase& database) {
  ORKBASE::ConnectionSettings connection;
  connection.server = database.Server();
  return connection;
}

inline ORKBASE::UpkeepSettings SampleSettings() {
  ORKBASE::UpkeepSettings settings;
  settings.metadata = ConnectionTo(SampleDatabase());
  return settings;
}

inline ORKBASE::StoredRule RuleOf(const std::string& expression,
                                  ORKBASE::MXRULE_DATATYPE type = ORKBASE::kEitherType) {
  ORKBASE::StoredRule rule;
  rule.type = type;
  rule.expression = U16(expression);
  return rule;
}

/// The document of a rule, by an engine that has loaded some tables.
inline std::u16string DocumentOf(const std::string& expression, const std::string& tables = {},
                                 ORKBASE::MXRULE_DATATYPE type = ORKBASE::kVarDataType) {
  SampleExpression rules;
  rules.SetDts(U16(tables));
  std::u16string document;
  rules.Verify(type, U16(expression), document);
  return document;
}

inline const char* NameOf(ORKBASE::UpkeepState state) {
  switch (state) {
    case ORKBASE::kWellState:
      return "well";
    case ORKBASE::kRefusedState:
      return "refused";
    case ORKBASE::kChangedState:
      return "changed";
    case ORKBASE::kNotTranslatableState:
      return "not translatable";
    case ORKBASE::kUnreadableState:
      return "unreadable";
    case ORKBASE::kBrokenState:
      return "broken";
    case ORKBASE::kNoticeState:
      return "notice";
  }
  return "?";
}

/// `refused 4+3; changed oracle`: state, place and dialect of each finding.
inline std::string Told(const std::vector<ORKBASE::UpkeepFinding>& findings) {
  std::string text;
  for (const ORKBASE::UpkeepFinding& finding : findings) {
    if (!text.empty()) text += "; ";
    text += NameOf(finding.state);
    if (finding.offset >= 0) {
      text += ' ' + std::to_string(finding.offset) + '+' + std::to_string(finding.length);
    }
    if (finding.isAfter) text += " after";
    if (!finding.dialect.empty()) text += ' ' + U8(finding.dialect);
  }
  return text.empty() ? "well" : text;
}

inline std::string Text(const std::optional<std::u16string>& text) {
  return text ? U8(*text) : "(nothing)";
}

}  // namespace store_test
