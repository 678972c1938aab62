#!/bin/sh
# Prints what programs that were built against the libraries depend on.
#    print.sh symbols LIBRARY           its SONAME and the names it exports
#    print.sh slots CXX FOLDER...       the virtual tables and sizes of the classes in the headers of
#                                       these include folders, as g++ lays them out
#    print.sh types LIBRARY             the types and functions of the names; needs its debug
#                                       information
set -eu
LC_ALL=C
export LC_ALL
what=$1
shift

case $what in
symbols)
   readelf -d "$1" | sed -n 's/.*SONAME.*\[\(.*\)\]/\1/p'
   # Nothing is an AsicBase alone, and only g++ emits the constructor for that.
   nm -D --defined-only "$1" | awk '{ print $3 }' | grep -v '^_ZN6Kelvar8AsicBaseC1' | sort
   ;;
slots)
   cxx=$1
   shift
   work=$(mktemp -d)
   trap 'rm -rf "$work"' EXIT
   for folder; do
      set -- "$@" "-I$folder"
      (cd "$folder" && find Hardware Kelvar Oru Vorn -maxdepth 1 -name '*.h' 2>/dev/null |
         sort | sed 's/.*/#include <&>/') >>"$work/all.cpp"
      shift
   done
   "$cxx" -std=c++20 -fsyntax-only "-fdump-lang-class=$work/classes" "$@" "$work/all.cpp"
   awk '
      /^(Vtable for|Class) / { name = $NF; table = $1 == "Vtable"; slot = -2 }
      name !~ /^(Hardware::|Vorn::|Kelvar::.*AsicBase$|Oru::)/ || name ~ /[<{>]/ { next }
      !table && sub( /^   size=/, "" ) { print name, $1, "bytes" }
      # The first two entries are no functions; those without a body show as a dash.
      table && /^[0-9]+ / && slot++ >= 0 {
         sub( /.*\(\.\.\.\)\)/, "" )
         print name, slot - 1, /^[0-9]|__cxa_pure_virtual/ ? "-" : $0
      }' "$work/classes" | sort -k 1,1 -s
   ;;
types)
   abidw --no-show-locs --exported-interfaces-only --no-corpus-path --no-comp-dir-path \
      --no-elf-needed --no-parameter-names --no-architecture "$1"
   ;;
esac
