#!/bin/sh
# Checks form and habits of the C++ code: clang-format 14 and clang-tidy 14.
# Usage: scripts/lint.sh [file ...]; without a file, all of src/, tests/ and bench/.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test lint
cmake --preset test >/dev/null

if [ $# -gt 0 ]; then
    files=$*
else
    files=$(git ls-files 'src/*.h' 'src/*.cpp' 'tests/*.h' 'tests/*.cpp' 'bench/*.h' 'bench/*.cpp')
fi
sources=$(printf '%s\n' $files | grep '\.cpp$' || true)

clang-format-14 --dry-run --Werror $files
[ -z "$sources" ] || printf '%s\n' $sources |
    xargs -P 2 -n 4 clang-tidy-14 --quiet -p build/test \
        --extra-arg=-Wno-ignored-optimization-argument # flags of g++ alone
echo "lint: clean"
