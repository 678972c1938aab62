#!/bin/sh
# ElfTest.sh library|program FILE: whether an ELF file is hardened, and what it lacks.
set -eu
kind=$1 file=$2

header=$(readelf -hW "$file")
dynamic=$(readelf -dW "$file")
segments=$(readelf -lW "$file")
sections=$(readelf -SW "$file")
notes=$(readelf -nW "$file")
imports=$(nm -D --undefined-only "$file" | awk '{ sub( /@.*/, "", $2 ); print $2 }')

lacking=''
# need NAME COMMAND...: notes the name if the command fails.
need() {
   name=$1
   shift
   "$@" >/dev/null || lacking="$lacking $name"
}
has() { printf '%s\n' "$1" | grep -Eq "$2"; }

readOnlyRelocations() { has "$segments" GNU_RELRO && has "$dynamic" 'FLAGS.*NOW'; }
noExecutableStack() { has "$segments" 'GNU_STACK .* RW '; }
stackProtector() { has "$imports" '^__stack_chk_fail$'; }
# Fine too if it calls nothing of which there is a checked form.
checkedCalls() {
   has "$imports" '^__(v?s?n?printf|v?fprintf|read|mem[a-z]+|str[a-z]+)_chk$' ||
      ! has "$imports" '^(v?(f|s|sn)?printf|read|str(n?cpy|n?cat))$'
}
shadowStack() { has "$notes" 'x86 feature: .*SHSTK'; }
positionIndependent() { has "$header" 'Type: *DYN' && has "$dynamic" 'FLAGS_1.*PIE'; }
# Every function that may be called through a pointer begins with the mark of such a target.
branchTargets() {
   has "$notes" 'x86 feature: .*IBT' && ! has "$dynamic" '\((INIT|FINI)\)' &&
      objdump -d --no-show-raw-insn "$file" | awk '
         BEGIN {
            while( ( "nm -D --defined-only '"$file"'" | getline ) > 0 ) {
               if( $2 ~ /[TW]/ ) {
                  sub( /@.*/, "", $3 )
                  exported[$3] = 1
               }
            }
         }
         /^[0-9a-f]+ <.*>:$/ { name = substr( $2, 2, length( $2 ) - 3 ); next }
         name in exported && NF {
            ++seen
            unmarked += $2 != "endbr64"
            delete exported[name]
            name = ""
         }
         END { exit !seen || unmarked }'
}
# One entry is the compiler's own.
noInitialisers() { has "$sections" 'INIT_ARRAY +[0-9a-f]+ [0-9a-f]+ 000008 '; }

need read-only-relocations readOnlyRelocations
need no-executable-stack noExecutableStack
need stack-protector stackProtector
need checked-calls checkedCalls
need shadow-stack shadowStack
case $kind in
library)
   need branch-targets branchTargets
   need no-initialisers noInitialisers
   ;;
program) need position-independent positionIndependent ;;
esac

[ -z "$lacking" ] || { echo "$file lacks:$lacking"; exit 1; }
echo "$file: hardened"
