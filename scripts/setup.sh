#!/bin/sh
# Installs what is missing on a Debian machine, and nothing when all is there.
# Usage: scripts/setup.sh build|test|lint|coverage|clang|bench|readers|peers|site|builds|browser|r|workflow|deb ...
set -eu

# Package of Debian for each need; "package=command" where a command of any origin will do.
for need in "$@"; do
    case $need in
    build)
        set -- "$@" g++=g++ cmake=cmake ninja-build=ninja libcli11-dev nlohmann-json3-dev nettle-dev \
            pkg-config=pkg-config
        ;;
    test) set -- "$@" libgtest-dev libgmock-dev faketime valgrind=valgrind python3=python3 \
        pkg-config=pkg-config ;;
    lint) set -- "$@" clang-format-14=clang-format-14 clang-tidy-14=clang-tidy-14 ;;
    coverage) set -- "$@" gcovr=gcovr ;;
    clang) set -- "$@" clang-14=clang++-14 ;;
    builds) set -- "$@" lld-14=lld-14 llvm-14=llvm-ar-14 \
        g++-aarch64-linux-gnu=aarch64-linux-gnu-g++ qemu-user=qemu-aarch64 ;;
    readers) set -- "$@" r-base-core r-cran-adegenet lamarc xvfb xauth ;;
    bench) set -- "$@" libbenchmark-dev ;;
    deb) set -- "$@" debhelper lintian debootstrap r-base-core r-cran-ape r-cran-ggplot2 \
        r-cran-jsonlite ;;
    site) set -- "$@" mkdocs mkdocs-material python3=python3 ;;
    peers) set -- "$@" r-base-core r-cran-adegenet phylip ncl-tools python3=python3 ;;
    browser) set -- "$@" chromium=chromium fonts-dejavu-core python3=python3 ;;
    r)
        set -- "$@" r-base-core r-cran-adegenet r-cran-ape r-cran-ggplot2 r-cran-jsonlite \
            r-cran-rmarkdown pandoc=pandoc r-cran-testthat r-cran-roxygen2 r-cran-knitr
        ;;
    workflow)
        set -- "$@" snakemake=snakemake slurm-wlm=slurmctld slurm-client=sbatch munge=munged
        ;;
    *) echo "setup.sh: unknown need '$need'" >&2 && exit 2 ;;
    esac
    shift
done

missing=
for row in "$@"; do
    package=${row%%=*}
    case $row in
    *=*) command -v "${row#*=}" >/dev/null && continue ;;
    *) dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' && continue ;;
    esac
    missing="$missing $package"
done
[ -z "$missing" ] && exit 0

if ! command -v apt-get >/dev/null; then
    echo "Please install:$missing (names of Debian packages)" >&2
    exit 1
fi
as_root=
[ "$(id -u)" = 0 ] || as_root=sudo
echo "Installing:$missing"
$as_root apt-get update -q
DEBIAN_FRONTEND=noninteractive $as_root apt-get install -q -y --no-install-recommends $missing
