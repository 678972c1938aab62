#!/bin/sh
# Builds the fuzzer of the library's operations and lets it run for some seconds, 20 if not given.
# Ends with another status than 0 at a finding, whose input lies in build/fuzz/findings then. What
# the inputs have reached is kept in build/fuzz/corpus, and the next run goes on from there.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
needPackages $buildPackages clang libclang-rt-14-dev

seconds=${1:-20}
build=${VORN_FUZZ_BUILD:-build/fuzz}
cmake --preset release -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=None \
   -DCMAKE_CXX_FLAGS='-O1 -gline-tables-only' -DVORN_BUILD_FUZZERS=ON -DVORN_HARDENING=OFF \
   -DVORN_BUILD_TESTS=OFF -DVORN_BUILD_TOOLS=OFF -DVORN_BUILD_EXAMPLES=OFF >&2
cmake --build "$build" --target fuzzOperations >&2

mkdir -p "$build/corpus" "$build/findings"
"$build/fuzz/fuzzOperations" -max_total_time="$seconds" -max_len=1024 -print_final_stats=1 \
   -artifact_prefix="$build/findings/" "$build/corpus"
