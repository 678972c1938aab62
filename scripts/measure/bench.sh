#!/bin/sh
# Measures the library and its baselines side by side in one run, prints the tables, and writes
# them into docs/performance.md, with the chart docs/performance-growth.svg. Options are passed to
# Google Benchmark; with options that select rows, only their times are printed.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages libbenchmark-dev valgrind gnuplot-nox

build=${VORN_BENCH_BUILD:-build/bench}
export VORN_BENCH_BUILD="$build"
cmake --preset release -B "$build" -DVORN_BUILD_BENCH=ON -DVORN_BUILD_TESTS=OFF \
   -DVORN_BUILD_TOOLS=ON -DVORN_BUILD_EXAMPLES=OFF >&2
cmake --build "$build" --target vornBench vornColumnsBench vorn >&2

rm -f "$build/tables.md"
echo "measuring; this takes some minutes" >&2
"$build/bench/vornBench" "$build" bench/counts/baseline.txt --benchmark_repetitions=41 \
   --benchmark_min_time=0.016 --benchmark_enable_random_interleaving=true "$@"
[ -f "$build/tables.md" ] || exit 0
gnuplot -e "growth='$build/growth.dat'; chart='docs/performance-growth.svg'" \
   bench/speed/growth.gnuplot

"$build/bench/vornColumnsBench" "$build/columns.md" --benchmark_repetitions=21 \
   --benchmark_min_time=0.02 --benchmark_enable_random_interleaving=true

bench/vorn/rates.py "$build/tools/vorn/vorn" >"$build/vorn.md"

bench/python/run.sh >"$build/python.md"

# replace MARK FILE: the measured part of the document is all that lies between the mark and the end.
replace() {
   awk -v mark="<!-- $1 -->" -v tables="$2" '
      $0 == mark {
         print
         print ""
         while( ( getline line < tables ) > 0 ) {
            print line
         }
         print ""
         skip = 1
      }
      /^<!-- end -->$/ { skip = 0 }
      !skip { print }
   ' docs/performance.md >"$build/performance.md"
   cp "$build/performance.md" docs/performance.md
}
replace measured "$build/tables.md"
replace columns "$build/columns.md"
replace python "$build/python.md"
replace vorn "$build/vorn.md"
cat "$build/tables.md" "$build/columns.md" "$build/python.md" "$build/vorn.md"
