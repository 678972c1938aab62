# To be sourced. needPackages PACKAGE... ensures that the Debian packages are installed: as root it
# installs the missing ones; otherwise it names them and ends the script.
needPackages() {
   missing=''
   for package; do
      dpkg-query -W -f '${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed' ||
         missing="$missing $package"
   done
   [ -n "$missing" ] || return 0
   if [ "$(id -u)" -ne 0 ]; then
      echo "missing Debian packages; install them with:  sudo apt-get install$missing" >&2
      exit 1
   fi
   echo "installing$missing" >&2
   export DEBIAN_FRONTEND=noninteractive
   apt-get update -qq >&2
   apt-get install -y -qq --no-install-recommends $missing >&2
}

buildPackages='g++ cmake ninja-build libcli11-dev nlohmann-json3-dev zlib1g-dev libzstd-dev libsimdjson-dev
               pybind11-dev python3-dev python3-numpy libsqlite3-dev'
testPackages='libgtest-dev libgmock-dev clang clangd pkg-config binutils abigail-tools xz-utils patch man-db zsh fish
              sqlite3 gdb python3-jsonschema python3-pytest python3-hypothesis python3-pandas mypy
              python3-zstandard python3-matplotlib python3-distributed python3-build python3-setuptools python3-wheel'

# The explorer's: what builds it, and what tests it in a browser.
explorerPackages='cmake ninja-build nlohmann-json3-dev emscripten nodejs'
browserPackages='chromium firefox-esr'

# npm, of Debian unless there is another one.
needNpm() {
   command -v npm >/dev/null || needPackages npm
}

# The modules that web/package-lock.json pins, unless they are there; no script of theirs is run.
installModules() {
   if ! cmp -s web/package-lock.json web/node_modules/package-lock.json; then
      npm ci --prefix web --ignore-scripts --no-audit --no-fund --loglevel=error
      cp web/package-lock.json web/node_modules/
   fi
}
