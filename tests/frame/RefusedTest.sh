#!/bin/sh
# RefusedTest.sh <compiler> <source> <include folder>...: the compiler refuses just what the source
# says, each with a message that names flaw, field, chip type and variant.
set -eu
compiler=$1 source=$2
shift 2
includes=''
for folder; do
   includes="$includes -I$folder"
done
options='-fmax-errors=0 -fno-diagnostics-show-caret'
case $("$compiler" --version) in
*clang*) options='-ferror-limit=0 -fno-caret-diagnostics -fconstexpr-steps=100000000' ;;
esac
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
sed -n 's|^ *// refused: ||p' "$source" "${source%/*}/Flaws.inc" | sort >"$folder/expected"
[ -s "$folder/expected" ] || { echo "nothing to refuse"; exit 1; }
if "$compiler" -std=c++20 -fsyntax-only $options $includes "$source" 2>"$folder/messages"; then
   echo "nothing is refused"
   exit 1
fi
# Without the scopes of the names, which each compiler writes in its own way.
sed -n 's/.*Soundness<\([^>]*\)>.*/\1/p' "$folder/messages" |
   sed 's/[{(]anonymous[ a-z]*[})]:://g; s/[A-Za-z_]*:://g; s/([A-Za-z]*)//g; s/U$//; s/,//g' |
   sort -u >"$folder/found"
diff "$folder/expected" "$folder/found"
echo "$(wc -l <"$folder/found") messages"
