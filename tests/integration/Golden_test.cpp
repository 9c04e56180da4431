// Runs the golden files: one test for each file of tests/golden.
#include "GoldenFile.h"

#include "RuleDialects.h"

#include "Utf8.h"

#include <gtest/gtest.h>

#include <set>

namespace {

std::string Shown(const GoldenResult& result, bool twoParts) {
  if (!result.failure.empty()) return result.failure;
  return twoParts ? "A |" + result.a + "|   B |" + result.b + "|" : "|" + result.a + "|";
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, Blocks) {
  std::set<std::string> titles;
  for (const GoldenBlock& block : ReadGoldenFile(GetParam())) {
    SCOPED_TRACE(block.file + ":" + std::to_string(block.line) + ": " + block.title);
    EXPECT_TRUE(titles.insert(block.title).second) << "a title that stands twice";
    for (const ORKBASE::RuleDialect& dialect : ORKBASE::RuleDialects()) {
      const std::string name = U8(dialect.name);
      const GoldenResult& expected = block.expected.at(name);
      const GoldenResult came = RunGoldenBlock(block, dialect.number);
      const bool twoParts = block.Has("twoParts");
      if (came == expected) continue;
      ADD_FAILURE_AT(block.file.c_str(), block.line)
          << block.title << "\n  rule     " << block.rule << "\n  database " << name
          << "\n  expected " << Shown(expected, twoParts) << "\n  came     "
          << Shown(came, twoParts);
    }
  }
}

std::string NameOf(const testing::TestParamInfo<std::string>& info) {
  const std::size_t start = info.param.rfind('/') + 1;
  return info.param.substr(start, info.param.rfind('.') - start);
}

INSTANTIATE_TEST_SUITE_P(Files, Golden, testing::ValuesIn(GoldenFiles()), NameOf);

TEST(GoldenFiles, HoldEnoughBlocks) {
  std::size_t count = 0;
  for (const std::string& file : GoldenFiles()) count += ReadGoldenFile(file).size();
  EXPECT_GE(count, 250u);
}

}  // namespace
