#!/bin/sh
# Checks form and habits of the C++ code: clang-format 14 and clang-tidy 14.
# Usage: scripts/lint.sh             all of src/, tests/, bench/, include/ and examples/
#        scripts/lint.sh file ...
#        scripts/lint.sh --changed   the form of all; the habits of the sources of src/ that differ from
#                                    the last commit, or where nothing does that came with it
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test lint
cmake --preset test >/dev/null

files=$(git ls-files 'src/*.h' 'src/*.cpp' 'tests/*.h' 'tests/*.cpp' 'bench/*.h' 'bench/*.cpp' \
    'fuzz/*.h' 'fuzz/*.cpp' 'include/*.h' 'examples/*.cpp')
case ${1-} in
--changed)
    changed=$(git diff --name-only HEAD -- src)
    [ -n "$changed" ] || changed=$(git diff --name-only HEAD~1 HEAD -- src 2>/dev/null || true)
    # A header is seen through its source.
    sources=$(printf '%s\n' $changed | sed -n 's/\.\(h\|cpp\)$/.cpp/p' | sort -u |
        while read -r file; do [ ! -f "$file" ] || echo "$file"; done)
    ;;
*)
    [ $# -eq 0 ] || files=$*
    sources=$(printf '%s\n' $files | grep '\.cpp$' || true)
    ;;
esac

clang-format-14 --dry-run --Werror $files
[ -z "$sources" ] || printf '%s\n' $sources |
    xargs -P 2 -n 4 clang-tidy-14 --quiet -p build/test \
        --extra-arg=-Wno-ignored-optimization-argument \
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-sign-conversion # flags of g++ alone
echo "lint: clean"
