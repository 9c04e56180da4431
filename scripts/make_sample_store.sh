#!/bin/sh
# Makes the sample store of rules: make_sample_store.sh OUT.db [TOOL]
# The rules come from examples/rules.sql; the tool adds their documents and SQL; then they age.
# A file that is there already is replaced once the new one is complete.
set -eu

if [ $# -lt 1 ] || [ $# -gt 2 ]; then
  echo "usage: $0 OUT.db [TOOL]" >&2
  exit 2
fi
here="$(dirname "$0")"
out="$1"
tool="${2:-$here/../build/release/bin/orkrule}"
new="$out.new.$$"
shop="$out.shop.$$"
trap 'rm -f -- "$new" "$shop"' EXIT

"$here/make_sample_db.sh" "$shop"
"$here/run_sqlite.sh" "$new" "$here/../examples/rules.sql"
# Some rules are broken on purpose, which the status 1 tells.
LC_ALL=C "$tool" store sql --store "sqlite:$new" --db "$shop" --dialect oracle --apply \
  --select "select id, type, expression, document, template, language, sql_oracle from rules" \
  --update "update rules set document = :document, sql_oracle = :sql_oracle where id = :id" \
  >/dev/null 2>&1 || [ $? -eq 1 ]
"$here/run_sqlite.sh" "$new" "$here/../examples/rules-aged.sql"
mv -f -- "$new" "$out"
