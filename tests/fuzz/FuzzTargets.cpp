// What is done with any input.
#include "FuzzTargets.h"

#include "MxExpression.h"
#include "Mx_Exception.h"
#include "RuleDialects.h"
#include "foundation/Text.h"

#include <stdexcept>

namespace ORKFUZZ {
namespace {

using namespace ORKBASE;

/// Every byte a 16-bit unit of its own, or the text that UTF-8 says: both are rules someone types.
std::u16string Wide(const std::string& bytes) {
  if (!bytes.empty() && bytes.front() == '\0') {
    return {bytes.begin(), bytes.end()};
  }
  return Utf8ToWide(bytes);
}

void TranslateForAll(const std::u16string& document) {
  MxExpression engine;
  for (const RuleDialect& dialect : RuleDialects()) {
    std::u16string translated, a, b, one;
    try {
      engine.TranslateFor(dialect.number, document, translated, a, b, true);
      engine.TranslateFor(dialect.number, document, translated, one, b, false);
    } catch (const Mx_Exception&) {
    } catch (const std::out_of_range&) {
    }
    engine.Compose(translated, a, b);
  }
}

}  // namespace

void TryRule(const std::string& bytes) {
  const std::u16string rule = Wide(bytes);
  MxExpression engine;
  for (std::int32_t type = 0; type <= 8; ++type) {
    std::u16string document;
    const auto expected = static_cast<MXRULE_DATATYPE>(type);
    if (engine.Verify(expected, rule, document)) TranslateForAll(document);
    std::u16string left = rule;
    engine.RemoveDt(left, u"T,Orders", expected);
  }
  engine.IsDtsInExp(u"T,Orders", rule);
  engine.ChangeExpWithNewDtDfNames(u"T:U,:,U:T", u"T.a:b,x", rule);
  engine.ReplaceDtOrDfNames(rule, rule);
}

void TryDocument(const std::string& bytes) {
  const std::u16string document = Wide(bytes);
  TranslateForAll(document);
  MxExpression engine;
  std::u16string a, b;
  engine.Compose(document, a);
  engine.Compose(document, a, b);
}

void TryCaxDocument(const std::string& bytes) {
  MxExpression engine;
  try {
    engine.SetCAXDD(1, Wide(bytes));
  } catch (const char16_t*) {
  }
  std::u16string document;
  if (engine.Verify(kVarDataType, u"thisDoc.t.f", document)) TranslateForAll(document);
}

}  // namespace ORKFUZZ
