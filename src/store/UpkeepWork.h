// One rule of a store on its way through an operation: read, verified, compared, translated.
#pragma once

#include <string>

#include "RuleUpkeep.h"
#include "store/UpkeepEngine.h"
#include "store/UpkeepFindings.h"

namespace ORKBASE {

/// Lives as long as one operation. Everything here throws `UpkeepOutage`.
class UpkeepWork {
 public:
  UpkeepWork(UpkeepEngines& engines, const UpkeepSettings& settings, const StoredRule& rule);

  /// Finds the engine and the text of the rule; false, with a finding, where there is none.
  bool Open();
  /// Verifies the text; false, with a finding, where it is refused.
  bool Verify(bool wantsFixes);

  /// Compares the stored document with that of today, which takes its place where they differ.
  void CompareDocument();
  /// Tells of a stored document that is none.
  void LookAtDocument();
  /// Takes the SQL of a document for every dialect. Where `compares`, one that is stored and
  /// another is told of, and one that is not stored is not kept.
  void TakeSql(UpkeepEngine& engine, const std::u16string& document, bool compares);

  UpkeepEngine& Engine() noexcept { return *engine_; }
  /// Of a rule that has only its document, the text that was written of it.
  const std::u16string& Text() const noexcept { return *text_; }
  bool IsWritten() const noexcept { return text_ == &written_; }
  const EitherVerification& Today() const noexcept { return today_; }
  std::vector<UpkeepFinding>& Findings() noexcept { return result_.findings; }
  StoredRule& After() noexcept { return result_.after; }

  /// Adds a finding. A text that was written here is not seen by anybody, so nothing in it has a
  /// place.
  void Tell(UpkeepFinding finding);
  /// Puts a new document in the place of the stored one, if there is one of another rule.
  void KeepDocument(const std::u16string& document);
  UpkeepResult Finish(bool mayWrite);

 private:
  bool OpenDocument();

  UpkeepEngines& engines_;
  const UpkeepSettings& settings_;
  const StoredRule& rule_;
  UpkeepResult result_;
  UpkeepEngine* engine_ = nullptr;
  const std::u16string* text_ = nullptr;
  std::u16string written_;
  EitherVerification today_;
};

}  // namespace ORKBASE
