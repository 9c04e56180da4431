#!/usr/bin/env bash
# Builds everything and runs the whole suite: optimised, the same in a Chinese locale and another time
# zone, under AddressSanitizer with UndefinedBehaviorSanitizer, and what uses several threads under
# ThreadSanitizer. Holds the sources against their format, a second compiler and clang-tidy. Installs
# what is missing. Compilations are remembered where ccache is installed.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

failed=()
if command -v ccache >/dev/null; then export CMAKE_CXX_COMPILER_LAUNCHER=ccache; fi

# build preset [target]
build() {
  say "Building: $*"
  local start=$SECONDS
  cmake --preset "$1" --log-level=WARNING
  cmake --build --preset "$1" ${2:+--target "$2"}
  say "Built: $* ($((SECONDS - start)) s)"
}

# run title command...: a failed run does not keep the others from running.
run() {
  local title="$1" start=$SECONDS
  shift
  say "Testing: $title"
  "$@" || failed+=("$title")
  say "Tested: $title ($((SECONDS - start)) s)"
}

check_format() {
  find bench examples include src tests tools -name '*.h' -o -name '*.cpp' |
    xargs clang-format-14 --dry-run -Werror
}

# Each file's findings, without the command that found them. It reads the files as the other compiler
# does, whose warnings are findings too, so nothing need be built.
check_with_tidy() {
  local found
  cmake --preset clang --log-level=WARNING
  found=$(run-clang-tidy-14 -quiet -p build/clang 2>/dev/null) && return
  grep -v '^clang-tidy-14 ' <<<"$found" >&2
  return 1
}

install_packages "${build_packages[@]}" "${test_packages[@]}" "${lint_packages[@]}"
suite=(ctest --parallel "$(nproc)" --progress --preset)

run "format" check_format

build release
run "release" "${suite[@]}" release
# A time zone by rule, so that no time zone data are needed: 13 hours 45 minutes east of Greenwich.
run "release, Chinese locale and another time zone" \
  env LC_ALL=zh_CN.UTF-8 LOCPATH="$root/build/release/locale:/usr/lib/locale" TZ=XXX-13:45 \
  "${suite[@]}" release --label-exclude slow

build asan
run "asan" "${suite[@]}" asan

build tsan orkrule_thread_tests
run "tsan" "${suite[@]}" tsan --label-regex threads --no-tests=error

run "the other compiler and clang-tidy" check_with_tidy

if [ ${#failed[@]} -ne 0 ]; then
  printf -v list '%s; ' "${failed[@]}"
  die "failed: ${list%; }"
fi
say "All tests passed in $((SECONDS / 60)) min: release, a Chinese locale and another time zone," \
  "sanitizers, format, the other compiler and clang-tidy."
