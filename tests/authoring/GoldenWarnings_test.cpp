// Warnings about the rules of the golden files: one of a refusal exactly where the database
// refuses, and fixes that are rules.
#include "GoldenFile.h"
#include "RuleDialects.h"
#include "RuleWarnings.h"

namespace ORKBASE {
namespace {

class GoldenWarnings : public testing::TestWithParam<std::string> {};

/// "6256 The text." of "error: 6256 The text.", else nothing.
std::string RefusalOf(const GoldenResult& result) {
  const std::string begin = "error: ";
  return result.failure.starts_with(begin) ? result.failure.substr(begin.size() + 5) : "";
}

TEST_P(GoldenWarnings, TellRefusalsAndOfferRules) {
  for (const GoldenBlock& block : ReadGoldenFile(GetParam())) {
    SCOPED_TRACE(block.file + ":" + std::to_string(block.line) + ": " + block.title);
    const ScopedLocale locale(block.Has("locale") ? block.Mode("locale").c_str() : "en_US.UTF-8");
    const ScopedLanguage language(U16(block.Has("language") ? block.Mode("language") : "en"));
    MxExpression rules;
    PrepareForBlock(rules, block, kSqlServerDs);
    AuthoringView view;
    view.Follow(EngineAccess::Of(rules), nullptr);
    AuthoringCall call(view, CurrentLanguage());
    const std::u16string rule = U16(block.rule);
    std::u16string document;
    MxErrorRecord refusal;
    if (!call.Verify(block.type, rule, document, refusal)) continue;
    for (const RuleDialect& dialect : RuleDialects()) {
      const ORKDB_DSType_ENUM database[] = {dialect.number};
      const std::string refused = RefusalOf(block.expected.at(U8(dialect.name)));
      std::string told;
      for (const RuleProblem& warning :
           WarningsOf(call, block.type, rule, document, database, block.Has("twoParts"))) {
        if (warning.number == kMsgCallRefused && told.find(refused) == std::string::npos) {
          told = U8(warning.text);
        }
        for (const RuleFix& fix : warning.fixes) {
          std::u16string ignored;
          const std::u16string text = Fixed(rule, fix);
          EXPECT_TRUE(call.Verify(block.type, text, ignored, refusal)) << U8(text) << "\n"
                                                                       << U8(ErrorText(refusal));
        }
      }
      EXPECT_EQ(told.empty(), refused.empty()) << U8(dialect.name) << ": " << told;
      EXPECT_NE(told.find(refused), std::string::npos) << U8(dialect.name) << ": " << told;
    }
  }
}

std::string NameOf(const testing::TestParamInfo<std::string>& info) {
  const std::size_t start = info.param.rfind('/') + 1;
  return info.param.substr(start, info.param.rfind('.') - start);
}

INSTANTIATE_TEST_SUITE_P(Files, GoldenWarnings, testing::ValuesIn(GoldenFiles()), NameOf);

}  // namespace
}  // namespace ORKBASE
