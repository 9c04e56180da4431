// What is done with any input.
#include "FuzzTargets.h"

#include "MxExpression.h"
#include "Mx_Exception.h"
#include "RuleAuthoring.h"
#include "RuleDialects.h"
#include "foundation/Text.h"

#include <stdexcept>
#include <vector>

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

void TryAuthoring(const std::string& bytes) {
  constexpr std::size_t kChoices = 4;
  if (bytes.size() < kChoices) return;
  const auto choice = [&](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
  const std::u16string text = Wide(bytes.substr(kChoices));
  const auto type = static_cast<MXRULE_DATATYPE>(choice(0) % 12 - 1);
  // Mostly a place of the text, now and then one beside it.
  const auto offset = static_cast<std::int32_t>(choice(1) * (text.size() + 4) / 256) - 2;
  const std::int32_t limit = choice(2) % 16 - 1;
  std::vector<ORKDB_DSType_ENUM> databases;
  for (const RuleDialect& dialect : RuleDialects()) databases.push_back(dialect.number);
  databases.resize(choice(3) % (databases.size() + 1));
  constexpr const char16_t* kLanguages[] = {u"", u"en", u"zh-CN", u"xx"};

  MxExpression engine;
  engine.SetCAXDD(1,
                  u"<dd><tabs><t name='t' dispName='t'><flds><f name='f' dispName='f' dt='1'/>"
                  u"</flds></t></tabs><enums/></dd>");
  engine.set_thiscaseVarOn1RcId(choice(3) % 2 == 0);
  RuleAuthoring authoring(engine);
  authoring.set_language(kLanguages[choice(3) / 64]);
  authoring.Check(type, text, databases, choice(2) % 2 == 0);
  RuleCompletion completion;
  authoring.Complete(type, text, offset, limit, choice(2) % 2 == 0, completion);
  RuleSignature signature;
  authoring.Signature(text, offset, signature);
  RuleExplanation explanation;
  authoring.Explain(text, offset, explanation);
  authoring.Uses(text);
  authoring.Format(text, choice(1));
  std::u16string written;
  authoring.Write(text, written);
  std::u16string document;
  if (engine.Verify(type, text, document)) authoring.Write(document, written);
  RuleTables tables;
  authoring.Tables(text, tables);
  std::vector<RuleField> fields;
  authoring.Fields(text, fields);
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
