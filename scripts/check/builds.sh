#!/usr/bin/env bash
# Builds the library in many ways and compares the results: the same test programs pass over each,
# and vornDump prints the same bytes. Two builds of one tree in different folders are the same, byte
# for byte.
#    builds.sh            all of it, which takes long
#    builds.sh NAME...    some: {gcc,clang}-O{0,1,2,3}[-ndebug], {gcc,clang}-lto,
#                               {gcc,clang}-static, {gcc,clang}-lto-static, aarch64, reproducible
set -euo pipefail
cd "$(dirname "$0")/../.."
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
   names+=(aarch64 reproducible)
fi

# Configures and builds, quietly unless that fails: make FOLDER "TARGET..." ARGUMENT...
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

# The programs are those of the release build; all others must print what it prints.
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

# Puts a script in the place of each program of a folder, which runs it under qemu-user: so programs
# of another machine start one another, as they would there. The samples are never run.
wrap() {
   local folder=$1 machine=$2 emulator=$3 program
   find "$folder" -name CMakeFiles -prune -o -type f -perm /100 ! -name '*.so*' ! -name '*Sample*' \
      ! -name '*.real' -print | while read -r program; do
      [ "$(head -c 4 "$program" | tail -c 3)" = ELF ] || continue
      mv "$program" "$program.real"
      printf '#!/bin/sh\nexec %s -L /usr/%s-linux-gnu -0 "$0" "$0.real" "$@"\n' \
         "$emulator" "$machine" >"$program"
      chmod +x "$program"
   done
}

# For another machine: the test programs of the library and the stand-ins, with GoogleTest from its
# sources.
cross() {
   local machine=$1 emulator=$2
   needPackages "g++-$machine-linux-gnu" qemu-user-static googletest
   local folder=$work/$machine
   local arguments=(-G Ninja "-DCMAKE_TOOLCHAIN_FILE=$root/cmake/Cross.cmake" "-DVORN_MACHINE=$machine")
   local tests=(tablesTest frameTest registryTest exactBuffersTest threadsTest kelvarTest oruTest
      hwVornFennTypesTest undisturbedTest)
   {
      cmake -S /usr/src/googletest -B "$folder/googletest" "${arguments[@]}" \
         -DCMAKE_BUILD_TYPE=Release "-DCMAKE_INSTALL_PREFIX=$folder/prefix" &&
         cmake --build "$folder/googletest" --target install
   } >"$work/log" 2>&1 || { tail -n 50 "$work/log"; exit 1; }
   make "$folder/build" "${libraries[*]} VornCodec ${tests[*]} vornDump debugContainers reload \
      reloadedPlugin hardenedSample hardenedSampleProgram bareSample bareSampleProgram" "${arguments[@]}" \
      "-DCMAKE_PREFIX_PATH=$folder/prefix" -DVORN_BUILD_TESTS=ON -DVORN_BUILD_TOOLS=OFF -DVORN_PYTHON=OFF
   wrap "$folder/build" "$machine" "$emulator"
   "$folder/build/tests/hardening/vornDump" | cmp - "$work/dump"
   local program
   for program in "${tests[@]}"; do
      "$(find "$folder/build" -type f -name "$program")" --gtest_brief=1 >"$work/log" 2>&1 ||
         { cat "$work/log"; exit 1; }
   done
   ctest --test-dir "$folder/build" --output-on-failure \
      -R '^(Elf\.|Headers\.serveDebugContainers|Process\.HoldsNoMore)' >"$work/log" ||
      { cat "$work/log"; exit 1; }
}

for name in "${names[@]}"; do
   SECONDS=0
   if [ "$name" = reproducible ]; then
      reproducible
      echo "reproducible: the same bytes elsewhere ($SECONDS s)"
      continue
   fi
   if [ "$name" = aarch64 ]; then
      cross aarch64 qemu-aarch64-static
      echo "$name: answers as the release build, and passes its tests ($SECONDS s)"
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
   # With and without NDEBUG, ccache sees the same source.
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
