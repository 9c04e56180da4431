// The plain way of the second pass of a translation, as the measure of the one walk that the engine
// makes: search the whole document for the first function with a handler, rebuild a copy of it, put
// the result in its place, write the document and read it again; until there is none.
#pragma once

#include "MxRuleEnums.h"

#include <string>

namespace ORKBASE {
class MxDictionarys;
}

/// Settings of a translator, as the facade hands them on.
struct TranslatorModes {
  const ORKBASE::MxDictionarys* dictionaries = nullptr;
  std::u16string rtId;
  std::int32_t formDataIn = 0;
  bool useIsNull = true;
};

/// Translates with the translator of a database, in the plain way. Throws what handlers throw, and
/// a `std::logic_error` for a handler that returns nothing.
std::u16string TranslatePlainly(ORKBASE::ORKDB_DSType_ENUM dsType, const TranslatorModes& modes,
                                const std::u16string& parsed);

/// The same with the engine's translator. Throws a `std::runtime_error` where it reports an error.
std::u16string TranslateByEngine(ORKBASE::ORKDB_DSType_ENUM dsType, const TranslatorModes& modes,
                                 const std::u16string& parsed);

/// A document as one line a node, without the white space between them; "ifgrpby" stands last.
std::string WithoutWhiteSpace(const std::u16string& document);
