// The table of dialects.
#include "dialects/Dialects.h"

#include "dialects/MxDMTranslator.h"
#include "dialects/MxKingbaseTranslator.h"
#include "dialects/MxOpenGaussTranslator.h"
#include "dialects/MxPLsqlTranslator.h"
#include "dialects/MxSql92Translator.h"
#include "foundation/Text.h"

#include <array>

namespace ORKBASE {
namespace {

template <class Translator>
std::unique_ptr<IMxTranslator> New(TagTree& doc) {
  return std::make_unique<Translator>(doc);
}

template <class Translator>
constexpr DialectRow Row(RuleDialect dialect, ORKDB::OdbcDriver driver) {
  return {dialect, New<Translator>, Translator::Map, driver};
}

// clang-format off
/// Number, name, other names; driver, key of the port, what asks for encryption and for reading
/// only, what always stands there.
constexpr DialectRow kDialects[] = {
    Row<MxSql92Translator>    ({kSqlServerDs, u"default",   u"sqlserver,mssql,tsql,transactsql"}, {u"FreeTDS",            u"Port",     u"Encryption=require;", u"ApplicationIntent=ReadOnly;", u"TDS_Version=7.4;"}),
    Row<MxPLsqlTranslator>    ({kOracleDs,    u"oracle",    u"ora,oracledb,plsql"},               {u"Oracle",             u"",         u"",                    u"",                            u""}),
    Row<MxDMTranslator>       ({kDMDs,        u"dm",        u"dameng,dmdb,dm8"},                  {u"DM",                 u"TCP_PORT", u"",                    u"",                            u""}),
    Row<MxKingbaseTranslator> ({kKingbaseDs,  u"kingbase",  u"kingbasees,kdb,kes"},               {u"Kingbase",           u"Port",     u"SSLmode=require;",    u"ReadOnly=1;",                 u""}),
    Row<MxOpenGaussTranslator>({kOpenGaussDs, u"opengauss", u"gauss,gaussdb"},                    {u"PostgreSQL Unicode", u"Port",     u"SSLmode=require;",    u"ReadOnly=1;",                 u""}),
};
// clang-format on

constexpr auto kRuleDialects = [] {
  std::array<RuleDialect, std::size(kDialects)> all{};
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = kDialects[i].dialect;
  return all;
}();

bool IsMark(char16_t c) noexcept {
  return c == u' ' || c == u'-' || c == u'_' || c == u'/';
}

/// In small letters, without what some put between them: SQL Server, T-SQL, PL/SQL.
std::u16string PlainName(std::u16string_view name) {
  std::u16string plain = ToLower(name);
  const bool isWhole = !plain.empty() && !IsMark(plain.front()) && !IsMark(plain.back());
  if (isWhole) std::erase_if(plain, IsMark);
  return plain;
}

}  // namespace

std::span<const DialectRow> Dialects() {
  return kDialects;
}

const DialectRow& DialectOf(ORKDB_DSType_ENUM number) {
  for (const DialectRow& row : kDialects) {
    if (row.dialect.number == number) return row;
  }
  return kDialects[0];
}

std::span<const RuleDialect> RuleDialects() {
  return kRuleDialects;
}

const RuleDialect* FindRuleDialect(std::u16string_view name) {
  const std::u16string plain = PlainName(name);
  for (const RuleDialect& dialect : kRuleDialects) {
    if (dialect.name == plain || IsListItem(dialect.otherNames, plain)) return &dialect;
  }
  return nullptr;
}

}  // namespace ORKBASE

const ORKDB::OdbcDriver& ORKDB::DriverOf(ORKBASE::ORKDB_DSType_ENUM type) {
  return ORKBASE::DialectOf(type).driver;
}
