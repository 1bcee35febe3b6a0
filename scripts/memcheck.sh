#!/bin/sh
# Runs the end-to-end cases under valgrind's memcheck. An access that is not allowed, a value that was
# never set, or a block that is lost is an error. Prints how many cases are clean, and the time.
# Usage: scripts/memcheck.sh [CASE...]    all cases by default
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build test
cmake -S . -B build/memcheck -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    "-DCMAKE_CXX_FLAGS_DEBUG=-O1 -g" >/dev/null
cmake --build build/memcheck -j2 --target kva

work=$PWD/build/memcheck/cases
rm -rf "$work"
mkdir -p "$work"
cat >"$work/kva" <<END
#!/bin/sh
exec valgrind -q --error-exitcode=99 --leak-check=full --track-origins=yes \\
    --log-file=$work/%p.valgrind "$PWD/build/memcheck/kva" "\$@"
END
chmod +x "$work/kva"

# Valgrind computes long doubles with 64 bits, so that products of the allelic richness end earlier:
# these cases are held to its reports alone.
other_bytes=' richness_above '

begin=$(date +%s)
[ $# -gt 0 ] || set -- $(tests/end_to_end/run.py --list)
dirty=0
for case in "$@"; do
    tests/end_to_end/run.py --kva "$work/kva" --work "$work/run" "$case" >"$work/told" || {
        case $other_bytes in *" $case "*) continue ;; esac
        dirty=$((dirty + 1))
        cat "$work/told"
    }
done
find "$work" -name '*.valgrind' -size +0 -exec cat {} +
found=$(find "$work" -name '*.valgrind' -size +0 | wc -l)
echo "$(($# - dirty)) of $# cases clean, $found reports, $(($(date +%s) - begin)) seconds"
[ "$dirty" -eq 0 ] && [ "$found" -eq 0 ]
