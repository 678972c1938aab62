#!/bin/sh
# Measures the Python package beside the codec in C++ and plain Python in one run, and prints the
# tables.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages libbenchmark-dev valgrind

build=${VORN_BENCH_BUILD:-build/bench}
cmake --preset release -B "$build" -DVORN_BUILD_BENCH=ON -DVORN_BUILD_TESTS=OFF \
   -DVORN_BUILD_TOOLS=OFF -DVORN_BUILD_EXAMPLES=OFF >&2
cmake --build "$build" --target VornPython vornBenchColumns >&2
PYTHONPATH=$build/python /usr/bin/python3 bench/python/speed.py \
   "$build/bench/libvornBenchColumns.so"
