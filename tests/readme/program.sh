#!/usr/bin/env bash
# program.sh SOURCE CC LIBRARY CORE: builds and runs the one C program of README.md.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
awk '/^```c$/ { inside = 1; next } /^```$/ { inside = 0 } inside' "$1/README.md" > "$work/first.c"
[ "$(grep -c . "$work/first.c")" -ge 10 ] || { echo "no program in README.md"; exit 1; }
"$2" -std=c99 -Wall -Wextra -Werror -I "$1/include" "$work/first.c" "$3" "$4" -o "$work/first"
LD_LIBRARY_PATH=$(dirname "$3"):$(dirname "$4") "$work/first"
