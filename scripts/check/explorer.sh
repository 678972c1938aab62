#!/bin/sh
# Builds the explorer and drives it in Chromium and Firefox, against vorn. web/checked has the hash of
# the sources with which this last passed. With --if-changed, nothing is checked if they are the same,
# or if npm can't get its modules; --accept writes the hash.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $buildPackages git
mode=${1:-}

# Everything that the page is made of and tested by; of C++ only what the compiler sees, so that
# comments don't count.
inputs() {
   git ls-files -co --exclude-standard -- web codec include src platform \
      scripts/make/explorer.sh scripts/check/explorer.sh tests/support/Classes.def \
      ':!web/checked' ':!codec/tests' ':!platform/*/tests' ':!*.md' |
      LC_ALL=C sort |
      while read -r file; do
         [ -f "$file" ] || continue
         echo "$file"
         case $file in
         *.cpp | *.h | *.def) g++ -w -fpreprocessed -dD -E -P -x c++ "$file" ;;
         *) cat "$file" ;;
         esac
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
needPackages $browserPackages libgtest-dev libgmock-dev # which the preset asks for
build=${VORN_EXPLORER_VORN:-build/release}
cmake --preset release -B "$build" -DVORN_BUILD_TOOLS=ON
cmake --build "$build" --target vorn
VORN="$PWD/$build/tools/vorn/vorn" node --test web/tests/*.test.mjs
[ "$mode" != --accept ] || echo "$hash" >web/checked
