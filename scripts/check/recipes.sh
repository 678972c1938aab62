#!/bin/sh
# Follows the recipes of docs/guide.md as they stand on a copy of the whole tree: makes their changes,
# runs the commands after them, builds everything with the benchmarks and the fuzzers, and runs all
# tests. The copy is left in build/recipes/tree.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages $testPackages git clang-format libclang-rt-14-dev libbenchmark-dev valgrind

work=${VORN_RECIPES_WORK:-$PWD/build/recipes}
rm -rf "$work"
mkdir -p "$work/tree" "$work/samples"
git ls-files -z -co --exclude-standard | xargs -0 tar cf - | tar xf - -C "$work/tree"
awk -v folder="$work/samples" -f tests/guide/extract.awk docs/guide.md

cd "$work/tree"
git init -q
patch --strip=1 <"$work/samples/changes.diff"
git add -A
! command -v ccache >/dev/null || export CMAKE_CXX_COMPILER_LAUNCHER=ccache
scripts/check/format.sh
sh -e "$work/samples/commands.sh"
cmake --build build/bench
scripts/check/fuzz.sh 5
# The recipes can't be followed twice.
scripts/run-tests.sh release --exclude-regex '^Guide\.Recipes$'
