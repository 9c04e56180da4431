// The way of a rule through all families of warnings.
#include "authoring/Warnings.h"

#include "authoring/WarningList.h"

namespace ORKBASE {
namespace {

/// The words of a rule that verifies: none is refused, so there are no refusals to keep.
void ReadAccepted(AuthoringCall& call, std::u16string_view rule, RuleReading& reading) {
  Lexer& lexer = call.Engine().lexer;
  reading.text = rule;
  lexer.ReadWords(rule, call.TextLanguage(), reading.words, reading.composed);
  MxErrorRecord ignored;
  for (WordView& word : reading.words) lexer.VerifyToken(word, ignored);
}

}  // namespace

std::vector<RuleProblem> WarningsOf(AuthoringCall& call, MXRULE_DATATYPE /*type*/,
                                    std::u16string_view rule, std::u16string_view document,
                                    std::span<const ORKDB_DSType_ENUM> dsTypes, bool twoParts) {
  RuleReading reading;
  ReadAccepted(call, rule, reading);
  DocumentPlaces places;
  if (!places.Match(document, reading)) return {};
  WarningList list(call, reading, places, dsTypes);
  WarnOfOrder(list);
  WarnOfTypes(list);
  if (!list.asked().empty()) {
    WarnOfDifferences(list);
    WarnOfCalls(list, document);
  }
  if (list.Asks(kOracleDs)) WarnOfOracle(list);
  if (twoParts) WarnOfTwoTexts(list);
  return list.Take();
}

}  // namespace ORKBASE
