#!/usr/bin/env bash
# coverage.sh ZVP_BENCH EXPORTS: every listed export has a row, and every row agrees with its model.
set -euo pipefail
bench=$1 exports=$2
# Nothing to time: a record is copied, a table given back, an error returned.
none='^(zvpvcGetLibVersion|zvpiHuffmanTableFree_32s|zvpiFreeHuffmanTable_DV_32u|zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_(8u|16u)_C1IR)$'
if missing=$(comm -23 <(grep -vE "^(#.*)?$|$none" "$exports" | sort -u) \
                      <("$bench" --benchmark_list_tests | cut -d / -f 1 | sort -u)) && [ -n "$missing" ]; then
  echo "No row in bench/ for:"
  echo "$missing"
  exit 1
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
"$bench" --benchmark_min_time=0.00001 > "$log" 2>&1 || { grep ERROR "$log" || cat "$log"; exit 1; }
