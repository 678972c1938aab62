#!/bin/sh
# manual.sh VORN: prints the manual page, with what `VORN VERB --help` says of each verb.
set -eu
vorn=$1
cd "$(dirname "$0")"
sed '/^@VERBS@$/,$d' vorn.1.in
"$vorn" complete -- '' | cut -f 1 | while read -r verb; do
   echo ".SS $verb"
   "$vorn" "$verb" --help | awk -f manual.awk
done
echo '.SH CHIP TYPES'
"$vorn" tables --help | sed -n '/^Chip types: /,/^$/{s/^Chip types: //;/./p;}'
sed '1,/^@VERBS@$/d' vorn.1.in
