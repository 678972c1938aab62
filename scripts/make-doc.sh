#!/bin/sh
# Builds the reference of the public headers, with the guide, into build/doc/html. A warning fails.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
needPackages doxygen

VORN_DOC=${VORN_DOC:-build/doc}
export VORN_DOC
rm -rf "$VORN_DOC"
mkdir -p "$VORN_DOC"
doxygen docs/Doxyfile

# Each field of each class must have got its accessors, which only the expansion shows.
declared=$(cat include/Hardware/fields/[!C]*.def | grep -cE '^HARDWARE_(FIELD|WIDE|TAG)\(')
shown=$(awk -F '[<>]' '
   $2 == "name" { name = $3 }
   $2 == "anchor" && name ~ /^is.*Valid$/ && name != "isFieldValid" && !seen[$3]++ { ++count }
   END { print count + 0 }' "$VORN_DOC/tags.xml")
[ "$shown" -eq "$declared" ] || {
   echo "$0: accessors of $shown fields instead of $declared" >&2
   exit 1
}
echo "$declared fields with their accessors: $VORN_DOC/html/index.html"
