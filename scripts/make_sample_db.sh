#!/bin/sh
# Makes the sample metadata database: make_sample_db.sh OUT.db
# A file that is there already is replaced once the new one is complete.
set -eu

if [ $# -ne 1 ]; then
  echo "usage: $0 OUT.db" >&2
  exit 2
fi
here="$(dirname "$0")"
out="$1"
new="$out.new.$$"
trap 'rm -f -- "$new"' EXIT

"$here/run_sqlite.sh" "$new" "$here/../examples/shop.sql"
mv -f -- "$new" "$out"
