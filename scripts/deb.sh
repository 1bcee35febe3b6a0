#!/bin/sh
# Makes the Debian packages kva, libkva-dev and r-kva in build/deb and tries them, installing first what
# that needs. Usage: scripts/deb.sh [build|lint|try|same ...]   all of them by default
#   build  the packages of what is committed, into build/deb
#   lint   lintian, without errors
#   try    in a clean root of Debian: installed, run, built against, removed (as root; 1 GB)
#   same   built once more, at another time, in another time zone, locale and umask: the same bytes
# Every build is made in the folder build/deb/source: an R package holds the path of its build.
set -eu
cd "$(dirname "$0")/.."
root=$PWD
deb=$root/build/deb
[ $# -gt 0 ] || set -- build lint try same

scripts/setup.sh build deb

# build_into FOLDER COMMIT: the packages of a commit, FOLDER/*.deb
build_into() {
    rm -rf "$1" "$deb/source"
    mkdir -p "$1" "$deb/source/kva"
    git archive "$2" | tar -x -C "$deb/source/kva"
    (cd "$deb/source/kva" && dpkg-buildpackage -b -us -uc >"$1/build.log" 2>&1) || {
        tail -n 40 "$1/build.log"
        exit 1
    }
    rm -rf "$deb/source/kva"
    mv "$deb"/source/* "$1"
    rmdir "$deb/source"
}

try_in_clean_root() {
    clean=$(mktemp -d)
    trap 'rm -rf "$clean"' EXIT
    debootstrap --variant=minbase bookworm "$clean" http://deb.debian.org/debian >"$deb/clean.log"
    cp "$deb"/*.deb scripts/deb_try.sh "$clean/tmp"
    chroot "$clean" sh /tmp/deb_try.sh
    rm -rf "$clean"
    trap - EXIT
}

for task in "$@"; do
    case $task in
    build)
        commit=$(git rev-parse HEAD)
        build_into "$deb" "$commit"
        echo "$commit" >"$deb/commit"
        ;;
    lint) lintian --fail-on error "$deb"/*.changes ;;
    try) try_in_clean_root ;;
    same)
        (
            umask 027
            export TZ=Asia/Tokyo LC_ALL=C.UTF-8
            build_into "$deb/again" "$(cat "$deb/commit")"
        )
        for package in "$deb"/*.deb; do
            cmp "$package" "$deb/again/$(basename "$package")"
        done
        echo "deb.sh: two builds give the same bytes"
        ;;
    *) echo "deb.sh: unknown task '$task'" >&2 && exit 2 ;;
    esac
done
