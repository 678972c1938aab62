#!/bin/sh
# list.sh <standard> <include folder>: the public headers of a folder that the standard can compile.
# Layouts, and the views that are made of them at compile time, need C++20.
cd "$2"
find . -name '*.h' | sort | sed 's|^\./||' | case $1 in
c++17) grep -vE '^Hardware/(At\.h|at/|layouts/|detail/(At|Cell|Description))' ;;
*) cat ;;
esac
