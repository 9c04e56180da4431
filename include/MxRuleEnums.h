// The fixed numbers of the rule language: value types, word kinds, tree shapes and databases.
// They stand as decimal text in stored documents, so a number never changes its meaning.
#pragma once

#include <cstdint>

namespace ORKBASE {

/// Value type of a word, of a grammar rule or of a whole expression. 1 to 7 each have a start
/// rule of the grammar.
enum MXRULE_DATATYPE : std::int32_t {
  kNoDataType = 0,  ///< no value: delimiters, date parts, date styles; fits every expected type
  kNumDataType = 1,
  kStrDataType = 2,
  kDateDataType = 3,
  kLogicDataType = 4,  ///< condition
  kVarDataType = 5,    ///< any type; as the type of a word it fits every expected type
  kPicDataType = 6,    ///< picture field
  kLinkDataType = 7,   ///< link (attachment) field
  kMemoDataType = 8,   ///< long text; becomes 2 before it reaches a word
  kReserved9DataType = 9,
  kReserved10DataType = 10,
};

/// Kind of a word.
enum MXRULE_SYMBOL_TYPE : std::int32_t {
  kUnknownSymbol = -1,      ///< in no dictionary, and not (yet) known as a constant
  kConstantSymbol = 0,      ///< number, text or date constant
  kDataFieldSymbol = 4,     ///< field of a data table
  kSmsSymbol = 7,           ///< "Sms." and what follows it
  kInputSymbol = 8,         ///< "Input." and what follows it
  kCAXFieldSymbol = 9,      ///< field of an attached CAD document
  kSysvarSymbol = 10,       ///< system variable
  kSysvarUserSymbol = 11,   ///< system variable of the current user
  kSysvarCaseSymbol = 12,   ///< system variable of the current record
  kFormFieldSymbol = 13,    ///< field of the current report template
  kDatePartSymbol = 14,     ///< date part or quoted date style
  kReportFieldSymbol = 15,  ///< form field of a detail table; only in translated documents
  kOpSumSymbol = 16,        ///< "+" and "-"
  kOpMultiSymbol = 17,      ///< "*", "/", "^", "%"
  kOpComposeSymbol = 18,    ///< "&"
  kOpRelaSymbol = 19,       ///< comparisons and "like"
  kOpCondSymbol = 20,       ///< "and", "or"
  kOpNotSymbol = 21,        ///< "not"; as a built node any operator before its operand
  kOpJoinSymbol = 22,       ///< "*=", "=*"
  kOpInSymbol = 23,         ///< "in", "not_in", "between"
  kDelimiterSymbol = 24,    ///< "(", ")", ","
  kReserved25Symbol = 25,
  kOpIsNullSymbol = 26,  ///< "null", "not_null"
  kFunctionSymbol = 27,  ///< every function
  kSubQuerySymbol = 28,  ///< "select" of a built sub-query; stored in no word
  kCAXEnumSymbol = 29,   ///< enumeration value of an attached CAD document
};

/// How the nodes of a matched grammar rule combine, and how a node prints.
enum MXRULE_SEMANTIC_TYPE : std::int32_t {
  kInfixSemantic = 0,     ///< operator between two operands
  kFunctionSemantic = 1,  ///< function and its arguments
  kPrefixSemantic = 2,    ///< operator before its operand
  kPostfixSemantic = 3,   ///< operator behind its operand
  kLeafSemantic = 4,      ///< a word by itself
};

/// Kind of a database; `RuleDialects.h` has their names. Every other value is served like
/// `kSqlServerDs`, but quotes names with double quotes in the maintenance operations.
enum ORKDB_DSType_ENUM : std::int32_t {
  kSqlServerDs = 0,
  kOracleDs = 3,
  kDMDs = 11,
  kKingbaseDs = 14,
  kOpenGaussDs = 15,
};

}  // namespace ORKBASE
