#!/usr/bin/env bash
# Writes the table of examples/functions.md: one rule for every function, and its SQL.
# Usage: scripts/make_function_table.sh TOOL DATABASE > examples/functions.md
# Fails when a function of the vocabulary has no rule, or a rule is refused.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
tool=$1
database=$2
rules=$root/examples/functions.txt

while read -r name _; do
  grep -qi "[ (]$name(" "$rules" || { echo "no rule for $name" >&2; exit 1; }
done < <("$tool" vocabulary functions --language en)

cat <<'TXT'
# Every function and its SQL

The rules of `functions.txt` over the sample database, in the default dialect, as
`orkrule sql --db examples/shop.db` prints them. Made by `scripts/make_function_table.sh`.

| rule | SQL |
|---|---|
TXT
while read -r type rule; do
  case "$type" in '' | '#'*) continue ;; esac
  sql=$("$tool" sql --db "$database" --language en --type "$type" -- "$rule" </dev/null)
  printf '| `%s` | `%s` |\n' "$rule" "$sql"
done <"$rules"
