#!/usr/bin/env bash
# Builds the library and its tool, makes the sample databases and shows what becomes of each rule of
# examples/rules.txt, the parsed document and the SQL, and how a store of rules is checked. Installs
# what is missing, but no test tools.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

tool=build/release/bin/orkrule
database=examples/shop.db
store=examples/rules.db

install_packages "${build_packages[@]}"
say "Building"
cmake --preset release -DORKRULE_TESTS=OFF --log-level=WARNING
cmake --build --preset release --target orkrule
scripts/make_sample_db.sh "$database"
scripts/make_sample_store.sh "$store" "$tool"

say "The rules of examples/rules.txt over the tables of $database"
while read -r type rule; do
  case "$type" in '' | '#'*) continue ;; esac
  printf '\n-- %s: %s\n\n' "$type" "$rule"
  "$tool" verify --document --db "$database" --language en --type "$type" -- "$rule" </dev/null
  printf '\n   '
  "$tool" sql --db "$database" --language en --type "$type" -- "$rule" </dev/null
done <examples/rules.txt

say "One rule for every database: orkrule sql --dialect all"
"$tool" sql --db "$database" --language en --dialect all --type logic -- \
  "Orders.OrderDate between thisMonth(2024, 5)"
say "What is wrong with the 200 rules of $store: orkrule store check"
"$tool" store check --store "$store" --db "$database" --language en \
  --select "select id, type, expression, document, template, language from rules" || [ $? -eq 1 ]
printf '\nDone. The tool is %s; try: %s --help\n' "$tool" "$tool"
