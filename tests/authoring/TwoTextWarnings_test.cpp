// Warnings about two texts, held against the two texts that there are.
#include "RuleGenerator.h"
#include "RuleWarnings.h"

#include <algorithm>

namespace ORKBASE {
namespace {

/// The pieces of SQL texts between blanks, brackets and commas, but not those that join conditions.
std::vector<std::string> Pieces(const std::string& sql) {
  std::vector<std::string> pieces(1);
  for (const char c : sql) {
    if (c == ' ' || c == '(' || c == ')' || c == ',') {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  const auto isNoPiece = [](const std::string& piece) {
    return piece.empty() || piece == "and" || piece == "or";
  };
  pieces.erase(std::remove_if(pieces.begin(), pieces.end(), isNoPiece), pieces.end());
  std::sort(pieces.begin(), pieces.end());
  return pieces;
}

class TwoTextWarnings : public RuleWarnings {
 protected:
  bool Translate(bool twoParts, std::u16string& a, std::u16string& b) {
    std::u16string translated;
    return rules_.TranslateFor(kSqlServerDs, document_, translated, a, b, twoParts);
  }
};

/// Of a rule without a warning each piece goes to one of the texts, once; one that is left alone is
/// doubled, or costs others their place, or is an empty bracket.
TEST_F(TwoTextWarnings, TellWhereAPieceIsLeftAlone) {
  std::vector<RuleWord> words(SampleWords().begin(), SampleWords().end());
  RuleGenerator generator(20240519, words);
  int alone = 0;
  int whole = 0;
  for (int i = 0; i < 1000; ++i) {
    const GeneratedRule made = generator.Make(kLogicDataType, 6);
    const std::vector<RuleProblem> found = Warnings(made.type, made.text, "D", true);
    std::u16string one;
    std::u16string a;
    std::u16string b;
    ASSERT_TRUE(Translate(false, one, b));
    ASSERT_TRUE(Translate(true, a, b));
    const bool isKept = Pieces(U8(one)) == Pieces(U8(a) + " " + U8(b)) &&
                        (a + b).find(u"(()") == std::u16string::npos &&
                        (a + b).find(u" ()") == std::u16string::npos;
    const bool isTold = std::any_of(found.begin(), found.end(), [](const RuleProblem& warning) {
      return warning.number == kMsgLeftAlone;
    });
    EXPECT_EQ(isTold, !isKept) << U8(made.text) << "\nA " << U8(a) << "\nB " << U8(b);
    ++(isTold ? alone : whole);
  }
  EXPECT_GT(alone, 15);
  EXPECT_GT(whole, 200);
}

}  // namespace
}  // namespace ORKBASE
