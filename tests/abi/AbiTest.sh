#!/bin/sh
# AbiTest.sh BASELINE symbols|slots|types ARGUMENT...: whether the libraries are still what the
# baseline says, see print.sh. scripts/make/abi.sh makes a change the new baseline.
set -eu
here=$(dirname "$0")
baseline=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$here/print.sh" "$@" >"$work/now"
[ -s "$work/now" ] || { echo "nothing to compare"; exit 1; }

case $1 in
types)
   xz -dc "$baseline" >"$work/before"
   abidiff "$work/before" "$work/now"
   ;;
*)
   diff "$baseline" "$work/now" >"$work/difference" || {
      c++filt <"$work/difference"
      exit 1
   }
   ;;
esac && echo "as in $(basename "$baseline")" || {
   echo "differs from $baseline; if that is meant: scripts/make/abi.sh"
   exit 1
}
