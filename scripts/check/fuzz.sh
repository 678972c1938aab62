#!/bin/sh
# Builds the fuzzers and runs each for some seconds, 20 if not given. Fails at a finding, whose
# input is then in build/fuzz/findings. The corpus is kept in build/fuzz/corpus, and the next run
# continues from there.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages clang libclang-rt-14-dev

seconds=${1:-20}
build=${VORN_FUZZ_BUILD:-build/fuzz}
fuzzers='fuzzOperations fuzzVornImages fuzzVornRecords fuzzVornQuickRecords fuzzVornRows
   fuzzVornArguments fuzzVornDumps fuzzVornCompressed fuzzVornFilters'
cmake --preset release -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=None \
   -DCMAKE_CXX_FLAGS='-O1 -gline-tables-only' -DVORN_BUILD_FUZZERS=ON -DVORN_HARDENING=OFF \
   -DVORN_BUILD_TESTS=OFF -DVORN_BUILD_TOOLS=ON -DVORN_BUILD_EXAMPLES=OFF >&2
cmake --build "$build" --target $fuzzers >&2

mkdir -p "$build/findings"
status=0
for fuzzer in $fuzzers; do
   echo "== $fuzzer"
   corpus=$build/corpus/$fuzzer
   mkdir -p "$corpus"
   # Inputs have full length from the start: a sequence of operations is as long as its input, and
   # coverage gives it little guidance.
   set -- -len_control=0 -entropic=0 "$corpus"
   if [ -d "fuzz/seeds/$fuzzer" ]; then
      set -- -dict=fuzz/vorn.dict "$corpus" "fuzz/seeds/$fuzzer"
   fi
   "$build/fuzz/$fuzzer" -max_total_time="$seconds" -max_len=1024 -print_final_stats=1 \
      -artifact_prefix="$build/findings/$fuzzer-" "$@" || status=1
done
exit $status
