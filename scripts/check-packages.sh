#!/bin/sh
# Builds the Debian packages and checks them: each installed file is in one of them, lintian has
# nothing to say, on a clean Debian 12 vorn runs and a consumer builds, nothing stays behind when
# they go, and a second build yields the same bytes. For root; the clean system is fetched once and
# kept in build/clean-root.tar.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
[ "$(id -u)" -eq 0 ] || { echo "$0 makes a root for chroot, which needs root" >&2; exit 1; }
needPackages debootstrap lintian

build=${VORN_PACKAGES_BUILD:-build/packages}
cleanRoot=${VORN_CLEAN_ROOT:-build/clean-root.tar}
consumerTools='g++ cmake ninja-build pkg-config'

fail() {
   echo "$0: $*" >&2
   exit 1
}

# inside <command>...: runs it in the clean root.
inside() {
   unshare --mount --pid --fork --mount-proc="$root/proc" chroot "$root" "$@"
}

scripts/make-packages.sh >&2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root

echo "== contents"
DESTDIR=$work/installed cmake --install "$build" >"$work/log"
mkdir "$work/packed"
for package in "$build"/*.deb; do
   dpkg-deb --extract "$package" "$work/packed/$(basename "$package")"
done
(cd "$work/installed" && find . ! -type d | sort) >"$work/installed.txt"
(cd "$work/packed" && find . ! -type d -printf '%P\n') | sed 's|[^/]*|.|' | sort >"$work/packed.txt"
grep -v '^./usr/share/doc/' "$work/packed.txt" |
   sed 's|\(/man/.*\)\.gz$|\1|; s|/zsh/vendor-completions/|/zsh/site-functions/|' |
   diff "$work/installed.txt" - || fail "the packages don't hold what is installed"
echo "$(wc -l <"$work/packed.txt") files"

echo "== lintian"
# The packages aren't meant for Debian's own archive.
lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs \
   "$build"/*.deb

echo "== on a clean system"
if [ ! -f "$cleanRoot" ]; then
   debootstrap --variant=minbase bookworm "$root" >"$work/log" || { cat "$work/log"; exit 1; }
   inside apt-get -qq install --download-only --no-install-recommends $consumerTools >"$work/log"
   tar -C "$root" -cf "$cleanRoot.part" .
   mv "$cleanRoot.part" "$cleanRoot"
   rm -rf "$root"
fi
mkdir "$root"
tar -C "$root" -xpf "$cleanRoot"
mkdir "$root/packages"
cp "$build"/*.deb "$root/packages"

inside sh -c 'dpkg --install /packages/lib*1_*.deb /packages/vorn_*.deb' >"$work/log"
"$build/tools/vorn/vorn" program examples/entries.jsonl >"$work/here.txt"
inside vorn program /usr/share/doc/vorn/examples/entries.jsonl | diff "$work/here.txt" - ||
   fail "vorn prints other entries there"
echo "vorn: $(wc -l <"$work/here.txt") entries as here"

inside sh -ec "apt-get -qq install --no-download --no-install-recommends $consumerTools
   dpkg --install /packages/lib*-dev_*.deb" >"$work/log" 2>&1 ||
   { cat "$work/log"; exit 1; }
cp -R tests/install/consumer "$root/consumer"
cp examples/codec.cpp examples/codec.txt "$root/consumer"
inside sh -ec '
   cd /consumer
   cmake -G Ninja -B build -DCODEC_PROGRAM=codec.cpp >log
   cmake --build build >log
   build/consumer >by-cmake.txt
   build/codecConsumer | diff codec.txt -
   g++ -std=c++17 consumer.cpp -o by-pkg-config $(pkg-config --cflags --libs VornTunnelKelvar)
   ./by-pkg-config >by-pkg-config.txt
   g++ -std=c++20 codec.cpp -o codec-by-pkg-config $(pkg-config --cflags --libs VornCodec)
   ./codec-by-pkg-config | diff codec.txt -'
for way in by-cmake by-pkg-config; do
   diff tests/install/consumer/expected.txt "$root/consumer/$way.txt" || fail "the consumer fails"
   echo "a consumer, $way: $(cat "$root/consumer/$way.txt")"
done

inside dpkg --purge vorn libvorncodec-dev libvorncodec1 libvorntunnelkelvar-dev \
   libvorntunnelkelvar1 >"$work/log"
left=$(cd "$root" && xargs ls -d <"$work/packed.txt" 2>/dev/null || true)
[ -z "$left" ] || fail "left behind: $left"
echo "nothing left behind"

echo "== a second build"
VORN_PACKAGES_BUILD=$work/again scripts/make-packages.sh >"$work/log" 2>&1 ||
   { tail "$work/log"; exit 1; }
for package in "$build"/*.deb; do
   cmp "$package" "$work/again/$(basename "$package")" || fail "the bytes differ"
done
(cd "$build" && sha256sum ./*.deb)
