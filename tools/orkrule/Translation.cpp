#include "Translation.h"

#include "Mx_Exception.h"
#include "OrkPlatform.h"

namespace ORKTOOL {
namespace {

// Numbers of messages, which are for ever: what a database has no form for.
constexpr std::int32_t kNoForms[] = {6254, 6255, 6256, 6257};

/// The number of the message that was thrown, which carries its text alone.
std::int32_t NumberOf(const std::u16string& message) {
  for (const std::int32_t number : kNoForms) {
    if (ORKBASE::MessageText(number) == message) return number;
  }
  return -1;
}

}  // namespace

Translation TranslateRule(ORKBASE::MxExpression& rules, const ORKBASE::RuleDialect& dialect,
                          const std::u16string& document, bool split) {
  Translation made;
  std::u16string translated;
  try {
    if (!rules.TranslateFor(dialect.number, document, translated, made.a, made.b, split)) {
      made.refusal = RefusalOf(rules.errRecord());
    }
  } catch (const ORKBASE::Mx_Exception& refused) {
    made.refusal = Refusal{NumberOf(refused.message), refused.message};
  }
  return made;
}

}  // namespace ORKTOOL
