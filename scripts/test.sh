#!/bin/sh
# Builds the program, checks the form of the code and runs all tests, installing first what is missing
# on a Debian machine. Further arguments go to ctest, and the form is not checked:
# scripts/test.sh -R Reader
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test
cmake --preset test
cmake --build --preset test -j2
[ $# -gt 0 ] || scripts/lint.sh --changed
ctest --preset test -j2 "$@"
