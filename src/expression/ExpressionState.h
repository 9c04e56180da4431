// What an `MxExpression` holds between calls.
#pragma once

#include <cstdint>
#include <forward_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "MxExpression.h"
#include "dictionary/MxDictionarys.h"
#include "document/TagTree.h"
#include "foundation/LastError.h"
#include "foundation/WordView.h"
#include "lexer/Lexer.h"
#include "parser/RuleInterpreter.h"
#include "translator/IMxTranslator.h"

namespace ORKBASE {

/// What is asked of the last translation when it is over.
struct LastTranslation {
  ORKDB_DSType_ENUM dialect;
  std::u16string rtId;  ///< as it was then
};

/// The engine behind the facade. A copy shares dictionaries and connection with its source; the
/// rest is its own.
struct EngineState {
  EngineState() = default;
  EngineState(const EngineState& other);
  EngineState& operator=(const EngineState& other);
  ~EngineState() = default;

  void CopyModes(const EngineState& other);

  /// Verifies a rule as a step of a call that has begun; see `MxExpression::Verify`. Reads words
  /// and texts in a language.
  bool Verify(MXRULE_DATATYPE type, std::u16string_view expression, Language language,
              std::u16string& document, MxErrorRecord& refusal);
  /// The translator for a request, made anew; it works in `tree`. Becomes the last translation.
  std::unique_ptr<IMxTranslator> CreateTranslator(ORKDB_DSType_ENUM dialect);
  /// Oracle where it is asked for, else the database of `Connect`.
  ORKDB_DSType_ENUM DialectFor(ORKDB_DSType_ENUM requested) const noexcept;

  Lexer lexer;
  std::vector<WordView> words;  ///< empty between calls; kept for its memory alone
  RuleInterpreter parser;
  MxDictionarys dictionaries;
  TagTree tree;  ///< of the last translation; kept for its memory alone
  std::optional<LastTranslation> last;
  std::int32_t formDataIn = 0;
  bool useIsNull = true;
  std::u16string rtId;
  ORKDB_DSType_ENUM dsType = kSqlServerDs;
  LastError error;
  std::uint64_t verdicts = 0;  ///< how many calls have set the error pair; not copied
};

struct MxExpression::State : EngineState {};

/// The type that a rule of an expected type is parsed as.
/// kept: type 2, and 8 with it, is parsed as 5: a text may be made of a value of any type.
constexpr MXRULE_DATATYPE ParsedType(MXRULE_DATATYPE type) noexcept {
  return type == kStrDataType || type == kMemoDataType ? kVarDataType : type;
}

/// For what stands beside the facade and works on copies of its state.
struct EngineAccess {
  static const EngineState& Of(const MxExpression& engine) noexcept { return *engine.state_; }
  static EngineState& Of(MxExpression& engine) noexcept { return *engine.state_; }
  static void SetErrorPair(MxExpression& engine, std::int32_t number, std::u16string description) {
    engine.myRaiseError(number, std::move(description));
  }
};

}  // namespace ORKBASE
