#!/bin/sh
# ExportTest.sh <library> <SONAME> <pattern>: a library exports public names alone, under its SONAME.
set -eu
library=$1 soname=$2 pattern=$3

readelf -d "$library" | grep -q "SONAME.*\[$soname\]" || { echo "$library: not $soname"; exit 1; }
exported=$(nm -DC --defined-only "$library" | cut -d' ' -f3-)
[ -n "$exported" ] || { echo "$library exports nothing"; exit 1; }
private=$(printf '%s\n' "$exported" | grep -Ev "$pattern" || true)
[ -z "$private" ] || { printf '%s exports:\n%s\n' "$library" "$private"; exit 1; }
echo "$(printf '%s\n' "$exported" | wc -l) names, all public"
