// What an `MxExpression` holds between calls.
#pragma once

#include <cstdint>
#include <forward_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MxExpression.h"
#include "dictionary/MxDictionarys.h"
#include "document/TagTree.h"
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

/// A copy shares dictionaries and connection with its source; the rest is its own.
struct MxExpression::State {
  State() = default;
  State(const State& other);
  State& operator=(const State& other);

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
  MxErrorRecord error;  ///< the last one

 private:
  void CopyModes(const State& other);
};

}  // namespace ORKBASE
