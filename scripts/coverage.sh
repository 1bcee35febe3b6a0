#!/bin/sh
# Builds with coverage counters, runs all tests, and shows which lines and branches of src/ they
# reach. Fails below the figures that docs/testing.md gives; that page lists what is not reached.
# Usage: scripts/coverage.sh [gcovr options], such as --html-details build/coverage/report.html
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test coverage
cmake --preset coverage
find build/coverage -name '*.gcda' -delete # counters of earlier runs
cmake --build --preset coverage -j2
ctest --preset coverage -j2

# A branch that only an exception takes (every call that may throw has one), or that no source
# line stands for, is no branch of the program.
measure() {
    gcovr --root . --exclude-throw-branches --exclude-unreachable-branches "$@" build/coverage
}
measure --filter src/ --branches
measure --filter src/ "$@"

# The program kva, and what stands behind kvatool: its guards against faults are reached by tests/faults,
# which do not run with counters.
measure --filter 'src/(base|data|output|run|stats|distance|fstat|hetrange|formats|control)/' \
    --fail-under-line 99.5 --fail-under-branch 97 --print-summary --output build/coverage/kva.txt
measure --filter 'src/(check|imports|results|report|api|tool)/' \
    --fail-under-line 98 --fail-under-branch 90 --print-summary --output build/coverage/kvatool.txt
