#!/bin/sh
# RefusedTest.sh <include folder>...: what can't work with the library is refused with a sentence; the
# other syntax of assembly compiles.
set -eu
for folder; do includes="${includes-} -I$folder"; done

# refused <sentence> <compiler and flags>...
refused() {
   sentence=$1
   shift
   if said=$(echo '#include <Hardware/Export.h>' |
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
refused 'little-endian machines only' clang++ --target=powerpc64-linux-gnu
refused 'little-endian machines only' clang++ --target=s390x-linux-gnu
refused "its programs can't set it to 0" g++ -D_GLIBCXX_USE_CXX11_ABI=0
refused "its programs can't use libc++" g++ -D_LIBCPP_VERSION=14000

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
