#!/bin/sh
# Makes the libraries as they are now the baselines in abi/. Only for intended changes.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages binutils abigail-tools xz-utils

build=${VORN_ABI_BUILD:-build/abi}
libraries='VornTunnelKelvar VornCodec Kelvar HwVornFennTypes Oru'
cmake --preset release -B "$build" -DCMAKE_CXX_COMPILER=g++ -DVORN_TYPE_INFORMATION=ON \
   -DVORN_BUILD_TESTS=OFF \
   -DVORN_BUILD_TOOLS=OFF -DVORN_BUILD_EXAMPLES=OFF >&2
cmake --build "$build" --target $libraries >&2

for library in $libraries; do
   file=$(find "$build" -name "lib$library.so")
   tests/abi/print.sh symbols "$file" >"abi/$library.symbols"
   tests/abi/print.sh types "$file" | xz -9 >"abi/$library.abi.xz"
done
tests/abi/print.sh slots g++ include codec/include platform/*/include >abi/slots.txt
git diff --stat -- abi
