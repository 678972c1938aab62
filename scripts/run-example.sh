#!/bin/sh
# Builds the library and vorn, and programs the entries of examples/entries.jsonl, or of the files
# given: one JSON object a line with the image and the address of each entry.
set -eu
given=$PWD
cd "$(dirname "$0")/.."
. scripts/packages.sh
needPackages $buildPackages

cmake --preset release -DVORN_BUILD_TESTS=OFF >&2
cmake --build --preset release --target vorn >&2
if [ $# -eq 0 ]; then
   exec build/release/tools/vorn/vorn program examples/entries.jsonl
fi
vorn=$PWD/build/release/tools/vorn/vorn
cd "$given"
for file; do
   "$vorn" program "$file"
done
