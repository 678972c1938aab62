#!/bin/sh
# run.sh <expected> <command>...: the command prints what the file says, where "…" stands for any
# text; and it fails if, and only if, that ends in a failed assertion.
set -u
expected=$1
shift
printed=$("$@" 2>&1)
status=$?
pattern=$(sed 's/[][*?\\]/\\&/g; s/…/*/g' "$expected")

# Unquoted, the pattern is matched as one.
case $printed in
$pattern) ;;
*)
   printf 'the guide says:\n%s\nprinted:\n%s\n' "$(cat "$expected")" "$printed"
   exit 1
   ;;
esac
case $printed in
*"Assertion \`"*) [ "$status" -ne 0 ] ;;
*) [ "$status" -eq 0 ] ;;
esac || { echo "exit status $status"; exit 1; }
