// What an `MxExpression` holds between calls.
#pragma once

#include <cstdint>
#include <forward_list>
#include <memory>
#include <string>
#include <vector>

#include "MxExpression.h"
#include "dictionary/MxDictionarys.h"
#include "foundation/WordView.h"
#include "lexer/Lexer.h"
#include "lexer/TextRenamer.h"
#include "parser/RuleInterpreter.h"
#include "translator/IMxTranslator.h"

namespace ORKBASE {

/// A copy shares dictionaries, connection and translator with its source; the rest is its own.
struct MxExpression::State {
  State() = default;
  State(const State& other);
  State& operator=(const State& other);

  /// The translator for a request of this database type, made anew.
  void CreateTranslator(ORKDB_DSType_ENUM requested);

  Lexer lexer;
  std::vector<WordView> words;  ///< of the last rule; kept for its memory alone
  NameQuotes quotes;
  RuleInterpreter parser;
  MxDictionarys dictionaries;
  std::shared_ptr<IMxTranslator> translator;
  std::int32_t formDataIn = 0;
  bool useIsNull = true;
  std::u16string rtId;
  ORKDB_DSType_ENUM dsType = kSqlServerDs;
  MxErrorRecord error;  ///< the last one

 private:
  void CopyModes(const State& other);
};

}  // namespace ORKBASE
