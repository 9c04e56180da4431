// The table of translators.
#include "expression/TranslatorChoice.h"

#include "dialects/MxDMTranslator.h"
#include "dialects/MxKingbaseTranslator.h"
#include "dialects/MxOpenGaussTranslator.h"
#include "dialects/MxPLsqlTranslator.h"
#include "translator/MxSql92Translator.h"

namespace ORKBASE {
namespace {

template <class Translator>
std::unique_ptr<IMxTranslator> New() {
  return std::make_unique<Translator>();
}

struct TranslatorRow {
  ORKDB_DSType_ENUM dsType;
  std::unique_ptr<IMxTranslator> (*make)();
};

// clang-format off
constexpr TranslatorRow kTranslators[] = {
    {kSqlServerDs, New<MxSql92Translator>},
    {kOracleDs,    New<MxPLsqlTranslator>},
    {kDMDs,        New<MxDMTranslator>},
    {kKingbaseDs,  New<MxKingbaseTranslator>},
    {kOpenGaussDs, New<MxOpenGaussTranslator>},
};
// clang-format on

}  // namespace

std::unique_ptr<IMxTranslator> NewTranslator(ORKDB_DSType_ENUM requested,
                                             ORKDB_DSType_ENUM connected) {
  const ORKDB_DSType_ENUM dsType = requested == kOracleDs ? kOracleDs : connected;
  for (const TranslatorRow& row : kTranslators) {
    if (row.dsType == dsType) return row.make();
  }
  return kTranslators[0].make();
}

}  // namespace ORKBASE
