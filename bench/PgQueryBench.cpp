// Calling libpg_query.
#include "PgQueryBench.h"

#include <pg_query.h>

namespace bench {

bool PgParseAndDeparse(const std::string& sql) {
  const PgQueryProtobufParseResult parsed = pg_query_parse_protobuf(sql.c_str());
  bool accepted = parsed.error == nullptr;
  if (accepted) {
    const PgQueryDeparseResult deparsed = pg_query_deparse_protobuf(parsed.parse_tree);
    accepted = deparsed.error == nullptr;
    pg_query_free_deparse_result(deparsed);
  }
  pg_query_free_protobuf_parse_result(parsed);
  return accepted;
}

}  // namespace bench
