#!/bin/sh
# Runs the statements of a file in an SQLite database: run_sqlite.sh DATABASE FILE.sql
# The database is made where it is not there. Stops at the first statement that fails.
set -eu

if [ $# -ne 2 ]; then
  echo "usage: $0 DATABASE FILE.sql" >&2
  exit 2
fi
if command -v sqlite3 >/dev/null 2>&1; then
  exec sqlite3 -batch -bail "$1" <"$2"
elif command -v python3 >/dev/null 2>&1; then
  exec python3 -c '
import sqlite3, sys
with open(sys.argv[2], encoding="utf-8") as text, sqlite3.connect(sys.argv[1]) as database:
    database.executescript(text.read())
' "$1" "$2"
fi
echo "$0: neither sqlite3 nor python3 is installed" >&2
exit 3
