#!/bin/sh
# The checks that take too long for each commit.
#    check.sh            lists them
#    check.sh NAME...    runs some, one after the other, and says which failed
#    check.sh --all      runs all of them
set -eu
cd "$(dirname "$0")/.."

# Name, command, and what it checks.
checks() {
   cat <<'END'
builds|scripts/check/builds.sh|the library built in many ways, for aarch64 too, answers the same
coverage|scripts/measure/coverage.sh|the tests take each branch of library and stand-ins
explorer|scripts/check/explorer.sh|the explorer in Chromium and Firefox, against vorn
fuzz|scripts/check/fuzz.sh 300|five minutes of each fuzzer
memory|scripts/check/memory.sh|the core of the tests under valgrind
mutations|scripts/check/mutations.py --work build/mutations|the tests notice one change at a time; hours
packages|scripts/check/packages.sh|the Debian packages on a clean system; as root
recipes|scripts/check/recipes.sh|the guide's recipes on the whole tree: all is built and all tests pass
reference|scripts/make/doc.sh|Doxygen finds nothing to warn of
static|scripts/check/static.sh --all|clang-tidy and cppcheck on every class and path
threads|scripts/run-tests.sh tsan|all tests under the thread sanitizer
END
}
names=$(checks | cut -d '|' -f 1)

case ${1:-} in
'')
   checks | while IFS='|' read -r name command text; do
      printf '%-10s %s (%s)\n' "$name" "$text" "$command"
   done
   echo "run them with  $0 NAME...  or  $0 --all"
   exit 0
   ;;
--all) set -- $names ;;
esac
for name; do
   echo "$names" | grep -qx -- "$name" || {
      echo "$0: no check $name; there are" $names >&2
      exit 2
   }
done

failed=''
for name; do
   command=$(checks | grep "^$name|" | cut -d '|' -f 2)
   echo "== $name: $command"
   $command || failed="$failed $name"
done
[ -z "$failed" ] || {
   echo "$0: failed:$failed" >&2
   exit 1
}
