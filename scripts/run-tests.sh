#!/bin/sh
# Builds everything and runs all tests. With an argument, under that preset: release, debug, asan,
# tsan. Further ones are options of ctest.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
needPackages $buildPackages $testPackages

preset=${1:-release}
[ $# -eq 0 ] || shift
cmake --preset "$preset" -DVORN_BUILD_TESTS=ON -DVORN_WARNINGS_AS_ERRORS=ON
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)" "$@"
