#!/bin/bash
# Counts what an add costs, the call of the driver included, in the library and written by hand, and holds the one to a
# percentage of the other.
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail

(($# == 3)) || { echo "usage: compare_instructions.sh VALGRIND PROGRAM PERCENT" >&2; exit 2; }
valgrind=$1 program=$2 percent=$3

instructions_of() {
  local log
  log=$("$valgrind" --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect="$1" "$program" 2>&1) ||
    { echo "$log" >&2; exit 1; }
  sed -n 's/^==[0-9]*== Collected : //p' <<<"$log"
}
library=$(instructions_of p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxEcmp)
by_hand=$(instructions_of hand_written_add)

((library > 0 && by_hand > 0)) || { echo "callgrind counted nothing" >&2; exit 1; }
echo "instructions of 1000 adds: $library in the library, $by_hand by hand," \
  "$((library * 100 / by_hand)) % (at most $percent %)"
((library * 100 <= by_hand * percent))
