#!/bin/sh
# ElfTest.sh library|program FILE [OBJDUMP]: whether an ELF file is hardened, and what it lacks. Of a
# file for another machine than this one, OBJDUMP has to be one for that.
set -eu
kind=$1 file=$2 objdump=${3:-objdump}

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
# Also right if it calls no function that has a checked form.
checkedCalls() {
   has "$imports" '^__(v?s?n?printf|v?fprintf|read|mem[a-z]+|str[a-z]+)_chk$' ||
      ! has "$imports" '^(v?(f|s|sn)?printf|read|str(n?cpy|n?cat))$'
}
# Returns go only where calls came from: by a second stack on x86, by signed addresses on aarch64.
case $header in
*AArch64*)
   target='^(bti|paciasp)$'
   guardedReturns() { "$objdump" -d --no-show-raw-insn "$file" | grep -q '[[:space:]]paciasp$'; }
   markedTargets() { :; } # Debian's start-up objects lack the mark, so no file has it as a whole
   ;;
*)
   target='^endbr64$'
   guardedReturns() { has "$notes" 'x86 feature: .*SHSTK'; }
   markedTargets() { has "$notes" 'x86 feature: .*IBT' && ! has "$dynamic" '\((INIT|FINI)\)'; }
   ;;
esac
positionIndependent() { has "$header" 'Type: *DYN' && has "$dynamic" 'FLAGS_1.*PIE'; }
# Every function that may be called through a pointer begins with the mark of such a target.
branchTargets() {
   markedTargets &&
      "$objdump" -d --no-show-raw-insn "$file" | awk -v target="$target" '
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
            unmarked += $2 !~ target
            delete exported[name]
            name = ""
         }
         END { exit !seen || unmarked }'
}
# One entry is the compiler's own, and one more where aarch64's atomics ask what the machine has.
noInitialisers() {
   size=000008
   ! nm "$file" | grep -q ' init_have_lse_atomics$' || size=000010
   has "$sections" "INIT_ARRAY +[0-9a-f]+ [0-9a-f]+ $size "
}

need read-only-relocations readOnlyRelocations
need no-executable-stack noExecutableStack
need stack-protector stackProtector
need checked-calls checkedCalls
need guarded-returns guardedReturns
case $kind in
library)
   need branch-targets branchTargets
   need no-initialisers noInitialisers
   ;;
program) need position-independent positionIndependent ;;
esac

[ -z "$lacking" ] || { echo "$file lacks:$lacking"; exit 1; }
echo "$file: hardened"
