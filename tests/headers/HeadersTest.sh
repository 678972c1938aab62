#!/bin/sh
# HeadersTest.sh <compiler> <standard> <include folder>... [-- <include folder>...]: each public
# header of the first folders compiles alone, twice in one file, and without a warning.
set -eu
compiler=$1 standard=$2
shift 2
includes='' headers='' isTested=true
for folder; do
   if [ "$folder" = -- ]; then
      isTested=false
      continue
   fi
   includes="$includes -I$folder"
   ! $isTested || headers="$headers $("${0%/*}/list.sh" "$standard" "$folder")"
done
[ -n "$headers" ] || { echo "no headers"; exit 1; }
count=0
for header in $headers; do
   printf '#include <%s>\n#include <%s>\n' "$header" "$header" |
      "$compiler" -std="$standard" -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow \
         -Werror $includes -x c++ -
   count=$((count + 1))
done
echo "$count headers"
