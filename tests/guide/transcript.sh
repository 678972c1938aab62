#!/bin/sh
# transcript.sh <console>: runs the command lines of a console sample, those that begin with "$ ",
# and prints each with what it prints.
while IFS= read -r line; do
   case $line in
   '$ '*)
      printf '%s\n' "$line"
      (eval "${line#??}")
      ;;
   esac
done <"$1"
