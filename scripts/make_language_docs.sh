#!/usr/bin/env bash
# Makes the language reference, docs/language.md and docs/language.zh-CN.md, of the templates in
# docs/language/ and the lists of examples in examples/: prose comes from a template, what words mean
# and their SQL from the library. Fails when a rule in them does not do what the template says.
# Usage: scripts/make_language_docs.sh [TOOL [FOLDER]]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
tool=${1:-build/release/bin/orkrule}
folder=${2:-docs}
scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT

scripts/make_sample_db.sh "$scratch/shop.db"
for template in docs/language/*.md.in; do
  tag=$(basename "$template" .md.in)
  # Oracle gets dates in the order of the locale, so that is the same one everywhere.
  LC_ALL=C "$tool" reference --language "$tag" --template "$template" \
    --functions examples/functions.txt --words examples/words.txt --habits examples/habits.txt \
    --db "$scratch/shop.db" --rt 7 --cax 1=examples/drawing.xml >"$scratch/$tag.md"
done
for made in "$scratch"/*.md; do
  tag=$(basename "$made" .md)
  if [ "$tag" = en ]; then name=language.md; else name=language.$tag.md; fi
  cp "$made" "$folder/$name"
done
