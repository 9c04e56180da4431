// The facts about databases.
#include "dialects/Capabilities.h"

#include "dialects/Dialects.h"
#include "dialects/OracleRefusals.h"
#include "foundation/Text.h"

#include <algorithm>

namespace ORKBASE {
namespace {

constexpr Known none = Known::kUnwritten;
constexpr Known run = Known::kRun;
constexpr Known like = Known::kStandIn;
constexpr Known book = Known::kManual;
constexpr Known sql = Known::kWritten;
constexpr Known user = Known::kSupplied;
constexpr Known bare = Known::kMissing;

// clang-format off
constexpr FunctionFact kFunctionFacts[] = {
    //                          default oracle dm    kingbase openGauss
    {u"add_months",              {none, like,  none, none,    none}},
    {u"avg",                     {book, like,  book, run,     run}},
    {u"cast",                    {book, none,  book, run,     run}},
    {u"ceil",                    {none, like,  none, none,    none}},
    {u"CEILING",                 {book, bare,  book, run,     run}},
    {u"CHARINDEX",               {book, bare,  none, like,    none}},
    {u"COALESCE",                {none, none,  none, none,    run}},
    {u"convert",                 {book, none,  book, none,    none}},
    {u"count",                   {book, like,  book, run,     run}},
    {u"dateAdd",                 {book, none,  book, none,    none}},
    {u"datediff",                {book, none,  book, like,    none}},
    {u"Datepart",                {book, none,  none, none,    none}},
    {u"date_part",               {none, none,  none, run,     run}},
    {u"day",                     {book, none,  book, none,    none}},
    {u"decimal",                 {book, none,  book, run,     run}},
    {u"exp",                     {book, like,  book, run,     run}},
    {u"extract",                 {none, none,  none, run,     run}},
    {u"fBase64Encode",           {user, user,  user, user,    user}},
    {u"fCHARINDEX",              {none, none,  none, none,    user}},
    {u"fDateDiff",               {none, none,  none, none,    user}},
    {u"fDatePart_acct",          {user, none,  user, user,    user}},
    {u"fEndTime",                {user, none,  user, user,    user}},
    {u"fHMAC",                   {user, user,  user, user,    user}},
    {u"fHmac2Base64",            {user, user,  user, user,    user}},
    {u"FLOOR",                   {book, like,  book, run,     run}},
    {u"fMd5",                    {user, user,  user, user,    user}},
    {u"fRandBetween",            {user, user,  user, user,    user}},
    {u"fSHA256",                 {user, user,  user, user,    user}},
    {u"fStartTime",              {user, none,  user, user,    user}},
    {u"fStringDistinct",         {user, user,  user, user,    user}},
    {u"fStringSplit",            {user, user,  user, user,    user}},
    {u"fUnixTimestamp",          {user, user,  user, user,    user}},
    {u"fUnixTimestamp2Datetime", {user, user,  user, user,    user}},
    {u"fUrlEncode",              {user, user,  user, user,    user}},
    {u"fVarbintohexstr",         {user, user,  user, user,    user}},
    {u"hour",                    {none, none,  book, none,    none}},
    {u"IsNull",                  {book, none,  book, like,    none}},
    {u"last_day",                {none, like,  none, none,    none}},
    {u"len",                     {book, none,  book, none,    none}},
    {u"length",                  {none, like,  none, run,     run}},
    {u"listagg",                 {none, none,  book, like,    none}},
    {u"ln",                      {none, like,  none, none,    none}},
    {u"locate",                  {none, none,  book, none,    none}},
    {u"log",                     {book, like,  book, run,     run}},
    {u"log10",                   {book, none,  book, run,     run}},
    {u"lower",                   {book, none,  book, run,     run}},
    {u"ltrim",                   {book, like,  book, run,     run}},
    {u"max",                     {book, like,  book, run,     run}},
    {u"min",                     {book, like,  book, run,     run}},
    {u"minute",                  {none, none,  book, none,    none}},
    {u"month",                   {book, none,  book, like,    like}},
    {u"months_between",          {none, like,  none, none,    none}},
    {u"numtodsinterval",         {none, like,  none, none,    none}},
    {u"nvl",                     {none, like,  none, none,    none}},
    {u"POWER",                   {book, like,  book, run,     run}},
    {u"quarter",                 {none, none,  book, none,    none}},
    {u"RAND",                    {book, bare,  book, none,    none}},
    {u"RANDOM",                  {none, none,  none, run,     run}},
    {u"repeat",                  {none, none,  none, run,     run}},
    {u"REPLACE",                 {book, like,  book, run,     run}},
    {u"REPLICATE",               {book, bare,  book, none,    none}},
    {u"ROUND",                   {book, like,  book, run,     run}},
    {u"rtrim",                   {book, like,  book, run,     run}},
    {u"STRING_AGG",              {book, bare,  none, none,    run}},
    {u"substr",                  {none, like,  none, none,    none}},
    {u"substring",               {book, none,  book, run,     run}},
    {u"sum",                     {book, like,  book, run,     run}},
    {u"to_char",                 {none, like,  book, like,    like}},
    {u"to_date",                 {none, like,  none, none,    none}},
    {u"to_number",               {none, like,  none, none,    none}},
    {u"toLower",                 {none, bare,  none, none,    none}},
    {u"trunc",                   {none, like,  none, none,    none}},
    {u"upper",                   {book, like,  book, run,     run}},
    {u"weekDay",                 {none, none,  book, none,    none}},
    {u"year",                    {book, none,  book, like,    like}},
};

constexpr TraitFact kTraitFacts[] = {
    //                          default oracle dm    kingbase openGauss
    {Trait::kCutsText,           {book, none,  book, none,    none}},
    {Trait::kPrintsDates,        {none, sql,   none, none,    none}},
    {Trait::kReadsDatesByMask,   {none, sql,   none, none,    none}},
    {Trait::kEmptyTextIsNull,    {none, book,  none, none,    none}},
    {Trait::kKeepsYear,          {none, sql,   none, none,    none}},
    {Trait::kEndsAtMidnight,     {none, sql,   none, none,    none}},
    {Trait::kKeepsFormInSet,     {none, none,  none, none,    run}},
    {Trait::kNoPower,            {none, book,  none, none,    none}},
    {Trait::kPowerIsBits,        {book, none,  book, none,    none}},
    {Trait::kNoRemainder,        {none, book,  none, none,    none}},
    {Trait::kNoOuterJoin,        {book, book,  none, run,     run}},
    {Trait::kCountsBorders,      {book, none,  book, like,    like}},
    {Trait::kCountsTime,         {none, like,  none, none,    none}},
    {Trait::kKeepsLastDay,       {none, like,  none, none,    none}},
    {Trait::kKeepsDayNumber,     {book, none,  book, run,     run}},
    {Trait::kServerWeek,         {book, book,  none, none,    none}},
    {Trait::kMondayWeek,         {none, none,  none, run,     run}},
    {Trait::kNaturalLog,         {book, like,  book, none,    none}},
    {Trait::kLogOfTen,           {none, none,  none, run,     run}},
    {Trait::kCutsDivision,       {book, none,  book, run,     none}},
    {Trait::kExactDivision,      {none, book,  none, none,    book}},
    {Trait::kRoundsPlaces,       {book, none,  book, run,     run}},
    {Trait::kCutsPlaces,         {none, like,  none, none,    none}},
    {Trait::kZeroIsFirst,        {none, like,  none, none,    none}},
    {Trait::kZeroIsBefore,       {book, none,  none, run,     run}},
    {Trait::kTimeStyle,          {book, none,  none, none,    none}},
    {Trait::kMonthStyle,         {none, like,  book, run,     run}},
};

constexpr MixingArgument kMixingArguments[] = {
    //                                             default oracle dm    kingbase openGauss
    {u"dateAdd",       1, u"yy", Beside::kFactor,   {none, sql,   none, none,    none}},
    {u"dateAdd",       1, u"qq", Beside::kFactor,   {none, sql,   none, sql,     sql}},
    {u"dateAdd",       1, u"ww", Beside::kFactor,   {none, sql,   none, none,    none}},
    {u"thisQuarter",   1, u"",   Beside::kFactor,   {none, sql,   none, none,    none}},
    {u"endOfQuarter",  1, u"",   Beside::kFactor,   {none, sql,   none, none,    none}},
    {u"thisMonth",     1, u"",   Beside::kJoint,    {none, sql,   none, none,    none}},
    {u"fstDayOfMonth", 1, u"",   Beside::kJoint,    {none, sql,   none, none,    none}},
    {u"lstDayOfMonth", 1, u"",   Beside::kJoint,    {none, sql,   none, none,    none}},
};

/// The columns of the tables above.
struct NameRow {
  ORKDB_DSType_ENUM database;
  std::u16string_view name;
};

constexpr NameRow kNames[] = {
    {kSqlServerDs, u"SQL Server"},
    {kOracleDs,    u"Oracle"},
    {kDMDs,        u"DM"},
    {kKingbaseDs,  u"Kingbase"},
    {kOpenGaussDs, u"openGauss"},
};
// clang-format on
static_assert(std::size(kNames) == kDatabaseCount);

/// The column of a database; of one without facts that behind the last.
std::size_t ColumnOf(ORKDB_DSType_ENUM database) {
  const ORKDB_DSType_ENUM number = DialectOf(database).dialect.number;
  const auto is = [number](const NameRow& row) { return row.database == number; };
  return static_cast<std::size_t>(std::find_if(std::begin(kNames), std::end(kNames), is) - kNames);
}

Known At(const std::array<Known, kDatabaseCount>& known, ORKDB_DSType_ENUM database) {
  const std::size_t column = ColumnOf(database);
  return column < known.size() ? known[column] : Known::kUnwritten;
}

}  // namespace

std::span<const FunctionFact> FunctionFacts() {
  return kFunctionFacts;
}

Known KnownOf(ORKDB_DSType_ENUM database, std::u16string_view sqlFunction) {
  if (const std::size_t owner = sqlFunction.rfind(u'.'); owner != sqlFunction.npos) {
    sqlFunction.remove_prefix(owner + 1);
  }
  for (const FunctionFact& fact : kFunctionFacts) {
    if (EqualsIgnoringCase(fact.function, sqlFunction)) return At(fact.known, database);
  }
  return Known::kUnwritten;
}

std::span<const TraitFact> TraitFacts() {
  return kTraitFacts;
}

bool HasTrait(ORKDB_DSType_ENUM database, Trait trait) {
  const auto is = [trait](const TraitFact& fact) { return fact.trait == trait; };
  const auto* fact = std::find_if(std::begin(kTraitFacts), std::end(kTraitFacts), is);
  return fact != std::end(kTraitFacts) && HoldsOn(database, fact->known);
}

std::span<const MixingArgument> MixingArguments() {
  return kMixingArguments;
}

bool HoldsOn(ORKDB_DSType_ENUM database, const std::array<Known, kDatabaseCount>& known) {
  return At(known, database) != Known::kUnwritten;
}

const Refusal* RefusalOf(ORKDB_DSType_ENUM database, std::u16string_view function,
                         std::u16string_view firstArgument) {
  const DialectRow& dialect = DialectOf(database);
  const TransEntry* entry = dialect.map().Find(LookupKey(function));
  if (!entry) return nullptr;
  if (const Refusal* refusal = std::get_if<Refusal>(&entry->what)) return refusal;
  const bool isDifference = EqualsIgnoringCase(function, u"timeInterval");
  if (!isDifference || dialect.dialect.number != kOracleDs) return nullptr;
  return RefusedDifference(firstArgument);
}

std::u16string_view DatabaseName(ORKDB_DSType_ENUM database) {
  const std::size_t column = ColumnOf(database);
  return column < kDatabaseCount ? kNames[column].name : DialectOf(database).dialect.name;
}

}  // namespace ORKBASE
