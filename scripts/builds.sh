#!/bin/sh
# Builds the program by g++ and clang, without and with optimisation of each kind, and for aarch64,
# and runs the end-to-end cases with each: every byte has to be the same. Needs the Debian packages
# of the need `builds` (scripts/setup.sh); the program for aarch64 runs under qemu.
# Usage: scripts/builds.sh [BUILD...]    all of them by default: the names are in the table below
# Prints a table; ends with an error where a case differs or a build fails.
set -eu
cd "$(dirname "$0")/.."
root=$PWD
place=$root/build/builds

# name|compiler|flags; "lto" among the flags also names the tools of the compiler.
table='g++ -O0|g++|-O0
g++ -O2|g++|-O2
g++ -O3|g++|-O3
g++ -O2 -flto|g++|-O2 -flto=auto
g++ -O3 -flto|g++|-O3 -flto=auto
clang -O0|clang++-14|-O0
clang -O2|clang++-14|-O2
clang -O3|clang++-14|-O3
clang -O3 -flto|clang++-14|-O3 -flto
aarch64 -O0|aarch64-linux-gnu-g++|-O0
aarch64 -O2|aarch64-linux-gnu-g++|-O2
aarch64 -O3|aarch64-linux-gnu-g++|-O3
aarch64 -O3 -flto|aarch64-linux-gnu-g++|-O3 -flto=auto'

scripts/setup.sh build test clang builds

# The tools of a compiler that read what -flto leaves.
tools() {
    case $1 in
    clang*) echo "-DCMAKE_AR=$(command -v llvm-ar-14) -DCMAKE_RANLIB=$(command -v llvm-ranlib-14)
        -DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld-14" ;;
    aarch64*) echo "-DCMAKE_AR=$(command -v aarch64-linux-gnu-gcc-ar)
        -DCMAKE_RANLIB=$(command -v aarch64-linux-gnu-gcc-ranlib)" ;;
    *) echo "-DCMAKE_AR=$(command -v gcc-ar) -DCMAKE_RANLIB=$(command -v gcc-ranlib)" ;;
    esac
}

# build FOLDER COMPILER FLAGS
build() {
    system=
    case $2 in aarch64*) system='-DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR=aarch64' ;; esac
    more=
    case $3 in *-flto*) more=$(tools "$2") ;; esac
    # A type of build that adds no flags of its own.
    cmake -S . -B "$1" -G Ninja -DCMAKE_BUILD_TYPE=Plain -DCMAKE_CXX_COMPILER="$2" \
        "-DCMAKE_CXX_FLAGS=$3 -DNDEBUG" $system $more && cmake --build "$1" -j2 --target kva
}

# program FOLDER COMPILER: what to run. A program for aarch64 gets the frozen clock of its own
# system: the one of libfaketime is not there.
program() {
    case $2 in
    aarch64*)
        aarch64-linux-gnu-gcc -shared -fPIC -O2 -o "$1/frozen_clock.so" \
            tests/end_to_end/frozen_clock.c
        cat >"$1/run" <<END
#!/bin/sh
unset LD_PRELOAD
exec qemu-aarch64 -L /usr/aarch64-linux-gnu -E LD_PRELOAD=$1/frozen_clock.so $1/kva "\$@"
END
        chmod +x "$1/run"
        echo "$1/run"
        ;;
    *) echo "$1/kva" ;;
    esac
}

faults=0
# row NAME EQUAL DIFFERING
row() { printf '| %-16s | %5s | %9s |\n' "$@"; }
row Build Equal Differing
echo '|------------------|------:|----------:|'
while IFS='|' read -r name compiler flags; do
    wanted=no
    [ $# -gt 0 ] || wanted=yes
    for word in "$@"; do [ "$word" != "$name" ] || wanted=yes; done
    [ $wanted = yes ] || continue
    folder=$place/$(echo "$name" | tr ' +' '_p')
    mkdir -p "$folder"
    if ! build "$folder" "$compiler" "$flags" >"$folder/log" 2>&1 </dev/null; then
        row "$name" "not" "built"
        faults=1
        continue
    fi
    tests/end_to_end/run.py --kva "$(program "$folder" "$compiler")" --work "$folder/cases" \
        >"$folder/told" 2>&1 </dev/null || faults=1
    equal=$(grep -c ': as expected$' "$folder/told" || true)
    row "$name" "$equal" "$(($(tests/end_to_end/run.py --list | wc -l) - equal))"
done <<END
$table
END
exit $faults
