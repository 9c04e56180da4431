# What the scripts of this folder share; sourced by them, for bash. Sets `root` (the top of the
# source tree) and goes there. Installs Debian packages, only those that are missing.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"

# What the library, the message file and the tool are built with.
build_packages=(
  g++ cmake ninja-build pkg-config python3
  libxml2-dev libicu-dev libsqlite3-dev unixodbc-dev
  binutils-mingw-w64-x86-64
  libcli11-dev nlohmann-json3-dev
)
# What the tests need beyond that: manual pages and another shell, which a build goes without;
# locales of their own, databases that run and read the SQL.
test_packages=(
  help2man zsh
  libgtest-dev locales
  libsqliteodbc odbc-postgresql
  postgresql-15 postgresql-15-orafce libpg-query-dev
  python3-sqlglot
)
# What holds the sources: a second compiler, format and habits.
lint_packages=(clang-14 clang-format-14 clang-tidy-14)

say() { printf '\n== %s\n' "$*"; }

die() {
  printf '%s: %s\n' "$0" "$*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    die "packages are missing and neither root nor sudo is there: $*"
  fi
}

is_installed() {
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# apt_get arguments...: waits for whoever else holds one of apt's locks.
apt_get() {
  local log try
  log=$(mktemp)
  for try in {1..60}; do
    if as_root env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -q -y "$@" >"$log" 2>&1; then
      rm -f "$log"
      return
    fi
    grep -q 'Could not get lock\|Unable to lock\|Unable to acquire' "$log" || break
    sleep 5
  done
  cat "$log" >&2
  rm -f "$log"
  die "apt-get $* failed"
}

# The tests start a PostgreSQL of their own; its package is not to make one for the machine.
forbid_main_cluster() {
  local file=/etc/postgresql-common/createcluster.d/no-main.conf
  [ -e "$file" ] && return
  as_root mkdir -p "$(dirname "$file")"
  printf 'create_main_cluster = false\n' | as_root tee "$file" >/dev/null
}

# install_packages names...
install_packages() {
  local name missing=()
  for name in "$@"; do
    is_installed "$name" || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return
  say "Installing ${missing[*]}"
  case " ${missing[*]} " in *" postgresql-15 "*) forbid_main_cluster ;; esac
  apt_get update
  apt_get install --no-install-recommends "${missing[@]}"
}
