#!/bin/sh
# Builds the program and runs all its tests, installing first what is missing on a Debian machine.
# Further arguments go to ctest: scripts/test.sh -R Reader
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test
cmake --preset test
cmake --build --preset test -j2
ctest --preset test -j2 "$@"
