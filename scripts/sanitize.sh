#!/bin/sh
# Builds with the address and undefined-behaviour sanitizers and runs all tests under them.
# Further arguments go to ctest.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test
cmake --preset asan
cmake --build --preset asan -j2
ctest --preset asan -j2 "$@"
