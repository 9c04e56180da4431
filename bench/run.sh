#!/usr/bin/env bash
# Builds the benchmarks optimised into build/bench, runs them on the sample database and prints one
# table of ratios; --rules adds the twelve rules one by one. Installs what is missing.
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

out=build/bench
repetitions=${REPETITIONS:-25}

# measure name: times in interleaved repetitions, so that a slow spell of the machine meets all.
measure() {
  say "Measuring: $1"
  "$out/bin/bench_$1" --benchmark_repetitions="$repetitions" --benchmark_min_time=0.01 \
    --benchmark_enable_random_interleaving=true --benchmark_out="$out/$1.json" \
    --benchmark_out_format=json >"$out/$1.log" 2>&1 || { cat "$out/$1.log" >&2; die "bench_$1"; }
}

install_packages "${build_packages[@]}" libbenchmark-dev libpg-query-dev
say "Building"
cmake --preset release -B "$out" -DORKRULE_BENCH=ON -DORKRULE_TESTS=OFF -DORKRULE_TOOL=OFF \
  --log-level=STATUS
cmake --build "$out"
export ORKRULE_SAMPLE_DB="$root/$out/shop.db"
scripts/make_sample_db.sh "$ORKRULE_SAMPLE_DB"
for name in rules growth allocations authoring; do measure "$name"; done
say "Ratios on $(nproc) cores"
python3 bench/table.py "$out" "$@"
