#!/bin/sh
# Builds vorn, and writes the pages of docs/reference/ anew.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
needPackages $buildPackages

cmake --preset release -DVORN_BUILD_TESTS=OFF >&2
cmake --build --preset release --target vorn >&2
rm -f docs/reference/*.md
build/release/tools/vorn/vorn reference docs/reference
