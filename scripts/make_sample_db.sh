#!/bin/sh
# Makes the sample metadata database: make_sample_db.sh OUT.db
# A file that is there already is replaced once the new one is complete.
set -eu

if [ $# -ne 1 ]; then
  echo "usage: $0 OUT.db" >&2
  exit 2
fi
sql="$(dirname "$0")/../examples/shop.sql"
out="$1"
new="$out.new.$$"
trap 'rm -f -- "$new"' EXIT

if command -v sqlite3 >/dev/null 2>&1; then
  sqlite3 -batch -bail "$new" <"$sql"
elif command -v python3 >/dev/null 2>&1; then
  python3 -c '
import sqlite3, sys
with open(sys.argv[1], encoding="utf-8") as text, sqlite3.connect(sys.argv[2]) as database:
    database.executescript(text.read())
' "$sql" "$new"
else
  echo "$0: neither sqlite3 nor python3 is installed" >&2
  exit 3
fi
mv -f -- "$new" "$out"
