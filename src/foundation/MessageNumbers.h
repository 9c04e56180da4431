// The catalogue of message numbers: every number that code names, except those of the vocabulary,
// which stand in the rows of its table. The texts are in messages/, one file per language.
// `%s` counts tell how many texts `Format` is to be given.
#pragma once

#include <cstdint>

namespace ORKBASE {

/// Number of a text in the message file. Stored nowhere, but part of the message file's format.
enum MessageNumber : std::int32_t {
  // clang-format off
  // Refused rules and translations
  kMsgSurplusWords      = 6222,  ///< words are left over behind a valid rule
  kMsgQuarterDifference = 6254,  ///< this database counts no quarters between dates
  kMsgWeekDifference    = 6255,  ///< this database counts no weeks between dates
  kMsgThisSetRefused    = 6256,  ///< this database knows no `thisSet`
  kMsgFiscalRefused     = 6257,  ///< this database knows no fiscal periods
  kMsgNoReportTemplate  = 6258,  ///< one %s: the id that was looked for
  kMsgNoDataTable       = 6259,  ///< one %s: the name that was looked for
  kMsgUnknownWord       = 6260,  ///< one %s: the word
  kMsgBadPostfix        = 6261,  ///< one %s: the word without [S], [N] or [D]
  kMsgUnpairedQuote     = 6262,  ///< one %s: the word
  kMsgUnclosedText      = 6263,  ///< one %s: the word
  kMsgWrongDataType     = 6264,  ///< two %s: the word, the name of the expected type

  // Names of value types
  kMsgTypeNone          = 6265,
  kMsgTypeMemo          = 6266,
  kMsgTypeReserved9     = 6267,
  kMsgTypeReserved10    = 6268,
  kMsgTypeOther         = 6269,  ///< any value above 10

  // Names of word kinds
  kMsgSymbolConstant    = 6270,
  kMsgSymbolDataField   = 6271,
  kMsgSymbolSms         = 6272,
  kMsgSymbolInput       = 6273,
  kMsgSymbolSysvar      = 6274,
  kMsgSymbolSysvarUser  = 6275,
  kMsgSymbolSysvarCase  = 6276,
  kMsgSymbolFormField   = 6277,
  kMsgSymbolReportField = 6278,
  kMsgSymbolCAXField    = 6279,
  kMsgSymbolCAXEnum     = 6280,
  kMsgSymbolDatePart    = 6281,
  kMsgSymbolOpSum       = 6282,
  kMsgSymbolOpMulti     = 6283,
  kMsgSymbolOpCompose   = 6284,
  kMsgSymbolOpRela      = 6285,
  kMsgSymbolOpCond      = 6286,
  kMsgSymbolOpNot       = 6287,
  kMsgSymbolOpJoin      = 6288,
  kMsgSymbolOpIn        = 6289,
  kMsgSymbolDelimiter   = 6290,
  kMsgSymbolReserved25  = 6291,
  kMsgSymbolOpIsNull    = 6292,

  // Refused rules and documents
  kMsgNoStartRule       = 6293,  ///< one %s: the name of the type that no rule can have
  kMsgEndsTooEarly      = 6294,
  kMsgWrongSymbol       = 6295,  ///< two %s: the word, the name of the expected kind
  kMsgWrongLiteral      = 6296,  ///< two %s: the word, the expected word
  kMsgDocumentNotParsed = 6297,  ///< put directly behind "exprParsedXml"

  // Names of value types that a rule can have
  kMsgTypeNumber        = 6313,
  kMsgTypeText          = 6314,
  kMsgTypeDate          = 6315,
  kMsgTypeCondition     = 6316,
  kMsgTypeAny           = 6317,
  kMsgThisReport        = 6319,  ///< word before a field of the current record, without its dot
  kMsgTypePicture       = 6324,
  kMsgTypeLink          = 6325,

  // Words of an attached CAD document
  kMsgThisDoc           = 6340,  ///< word before a field of the document, without its dot
  kMsgCaxEnum           = 6394,  ///< stands between the CAD program's name and a dot

  kMsgSymbolFunction    = 6600,

  // Conditions of this implementation, 6700 to 6799
  kMsgNoConnection      = 6700,  ///< a load without a connection
  kMsgTooDeep           = 6701,  ///< nested too deeply
  kMsgResultTooLarge    = 6702,  ///< the translated document grows out of bounds
  kMsgRenamedTooLong    = 6703,  ///< new names make a rule or a word too long
  kMsgDatabaseTimeout   = 6705,  ///< a load took too long; one %s: the seconds that it may take

  // Data access, 6710 to 6739
  kMsgNotPlainNames     = 6710,
  kMsgNoDatabaseKind    = 6711,
  kMsgProxyRefused      = 6712,
  kMsgStatementNotAscii = 6713,
  kMsgNoOdbcEnvironment = 6714,
  kMsgLongOdbcString    = 6715,
  kMsgNoOdbcReason      = 6716,
  kMsgNoOdbcString      = 6717,
  kMsgNoServerName      = 6718,
  kMsgNoEncryption      = 6719,  ///< the driver cannot be asked for an encrypted connection
  kMsgStatementEmpty    = 6720,
  kMsgWrongValueCount   = 6721,  ///< the values of a query do not fit its statement
  // clang-format on
};

}  // namespace ORKBASE
