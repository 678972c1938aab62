#!/bin/sh
# Runs clang-tidy (.clang-tidy) and cppcheck (.cppcheck) over the library, the platform and vorn.
# With --all, clang-tidy checks every class, not just one of each kind (they differ only in their
# descriptions), and follows the paths through vorn too, which takes most of the time.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages clang clang-tidy cppcheck

classes='src/tables/exactmatch/EpniIsidTable.cpp src/tables/port/FheiIveSizeReg.cpp
         src/tables/tcam/TcamBankTable.cpp src/tables/vlanedit/IvecTable.cpp'
tool_checks='-clang-analyzer-*'
case ${1:-} in
--all)
   classes=$(ls src/tables/*/*.cpp)
   tool_checks=''
   ;;
'') ;;
*)
   echo "usage: $0 [--all]" >&2
   exit 2
   ;;
esac

failed=0
echo "== cppcheck"
cppcheck --std=c++20 --language=c++ --enable=warning,style,performance,portability --quiet \
   --suppressions-list=.cppcheck --error-exitcode=1 -j "$(nproc)" \
   --template='{file}:{line}: {severity}: {message} [{id}]' \
   -Iinclude -Isrc -Icodec/include -Itools/vorn $(printf -- '-I%s ' platform/*/include) \
   platform/*/src src codec/src tools ||
   failed=1

echo "== clang-tidy"
build=${VORN_STATIC_BUILD:-build/static}
cmake --preset release -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DVORN_BUILD_TESTS=OFF \
   -DVORN_BUILD_EXAMPLES=OFF >/dev/null
# tidy CHECKS FILE...: the checks beyond those of .clang-tidy.
tidy() {
   checks=$1
   shift
   printf '%s\n' "$@" |
      xargs -P "$(nproc)" -n 1 clang-tidy -p "$build" --quiet --checks="$checks" 2>/dev/null ||
      failed=1
}
tidy '' platform/*/src/*.cpp src/frame/*.cpp src/registry/*.cpp $classes
tidy "$tool_checks" codec/src/*.cpp tools/vorn/*.cpp tools/vorn/*/*.cpp
exit $failed
