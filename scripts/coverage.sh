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
    gcovr --root . --filter src/ --exclude-throw-branches --exclude-unreachable-branches "$@" \
        build/coverage
}
measure --branches
measure --fail-under-line 99.5 --fail-under-branch 97 "$@"
