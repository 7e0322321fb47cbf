#!/usr/bin/env bash
# What a finished shared object promises, looked at from outside.
#   inspect.sh CHECK LIBRARY EXPORTS HEADER COMPILER
set -euo pipefail
export LC_ALL=C
check=$1 library=$2 exports=$3 header=$4 compiler=$5

fail() { echo "$*" >&2; exit 1; }
listed() { grep -E '^zvp' "$exports" | sort; }
# same TITLE A B: two lists hold the same lines; the difference is shown.
same() { diff --label "$1" --label "$2" "$3" "$4" || fail "$1 and $2 differ"; }
section_size() { readelf -SW "$library" | awk -v s="$1" '{ sub(/^ *\[ *[0-9]+\] */, "") } $1 == s { print $5 }'; }

case $check in
  exports)  # the listed names, each once, and no other; none of them weak
    [ -z "$(listed | uniq -d)" ] || fail "listed twice: $(listed | uniq -d)"
    same "$(basename "$exports")" "exported names" <(listed) <(nm -D --defined-only "$library" | awk '{print $3}' | sort)
    weak=$(nm -D --defined-only "$library" | awk '$2 ~ /[WVwvu]/')
    [ -z "$weak" ] || fail "weak definitions: $weak"
    ;;
  header-names)  # the header declares exactly the listed names
    same "$(basename "$exports")" "$(basename "$header")" <(listed) \
      <("$compiler" -x c -std=c99 -E -P "$header" | tr '\n' ' ' |
        grep -oE '__attribute__ *\(\(visibility\("default"\)\)\)[^(;{]*\(' | sed -E 's/.*[ *]([A-Za-z0-9_]+) *\($/\1/' | sort)
    ;;
  header-c99) "$compiler" -x c -std=c99 -Wall -Wextra -Wpedantic -Wstrict-prototypes -Werror -fsyntax-only "$header" ;;
  header-c++) "$compiler" -x c++ -std=c++11 -Wall -Wextra -Wpedantic -Wno-pragma-once-outside-header -Werror \
                -fsyntax-only -include "$header" /dev/null ;;
  needs)  # soname and needed libraries
    soname=$(readelf -dW "$library" | sed -nE 's/.*\(SONAME\).*\[(.*)\]/\1/p')
    [ "$soname" = libzvpvcmx.so.6.1 ] || fail "soname is $soname"
    needed=$(readelf -dW "$library" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' | sort)
    others=$(grep -vxE 'libzvpcore\.so|libc\.so\.6|libm\.so\.6' <<< "$needed" || true)
    [ -z "$others" ] || fail "needs also: $others"
    grep -qx 'libzvpcore\.so' <<< "$needed" || fail "does not need libzvpcore.so"
    ;;
  undefined)  # the only calls that leave the library
    undefined=$(nm -D --undefined-only "$library" | awk '{ sub(/@.*/, "", $2); print $1, $2 }' | sort)
    for name in zvpMalloc zvpFree; do
      grep -qx "U $name" <<< "$undefined" || fail "$name is not imported: a program could not interpose it"
    done
    others=$(grep -vxE 'U (zvpMalloc|zvpFree|(__)?mem(cpy|move|set|cmp)(_chk)?)|w (_ITM_.*|__cxa_finalize|__gmon_start__)' \
             <<< "$undefined" || true)
    [ -z "$others" ] || fail "imports also: $others"
    ;;
  data)  # nothing that can be written to, no constructor, no text relocation, no executable stack
    for section in .data .bss .init_array .fini_array; do
      size=$((16#$(section_size $section | grep . || echo 0)))
      [ "$size" -le 8 ] || fail "$section holds $size bytes: more than the start-up files put there"
    done
    objects=$(objdump -t "$library" | awk '$(NF-2) ~ /^\.(data|bss|tdata|tbss)$/ || $4 ~ /^\.(data|bss|tdata|tbss)$/ { print $NF }' |
              grep -vxE '\.data|\.bss|completed\.0|__dso_handle|__TMC_END__|_edata|_end|__bss_start' || true)
    [ -z "$objects" ] || fail "writable: $objects"
    dynamic=$(readelf -dW "$library")
    ! grep -q TEXTREL <<< "$dynamic" || fail "has text relocations"
    grep -q 'BIND_NOW\|FLAGS_1.*NOW' <<< "$dynamic" || fail "is not bound at load time"
    segments=$(readelf -lW "$library")
    grep -q GNU_RELRO <<< "$segments" || fail "has no read-only relocations"
    ! grep -E 'GNU_STACK.*E' <<< "$(grep GNU_STACK <<< "$segments" | sed 's/GNU_STACK/GNU_STACK /')" | grep -qE ' RWE ' ||
      fail "asks for an executable stack"
    ;;
  addresses)  # every export has a body of its own
    shared=$(nm -D --defined-only "$library" | awk '{ names[$1] = names[$1] " " $3; n[$1]++ } END { for (a in n) if (n[a] > 1) print names[a] }')
    [ -z "$shared" ] || fail "share an address: $shared"
    ;;
  *) fail "no such check: $check" ;;
esac
