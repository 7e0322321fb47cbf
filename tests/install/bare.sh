#!/usr/bin/env bash
# With nothing but a compiler the tree configures, says what it leaves out, and builds the library.
#   bare.sh SOURCE C++-COMPILER OWN-BUILD LAUNCHER
set -euo pipefail
export LC_ALL=C
source=$1 cxx=$2 own=$3 launcher=$4
fail() { echo "$*" >&2; exit 1; }

rm -rf "$own"
disabled=()
for package in GTest Threads benchmark PkgConfig PNG CLI11 Doxygen; do disabled+=("-DCMAKE_DISABLE_FIND_PACKAGE_$package=ON"); done
generator=(); command -v make > /dev/null || generator=(-G Ninja)
log=$(cmake -S "$source" -B "$own" "${generator[@]}" -DCMAKE_CXX_COMPILER="$cxx" \
            -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher" "${disabled[@]}" 2>&1) || fail "$log"
echo "$log"
for part in tests benchmarks 'examples and the zvp tool' documentation; do
  grep -qE "^-- Left out: $part \(not found: [A-Za-z0-9, ]+\)$" <<< "$log" || fail "no line says that $part is left out"
done
[ "$(grep -c 'Left out' <<< "$log")" = 4 ] || fail "more lines than parts"
cmake --build "$own" -j "$(nproc)"
for file in libzvpvcmx.so.6.1 libzvpvcmx.so libzvpvcmx.a libzvpcore.so libzvpcore.a; do
  [ -e "$own/$file" ] || fail "not built: $file"
done
