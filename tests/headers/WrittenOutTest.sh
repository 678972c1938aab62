#!/bin/sh
# WrittenOutTest.sh <compiler> <folder> <include folder>...: the views of <Hardware/at/...> are the same
# tokens with the accessors that are written out for editors in the folder as without them.
set -eu
compiler=$1 accessors=$2
shift 2
for folder; do includes="${includes-} -I$folder"; done

views=$(cd "$1" && ls Hardware/at/*.h)
preprocessed() {
   echo "$views" | sed 's/.*/#include <&>/' | "$compiler" -std=c++20 "$@" $includes -x c++ -
}
tokens() { preprocessed -E -P "$@" | tr -s ' \n' '\n\n'; }
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
tokens >"$work/expanded"
tokens "-I$accessors" >"$work/writtenOut"
diff "$work/expanded" "$work/writtenOut"

# All of them were written out.
classes=$(echo "$views" | wc -l)
found=$(preprocessed -M "-I$accessors" | grep -o "$accessors/Hardware/accessors/at/[A-Za-z0-9]*\.inc" |
   sort -u | wc -l)
[ "$found" = "$classes" ] || { echo "$found classes instead of $classes"; exit 1; }
echo "$classes classes"
