// The entry points that take any bytes. A fuzzer drives them, and the suite replays generated input
// through them; neither expects anything but that they come back.
#pragma once

#include <string>

namespace ORKFUZZ {

/// The bytes as a rule: verified as every type, and what verifies is translated, cut and renamed.
void TryRule(const std::string& bytes);

/// The bytes as a text that an editor asks every call about. The first four of them choose the
/// type, the place, the limit, the databases and the language.
void TryAuthoring(const std::string& bytes);

/// The bytes as a document: translated for every database in both forms, and composed.
void TryDocument(const std::string& bytes);

/// The bytes as a CAX document, with a rule over what came of it.
void TryCaxDocument(const std::string& bytes);

}  // namespace ORKFUZZ
