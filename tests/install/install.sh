#!/usr/bin/env bash
# Installs a build into a temporary prefix, moves the prefix, and builds and runs programs against it.
#   install.sh BUILD LIBDIR C-COMPILER C++-COMPILER GENERATOR
set -euo pipefail
export LC_ALL=C
build=$1 libdir=$2 cc=$3 cxx=$4 generator=$5
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() { echo "$*" >&2; exit 1; }
needed() { readelf -dW "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p'; }
run_shared() {  # the program finds both libraries in the prefix, and no other way
  needed "$1" | grep -qx 'libzvpvcmx\.so\.6\.1' || fail "$1 does not need libzvpvcmx.so.6.1"
  LD_LIBRARY_PATH=$prefix/$libdir "$1" > /dev/null || fail "$1 (shared) failed"
}
run_static() {
  ! needed "$1" | grep zvp || fail "$1 is not linked statically"
  "$1" > /dev/null || fail "$1 (static) failed"
}
no_cxx_runtime() { ! needed "$1" | grep -E 'stdc\+\+|libc\+\+' || fail "$1 needs a C++ runtime"; }

cmake --install "$build" --prefix "$work/first" > "$work/install.log" || { cat "$work/install.log"; exit 1; }
prefix=$work/moved
mv "$work/first" "$prefix"
lib=$prefix/$libdir
for file in include/zvpvc.h include/zvpcore.h "$libdir"/{libzvpvcmx.so.6.1,libzvpvcmx.so,libzvpvcmx.a,libzvpcore.so} \
            "$libdir"/pkgconfig/zvpvcmx.pc "$libdir"/cmake/zvpvcmx/zvpvcmx-config.cmake; do
  [ -e "$prefix/$file" ] || fail "not installed: $file"
done
[ "$(readlink "$lib/libzvpvcmx.so")" = libzvpvcmx.so.6.1 ] || fail "libzvpvcmx.so is not a link to libzvpvcmx.so.6.1"
names=$(grep -rlE "$work|$build" "$prefix" || true)
[ -z "$names" ] || fail "these name the build's or the prefix' folder: $names"

echo "== pkg-config"
if command -v pkg-config > /dev/null; then
  export PKG_CONFIG_PATH=$lib/pkgconfig
  shared=$(pkg-config --cflags --libs zvpvcmx) static=$(pkg-config --static --cflags --libs zvpvcmx)
  core=$(pkg-config --libs zvpcore)
  "$cc" "$here/consumer/consumer.c" -o "$work/c" $shared
  "$cxx" "$here/consumer/consumer.cpp" -o "$work/cpp" $shared $core
  "$cc" -static "$here/consumer/consumer.c" -o "$work/c-static" $static
  "$cxx" -static "$here/consumer/consumer.cpp" -o "$work/cpp-static" $static
  for program in c cpp; do run_shared "$work/$program"; done
  for program in c-static cpp-static; do run_static "$work/$program"; done
  no_cxx_runtime "$work/c"
else
  echo "no pkg-config here"
fi

echo "== the archives, by name, with a C compiler"
"$cc" "$here/consumer/consumer.c" -I "$prefix/include" -o "$work/c-archive" "$lib/libzvpvcmx.a" "$lib/libzvpcore.a"
run_static "$work/c-archive"
no_cxx_runtime "$work/c-archive"

echo "== find_package"
cmake -S "$here/consumer" -B "$work/cmake" -G "$generator" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$cc" \
      -DCMAKE_CXX_COMPILER="$cxx" > "$work/cmake.log" 2>&1 &&
  cmake --build "$work/cmake" >> "$work/cmake.log" 2>&1 || { cat "$work/cmake.log"; exit 1; }
for program in c cpp; do
  run_shared "$work/cmake/$program"
  run_static "$work/cmake/${program}_static"
done
no_cxx_runtime "$work/cmake/c"
no_cxx_runtime "$work/cmake/c_static"
