#!/bin/sh
# Builds the explorer, a page that needs no server and no network: build/explorer/vorn-explorer.html.
# The engine in it is made with emscripten, the page with the tools of web/package-lock.json.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages $explorerPackages
needNpm

build=${VORN_EXPLORER_BUILD:-build/explorer}
# Where Debian's emscripten finds the modules of its tools.
export NODE_PATH=/usr/share/nodejs
unset EM_CACHE || true

installModules
web/node_modules/.bin/tsc --project web
emcmake cmake -S web/engine -B "$build/engine" -G Ninja
cmake --build "$build/engine" --target engine
node web/build.mjs "$build/engine/engine.mjs" "$build/engine/engine.wasm" \
   "$build/vorn-explorer.html"
ls -l "$build/vorn-explorer.html"
