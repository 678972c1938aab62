#!/bin/sh
# Runs the core of the tests under valgrind, over the build of a preset: release unless another is
# given. Left out are the tests of processes that end, and of most tables, which take long.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages $testPackages valgrind

preset=${1:-release}
build=${VORN_MEMORY_BUILD:-build/$preset}
cmake --preset "$preset" -B "$build" -DVORN_BUILD_TESTS=ON >&2
cmake --build "$build" --target kelvarTest hwVornFennTypesTest oruTest undisturbedTest frameTest \
   registryTest tablesTest exactBuffersTest everyMoment >&2

# check PROGRAM FILTER [OPTION]: the filter is GoogleTest's, the option valgrind's.
check() {
   echo "== $1"
   valgrind --quiet --error-exitcode=99 --leak-check=full --show-leak-kinds=definite,indirect \
      --errors-for-leak-kinds=definite,indirect ${3:-} \
      "$build/$1" --gtest_brief=1 --gtest_filter="$2"
}
check platform/kelvarTest '*-*Death*'
check platform/hwVornFennTypesTest '*'
check platform/oruTest '*'
# These define operator new, which valgrind replaces in part. Children of a fork lose the memory of
# other threads.
check platform/undisturbedTest '*-*AChild*:*Allocated*:*WithoutMemory*' --show-mismatched-frees=no
check tests/frameTest '*-*WithoutMemory*' --show-mismatched-frees=no
check tests/registryTest '*-Death.*:*FirstCalls*:*Allocat*:SharedOwnership.*' --show-mismatched-frees=no
check tests/tablesTest 'TcamActionTable.*:EgressPerPortTable.*:OutAcBank.*-*Metadata*:*Pairs*'
check tests/hardening/exactBuffersTest '*TcamBankTable'
check tests/hardening/everyMoment ''
