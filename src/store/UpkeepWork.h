// One rule of a store on its way through an operation: read, verified, compared, translated.
#pragma once

#include <string>

#include "RuleUpkeep.h"
#include "store/UpkeepEngine.h"
#include "store/UpkeepFindings.h"

namespace ORKBASE {

/// What becomes of the SQL that is made.
enum class SqlUse {
  kCompare,     ///< one that is stored and another is told of and replaced
  kKeep,        ///< kept for every dialect
  kKeepStored,  ///< kept where there was one
};

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
  /// Makes the SQL of a document for the dialects.
  void TakeSql(UpkeepEngine& engine, const std::u16string& document, SqlUse use);
  /// The engine for the rule's words under the new names.
  UpkeepEngine& EngineAfter() { return engines_.Of(rule_, Names::kAfter); }

  /// Takes a new text for the rule.
  void TakeText(std::u16string text);
  /// Takes document and SQL of a new text that verifies.
  void TakeDocument(UpkeepEngine& engine, const std::u16string& document);
  /// Takes empty texts, for a rule of which nothing is left.
  void TakeNothing();

  UpkeepEngine& Engine() noexcept { return *engine_; }
  /// Of a rule that has only its document, the text that was written of it.
  const std::u16string& Text() const noexcept { return *text_; }
  bool IsWritten() const noexcept { return text_ == &written_; }
  const EitherVerification& Today() const noexcept { return today_; }
  MXRULE_DATATYPE Type() const noexcept { return rule_.type; }

  /// Adds a finding. A text that was written here is not seen by anybody, so nothing in it has a
  /// place.
  void Tell(UpkeepFinding finding);
  /// Puts a document in the place of the stored one, where that is of another rule.
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
