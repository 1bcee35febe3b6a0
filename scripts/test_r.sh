#!/bin/sh
# Builds kvatool and the R package in r/ and runs R CMD check, installing first what is missing on a
# Debian machine. Fails on any error, warning or note, and where the manual pages are not those of
# the comments in r/R. The page of kvatool report, whose tree and coordinates the package's tests hold to
# those of R, is opened in Chromium before. Then tests the workflow for batches, locally and on Slurm.
# Environment: KVATOOL: a kvatool that is built already; without it the preset release builds one.
set -eu
cd "$(dirname "$0")/.."
root=$PWD

scripts/setup.sh build r browser
if [ -z "${KVATOOL:-}" ]; then
    cmake --preset release
    cmake --build --preset release -j2
    KVATOOL=$PWD/build/release/kvatool
fi
export KVATOOL
python3 tests/tool/report_browser_test.py "$KVATOOL"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The example data are links.
cp -RL r "$work/kva"

cp -R "$work/kva" "$work/documented"
(cd "$work/documented" && rm -rf man NAMESPACE &&
    Rscript --vanilla -e 'suppressMessages(roxygen2::roxygenise(".", load_code = "source"))' >/dev/null)
for part in NAMESPACE man; do
    if ! diff -r "r/$part" "$work/documented/$part"; then
        echo "test_r.sh: r/$part is not what roxygen2 writes; see r/README.md" >&2
        exit 1
    fi
done

cd "$work"
R CMD build kva
# The clock of the network is not asked for.
_R_CHECK_SYSTEM_CLOCK_=0 R CMD check --no-manual kva_*.tar.gz || true
if ! grep -q '^Status: OK$' kva.Rcheck/00check.log; then
    cat kva.Rcheck/tests/*.fail 2>/dev/null || true
    echo "test_r.sh: the package has errors, warnings or notes" >&2
    exit 1
fi
if ! grep '| SKIP 0 |' kva.Rcheck/tests/testthat.Rout; then
    echo "test_r.sh: tests were skipped" >&2
    exit 1
fi
R_LIBS=$work/kva.Rcheck Rscript --vanilla "$root/tests/docs/r_page.R" "$root/r/README.md"

"$root/workflow/test.sh"
