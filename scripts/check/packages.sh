#!/bin/sh
# Builds the Debian packages and checks them: each installed file is in one of them, lintian has
# nothing to say, on a clean Debian 12 they replace those of 1.0, vorn runs and finds the explorer,
# SQLite loads the extension, Python imports the package and a consumer builds, with the stand-ins
# of the platform and with a site's own packages in their place, removing them leaves nothing, and a
# second build yields the same bytes. Needs root; the clean system is fetched once and kept in
# build/clean-root-*.tar.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
[ "$(id -u)" -eq 0 ] || { echo "$0 makes a root for chroot, which needs root" >&2; exit 1; }
needPackages debootstrap lintian g++ dpkg-dev

build=${VORN_PACKAGES_BUILD:-build/packages}
consumerTools='g++ cmake ninja-build pkg-config'
pythonTools='python3 python3-numpy'
vornNeeds='libsimdjson14 sqlite3' # what a minimal system lacks
cleanRoot=${VORN_CLEAN_ROOT:-build/clean-root-$(echo $consumerTools $pythonTools $vornNeeds | tr -d ' +-').tar}

fail() {
   echo "$0: $*" >&2
   exit 1
}

# inside <command>...: runs it in the clean root, which knows nothing of the environment here.
inside() {
   unshare --mount --pid --fork --mount-proc="$root/proc" chroot "$root" \
      env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive "$@"
}

scripts/make/packages.sh >&2
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
grep -v '^./usr/share/\(doc\|lintian\)/' "$work/packed.txt" |
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
   inside apt-get -qq install --download-only --no-install-recommends $consumerTools $pythonTools \
      $vornNeeds \
      >"$work/log"
   tar -C "$root" -cf "$cleanRoot.part" .
   mv "$cleanRoot.part" "$cleanRoot"
   rm -rf "$root"
fi
mkdir "$root"
tar -C "$root" -xpf "$cleanRoot"
mkdir "$root/packages"
cp "$build"/*.deb "$root/packages"

# aptInside <argument>...: installs packages, and is quiet unless that fails.
aptInside() {
   inside apt-get -qq install --no-install-recommends "$@" >"$work/log" 2>&1 ||
      { cat "$work/log"; exit 1; }
}

"$build/tools/vorn/vorn" program examples/entries.jsonl >"$work/here.txt"
# entriesAsHere <standard error>: checks that vorn programs the entries of the example, and says no
# more.
entriesAsHere() {
   inside vorn program /usr/share/doc/vorn/examples/entries.jsonl >"$work/there.txt" 2>"$work/said"
   diff "$work/here.txt" "$work/there.txt" || fail "vorn prints other entries there"
   [ "$(sort -u "$work/said")" = "$1" ] || fail "vorn says \"$(cat "$work/said")\", not \"$1\""
   echo "vorn: $(wc -l <"$work/here.txt") entries as here"
}

# consumerBuilds: checks that a program builds there against what is installed, in both ways.
consumerBuilds() {
   rm -rf "$root/consumer"
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
      ./codec-by-pkg-config | diff codec.txt -' 2>"$work/said" || { cat "$work/said"; exit 1; }
   for way in by-cmake by-pkg-config; do
      diff tests/install/consumer/expected.txt "$root/consumer/$way.txt" ||
         fail "the consumer fails"
      echo "a consumer, $way: $(cat "$root/consumer/$way.txt")"
   done
}

# debianPackage <folder> <version> <description>: packs a folder, which has the package's name, and
# prints where the clean system has it.
architecture=$(dpkg --print-architecture)
debianPackage() {
   mkdir -p "$1/DEBIAN"
   printf '%s\n' "Package: $(basename "$1")" "Version: $2" "Architecture: $architecture" \
      'Maintainer: A Site <site@site.example>' "Description: $3" >"$1/DEBIAN/control"
   dpkg-deb --build --root-owner-group "$1" "$root/packages" >"$work/log"
   echo "/packages/$(basename "$1")_$2_$architecture.deb"
}

# Until 1.1.0 the stand-ins were in the library's packages, which may be installed. As apt does, the
# packages that are in the way of others are set aside first.
for ending in 1 -dev; do
   old=$work/old/libvorntunnelkelvar$ending
   mkdir -p "$old"
   for package in libvorntunnelkelvar$ending vorn-platform-stand-ins${ending#1}; do
      cp -R "$work/packed/${package}_"*.deb/usr "$old"
   done
   file=$(debianPackage "$old" 1.0.0-1 'library and stand-ins in one')
   inside dpkg --install "$file" >"$work/log"
   rm "$root$file"
done

aptInside --no-download $vornNeeds
inside sh -c 'dpkg --auto-deconfigure --install /packages/vorn-platform-stand-ins_*.deb \
   /packages/lib*[a-z]1_*.deb /packages/vorn_*.deb /packages/vorn-sqlite_*.deb' >"$work/log" 2>&1 ||
   { cat "$work/log"; exit 1; }
entriesAsHere ''
aptInside --no-download $consumerTools
inside sh -c 'dpkg --auto-deconfigure --install /packages/vorn-platform-stand-ins-dev_*.deb \
   /packages/lib*-dev_*.deb' >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
consumerBuilds
for file in lib/*/libKelvar.so.1 lib/*/libKelvar.so include/Kelvar/BitBuf.h; do
   inside dpkg-query --search "/usr/$file"
done | cut -d : -f 1 | sort | uniq -c >"$work/said"
printf '%7d %s\n' 1 vorn-platform-stand-ins 2 vorn-platform-stand-ins-dev | diff - "$work/said" ||
   fail "the stand-ins are still in the library's packages"

# sqlFindsEntries: checks that SQLite loads the extension by its name.
sqlFindsEntries() {
   inside sqlite3 -cmd '.load vornsqlite' :memory: \
      "SELECT vorn_field( 'LifTable', 10, 0, 'a00f' || hex( zeroblob( 78 ) ), 'vsi' );" \
      >"$work/said" 2>&1 || true
   grep -qx 2000 "$work/said" || fail "vornsqlite says \"$(cat "$work/said")\""
   echo "vorn-sqlite: vsi 2000"
}
sqlFindsEntries

echo "== Python there"
aptInside --no-download $pythonTools
inside sh -c 'dpkg --install /packages/python3-vorn_*.deb' >"$work/log"
module=usr/lib/python3/dist-packages/vorn
ls "$root/$module/__pycache__/"__init__.*.pyc >"$work/log" || fail "python3-vorn isn't compiled"
inside /usr/bin/python3 -c '
import vorn
print(vorn.__file__)
lif = vorn.Layout("LifTable", "BCM88690_B0")
print(lif.decode(bytes.fromhex("a00f") + bytes(78), fields=["vsi"]))
print(lif.decode_batch(bytes.fromhex("a00f") + bytes(78), fields=["vsi"])["vsi"])' >"$work/said"
printf '%s\n' "/$module/__init__.py" "{'vsi': 2000}" '[2000]' | diff - "$work/said" ||
   fail "python3-vorn decodes something else"
echo "python3-vorn: vsi $(tail -n 1 "$work/said")"

echo "== the explorer there"
explorer=''
if ls "$build"/vorn-explorer_*.deb >"$work/log" 2>&1; then
   explorer=vorn-explorer
   needPackages chromium
   inside sh -c 'dpkg --install /packages/vorn-explorer_*.deb' >"$work/log"
   image=$("$build/tools/vorn/vorn" encode LifTable --chip 10 --output bytes vsi=2000)
   page=/usr/share/vorn/vorn-explorer.html
   state="#table=LifTable&chip=10&variant=0&image=$image"
   inside vorn explore LifTable --chip 10 "$image" >"$work/said"
   echo "file://$page$state" | diff - "$work/said" || fail "vorn explore prints another place"
   # 2000 has the value's bit 4, and vsi begins at bit 1.
   chromium --headless --no-sandbox --disable-gpu --virtual-time-budget=20000 --dump-dom \
      "file://$root$page$state" 2>"$work/log" >"$work/page.html"
   grep -q 'id="bit-5-value">1<' "$work/page.html" ||
      fail "the explorer doesn't show the image"
   echo "vorn explore: $(cut -c 1-100 "$work/said")..."
else
   echo "not checked: there is none without scripts/make/explorer.sh"
fi

# Three libraries with a mark, in packages that say nothing of the stand-ins.
echo "== with a site's platform instead"
triplet=$(dpkg-architecture -qDEB_HOST_MULTIARCH)
printf '%s\n' '#include <cstdio>' \
   '__attribute__(( constructor )) static void mark() { std::fputs( "the site'\''s\n", stderr ); }' \
   >"$work/mark.cpp"
for library in Kelvar HwVornFennTypes Oru; do
   folder=$(echo $library | tr '[:upper:]' '[:lower:]')
   run=$work/site/lib${folder}1
   dev=$work/site/lib$folder-dev
   mkdir -p "$run/usr/lib/$triplet" "$dev/usr/lib/$triplet"
   cp -R platform/$folder/include "$dev/usr/include"
   ln -s lib$library.so.1 "$dev/usr/lib/$triplet/lib$library.so"
   g++ -shared -fPIC -O1 -std=c++20 -fvisibility=hidden -Wl,-soname,lib$library.so.1 \
      -Iplatform/kelvar/include -Iplatform/hwvornfenntypes/include -Iplatform/oru/include \
      -Wl,--version-script=platform/Platform.map platform/$folder/src/*.cpp "$work/mark.cpp" \
      -o "$run/usr/lib/$triplet/lib$library.so.1"
   for package in "$run" "$dev"; do
      debianPackage "$package" 7-1 "a site's own platform"
   done >>"$work/site.txt"
done
siteLibraries='libkelvar1 libhwvornfenntypes1 liboru1'
siteHeaders='libkelvar-dev libhwvornfenntypes-dev liboru-dev'
aptInside $(cat "$work/site.txt")
! inside dpkg-query --show --showformat '${db:Status-Abbrev}\n' 'vorn-platform-stand-ins*' |
   grep '^i' || fail "the stand-ins are still there"
entriesAsHere "the site's"
consumerBuilds
sqlFindsEntries

inside dpkg --purge python3-vorn $explorer vorn-sqlite vorn libvorncodec-dev libvorncodec1 \
   libvorntunnelkelvar-dev libvorntunnelkelvar1 $siteHeaders $siteLibraries >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
left=$(cd "$root" && xargs ls -d $module <"$work/packed.txt" 2>/dev/null || true)
[ -z "$left" ] || fail "left behind: $left"
echo "nothing left behind"

echo "== a second build"
VORN_PACKAGES_BUILD=$work/again scripts/make/packages.sh >"$work/log" 2>&1 ||
   { tail "$work/log"; exit 1; }
for package in "$build"/*.deb; do
   cmp "$package" "$work/again/$(basename "$package")" || fail "the bytes differ"
done
(cd "$build" && sha256sum ./*.deb)
