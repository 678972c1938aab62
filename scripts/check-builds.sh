#!/usr/bin/env bash
# Builds the library in many ways and holds the results against each other: the same test programs
# pass over each, and vornDump prints the same bytes. And two builds of one tree in different
# folders are the same, byte for byte.
#    check-builds.sh            all of it, which takes long
#    check-builds.sh NAME...    some: {gcc,clang}-O{0,1,2,3}[-ndebug], {gcc,clang}-lto,
#                               {gcc,clang}-static, {gcc,clang}-lto-static, reproducible
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
needPackages $buildPackages $testPackages llvm

root=$PWD
work=${VORN_BUILDS:-$root/build/builds}
base=${VORN_BUILDS_BASE:-$root/build/release}
libraries=(VornTunnelKelvar Kelvar HwVornFennTypes Oru)
programs=(vornDump exactBuffersTest threadsTest registryTest)
mkdir -p "$work"

names=("$@")
if [ $# -eq 0 ]; then
   for compiler in gcc clang; do
      names+=($compiler-{O0,O1,O2,O3}{,-ndebug} $compiler-{lto,static,lto-static})
   done
   names+=(reproducible)
fi

# Configures, builds and is quiet unless that fails: make FOLDER "TARGET..." ARGUMENT...
make() {
   local folder=$1 targets=$2
   shift 2
   {
      cmake --preset release -B "$folder" -DVORN_WARNINGS_AS_ERRORS=ON "$@" &&
         cmake --build "$folder" --target $targets
   } >"$work/log" 2>&1 || { tail -n 50 "$work/log"; exit 1; }
}

# The programs of folder $1 over the libraries of folder $2.
check() {
   local programs=$1 folder=$2
   export LD_LIBRARY_PATH=$folder/src:$folder/platform
   if [ -e "$folder/src/libVornTunnelKelvar.so" ]; then
      ldd "$programs/hardening/vornDump" | grep " $folder/src/libVornTunnelKelvar.so" >/dev/null
   fi
   "$programs/hardening/vornDump" | cmp - "$work/dump"
   "$programs/hardening/exactBuffersTest" --gtest_brief=1 >"$work/log" || { cat "$work/log"; exit 1; }
   "$programs/hardening/threadsTest" --gtest_brief=1 >"$work/log" || { cat "$work/log"; exit 1; }
   "$programs/registryTest" --gtest_brief=1 >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
   unset LD_LIBRARY_PATH
}

# The programs are those of the release build; what it prints is what all others must print.
make "$base" "${libraries[*]} ${programs[*]} vorn" -DVORN_BUILD_TESTS=ON
"$base/tests/hardening/vornDump" >"$work/dump"

reproducible() {
   local copy=$work/a/folder/elsewhere
   rm -rf "$work/a"
   mkdir -p "$copy"
   git ls-files -z -co --exclude-standard | xargs -0 tar cf - | tar xf - -C "$copy"
   (cd "$copy" && make build/release "${libraries[*]} vorn" -DVORN_BUILD_TESTS=OFF \
      -DCMAKE_CXX_COMPILER_LAUNCHER=)
   for file in $(cd "$copy/build/release" && find src platform -name '*.so') tools/vorn/vorn; do
      cmp "$base/$file" "$copy/build/release/$file"
   done
}

for name in "${names[@]}"; do
   SECONDS=0
   if [ "$name" = reproducible ]; then
      reproducible
      echo "reproducible: the same bytes elsewhere ($SECONDS s)"
      continue
   fi
   folder=$work/$name
   arguments=()
   case $name in
   gcc-*) arguments+=(-DCMAKE_CXX_COMPILER=g++) ;;
   clang-*) arguments+=(-DCMAKE_CXX_COMPILER=clang++) ;;
   *) echo "no build $name" >&2; exit 2 ;;
   esac
   flags='-O2 -DNDEBUG'
   if [[ $name =~ -(O[0-3]) ]]; then
      flags=-${BASH_REMATCH[1]}
      [[ $name != *-ndebug ]] || flags+=' -DNDEBUG'
   fi
   arguments+=("-DCMAKE_CXX_FLAGS_RELEASE=$flags")
   [[ $name != *-lto* ]] || arguments+=(-DCMAKE_INTERPROCEDURAL_OPTIMIZATION=ON)
   # Without NDEBUG or with it, ccache sees one and the same source.
   ! command -v ccache >/dev/null || arguments+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
   rm -rf "$folder"
   if [[ $name == *-static ]]; then
      make "$folder" "${programs[*]}" "${arguments[@]}" -DBUILD_SHARED_LIBS=OFF -DVORN_BUILD_TESTS=ON
      check "$folder/tests" "$folder"
   else
      make "$folder" "${libraries[*]}" "${arguments[@]}" -DVORN_BUILD_TESTS=OFF
      check "$base/tests" "$folder"
   fi
   echo "$name: answers as the release build ($SECONDS s)"
done
