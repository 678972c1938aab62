#!/bin/sh
# MacrosTest.sh <compiler> <standard> <include folder>...: a consumer's own macros are the same after
# all public headers as before them, and every macro that a header touches carries a prefix.
set -eu
compiler=$1 standard=$2
shift 2
includes='' all=''
for folder; do
   includes="$includes -I$folder"
   all="$all $("${0%/*}/list.sh" "$standard" "$folder" | sed 's|.*|#include <&>|')
"
done

# Names that a consumer may well use.
macros='API CLASS DECLARATION ENTRY FIELD FIELDS FIELD_ID INLINE NAME READ_ONLY ROW TABLE TAG VIEW WIDE'
{
   for macro in $macros; do printf '#define %s "its own %s"\n' "$macro" "$macro"; done
   echo "$all"
   for macro in $macros; do
      printf 'static_assert( std::string_view( %s ) == "its own %s" );\n' "$macro" "$macro"
   done
} | "$compiler" -std="$standard" -fsyntax-only $includes -x c++ -

# Defined, undefined or asked about, in any file below the folders.
touched=$(find "$@" -type f -exec sed -nE \
   -e 's/^ *# *(define|undef|ifdef|ifndef) +([A-Za-z_0-9]+).*/\2/p' \
   -e 's/^([A-Z_0-9]+)\(.*/\1/p' {} + | sort -u)
[ -n "$touched" ] || { echo "no macros"; exit 1; }
bare=$(echo "$touched" | grep -vE '^((HARDWARE|HWVORNFENNTYPES|KELVAR|ORU)_|_[A-Z_])' || :)
[ -z "$bare" ] || { echo "without a prefix:" $bare; exit 1; }
