#!/usr/bin/env bash
# Builds the library in many ways and compares the results: the same test programs pass over each,
# and vornDump prints the same bytes. Two builds of one tree in different folders must be the same,
# byte for byte.
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
targets="${libraries[*]} vornDump"
[[ ${names[*]} != *gcc* && ${names[*]} != *clang* ]] || targets+=" ${programs[*]}"
[[ ${names[*]} != *reproducible* ]] || targets+=' vorn'
make "$base" "$targets" -DVORN_BUILD_TESTS=ON
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

# Debian's packages for another machine, unpacked below a folder: debianRoot ARCHITECTURE FOLDER
# PACKAGE... The packages of this machine stay as they are.
debianRoot() {
   local architecture=$1 folder=$2 apt package
   shift 2
   apt=$folder.apt
   rm -rf "$folder" "$apt"
   mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial" "$apt/packages"
   (
      cd "$apt/packages"
      local options=(-qq -o "APT::Architecture=$architecture" -o "APT::Architectures=$architecture"
         -o "Dir::State=$apt" -o Dir::State::status=/dev/null -o "Dir::Cache=$apt/cache"
         -o APT::Sandbox::User=)
      # One mirror may be out of step; what is needed is found or not.
      apt-get "${options[@]}" update || true
      apt-get "${options[@]}" download "$@"
   )
   for package in "$apt"/packages/*.deb; do
      dpkg-deb --extract "$package" "$folder"
   done
}

# Links, and puts a script in the place of a program, which runs it under qemu-user: so programs of
# another machine start one another, as they would there. The samples are only inspected.
writeLinker() {
   cat >"$2" <<END
#!/bin/sh
"\$@" || exit
while [ \$# -gt 1 ] && [ "\$1" != -o ]; do shift; done
case \$2 in *.so* | *Sample* | *cmTC_*) exit ;; esac
mv "\$2" "\$2.real"
printf '#!/bin/sh\nexec $(command -v qemu-$1-static) -L /usr/$1-linux-gnu -0 "\$0" "\$0.real" "\$@"\n' >"\$2"
chmod +x "\$2"
END
   chmod +x "$2"
}

# For another machine: the whole suite, except what is about this machine's compilers, Python, gdb and
# baselines of symbols; the installed tree and the header for C, where tests build programs that no
# script starts; the guide's failures, below which qemu prints a line of its own; and a browser that
# isn't there, of which posix_spawn doesn't hear under qemu.
cross() {
   local machine=$1 architecture=$2
   needPackages "g++-$machine-linux-gnu" "gcc-$machine-linux-gnu" qemu-user-static
   local folder=$work/$machine
   local arguments=(-G Ninja "-DCMAKE_TOOLCHAIN_FILE=$root/cmake/Cross.cmake" "-DVORN_MACHINE=$machine"
      "-DVORN_ROOT=$folder/root" "-DVORN_gcc=/usr/bin/$machine-linux-gnu-gcc" -DVORN_clang=
      "-DCMAKE_CXX_LINKER_LAUNCHER=$folder/link" -DVORN_BUILD_TESTS=ON -DVORN_PYTHON=OFF)
   mkdir -p "$folder"
   writeLinker "$machine" "$folder/link"
   [ -e "$folder/root" ] || debianRoot "$architecture" "$folder/root" libgtest-dev libgmock-dev \
      nlohmann-json3-dev libcli11-dev zlib1g-dev libzstd1 libzstd-dev libsimdjson14 libsimdjson-dev
   make "$folder/build" all "${arguments[@]}"
   "$folder/build/tests/hardening/vornDump" | cmp - "$work/dump"
   tests/hardening/ElfTest.sh program "$folder/build/tools/vorn/vorn.real" \
      "$machine-linux-gnu-objdump" >/dev/null
   ctest --test-dir "$folder/build" --output-on-failure -j "$(nproc)" -E "$(paste -sd '|' <<'END'
^Refused\.flaws\.
^Headers\.[^.]+\.(codec|c\+\+)
^Headers\.(refuse|show|keepMacros|serveWithoutWarnings)
^Documents\.
^Abi\.
^Elf\.vorn$
^Install\.(Serves|leaves)
^Guide\.(Recipes$|Failures)
^Gdb\.
ExportHeader\.ServesTheExampleOfItsDocument$
Explore\.opensNothingWhereItIsToldNotTo$
END
)" >"$work/log" || { cat "$work/log"; exit 1; }
}

for name in "${names[@]}"; do
   SECONDS=0
   if [ "$name" = reproducible ]; then
      reproducible
      echo "reproducible: the same bytes elsewhere ($SECONDS s)"
      continue
   fi
   if [ "$name" = aarch64 ]; then
      cross aarch64 arm64
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
