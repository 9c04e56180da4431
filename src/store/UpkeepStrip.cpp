#include "store/UpkeepStrip.h"

#include "document/TagComparison.h"
#include "document/TagReader.h"
#include "document/TagTree.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <utility>

namespace ORKBASE {
namespace {

/// Tables are cut out as they are spelled in the list; a rule may spell them in another case.
void TellOfOtherCase(UpkeepWork& work, const std::u16string& tables, const std::u16string& left) {
  MxExpression& rules = work.Engine().Rules();
  if (!rules.IsDtsInExp(tables, left)) return;
  for (const std::u16string_view table : SplitText(tables, u",")) {
    if (!rules.IsDtsInExp(std::u16string(table), left)) continue;
    work.Tell(FindingOf(kNoticeState, kMsgUpkeepTableLeft, {table}));
  }
}

bool AreSameDocuments(const std::u16string& a, const std::u16string& b) {
  TagTree one;
  TagTree other;
  return ReadTagTree(a, one) && ReadTagTree(b, other) && AreOfOneRule(one.Root(), other.Root());
}

}  // namespace

UpkeepResult StripRule(UpkeepWork& work, const std::u16string& tables) {
  if (!work.Open() || !work.Verify(false)) return work.Finish(false);
  UpkeepEngine& engine = work.Engine();
  if (!engine.Rules().IsDtsInExp(tables, work.Text())) return work.Finish(true);
  std::u16string left = work.Text();
  engine.Strip(left, tables, *work.Today().type);
  TellOfOtherCase(work, tables, left);
  if (left.empty()) {
    work.Tell(FindingOf(kNoticeState, kMsgUpkeepNothingLeft));
    work.TakeNothing();
    return work.Finish(true);
  }
  const EitherVerification after = engine.Verify(work.Type(), left);
  if (!after.type) {
    UpkeepFinding finding = FindingOf(kBrokenState, after.error);
    finding.isAfter = true;
    work.Tell(std::move(finding));
    work.TakeText(std::move(left));
    return work.Finish(false);
  }
  // What is left is written anew, blanks and all; a rule that lost nothing stays as it was written.
  if (AreSameDocuments(after.document, work.Today().document)) return work.Finish(true);
  work.TakeText(std::move(left));
  work.TakeDocument(engine, after.document);
  return work.Finish(true);
}

}  // namespace ORKBASE
