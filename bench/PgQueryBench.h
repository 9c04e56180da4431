// PostgreSQL's own parser, as a C library: the rule in its words, to a tree and back.
#pragma once

#include <string>

namespace bench {

/// Parses to protobuf and deparses; false when the text is refused. Defined only where libpg_query
/// was found.
bool PgParseAndDeparse(const std::string& sql);

}  // namespace bench
