#!/bin/sh
# ConsumerTest.sh <compiler> <include folder>...: a program that uses the headers, optimised, which
# is when a compiler looks closest, compiles without a warning.
set -eu
compiler=$1
shift
for folder; do includes="${includes-} -I$folder"; done
for level in -O2 -O3; do
   "$compiler" -std=c++17 $level -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror $includes \
      -c -o /dev/null "${0%/*}/Consumer.cpp"
done
