#!/usr/bin/env bash
# Measures `orkrule store` over many rules in SQLite and, where its server is installed, PostgreSQL
# over ODBC: how fast against `orkrule batch` over the same rules, and with how much memory.
#
#   bench/store.sh [RULES]        1,000,000 unless told; REPETITIONS=1 is quicker and less steady
#
# Builds the tool optimised into build/bench-tool, unless ORKRULE_TOOL names one that is built.
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

rules=${1:-1000000}
out=build/bench-tool
tool=${ORKRULE_TOOL:-$out/bin/orkrule}
if [ -z "${ORKRULE_TOOL:-}" ]; then
  say "Building"
  cmake --preset release -B "$out" -DORKRULE_TESTS=OFF --log-level=STATUS
  cmake --build "$out" --target orkrule
fi
folder=$(mktemp -d "${TMPDIR:-/tmp}/orkrule-store-XXXXXX")
trap 'rm -rf -- "$folder"' EXIT
scripts/make_sample_db.sh "$folder/shop.db"
python3 bench/store.py "$tool" "$folder" "$rules" "${REPETITIONS:-3}"
