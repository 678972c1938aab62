#!/bin/sh
# Checks every C++ source against .clang-format.
set -eu
cd "$(dirname "$0")/../.."
git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run -Werror
