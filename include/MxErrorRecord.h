// An error as a record: what a program can act on, beside the pair of number and text for people.
//
//   std::u16string document;
//   if (!rules.Verify(ORKBASE::kLogicDataType, rule, document)) {
//     const ORKBASE::MxErrorRecord& error = rules.errRecord();
//     if (error.cause == ORKBASE::kDatabaseCause) return TryLater(ORKBASE::ErrorText(error));
//     Underline(error.offset, error.length, ORKBASE::ErrorText(error));
//   }
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "OrkExport.h"

namespace ORKBASE {

/// What an error comes from.
enum MXRULE_ERROR_CAUSE : std::int32_t {
  kNoCause = 0,        ///< there is no error
  kRuleCause = 1,      ///< the rule: a word, its kind or type, or its end
  kRequestCause = 2,   ///< the call: a table, template or type that is not there, no connection
  kDatabaseCause = 3,  ///< the metadata database did not answer, or refused the query
  kDocumentCause = 4,  ///< the document: it does not parse, or its translation grows too large
  kDialectCause = 5,   ///< the database that is written for has no form for a function
};

/// What a message is filled with: a text, or the name of a value type or of a kind of word, which
/// is another in each language.
struct MxErrorArgument {
  enum Kind : std::int32_t { kText, kDataType, kSymbol };

  Kind kind = kText;
  std::int32_t number = 0;  ///< `MXRULE_DATATYPE` or `MXRULE_SYMBOL_TYPE`
  std::u16string text;      ///< of the kind `kText`
};

/// One error. Places count units of UTF-16 from the beginning of the rule text.
struct MxErrorRecord {
  MXRULE_ERROR_CAUSE cause = kNoCause;
  std::int32_t number = 0;   ///< as `errNumber()` tells it
  std::int32_t message = 0;  ///< number of the message; 0 where the text comes from elsewhere
  std::vector<MxErrorArgument> arguments;  ///< what the message is filled with, in order
  std::u16string text;                     ///< stands before the message; alone, the database's own
  std::int32_t token = -1;   ///< index among the original tokens; -1 where no word was refused
  std::int32_t offset = -1;  ///< of the refused word, or the end of a rule that ends too early
  std::int32_t length = 0;   ///< of the refused word
  std::u16string word;       ///< the refused word as it stands in the rule
  std::vector<MxErrorArgument> expected;  ///< what might have stood there instead
  /// The error behind this one, or nothing: why the table of an unknown word could not be loaded.
  std::vector<MxErrorRecord> behind;
};

/// The text of an error in the language of the calling thread. It is that of `errDescription()`,
/// but names the word as it stands in the rule also where that has no name for it (a field whose
/// table was loaded by the rule itself), and tells what the database said where that is the cause.
ORKRULE_EXPORT std::u16string ErrorText(const MxErrorRecord& error);

}  // namespace ORKBASE
