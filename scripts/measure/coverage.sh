#!/bin/sh
# Builds library and stand-ins with coverage counters, runs the tests, and prints which lines and
# branches of src/ and platform/ they reach, and those branches that they don't. Pages with each
# line and its branches are left in build/coverage/report.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages $testPackages gcovr

build=${VORN_COVERAGE_BUILD:-build/coverage}
# Code that is inlined even without optimisation would count its branches again in each caller.
cmake --preset debug -B "$build" -DCMAKE_CXX_COMPILER=g++ -DVORN_BUILD_TESTS=ON \
   -DVORN_BUILD_TOOLS=OFF -DVORN_BUILD_EXAMPLES=OFF \
   -DCMAKE_CXX_FLAGS='--coverage -fprofile-update=atomic -Dalways_inline=unused' >&2
cmake --build "$build" >&2
find "$build" -name '*.gcda' -delete
# How much of a buffer a call is given depends on what is inlined.
ctest --test-dir "$build" -E 'Headers|Install|OverASitesPlatform.callsTest|Refused|Exports' --output-on-failure >&2

mkdir -p "$build/report"
gcovr --root . --object-directory "$build" --filter 'src/' \
   --filter 'platform/[a-z]*/(src|include)/' --exclude-throw-branches \
   --exclude-unreachable-branches --html-details "$build/report/index.html" --txt - \
   --print-summary "$build"
echo "Branches, each once for all instances of a template:"
scripts/measure/branches.py . "$build"
