#!/bin/sh
# Builds with a second compiler, clang, and runs all tests: the bytes of the results are the same.
# Further arguments go to ctest.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test clang
cmake --preset clang
cmake --build --preset clang -j2
ctest --preset clang -j2 "$@"
