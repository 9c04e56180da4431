// An answer as JSON. Its end, the pair of number and text, may come later than its fields.
#pragma once

#include "service/Call.h"
#include "service/Fields.h"

#include <string>
#include <string_view>

namespace ORKBASE {

/// An answer up to its end. `id` is a value in JSON, empty for none.
std::string BeginAnswer(std::string_view id, const Record& fields);
/// Ends it, with a pair or without.
void EndAnswer(std::string& answer);
void EndAnswer(std::string& answer, const ErrorPair& pair);

/// The answer to a request that cannot be carried out.
std::string AnswerOf(std::string_view id, const BadRequest& bad);

}  // namespace ORKBASE
