#!/bin/sh
# Builds the Debian packages of cmake/Packages.cmake into build/packages. Two runs over one commit
# yield the same bytes.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages dpkg-dev file

build=${VORN_PACKAGES_BUILD:-build/packages}
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
export SOURCE_DATE_EPOCH
umask 022

cmake --preset release -B "$build" -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_SKIP_INSTALL_RPATH=ON \
   -DVORN_BUILD_TESTS=OFF -DVORN_BUILD_EXAMPLES=OFF
cmake --build "$build"
rm -f "$build"/*.deb
(cd "$build" && cpack >cpack.log 2>&1) || { cat "$build/cpack.log" >&2; exit 1; }
ls "$build"/*.deb
