#!/usr/bin/env bash
# An install with ZVP_INSTALL_HWCAPS lays the x86-64-v3 build where the loader looks for it, and the loader takes it.
#   hwcaps.sh SOURCE BUILD LIBDIR C-COMPILER C++-COMPILER GENERATOR OWN-BUILD LAUNCHER
set -euo pipefail
export LC_ALL=C
source=$1 build=$2 libdir=$3 cc=$4 cxx=$5 generator=$6 own=$7 launcher=$8
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "$*" >&2; exit 1; }

# Only the optimized library is built anew; the rest of the prefix comes from the build at hand.
cmake -S "$source" -B "$own" -G "$generator" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher" \
      -DCMAKE_INSTALL_LIBDIR="$libdir" -DZVP_INSTALL_HWCAPS=ON -DZVP_TESTS=OFF -DZVP_BENCH=OFF -DZVP_EXAMPLES=OFF \
      -DZVP_DOCS=OFF
cmake --build "$own" --target zvpvcmx_v3 -j "$(nproc)"
cmake --install "$build" --prefix "$work" > /dev/null
cmake --install "$own" --prefix "$work" --component hwcaps
optimized=$work/$libdir/glibc-hwcaps/x86-64-v3/libzvpvcmx.so.6.1
[ -f "$optimized" ] && [ ! -L "$optimized" ] || fail "not installed: $optimized"
[ "$(ls "$(dirname "$optimized")")" = libzvpvcmx.so.6.1 ] || fail "more than the library: $(ls "$(dirname "$optimized")")"
diff <(nm -D --defined-only "$optimized" | awk '{print $3}' | sort) \
     <(nm -D --defined-only "$work/$libdir/libzvpvcmx.so.6.1" | awk '{print $3}' | sort) || fail "the two export different names"

"$cc" "$source/tests/install/consumer/consumer.c" -I "$work/include" -L "$work/$libdir" -lzvpvcmx -o "$work/program"
taken=$(LD_LIBRARY_PATH=$work/$libdir ldd "$work/program" | sed -nE 's/.*libzvpvcmx.so.6.1 => ([^ ]+).*/\1/p')
# The loader says which levels it looks for on this processor.
if "$(LD_LIBRARY_PATH='' ldd "$work/program" | grep -oE '/[^ ]*ld-linux[^ ]*')" --help | grep -q 'x86-64-v3 (supported'; then
  [ "$taken" = "$optimized" ] || fail "the loader took $taken"
  LD_LIBRARY_PATH=$work/$libdir "$work/program"
else
  [ "$taken" = "$work/$libdir/libzvpvcmx.so.6.1" ] || fail "the loader took $taken on a processor below x86-64-v3"
  echo "This processor is below x86-64-v3: the optimized library is laid down but not run."
fi
