#!/bin/sh
# Builds the reference of the public headers, with the guide, into build/doc/html. A warning fails.
set -eu
cd "$(dirname "$0")/../.."
. scripts/packages.sh
needPackages doxygen

VORN_DOC=${VORN_DOC:-build/doc}
export VORN_DOC
rm -rf "$VORN_DOC"
mkdir -p "$VORN_DOC/pages"

# The datasheets, with names that are unique over all pages, and the accessors of each class.
for page in docs/reference/*.md; do
   name=$(basename "$page" .md)
   sed -e "s/^# .*/& {#$name-datasheet}/" -e "s/^\(##*\) Format \([0-9]*\)\$/& {#$name-format-\2}/" \
      -e "s/^## Fields\$/& {#$name-fields}/" -e "s/](#format-/](#$name-format-/g" \
      -e 's/](\([A-Za-z0-9]*\)[.]md#fields)/](#\1-fields)/g' \
      -e 's/](\([A-Za-z0-9]*\)[.]md)/](#\1-datasheet)/g' "$page" >"$VORN_DOC/pages/$name.md"
   [ ! -f "include/Hardware/$name.h" ] ||
      awk -v form=page -f docs/accessors.awk "include/Hardware/fields/$name.def" "$page" \
         >"$VORN_DOC/pages/$name-accessors.md"
done
doxygen docs/Doxyfile

declared=$(cat include/Hardware/fields/[!C]*.def | grep -cE '^HARDWARE_(FIELD|WIDE|TAG)\(')
shown=$(cat "$VORN_DOC"/html/*-accessors.html | grep -c 'bool is[A-Za-z0-9]*Valid() const')
[ "$shown" -eq "$declared" ] || {
   echo "$0: accessors of $shown fields instead of $declared" >&2
   exit 1
}
for header in include/Hardware/fields/[!C]*.def; do
   class=$(basename "$header" .def)
   page=$VORN_DOC/html/classHardware_1_1$class.html
   grep -q "&lt;Hardware/$class.h&gt;" "$page" && grep -q "$class-accessors.html" "$page" || {
      echo "$0: $page lacks its header or its accessors" >&2
      exit 1
   }
done
echo "$declared fields with their accessors: $VORN_DOC/html/index.html"
