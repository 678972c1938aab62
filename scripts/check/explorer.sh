#!/bin/sh
# Builds the explorer and drives it in Chromium, against vorn. web/checked has the hash of what this
# last passed on: with --if-changed, the same files are not checked
# again, nor any where npm can get no modules; --accept writes it.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
mode=${1:-}

# Of all that the page, and what the tests hold it against, are made of.
inputs() {
   git ls-files -co --exclude-standard -- web codec include src platform \
      scripts/make/explorer.sh scripts/check/explorer.sh |
      grep -v '^web/checked$' | LC_ALL=C sort |
      while read -r file; do
         [ ! -f "$file" ] || printf '%s %s\n' "$(git hash-object "$file")" "$file"
      done | sha256sum | cut -d ' ' -f 1
}
hash=$(inputs)
if [ "$mode" = --if-changed ] && [ "$hash" = "$(cat web/checked)" ]; then
   echo "explorer: nothing has changed since it was checked"
   exit 0
fi

if [ "$mode" = --if-changed ]; then
   needNpm
   if ! timeout 60 npm ping >/dev/null 2>&1; then
      echo "explorer: NOT CHECKED, though it has changed: npm's registry can't be reached"
      exit 0
   fi
fi
scripts/make/explorer.sh
needPackages $buildPackages $browserPackages
build=${VORN_EXPLORER_VORN:-build/release}
cmake --preset release -B "$build" -DVORN_BUILD_TOOLS=ON
cmake --build "$build" --target vorn
VORN="$PWD/$build/tools/vorn/vorn" node --test web/tests/*.test.mjs
[ "$mode" != --accept ] || echo "$hash" >web/checked
