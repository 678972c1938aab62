#!/bin/sh
# RefusedTest.sh <include folder>...: what can't work with the library is refused with a sentence; the
# other syntax of assembly compiles.
set -eu
for folder; do includes="${includes-} -I$folder"; done

# refused <header> <sentence> <compiler and flags>...
refused() {
   header=$1 sentence=$2
   shift 2
   if said=$(echo "#include <$header>" |
      "$@" -std=c++17 -fsyntax-only $includes -x c++ - 2>&1); then
      echo "not refused: $*"
      exit 1
   fi
   case $said in *"$sentence"*) ;; *)
      echo "$*: $said"
      exit 1
      ;;
   esac
}
refused Hardware/Export.h 'little-endian machines only' clang++ --target=powerpc64-linux-gnu
refused Hardware/Export.h 'little-endian machines only' clang++ --target=s390x-linux-gnu
for machine in i686-linux-gnu x86_64-linux-gnux32 arm-linux-gnueabihf; do
   refused Hardware/Export.h '64-bit machines only: x86-64 and aarch64' clang++ --target=$machine
done
refused Hardware/Export.h "its programs can't set it to 0" g++ -D_GLIBCXX_USE_CXX11_ABI=0
refused Hardware/Export.h "its programs can't use libc++" g++ -D_LIBCPP_VERSION=14000
refused Vorn/Export.h "its programs can't define it" g++ -D_GLIBCXX_DEBUG
echo '#include <Vorn/Export.h>' | g++ -std=c++20 -fsyntax-only -D_GLIBCXX_DEBUG \
   -DVORN_BUILT_WITH_GLIBCXX_DEBUG $includes -x c++ -

# WebAssembly isn't refused. Of the standard library, which isn't there, the header needs its name.
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
: >"$work/cstddef"
echo '#include <Hardware/Export.h>' | clang++ --target=wasm32-unknown-emscripten -std=c++17 \
   -fsyntax-only "-I$work" $includes -x c++ -

# Of a library and a program whose standard libraries differ, each has another symbol.
symbols() {
   echo '#include <Hardware/Registry.h>
auto* const make = &Hardware::stringObj;
auto* const ask = &Hardware::chipTypeVariantValid;
void* const symbols[] = { reinterpret_cast<void*>( make ), reinterpret_cast<void*>( ask ) };
void* const* use() { return symbols; }' |
      g++ -std=c++17 -S "$@" $includes -x c++ -o - - | grep -c B6libcxx || true
}
[ "$(symbols)" = 0 ]
[ "$(symbols -D_LIBCPP_VERSION=14000 -DHARDWARE_BUILT_WITH_LIBCXX)" -ge 2 ]

# The other syntax of assembly.
program='#include <Hardware/Registry.h>
#include <Oru/Trace.h>
bool enabled( const Oru::TraceHandle& handle ) { return handle.enabled( Oru::TraceFacility::level3 ); }'
case $(uname -m) in x86_64)
   for compiler in g++ clang++; do
      echo "$program" | $compiler -std=c++17 -masm=intel -O1 -c -o /dev/null $includes -x c++ -
   done
   ;;
esac
