#!/bin/sh
# Builds kvatool and tests the workflow, locally and on the Slurm of slurm/setup.sh, installing first
# what is missing on a Debian machine. Words go to unittest: workflow/test.sh -v OnSlurm
# Environment: KVATOOL: a kvatool that is built already; without it the preset release builds one.
set -eu
cd "$(dirname "$0")/.."

# The daemons of Slurm lie where users have no path to.
PATH=$PATH:/usr/sbin:/sbin
scripts/setup.sh build workflow
if [ -z "${KVATOOL:-}" ]; then
    cmake --preset release
    cmake --build --preset release -j2
    KVATOOL=$PWD/build/release/kvatool
fi
tests/workflow/workflow_test.py "$KVATOOL" --slurm "$@"
