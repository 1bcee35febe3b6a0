#!/bin/sh
# Builds with the address and undefined-behaviour sanitizers and runs all tests under them; then with
# the thread sanitizer, and runs those that use threads. Further arguments go to ctest: then the
# first part alone is done.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test
cmake --preset asan
cmake --build --preset asan -j2
ctest --preset asan -j2 "$@"
[ $# -eq 0 ] || exit 0

cmake --preset tsan
cmake --build --preset tsan -j2
ctest --preset tsan -R 'Spread|InUnits|FirstBlock|UnitStream|tool.run'
