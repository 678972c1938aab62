#!/bin/sh
# Builds vorn, and rewrites the pages of docs/reference/ and the picture of the README.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages

cmake --preset release -DVORN_BUILD_TESTS=OFF >&2
cmake --build --preset release --target vorn >&2
rm -f docs/reference/*.md
vorn=build/release/tools/vorn/vorn
$vorn reference docs/reference
$vorn layout VttInPpPortConfig0 --chip BCM88690_B0 --svg docs/entry.svg
