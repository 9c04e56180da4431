#include "store/UpkeepRename.h"

#include <utility>

namespace ORKBASE {
namespace {

UpkeepFinding Broken(const MxErrorRecord& error) {
  UpkeepFinding finding = FindingOf(kBrokenState, error);
  finding.isAfter = true;
  return finding;
}

/// Takes document and SQL of the new text; false where it would be refused from now on.
bool TakeAfter(UpkeepWork& work, const std::u16string& text) {
  UpkeepEngine& engine = work.EngineAfter();
  if (engine.Fault().cause != kNoCause) {
    work.Tell(Broken(engine.Fault()));
    return false;
  }
  const EitherVerification after = engine.Verify(work.Type(), text);
  if (!after.type) {
    work.Tell(Broken(after.error));
    return false;
  }
  if (text != work.Text()) work.TakeDocument(engine, after.document);
  return true;
}

}  // namespace

UpkeepResult RenameRule(UpkeepWork& work, RuleRenames& renames) {
  if (!work.Open()) return work.Finish(false);
  const bool wasWell = work.Verify(false);
  RenamedText renamed = renames.Apply(work.Text());
  for (UpkeepFinding& notice : renamed.notices) work.Tell(std::move(notice));
  if (renamed.refusal.cause != kNoCause) {
    work.Tell(Broken(renamed.refusal));
    return work.Finish(false);
  }
  work.TakeText(renamed.text);
  return work.Finish(!wasWell || TakeAfter(work, renamed.text));
}

}  // namespace ORKBASE
