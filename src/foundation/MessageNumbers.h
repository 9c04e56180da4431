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

  // Warnings about what a rule means, 7200 to 7219
  kMsgOrBeforeAnd            = 7200,
  kMsgMinusBeforeSum         = 7201,
  kMsgNotReadAsDate          = 7202,  ///< one %s: the text
  kMsgOddMemberType          = 7203,  ///< two %s: the type of the value, the type of the others
  kMsgNotInOverColumn        = 7204,  ///< one %s: the field
  kMsgCadNotLoaded           = 7205,  ///< one %s: the word
  kMsgPictureUnused          = 7206,  ///< one %s: the word

  // Warnings about databases, 7220 to 7259: the first %s names those that the warning is about
  kMsgTextIsCut              = 7220,  ///< two %s: with the number of letters that stay
  kMsgTextReadsAsDate        = 7221,  ///< two %s: with the text
  kMsgDateNotInMask          = 7222,  ///< three %s: with the date, the order that is read
  kMsgEmptyTextIsNull        = 7223,  ///< one %s
  kMsgNoYearBefore           = 7224,  ///< two %s: with the function
  kMsgEndIsMidnight          = 7225,  ///< one %s
  kMsgIntervalDiffers        = 7226,  ///< two %s: with the others
  kMsgMonthEndDiffers        = 7227,  ///< two %s: with the others
  kMsgWeekBeginDiffers       = 7228,  ///< two %s: with the others
  kMsgLogDiffers             = 7229,  ///< two %s: with the others
  kMsgDivisionDiffers        = 7230,  ///< two %s: with the others
  kMsgPlacesDiffer           = 7231,  ///< two %s: with the others
  kMsgStartZeroDiffers       = 7232,  ///< two %s: with the others
  kMsgTimeStyleDiffers       = 7233,  ///< two %s: with the others
  kMsgArgumentMixes          = 7234,  ///< two %s: with the argument
  kMsgNoOperator             = 7235,  ///< two %s: with the operator
  kMsgOperatorIsBits         = 7236,  ///< two %s: with the operator
  kMsgCallRefused            = 7237,  ///< two %s: with the text of the refusal
  kMsgCallUnknown            = 7238,  ///< two %s: with the function
  kMsgSetKeepsForm           = 7239,  ///< two %s: with the field
  kMsgEmptyFieldLeftOut      = 7240,  ///< one %s

  // Warnings about a rule that becomes two texts, 7260 to 7299
  kMsgTornApart              = 7260,  ///< one %s: the word
  kMsgLeftAlone              = 7261,  ///< one %s: the word

  // Problems of a rule, 7300 to 7329
  kMsgOpenBracket            = 7300,
  kMsgSurplusBracket         = 7301,
  kMsgWideSign               = 7302,  ///< one %s: the sign
  kMsgOddBlank               = 7303,
  kMsgForeignForm            = 7304,  ///< one %s: what was typed
  kMsgForeignWord            = 7305,  ///< two %s: the word, what a rule has for it
  kMsgOtherLanguage          = 7306,  ///< two %s: the word, the same word in this language
  kMsgOtherCase              = 7307,  ///< two %s: the word, its spelling
  kMsgNoTable                = 7308,  ///< one %s: the field
  kMsgDateUnquoted           = 7309,  ///< one %s: the date
  kMsgNumberQuoted           = 7310,  ///< one %s: the number
  kMsgPlusBetweenTexts       = 7311,
  kMsgPlusAfterDate          = 7312,
  kMsgOtherTypeExpected      = 7313,  ///< two of 7420 to 7426: what it is, what is expected
  kMsgNeedsFirst             = 7314,  ///< two %s: the function, the type
  kMsgNeedsSecond            = 7315,  ///< two %s: the function, the type
  kMsgNeedsThird             = 7316,  ///< two %s: the function, the type
  kMsgNeedsAnother           = 7317,  ///< two %s: the function, the type
  kMsgTooManyArguments       = 7318,  ///< one %s: the function
  kMsgDatabaseFailed         = 7319,  ///< one %s: what the database said
  kMsgWordsFollowLanguage    = 7329,

  // What cannot be asked or written, 7330 to 7349
  kMsgBadOffset              = 7330,
  kMsgControlCharacter       = 7331,  ///< one %s: the text
  kMsgHalfCharacter          = 7332,  ///< one %s: the text
  kMsgNameIsWord             = 7333,  ///< one %s: the name
  kMsgCadWordNotLoaded       = 7334,  ///< one %s: the word
  kMsgNoRuleGivesThis        = 7335,

  // Labels of fixes, 7350 to 7399
  kMsgFixWideSigns           = 7350,  ///< all at once
  kMsgFixWideSign            = 7351,  ///< one %s: the sign
  kMsgFixWrite               = 7352,  ///< one %s: the new text
  kMsgFixTakeOut             = 7353,  ///< one %s: what goes
  kMsgFixOwnLanguage         = 7354,  ///< one %s: the word
  kMsgFixSpelling            = 7355,  ///< one %s: the word
  kMsgFixAddTable            = 7356,  ///< one %s: the field with its table
  kMsgFixAddType             = 7357,  ///< one %s: the parameter with its type
  kMsgFixAddMissing          = 7358,  ///< one %s: the sign
  kMsgFixTakeOutSurplus      = 7359,  ///< one %s: the sign
  kMsgFixQuoteText           = 7360,  ///< one %s: the text
  kMsgFixQuoteDate           = 7361,  ///< one %s: the date
  kMsgFixUnquote             = 7362,  ///< one %s: the number
  kMsgFixConvert             = 7363,  ///< one %s: the conversion
  kMsgFixJoinTexts           = 7364,  ///< one %s: the sign
  kMsgFixMoveDate            = 7365,  ///< one %s: the call
  kMsgFixBracketsOfRule      = 7366,
  kMsgFixBracketsOfDatabases = 7367,
  kMsgFixBracketArgument     = 7368,

  // What may stand in a place and is no kind of word or type, 7400 to 7419
  kMsgExpectField            = 7400,
  kMsgExpectTable            = 7401,
  kMsgExpectVariable         = 7402,
  kMsgExpectParameter        = 7403,
  kMsgExpectOperator         = 7404,
  kMsgExpectOpening          = 7405,
  kMsgExpectClosing          = 7406,
  kMsgExpectComma            = 7407,
  kMsgExpectDatePart         = 7408,
  kMsgExpectDateStyle        = 7409,
  kMsgExpectPeriod           = 7410,
  kMsgExpectEnd              = 7411,
  kMsgNoFit                  = 7412,  ///< two %s: the type of a word, one of 7420 to 7426
  kMsgLabelName              = 7419,  ///< of the name of a parameter

  // Names of types within a sentence, 7420 to 7426
  kMsgANumber                = 7420,
  kMsgAText                  = 7421,
  kMsgADate                  = 7422,
  kMsgACondition             = 7423,
  kMsgAnyValue               = 7424,
  kMsgAPicture               = 7425,
  kMsgAnAttachment           = 7426,

  // Names of types in a signature that are shorter there, 7430 to 7439
  kMsgAnyInSignature         = 7430,

  // What a word stands for, 7440 to 7449
  kMsgFieldOfTable           = 7440,  ///< two %s: the table, the field

  // The road to a store, 7500 to 7519
  kMsgStoreNotOwnKind        = 7500,  ///< the server text is one of a caller's own kind
  kMsgStoreQuestionMark      = 7501,  ///< a `?` in a statement
  kMsgStoreSecondStatement   = 7502,
  kMsgStoreNoRows            = 7503,  ///< the statement is no query
  kMsgStoreHalfCharacter     = 7504,
  kMsgStoreZeroInStatement   = 7505,
  kMsgStoreZeroInText        = 7506,

  // Changes of rules in a store, 7520 to 7539
  kMsgChangesNotKept         = 7520,  ///< two %s: the folder, what the system says
  kMsgSelectHasValue         = 7521,  ///< one %s: the name of the value
  kMsgSelectNotNested        = 7522,  ///< one %s: what the database says
  kMsgNoGuardedColumn        = 7523,  ///< one %s: the column
  kMsgUpdateWithoutId        = 7524,
  kMsgRuleNotWritten         = 7525,  ///< two %s: the id, what the database says
  kMsgUpdateTooWide          = 7526,
  kMsgLedgerInUse            = 7527,  ///< one %s: the table or file
  kMsgLedgerUnusable         = 7528,  ///< two %s: the table or file, what the system says
  kMsgLedgerDamaged          = 7529,  ///< two %s: the file, the number of the line

  // Rules that are kept in a database, and their upkeep, 7540 to 7599
  kMsgUpkeepNoRule           = 7540,
  kMsgUpkeepNoDocument       = 7541,
  kMsgUpkeepDocumentChanged  = 7542,
  kMsgUpkeepSqlChanged       = 7543,  ///< one %s: the dialect
  kMsgUpkeepNoForm           = 7544,  ///< one %s: the dialect
  kMsgUpkeepNoCax            = 7545,  ///< one %s: the name
  kMsgUpkeepBadCax           = 7546,  ///< two %s: the name, the reason
  kMsgUpkeepOtherCase        = 7550,  ///< two %s: the word, the name
  kMsgUpkeepNameInText       = 7551,  ///< one %s: the name
  kMsgUpkeepTableLeft        = 7552,  ///< one %s: the table
  kMsgUpkeepNothingLeft      = 7553,
  kMsgUpkeepIllegalName      = 7560,  ///< two %s: the old name, the new name; also below
  kMsgUpkeepNameTaken        = 7561,
  kMsgUpkeepNameTwice        = 7562,
  kMsgUpkeepNameIsWord       = 7563,
  kMsgUpkeepNameUnknown      = 7564,
  // clang-format on
};

}  // namespace ORKBASE
