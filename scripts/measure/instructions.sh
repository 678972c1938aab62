#!/bin/sh
# Counts with callgrind the instructions that each row of the benchmarks takes for one operation,
# and prints them: library, baseline, row.
#    --check    compares them with bench/counts/baseline.txt instead, and fails if the library
#               takes over a tenth more
#    --accept   makes them the new bench/counts/baseline.txt
# The counts repeat exactly on one machine with one compiler.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh

mode=${1:-print}
case "$mode" in
print | --check | --accept) ;;
*)
   echo "usage: $0 [--check | --accept]" >&2
   exit 2
   ;;
esac
needPackages $buildPackages libbenchmark-dev valgrind

build=${VORN_BENCH_BUILD:-build/bench}
cmake --preset release -B "$build" -DVORN_BUILD_BENCH=ON -DVORN_BUILD_TESTS=OFF \
   -DVORN_BUILD_TOOLS=OFF -DVORN_BUILD_EXAMPLES=OFF >&2
cmake --build "$build" --target vornCounts >&2

dumps=$(mktemp -d)
trap 'rm -rf "$dumps"' EXIT
valgrind --quiet --tool=callgrind --collect-atstart=no --callgrind-out-file="$dumps/dump" \
   "$build/bench/vornCounts" >&2

# A dump holds the instructions of one side of a row, and says in its description which.
find "$dumps" -name 'dump.*' | sort -V | xargs awk -F '\t' '
   sub( /^desc: Trigger: Client Request: /, "" ) {
      side = $1
      operations = $2
      row = $3
   }
   /^totals: / && row != "" {
      split( $0, total, " " )
      if( side == "library" ) {
         order[++rows] = row
      }
      count[row, side] = sprintf( "%.1f", total[2] / operations )
      row = ""
   }
   END {
      for( number = 1; number <= rows; ++number ) {
         row = order[number]
         baseline = ( row, "baseline" ) in count ? count[row, "baseline"] : "-"
         printf "%8s %8s  %s\n", count[row, "library"], baseline, row
      }
   }
' >"$dumps/counts.txt"

case "$mode" in
--accept)
   cp "$dumps/counts.txt" bench/counts/baseline.txt
   ;;
--check)
   awk '
      { count = $1; $1 = ""; $2 = ""; row = substr( $0, 3 ) }
      NR == FNR { accepted[row] = count; next }
      !( row in accepted ) { print row ": not in bench/counts/baseline.txt"; failed = 1; next }
      {
         ++rows
         if( count > 1.1 * accepted[row] ) {
            printf "%s: %s instructions, up from %s by %.0f%%\n", row, count, accepted[row],
               100 * ( count / accepted[row] - 1 )
            failed = 1
         }
         delete accepted[row]
      }
      END {
         for( row in accepted ) {
            print row ": no longer counted, but in bench/counts/baseline.txt"
            failed = 1
         }
         if( !failed ) {
            print rows " rows, none of which takes over a tenth more than accepted"
         }
         exit failed
      }
   ' bench/counts/baseline.txt "$dumps/counts.txt"
   ;;
*)
   cat "$dumps/counts.txt"
   ;;
esac
