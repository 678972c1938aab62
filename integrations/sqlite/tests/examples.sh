#!/bin/sh
# examples.sh DOCUMENT SQLITE3 EXTENSION_FOLDER VORN_FOLDER: runs the examples of the document. What is
# in ```sh is run by the shell; what is in ```sql, by a fresh sqlite3, prints the ```text after it.
set -eu
document=$1 sqlite=$2
LD_LIBRARY_PATH=$3 PATH=$4:$PATH
export LD_LIBRARY_PATH PATH
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
awk -v work="$work" '
   /^```./ { kind = substr( $0, 4 ); if( kind != "text" ) ++count; next }
   /^```/ { kind = ""; next }
   kind { printf "%s\n", $0 > sprintf( "%s/%02d.%s", work, count, kind ) }' "$document"
cd "$work"
checked=0
for example in *.sh *.sql; do
   case $example in *.sh) . "./$example" ;; esac
done
for example in *.sql; do
   "$sqlite" <"$example" >actual 2>&1 || { cat "$example" actual; exit 1; }
   diff "${example%.sql}.text" actual || { cat "$example"; exit 1; }
   checked=$((checked + 1))
done
echo "$checked examples"
[ "$checked" -ge 5 ]
